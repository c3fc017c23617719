// The look at a set line before it is sent: impossible frame rates are refused, a quality is noted.

#include "camera.h"
#include "tests/support/failing_allocations.h"

namespace koine::test {
namespace {

const std::string kEncoder = ".VideoEncoderConfiguration";

class CheckParameter : public CameraTest {
protected:
    int check(const std::string& text) {
        line = text;
        const int result = camera.checkCgiParameter(kUser, line.data());
        EXPECT_EQ(line, text) << "the line is only looked at";
        return result;
    }
    static std::string set(const std::string& items) { return "Config.cgi?action=set&" + items; }
    static std::string item(const std::string& profile, const std::string& suffix) {
        return "Media.Profiles.Profile" + profile + kEncoder + suffix;
    }

    std::string line;
    StreamIDClient& client = camera.client();
};

TEST_F(CheckParameter, OtherLinesAreNotLookedAt) {
    forgetTraces();
    line = "Config.cgi?action=set&Video.I0.Brightness=1&MediaXProfiles.Profile1";
    EXPECT_EQ(camera.checkCgiParameter(99, line.data()), 1);
    EXPECT_TRUE(tracesAre({})) << "not even the stream user is looked up";
}

TEST_F(CheckParameter, AFrameRateBelowOneIsRefusedWithoutATrace) {
    forgetTraces();
    for (const char* rate : {"0", "-1", "-30", "0.9"})
        EXPECT_EQ(check(set(item("1", ".RateControl.FrameRateLimit=") + rate)), -2) << rate;
    EXPECT_TRUE(tracesAre({}));
}

TEST_F(CheckParameter, AFrameRateFromOneOnIsAccepted) {
    for (const char* rate : {"1", "30", "1000", "+5", " 1"})
        EXPECT_EQ(check(set(item("1", ".RateControl.FrameRateLimit=") + rate)), 1) << rate;
}

TEST_F(CheckParameter, AFrameRateThatIsNoNumberIsAccepted) {
    for (const char* rate : {"", "x", "-", "full"})
        EXPECT_EQ(check(set(item("1", ".RateControl.FrameRateLimit=") + rate)), 1) << rate;
    EXPECT_EQ(check(set(item("x", ".RateControl.FrameRateLimit=0"))), 1);
}

TEST_F(CheckParameter, TheFrameRateOfAnyProfileCounts) {
    client.set_profile_id(1);
    EXPECT_EQ(check(set(item("7", ".RateControl.FrameRateLimit=0"))), -2);
    EXPECT_EQ(check(set(item("-1", ".RateControl.FrameRateLimit=0"))), -2);
}

TEST_F(CheckParameter, ItemsMatchFromTheirFirstCharacter) {
    EXPECT_EQ(check(set("x" + item("1", ".RateControl.FrameRateLimit=0"))), 1);
    EXPECT_EQ(check(set(" " + item("1", ".RateControl.FrameRateLimit=0"))), 1);
}

TEST_F(CheckParameter, ItemsEndAtAmpersandsAndLineEnds) {
    EXPECT_EQ(check(set("A=1\n" + item("1", ".RateControl.FrameRateLimit=0"))), -2);
    EXPECT_EQ(check(set("A=1&&\n&" + item("1", ".RateControl.FrameRateLimit=0"))), -2);
    EXPECT_EQ(check(set("A=1," + item("1", ".RateControl.FrameRateLimit=0"))), 1);
}

TEST_F(CheckParameter, TheQualityOfTheUsersProfileIsNoted) {
    client.set_profile_id(2);
    EXPECT_EQ(check(set(item("2", ".Quality=7.5"))), 1);
    EXPECT_FLOAT_EQ(client.getSettingQuality(), 7.5F);
    EXPECT_FLOAT_EQ(client.getNowQuality(), 7.5F);
}

TEST_F(CheckParameter, TheQualityOfAnotherProfileIsNot) {
    client.set_profile_id(2);
    EXPECT_EQ(check(set(item("1", ".Quality=7.5") + "&" + item("22", ".Quality=3"))), 1);
    EXPECT_FLOAT_EQ(client.getSettingQuality(), -1.0F);
    EXPECT_FLOAT_EQ(client.getNowQuality(), -1.0F);
}

TEST_F(CheckParameter, AQualityThatIsNoNumberIsNotNoted) {
    client.set_profile_id(2);
    EXPECT_EQ(check(set(item("2", ".Quality=best"))), 1);
    EXPECT_EQ(check(set(item("2", ".Quality="))), 1);
    EXPECT_EQ(check(set(item("2", ".Quality.Src=4"))), 1);
    EXPECT_FLOAT_EQ(client.getSettingQuality(), -1.0F);
}

TEST_F(CheckParameter, TheLastQualityStays) {
    client.set_profile_id(2);
    EXPECT_EQ(check(set(item("2", ".Quality=3") + "&" + item("2", ".Quality=4.25xyz"))), 1);
    EXPECT_FLOAT_EQ(client.getNowQuality(), 4.25F);
}

TEST_F(CheckParameter, WhatStandsBeforeARefusedItemIsNoted) {
    client.set_profile_id(2);
    const std::string refused = item("1", ".RateControl.FrameRateLimit=0");
    EXPECT_EQ(check(set(item("2", ".Quality=3") + "&" + refused + "&" + item("2", ".Quality=9"))), -2);
    EXPECT_FLOAT_EQ(client.getNowQuality(), 3.0F);
}

TEST_F(CheckParameter, SizesEncodingsAndEventsAreAccepted) {
    for (const std::string& accepted :
         {item("1", ".Resolution.Width=0"), item("1", ".Resolution.Height=-1"), item("1", ".Encoding=NONE"),
          std::string("StreamSetup.Event.Resolution=0x0"), std::string("StreamSetup.Event.Quality=-3")})
        EXPECT_EQ(check(set(accepted)), 1) << accepted;
    EXPECT_FLOAT_EQ(client.getSettingQuality(), -1.0F);
}

TEST_F(CheckParameter, LinesOfEventsAreLookedAtAsWell) {
    client.set_profile_id(0);
    EXPECT_EQ(check("Stream.cgi?action=set&StreamSetup.Event.Quality=1&" + item("0", ".Quality=2")), 1);
    EXPECT_FLOAT_EQ(client.getNowQuality(), 2.0F);
}

TEST_F(CheckParameter, AnEncodingOfAnyLengthIsSafe) {
    EXPECT_EQ(check(set(item("1", ".Encoding=") + std::string(1U << 20U, 'x'))), 1);
}

TEST_F(CheckParameter, WithoutMemoryItSaysWhere) {
    line = set(item("1", ".Quality=2"));
    const int sourceLines[] = {3211, 3218};
    for (unsigned int n = 1; n <= 2; ++n) {
        forgetTraces();
        FailAllocations once(n);
        const int result = camera.checkCgiParameter(kUser, line.data());
        EXPECT_TRUE(once.stop()) << n;
        EXPECT_EQ(result, -8) << n;
        EXPECT_TRUE(tracesAre(
            {"???#" + std::to_string(sourceLines[n - 1]) + " BaseRequest::checkCgiParameter: err-8. \n"}));
    }
}

} // namespace
} // namespace koine::test
