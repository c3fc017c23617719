// Fitting a stream to its media profile and pushing the encoder settings in one set line, once per user.

#include "bench_request.h"
#include "observed.h"

#include <gtest/gtest.h>

namespace koine::test {
namespace {

const std::string kLineStart = "http://camera:80/Config.cgi?action=set";

class ProfileSync : public ::testing::Test {
protected:
    ProfileSync() {
        request.useProfiles(2);
        client.set_profile_id(1);
        request.dispatch = [this](const BenchRequest::Line&, char** answer) {
            flagAtDispatch = client.getHaveSyncProfileToken();
            *answer = mallocedText("0\nOK\n");
            return 1;
        };
        forgetTraces();
    }

    int sync() { return request.syncProfileToken_1(kUid); }

    /// The settings that were sent, as they follow the start of the set line; "nothing sent" otherwise.
    std::string sent() {
        if (request.lines.empty())
            return "nothing sent";
        EXPECT_EQ(request.lines.size(), 1U);
        const std::string& url = request.lines.front().url;
        EXPECT_EQ(url.substr(0, kLineStart.size()), kLineStart);
        return url.substr(kLineStart.size());
    }

    static std::string piece(const std::string& suffix, int profile = 1) {
        return "&Media.Profiles.Profile" + std::to_string(profile) + ".VideoEncoderConfiguration." + suffix;
    }
    static std::string sizePiece(const std::string& width, const std::string& height) {
        return piece("Resolution.Width=" + width) + piece("Resolution.Height=" + height);
    }

    int flagAtDispatch = -1;
    BenchRequest request;
    StreamIDClient& client = request.client();
};

TEST_F(ProfileSync, DoesNothingWithoutMediaProfiles) {
    request.setMediaProfile(0);
    EXPECT_EQ(sync(), 1);
    EXPECT_TRUE(tracesAre({"?#2095 BaseRequest.syncProfileToken_1, no Media. \n"}));
    EXPECT_EQ(sent(), "nothing sent");
    EXPECT_EQ(client.getHaveSyncProfileToken(), 0) << "it may be tried again";
}

TEST_F(ProfileSync, DoesNothingOnARecorder) {
    request.setIsTovlinNVRDevice(2);
    EXPECT_EQ(sync(), 1);
    EXPECT_TRUE(tracesAre({}));
    EXPECT_EQ(sent(), "nothing sent");
    EXPECT_EQ(client.getHaveSyncProfileToken(), 0);
}

TEST_F(ProfileSync, HappensOncePerUser) {
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), piece("Encoding=H264"));
    EXPECT_EQ(client.getHaveSyncProfileToken(), 1);
    request.lines.clear();
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), "nothing sent");

    request.client(8).set_profile_id(2);
    EXPECT_EQ(request.syncProfileToken_1(8), 1);
    EXPECT_EQ(sent(), piece("Encoding=H264", 2));
    EXPECT_EQ(request.lines.front().uid, 8U);
}

TEST_F(ProfileSync, IsMarkedAsDoneBeforeTheLineIsSent) {
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(flagAtDispatch, 1);
}

TEST_F(ProfileSync, SendsTheLineThroughTheDispatchWithTheStoredCredentials) {
    EXPECT_EQ(sync(), 1);
    ASSERT_EQ(request.lines.size(), 1U);
    EXPECT_EQ(request.lines[0].uid, kUid);
    EXPECT_EQ(request.lines[0].username, "admin");
    EXPECT_EQ(request.lines[0].password, "secret");
    EXPECT_TRUE(request.lines[0].wantsAnswer);
    EXPECT_EQ(
        request.lines[0].url,
        "http://camera:80/Config.cgi?action=set&Media.Profiles.Profile1.VideoEncoderConfiguration.Encoding="
        "H264");
}

