// Fitting a stream to its media profile, once per user: modes, encodings, and whether there is a size.

#include "profile_sync_bench.h"

namespace koine::test {
namespace {

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

TEST_F(ProfileSync, OnlyAMarkOfOneMeansDone) {
    client.setHaveSyncProfileToken(2);
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), piece("Encoding=H264"));
    EXPECT_EQ(client.getHaveSyncProfileToken(), 1);
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
    request.encoder(1, ".H264.Resolution.NxN.List", "704x576,1280x719,1280x720,1280x721");
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
    request.encoder(1, ".MPEG4.Resolution.NxN.List", "176x144,352x287,352x288,352x289");
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
    request.encoder(1, ".token", "V1"); // says nothing about the encoding
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

} // namespace
} // namespace koine::test
