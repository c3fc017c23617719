// Whole stream starts: what the device is asked, in which order, and what the host gets.

#include "observed.h"
#include "tests/support/test_request.h"
#include "three_profiles.h"

#include <gtest/gtest.h>

namespace koine::test {
namespace {

const std::string kMobile =
    "&ProfileMode=MOBILE&StreamSetup.VideoEncoderConfiguration.Resolution.NxN=352x288";

class FirstStream : public ::testing::Test {
protected:
    FirstStream() {
        scriptThreeProfiles();
        request.connect();
    }

    /// What the device was asked since the last look.
    Lines asked() {
        const Lines all = platform().requestLines();
        const Lines fresh(all.begin() + static_cast<std::ptrdiff_t>(seen_), all.end());
        seen_ = all.size();
        return fresh;
    }

    static Lines filling(const Lines& further = {}) {
        Lines lines = fillingLines();
        lines.insert(lines.end(), further.begin(), further.end());
        return lines;
    }

    std::string get(unsigned int uid = kUser) {
        return request.ask("http://camera:80/Stream.cgi?action=get", uid).text;
    }

    TestRequest request;

private:
    std::size_t seen_ = 0;
};

TEST_F(FirstStream, OfAnAutoUserFillsTheCachesAndSendsOneSetLine) {
    EXPECT_EQ(request.ask(setUpLine(kAuto)), (Reply{1, "0\nOK\n"}));
    EXPECT_EQ(asked(), filling({autoSetLine()}));
    EXPECT_EQ(request.client().profile_id(), 1);
    EXPECT_STREQ(request.client().profile_token(), "main");
}

TEST_F(FirstStream, KeepsOneConnectionForTheUser) {
    request.ask(setUpLine(kAuto));
    EXPECT_EQ(platform().clientsAlive(), 1);
    for (const DeviceRequest& one : platform().requests()) {
        EXPECT_EQ(one.uid, kUser);
        EXPECT_EQ(one.method, 0);
        EXPECT_EQ(one.connection, 0);
        EXPECT_EQ(one.username, "admin");
        EXPECT_EQ(one.password, "secret");
    }
}

TEST_F(FirstStream, IsActedOnOnce) {
    request.ask(setUpLine(kAuto));
    asked();
    EXPECT_EQ(request.client().getInitStream(), "");
    EXPECT_EQ(get(), "0\nOK\nProfileToken=main\nProfileMode=AUTO\nStream.Profile.Id=1"
                     "\nStream.Stream=RTP-Unicast\nStream.Transport.Protocol=TCP"
                     "\nStream.Profile.Encoding=H264\nStream.Profile.Resolution.Width=1280"
                     "\nStream.Profile.Resolution.Height=720\nStream.Profile.Quality=6.0"
                     "\nStream.Video.Resolution.H264.NxN.List=352x288,640x480,1280x720"
                     "\nStream.Video.Quality.Max=10\nStream.Video.Quality.Min=0");
    EXPECT_EQ(asked(), Lines());
}

TEST_F(FirstStream, GetsItsUriWithoutAskingTheDevice) {
    request.ask(setUpLine(kMobile));
    asked();
    EXPECT_EQ(request.ask("http://camera:80/Onvif.cgi?action=GetStreamUri&ProfileToken=phone").text,
              "0\nOK\nGetStreamUriResponse.MediaUri.Uri=rtsp://camera/live"
              "\nGetStreamUriResponse.MediaUri.InvalidAfterConnect=false"
              "\nGetStreamUriResponse.MediaUri.InvalidAfterReboot=true"
              "\nGetStreamUriResponse.MediaUri.Timeout=P1Y");
    EXPECT_EQ(asked(), Lines());
}

TEST_F(FirstStream, OfAMobileUserSetsTheMobileProfile) {
    EXPECT_EQ(request.ask(setUpLine(kMobile)).result, 1);
    EXPECT_EQ(asked(), filling({mobileSetLine()}));
    EXPECT_STREQ(request.client().profile_token(), "phone");
    EXPECT_EQ(request.client().audio_in_live(), 0);
}

TEST_F(FirstStream, OfMetadataAloneSetsNothing) {
    device().on("Capability.cgi?action=get", "0\nOK\nCapability.Function=AudioVolume,VA\n");
    EXPECT_EQ(request.ask(setUpLine("&ProfileMode=ONLY_META")).result, 1);
    EXPECT_EQ(asked(), filling());
    EXPECT_STREQ(request.client().profile_token(), "main");
}

TEST_F(FirstStream, OfMetadataAloneIsRefusedWithoutVideoAnalytics) {
    EXPECT_EQ(request.ask(setUpLine("&ProfileMode=ONLY_META")),
              (Reply{-2, "-11\nERROR: Unknown parameter.\n"}));
    EXPECT_EQ(asked(), filling());
    EXPECT_NE(request.client().getInitStream(), "") << "it is tried again with the next request";
    EXPECT_EQ(get(), "-11\nERROR: Unknown parameter.\n");
}

TEST_F(FirstStream, OfStatusAloneSetsNothing) {
    EXPECT_EQ(request.ask(setUpLine("&ProfileMode=ONLY_STATUS")).result, 1);
    EXPECT_EQ(asked(), filling());
}

TEST_F(FirstStream, WithAChannelAsksForThatChannel) {
    Lines expected = filling({autoSetLine()});
    expected[2] = "Config.cgi?action=get&category=Media.*&ch=4";
    EXPECT_EQ(request.ask(setUpLine(kAuto + "&StreamSetup.Live.Channel=4")).result, 1);
    EXPECT_EQ(asked(), expected);
}

TEST_F(FirstStream, SendsTheQualityOnTheScaleOfTheDevice) {
    device().on("Capability.cgi?action=get", "0\nOK\nCapability.Video.Quality.Src.Max=60\n"
                                             "Capability.Video.Quality.Src.Min=10\nDevice=IPCAM\n");
    EXPECT_EQ(
        request.ask(setUpLine("&ProfileMode=AUTO&StreamSetup.VideoEncoderConfiguration.Quality=7")).result,
        1);
    Lines lines = asked();
    ASSERT_FALSE(lines.empty());
    EXPECT_NE(lines.back().find(encoderItem(1, "Quality=45.00")), std::string::npos) << lines.back();
    EXPECT_NE(get().find("\nStream.Profile.Quality=7.0"), std::string::npos);
}

TEST_F(FirstStream, NamesAllSettingsThatTheHostAskedFor) {
    request.ask(setUpLine("&ProfileMode=AUTO&StreamSetup.VideoEncoderConfiguration.Resolution.NxN=640x480"
                          "&StreamSetup.VideoEncoderConfiguration.RateControl.FrameRateLimit=60"
                          "&StreamSetup.VideoEncoderConfiguration.Quality=5"
                          "&StreamSetup.VideoEncoderConfiguration.RateControl.BitrateLimit=2048"
                          "&StreamSetup.VideoEncoderConfiguration.GovLength=25"));
    EXPECT_EQ(asked().back(),
              "Config.cgi?action=set" + encoderItem(1, "Encoding=H264") +
                  encoderItem(1, "RateControl.FrameRateLimit=30") + encoderItem(1, "Resolution.Width=640") +
                  encoderItem(1, "Resolution.Height=480") + encoderItem(1, "Quality=5.00") +
                  encoderItem(1, "RateControl.BitrateLimit=2048") + encoderItem(1, "H264.GovLength=25"));
}

TEST_F(FirstStream, OfAUserWithATokenServesThatProfile) {
    EXPECT_EQ(request.ask(setUpLine("&ProfileToken=sub")).result, 1);
    EXPECT_EQ(request.client().profile_id(), 2);
    EXPECT_EQ(asked(), filling({"Config.cgi?action=set" + encoderItem(2, "Encoding=H264")}));
}

TEST_F(FirstStream, OnADeviceWithoutProfilesSetsNothing) {
    device().onBeginning("Config.cgi?action=get&category=Media.*", -14);
    StandardError said;
    EXPECT_EQ(request.ask(setUpLine(kAuto)).result, 1);
    EXPECT_EQ(asked(), filling());
    EXPECT_EQ(get(), "0\nOK\nProfileToken=PROFILE-1\nProfileMode=AUTO"
                     "\nStream.Stream=RTP-Unicast\nStream.Transport.Protocol=TCP");
}

TEST_F(FirstStream, OnARecorderAsksForNoConfiguration) {
    request.setIsTovlinNVRDevice(1);
    EXPECT_EQ(request.ask(setUpLine(kAuto)).result, 1);
    EXPECT_EQ(asked(), (Lines{fillingLines()[0], fillingLines()[1], fillingLines()[2]}));
    EXPECT_EQ(request.client().profile_id(), 1);
}

TEST_F(FirstStream, OnAStreamOnlySourceAsksNothing) {
    request.setVendor("ONLY_STREAM-x");
    EXPECT_EQ(request.ask(setUpLine(kAuto)), (Reply{1, "0\nOK\n"}));
    EXPECT_EQ(asked(), Lines());
    EXPECT_EQ(request.client().profile_mode(), "AUTO");
}

TEST_F(FirstStream, OfAMobileUserOnAPellDeviceIsRefused) {
    platform().hooks.checkIfPellProductId = [](const char*) { return 1; };
    EXPECT_EQ(request.ask(setUpLine(kMobile)).result, -2);
    EXPECT_EQ(asked(), filling());
    EXPECT_TRUE(tracedOnce("???#* HandleInit: error, uid=7:0. \n"));
}

TEST_F(FirstStream, MayBeAskedForByTheHostsOwnText) {
    request.init(kUser, "StreamSetup.Stream=RTP-Unicast&ProfileMode=AUTO&"
                        "StreamSetup.VideoEncoderConfiguration.Resolution.NxN=1280x720");
    get();
    EXPECT_EQ(asked(), filling({autoSetLine()}));
}

TEST_F(FirstStream, OfASecondUserCostsOneSetLine) {
    request.ask(setUpLine(kAuto));
    asked();
    EXPECT_EQ(request.ask(setUpLine(kMobile), 8).result, 1);
    EXPECT_EQ(asked(), Lines{mobileSetLine()});
    EXPECT_EQ(platform().requests().back().uid, 8U);
    EXPECT_EQ(request.client(7).profile_id(), 1);
    EXPECT_EQ(request.client(8).profile_id(), 3);
}

TEST_F(FirstStream, OfASecondUserWithStatusAloneCostsNothing) {
    request.ask(setUpLine(kAuto));
    asked();
    EXPECT_EQ(request.ask(setUpLine("&ProfileMode=ONLY_STATUS"), 8).result, 1);
    EXPECT_EQ(asked(), Lines());
}

TEST_F(FirstStream, StartedAgainBySameUserCostsNothing) {
    request.ask(setUpLine(kAuto));
    asked();
    EXPECT_EQ(request.ask(setUpLine(kMobile)).result, 1);
    EXPECT_EQ(asked(), Lines()) << "settings are pushed once per user";
    EXPECT_STREQ(request.client().profile_token(), "phone");
}

TEST_F(FirstStream, NeedsNoAnswerPointer) {
    EXPECT_EQ(request.tell(setUpLine(kAuto)), 1);
    EXPECT_EQ(asked(), filling({autoSetLine()}));
}

} // namespace
} // namespace koine::test