TEST_F(ProfileSync, AddressesTheDeviceOfTheRequest) {
    request.set_server_address("10.1.2.3");
    request.set_server_port(8080);
    EXPECT_EQ(sync(), 1);
    ASSERT_EQ(request.lines.size(), 1U);
    EXPECT_EQ(request.lines[0].url.substr(0, 30), "http://10.1.2.3:8080/Config.cg");
}

TEST_F(ProfileSync, AutoUsesH264AndAHeightOf720) {
    client.setProfileMode_1("AUTO");
    client.setSettingW(1280);
    client.setSettingEnc("JPEG");
    request.encoder(1, ".EncodingList", "JPEG,H264");
    request.encoder(1, ".H264.Resolution.NxN.List", "704x576,1280x720,1920x1080");
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), piece("Encoding=H264") + sizePiece("1280", "720"));
    EXPECT_EQ(client.encoding(), "H264");
    EXPECT_EQ(client.getSettingH(), 720);
}

TEST_F(ProfileSync, AutoKeepsAHeightThatWasAskedFor) {
    client.setProfileMode_1("AUTO");
    client.setSettingW(704);
    client.setSettingH(576);
    request.encoder(1, ".EncodingList", "H264");
    request.encoder(1, ".H264.Resolution.NxN.List", "352x288,704x576,1280x720");
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), piece("Encoding=H264") + sizePiece("704", "576"));
}

TEST_F(ProfileSync, AutoTakesTheBestEncodingOfItsProfile) {
    client.setProfileMode_1("AUTO");
    client.set_profile_id(2);
    request.encoder(1, ".EncodingList", "H264");
    request.encoder(2, ".EncodingList", "JPEG,MPEG4");
    request.encoder(2, ".MPEG4.Resolution.NxN.List", "320x240");
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), piece("Encoding=MPEG4", 2) + piece("Resolution.Width=320", 2) +
                          piece("Resolution.Height=240", 2));
}

TEST_F(ProfileSync, AutoWithoutAnyKnownEncodingAsksForH264) {
    client.setProfileMode_1("AUTO");
    client.setSettingEnc("JPEG");
    request.encoder(1, ".H264.Resolution.NxN.List", "320x240");
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), piece("Encoding=H264") + sizePiece("320", "240"));
}

TEST_F(ProfileSync, MobileUsesMpeg4AndAHeightOf288) {
    client.setProfileMode_1("MOBILE");
    request.setHaveMobile(1);
    client.setSettingW(352);
    request.encoder(1, ".EncodingList", "JPEG,H264,MPEG4");
    request.encoder(1, ".MPEG4.Resolution.NxN.List", "176x144,352x288,704x576");
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), piece("Encoding=MPEG4") + sizePiece("352", "288"));
}

TEST_F(ProfileSync, MobileUsesH264OnDevicesWithFreeSizesAndOnOnvifProducts) {
    request.setHaveMobile(1);
    client.setProfileMode_1("MOBILE");
    request.encoder(1, ".EncodingList", "JPEG,H264,MPEG4");
    request.encoder(1, ".H264.Resolution.NxN.List", "352x288");
    const auto encodingWith = [&](int resoIndep, int onvif) {
        request.setIsResoIndep(resoIndep);
        request.setIsONVIFProduct(onvif);
        client.setHaveSyncProfileToken(0);
        EXPECT_EQ(sync(), 1);
        return client.encoding();
    };
    EXPECT_EQ(encodingWith(1, 0), "H264");
    EXPECT_EQ(encodingWith(0, 1), "H264");
    EXPECT_EQ(encodingWith(1, 1), "H264");
    EXPECT_EQ(encodingWith(0, 0), "MPEG4");
}

TEST_F(ProfileSync, MobileWithoutAMobileProfileDoesNothing) {
    client.setProfileMode_1("MOBILE");
    client.setSettingEnc("JPEG");
    client.setSettingQuality(5.0F);
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), "nothing sent");
    EXPECT_EQ(client.encoding(), "JPEG");
    EXPECT_EQ(client.getSettingH(), 0);
    EXPECT_EQ(client.getHaveSyncProfileToken(), 1);
    EXPECT_TRUE(tracesAre({}));
}

