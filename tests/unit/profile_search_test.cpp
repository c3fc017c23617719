// Choosing the media profile that serves a stream user.

#include "bench_request.h"
#include "observed.h"

#include <gtest/gtest.h>

namespace koine::test {
namespace {

class ProfileSearch : public ::testing::Test {
protected:
    int search() {
        forgetTraces();
        return request.searchAvailableProfileToken(kUid);
    }

    void classes(const std::vector<std::string>& live) {
        request.useProfiles(static_cast<int>(live.size()));
        for (std::size_t i = 0; i < live.size(); ++i)
            request.profile(static_cast<int>(i) + 1, ".Tovlin.AllowLive", live[i]);
    }

    void expectChosen(int id, const std::string& token) {
        EXPECT_EQ(client.profile_id(), id);
        EXPECT_EQ(client.profile_token(), token);
    }

    BenchRequest request;
    StreamIDClient& client = request.client();
};

TEST_F(ProfileSearch, RefusesMobileViewersOnAPellDevice) {
    classes({"ANY", "MOBILE"});
    request.setIsPellDevice(1);
    client.setProfileMode_1("MOBILE");
    EXPECT_EQ(search(), -2);
    EXPECT_TRUE(tracesAre({"?#1928 searchAvailableProfileToken: err-2. \n"}));
    expectChosen(0, "PROFILE-1");
}

TEST_F(ProfileSearch, RefusesThemBeforeItLooksWhetherThereAreProfiles) {
    request.setIsPellDevice(2);
    request.setMediaProfile(0);
    client.setProfileMode_1("MOBILE");
    EXPECT_EQ(search(), -2);
    EXPECT_TRUE(tracesAre({"?#1928 searchAvailableProfileToken: err-2. \n"}));
}

TEST_F(ProfileSearch, ServesOtherViewersOfAPellDevice) {
    classes({"ANY", "MOBILE"});
    request.setIsPellDevice(1);
    client.setProfileMode_1("AUTO");
    EXPECT_EQ(search(), 1);
    expectChosen(1, "T1");
}

TEST_F(ProfileSearch, LeavesTheUserAloneWithoutMediaProfiles) {
    classes({"ANY"});
    client.set_profile_token("");
    for (const int driven : {0, 2}) {
        request.setMediaProfile(driven);
        EXPECT_EQ(search(), 1);
        EXPECT_TRUE(tracesAre({"?#1933 no Media. \n"}));
        expectChosen(0, "");
        EXPECT_EQ(client.profile_mode(), "");
    }
}

TEST_F(ProfileSearch, LeavesTheUserAloneWithoutACountAndInsertsNone) {
    request.setMediaProfile(1);
    request.profile(1, ".token", "T1");
    EXPECT_EQ(search(), 1);
    EXPECT_TRUE(tracesAre({"?#1941 no Media. \n"}));
    expectChosen(0, "PROFILE-1");
    EXPECT_EQ(request.media().count("Media.Profiles.Count"), 0U);
}

TEST_F(ProfileSearch, FindsTheTokenOfAUserWithoutMode) {
    request.useProfiles(3);
    request.profile(2, ".token", "abc");
    client.set_profile_token("abc");
    EXPECT_EQ(search(), 1);
    expectChosen(2, "abc");
    EXPECT_EQ(client.profile_mode(), "");
    EXPECT_TRUE(tracesAre({}));
}

TEST_F(ProfileSearch, TheFirstOfTwoEqualTokensWins) {
    request.useProfiles(3);
    request.profile(2, ".token", "abc");
    request.profile(3, ".token", "abc");
    client.set_profile_token("abc");
    EXPECT_EQ(search(), 1);
    expectChosen(2, "abc");
}

TEST_F(ProfileSearch, OnlyTheSameBytesAreTheSameToken) {
    request.useProfiles(3);
    request.profile(2, ".token", "abcd");
    request.profile(3, ".token", "ABC");
    client.set_profile_token("abc");
    EXPECT_EQ(search(), 1);
    expectChosen(1, "T1");
}

TEST_F(ProfileSearch, ReadsTheTokenOfTheProfileAndNotOfItsEncoder) {
    request.useProfiles(2);
    request.encoder(2, ".token", "abc");
    client.set_profile_token("abc");
    EXPECT_EQ(search(), 1);
    expectChosen(1, "T1");
}

TEST_F(ProfileSearch, LooksForTokensOnlyUpToTheCount) {
    request.useProfiles(2);
    request.profile(3, ".token", "abc");
    client.set_profile_token("abc");
    EXPECT_EQ(search(), 1);
    expectChosen(1, "T1");
}

TEST_F(ProfileSearch, LooksAtNoMoreProfilesThanADeviceCanHave) {
    request.useProfiles(0);
    request.media()["Media.Profiles.Count"] = "100000";
    request.profile(1024, ".token", "last");
    request.profile(1025, ".token", "beyond");
    client.set_profile_token("last");
    EXPECT_EQ(search(), 1);
    EXPECT_EQ(client.profile_id(), 1024);
    client.set_profile_token("beyond");
    EXPECT_EQ(search(), 1);
    EXPECT_EQ(client.profile_id(), 1);
}

TEST_F(ProfileSearch, AUserWithNeitherModeNorTokenBecomesAuto) {
    classes({"ANY", "MOBILE"});
    client.set_profile_token("");
    EXPECT_EQ(search(), 1);
    EXPECT_EQ(client.profile_mode(), "AUTO");
    expectChosen(1, "T1");
}

TEST_F(ProfileSearch, AUserWithNeitherIsServedAsAuto) {
    classes({"MOBILE", "ANY"});
    client.set_profile_token("");
    EXPECT_EQ(search(), 1);
    expectChosen(2, "T2");
    EXPECT_EQ(client.stream_setup_map().find("ProfileMode")->second, "AUTO");
}

TEST_F(ProfileSearch, AutoTakesTheFirstProfileForAll) {
    classes({"MOBILE", "NONE", "ANY", "ANY"});
    client.setProfileMode_1("AUTO");
    EXPECT_EQ(search(), 1);
    expectChosen(3, "T3");
}

TEST_F(ProfileSearch, AutoDoesNotLookAtTheToken) {
    classes({"ANY", "ANY", "ANY"});
    client.setProfileMode_1("AUTO");
    client.set_profile_token("T3");
    EXPECT_EQ(search(), 1);
    expectChosen(1, "T1");
}

TEST_F(ProfileSearch, AutoTakesTheFirstProfileWhenNoneIsForAll) {
    classes({"MOBILE", "any", "ANY "});
    client.setProfileMode_1("AUTO");
    EXPECT_EQ(search(), 1);
    expectChosen(1, "T1");
}

TEST_F(ProfileSearch, AutoPassesOverProfilesWithoutALiveClassAndInsertsNone) {
    request.useProfiles(2);
    request.profile(2, ".Tovlin.AllowLive", "ANY");
    client.setProfileMode_1("AUTO");
    EXPECT_EQ(search(), 1);
    expectChosen(2, "T2");
    EXPECT_EQ(request.media().count("Media.Profiles.Profile1.Tovlin.AllowLive"), 0U);
}

TEST_F(ProfileSearch, MobileTakesTheFirstProfileForMobileViewers) {
    classes({"ANY", "MOBILE", "MOBILE"});
    client.setProfileMode_1("MOBILE");
    EXPECT_EQ(search(), 1);
    expectChosen(2, "T2");
}

TEST_F(ProfileSearch, MobileTakesTheLastProfileWhenNoneIsForMobileViewers) {
    classes({"ANY", "ANY", "ANY"});
    client.setProfileMode_1("MOBILE");
    EXPECT_EQ(search(), 1);
    expectChosen(3, "T3");
}

TEST_F(ProfileSearch, MobileWithoutProfilesAndWithoutATokenIsRefused) {
    request.useProfiles(0);
    client.setProfileMode_1("MOBILE");
    client.set_profile_token("");
    EXPECT_EQ(search(), -2);
    EXPECT_TRUE(tracesAre({"???#2005 searchAvailableProfileToken: err-2. \n"}));
    EXPECT_EQ(client.profile_id(), 0);
    EXPECT_STREQ(client.profile_token(), "PROFILE-1") << "the placeholder is stored all the same";
}

TEST_F(ProfileSearch, MobileWithoutATokenTakesTheOnlyProfile) {
    classes({"ANY"});
    client.setProfileMode_1("MOBILE");
    client.set_profile_token("");
    EXPECT_EQ(search(), 1);
    expectChosen(1, "T1");
}

TEST_F(ProfileSearch, MobileWithoutProfilesButWithATokenKeepsTheFirstProfile) {
    for (const char* count : {"0", "-4", ""}) {
        request.useProfiles(0);
        request.media()["Media.Profiles.Count"] = count;
        request.profile(1, ".token", "T1");
        client.setProfileMode_1("MOBILE");
        client.set_profile_token("mine");
        EXPECT_EQ(search(), 1) << count;
        expectChosen(1, "T1");
    }
}

TEST_F(ProfileSearch, AnyOtherModeTakesTheFirstProfile) {
    for (const char* mode : {"ONLY_META", "ONLY_STATUS", "auto", "Mobile", "MOBILE2"}) {
        classes({"MOBILE", "ANY", "ANY"});
        client.setProfileMode_1(mode);
        client.set_profile_token("T3");
        EXPECT_EQ(search(), 1) << mode;
        expectChosen(1, "T1");
    }
}

TEST_F(ProfileSearch, AModeWithoutATokenIsServedByTheModeAlone) {
    classes({"ANY", "MOBILE"});
    client.set_profile_token("");
    client.setProfileMode_1("MOBILE");
    EXPECT_EQ(search(), 1);
    expectChosen(2, "T2");
}

TEST_F(ProfileSearch, AProfileWithoutATokenGivesAnEmptyOneAndTheKey) {
    classes({"ANY"});
    request.media().erase("Media.Profiles.Profile1.token");
    client.setProfileMode_1("AUTO");
    EXPECT_EQ(search(), 1);
    expectChosen(1, "");
    EXPECT_EQ(request.media().count("Media.Profiles.Profile1.token"), 1U);
}

TEST_F(ProfileSearch, EveryUserIsServedOnTheirOwn) {
    classes({"ANY", "MOBILE"});
    client.setProfileMode_1("AUTO");
    request.client(8).setProfileMode_1("MOBILE");
    EXPECT_EQ(search(), 1);
    EXPECT_EQ(request.searchAvailableProfileToken(8), 1);
    EXPECT_EQ(client.profile_id(), 1);
    EXPECT_EQ(request.client(8).profile_id(), 2);
}

} // namespace
} // namespace koine::test