TEST_F(ProfileSync, AnyOtherModeKeepsTheEncodingAndHasNoDefaultHeight) {
    request.setHaveMobile(1);
    request.encoder(1, ".EncodingList", "H264");
    for (const char* mode : {"", "auto", "ONLY_META", "MOBILE2"}) {
        client.setHaveSyncProfileToken(0);
        client.setProfileMode_1(mode);
        client.setSettingEnc("MPEG4");
        request.lines.clear();
        EXPECT_EQ(sync(), 1) << mode;
        EXPECT_EQ(sent(), piece("Encoding=MPEG4")) << mode;
        EXPECT_EQ(client.getSettingH(), 0) << mode;
    }
}

TEST_F(ProfileSync, TakesAMissingEncodingFromTheProfilesCodec) {
    client.setSettingEnc("");
    client.setSettingH(480);
    request.encoder(1, ".Encoding", "JPEG");
    request.encoder(1, ".H264.H264Profile", "Main");
    request.encoder(1, ".MPEG4.Mpeg4Profile", "SP");
    request.encoder(1, ".H264.Resolution.NxN.List", "640x480");
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(client.encoding(), "H264");
    EXPECT_EQ(request.encoderValue(1, ".Encoding"), "H264");
    EXPECT_EQ(sent(), piece("Encoding=H264") + sizePiece("640", "480"));
}

TEST_F(ProfileSync, TakesAMissingEncodingFromTheMpeg4Codec) {
    client.setSettingEnc("");
    client.setSettingH(480);
    request.encoder(1, ".Encoding", "JPEG");
    request.encoder(1, ".MPEG4.Mpeg4Profile", "");
    request.encoder(1, ".MPEG4.Resolution.NxN.List", "640x480");
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(client.encoding(), "MPEG4");
    EXPECT_EQ(request.encoderValue(1, ".Encoding"), "MPEG4");
}

TEST_F(ProfileSync, TakesAMissingEncodingFromTheProfileItself) {
    client.setSettingEnc("");
    client.setSettingH(480);
    request.encoder(1, ".Encoding", "JPEG");
    request.encoder(1, ".JPEG.Resolution.NxN.List", "640x480");
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(client.encoding(), "JPEG");
    EXPECT_EQ(request.encoderValue(1, ".Encoding"), "JPEG");
}

TEST_F(ProfileSync, AGivenEncodingLeavesTheOneOfTheProfile) {
    client.setSettingH(480);
    request.encoder(1, ".Encoding", "JPEG");
    request.encoder(1, ".MPEG4.Mpeg4Profile", "SP");
    request.encoder(1, ".H264.Resolution.NxN.List", "640x480");
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(request.encoderValue(1, ".Encoding"), "JPEG");
}

TEST_F(ProfileSync, FailsWhenNoEncodingCanBeFound) {
    client.setSettingEnc("");
    client.setSettingH(480);
    EXPECT_EQ(sync(), -2);
    EXPECT_TRUE(tracesAre({"???#2152 BaseRequest.syncProfileToken_1, err-2. \n"}));
    EXPECT_EQ(sent(), "nothing sent");
    EXPECT_EQ(client.getHaveSyncProfileToken(), 1);
    EXPECT_EQ(request.encoderValue(1, ".Encoding"), "") << "looking for it created it";
    EXPECT_EQ(sync(), 1) << "it is not tried again";
}

TEST_F(ProfileSync, SendsNothingWithoutASizeListForTheEncoding) {
    client.setSettingW(640);
    client.setSettingH(480);
    client.setSettingBitrate(64);
    request.encoder(1, ".JPEG.Resolution.NxN.List", "640x480");
    EXPECT_EQ(sync(), 1);
    EXPECT_TRUE(tracesAre({"?#2196 BaseRequest.syncProfileToken_1, err1. \n"}));
    EXPECT_EQ(sent(), "nothing sent");
    EXPECT_EQ(request.encoderValue(1, ".H264.Resolution.NxN.List"), "(absent)");
}

TEST_F(ProfileSync, NeedsNoSizeListWhenNoHeightIsAskedFor) {
    client.setSettingW(640);
    client.setSettingBitrate(64);
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), piece("Encoding=H264") + piece("RateControl.BitrateLimit=64"));
    EXPECT_TRUE(tracesAre({}));
}

TEST_F(ProfileSync, TracesAndStoresTheNewSize) {
    request.set_strm_setting_channel(4);
    client.setSettingW(700);
    client.setSettingH(500);
    request.encoder(1, ".H264.Resolution.NxN.List", "640x480,1280x720");
    EXPECT_EQ(sync(), 1);
    EXPECT_TRUE(
        tracesAre({"#2220 BaseRequest.syncProfileToken_1: uid=7:4, set new width=640, new height=480. \n"}));
    EXPECT_EQ(client.getSettingW(), 640);
    EXPECT_EQ(client.getSettingH(), 480);
}

TEST_F(ProfileSync, SendsAllPiecesInTheirOrder) {
    client.set_profile_id(2);
    client.setSettingW(640);
    client.setSettingH(480);
    client.setSettingFramerate(15);
    client.setSettingQuality(7.5F);
    client.setSettingBitrate(2048);
    client.setSettingGovLength(30);
    request.encoder(2, ".H264.Resolution.NxN.List", "640x480");
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), "&Media.Profiles.Profile2.VideoEncoderConfiguration.Encoding=H264"
                      "&Media.Profiles.Profile2.VideoEncoderConfiguration.RateControl.FrameRateLimit=15"
                      "&Media.Profiles.Profile2.VideoEncoderConfiguration.Resolution.Width=640"
                      "&Media.Profiles.Profile2.VideoEncoderConfiguration.Resolution.Height=480"
                      "&Media.Profiles.Profile2.VideoEncoderConfiguration.Quality=7.500000"
                      "&Media.Profiles.Profile2.VideoEncoderConfiguration.RateControl.BitrateLimit=2048"
                      "&Media.Profiles.Profile2.VideoEncoderConfiguration.H264.GovLength=30");
}

TEST_F(ProfileSync, NamesTheGroupLengthAfterTheEncoding) {
    client.setSettingEnc("MPEG4");
    client.setSettingGovLength(12);
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), piece("Encoding=MPEG4") + piece("MPEG4.GovLength=12"));
}

TEST_F(ProfileSync, NamesTheGroupLengthAfterH264WithoutAnEncoding) {
    client.setSettingEnc("");
    client.setSettingGovLength(12);
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), piece("H264.GovLength=12"));
}

TEST_F(ProfileSync, SendsNothingWhenThereIsNothingToSay) {
    client.setSettingEnc("");
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), "nothing sent");
    EXPECT_TRUE(tracesAre({}));
}

TEST_F(ProfileSync, NumbersThatAreNotPositiveAreNotSent) {
    client.setSettingFramerate(-1);
    client.setSettingBitrate(-1);
    client.setSettingGovLength(-1);
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), piece("Encoding=H264"));
    EXPECT_EQ(client.getSettingFramerate(), -1);
}

TEST_F(ProfileSync, AQualityOfZeroIsSentAndANegativeOneIsNot) {
    client.setSettingQuality(0.0F);
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), piece("Encoding=H264") + piece("Quality=0.000000"));

    client.setHaveSyncProfileToken(0);
    client.setSettingQuality(-0.5F);
    request.lines.clear();
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), piece("Encoding=H264"));
}

TEST_F(ProfileSync, LowersTheFrameRateToTheHighestOfTheSource) {
    client.setSettingFramerate(60);
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), piece("Encoding=H264") + piece("RateControl.FrameRateLimit=30"));
    EXPECT_EQ(client.getSettingFramerate(), 30);
}

TEST_F(ProfileSync, RaisesTheFrameRateToTheLowestOfTheSource) {
    client.setSettingFramerateSrcMin(5);
    client.setSettingFramerate(2);
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), piece("Encoding=H264") + piece("RateControl.FrameRateLimit=5"));
    EXPECT_EQ(client.getSettingFramerate(), 5);
}

TEST_F(ProfileSync, TheHighestFrameRateWinsOverTheLowest) {
    client.setSettingFramerateSrcMin(20);
    client.setSettingFramerateSrcMax(10);
    client.setSettingFramerate(5);
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), piece("Encoding=H264") + piece("RateControl.FrameRateLimit=10"));
}

TEST_F(ProfileSync, KeepsAFrameRateWithinTheSourcesRange) {
    for (const int rate : {1, 17, 30}) {
        client.setHaveSyncProfileToken(0);
        client.setSettingFramerate(rate);
        request.lines.clear();
        EXPECT_EQ(sync(), 1);
        EXPECT_EQ(sent(),
                  piece("Encoding=H264") + piece("RateControl.FrameRateLimit=" + std::to_string(rate)));
    }
}

TEST_F(ProfileSync, Sends2047CharactersOfSettings) {
    const std::string encoding(2047 - piece("Encoding=").size(), 'E');
    client.setSettingEnc(encoding.c_str());
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent().size(), 2047U);
    EXPECT_EQ(sent(), piece("Encoding=" + encoding));
}

TEST_F(ProfileSync, RefusesOneCharacterMore) {
    const std::string encoding(2048 - piece("Encoding=").size(), 'E');
    client.setSettingEnc(encoding.c_str());
    EXPECT_EQ(sync(), -8);
    EXPECT_TRUE(tracesAre({"???#2243 BaseRequest.syncProfileToken_1: err-8. \n"}));
    EXPECT_EQ(sent(), "nothing sent");
}

TEST_F(ProfileSync, RefusesSettingsThatArePilesLonger) {
    client.setSettingEnc(std::string(1 << 20, 'E').c_str());
    client.setSettingGovLength(1);
    client.setSettingQuality(1.0F);
    EXPECT_EQ(sync(), -8);
    EXPECT_TRUE(tracesAre({"???#2243 BaseRequest.syncProfileToken_1: err-8. \n"}));
}

TEST_F(ProfileSync, WithoutAUrlNothingIsSent) {
    platform().hooks.getTovlinCgiUrl = [](const char*, unsigned int, char*) -> char* { return nullptr; };
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), "nothing sent");
    EXPECT_TRUE(tracesAre({"??#2260 BaseRequest.syncProfileToken_1: err1. \n"}));
}

TEST_F(ProfileSync, BuildsTheLineFromTheReplaceableNameOfTheDevice) {
    std::string asked;
    platform().hooks.getTovlinCgiUrl = [&](const char* address, unsigned int port, char* line) {
        asked = std::string(address) + "|" + std::to_string(port) + "|" + line;
        return mallocedText("URL");
    };
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(asked, "camera|80|Config.cgi?action=set");
    ASSERT_EQ(request.lines.size(), 1U);
    EXPECT_EQ(request.lines[0].url, "URL" + piece("Encoding=H264"));
}

TEST_F(ProfileSync, ARefusedLineIsOnlyTraced) {
    for (const int refusal : {-1, -2, -8, 0}) {
        client.setHaveSyncProfileToken(0);
        request.dispatch = [refusal](const BenchRequest::Line&, char** answer) {
            *answer = mallocedText("-11\nERROR: Unknown parameter.\n");
            return refusal;
        };
        forgetTraces();
        EXPECT_EQ(sync(), 1);
        EXPECT_TRUE(tracesAre({"??#2260 BaseRequest.syncProfileToken_1: err1. \n"}));
    }
}

} // namespace
} // namespace koine::test
