// The one set line that pushes the encoder settings: its pieces, its length, its fate.

#include "profile_sync_bench.h"

#include <boost/make_shared.hpp>

namespace koine::test {
namespace {

using ProfileSyncLine = ProfileSync;

/// A record that notes what it is told.
class NotedClient : public StreamIDClient {
public:
    void setSettingEnc(const char* encoding) override {
        calls += std::string("encoding ") + encoding + ";";
        StreamIDClient::setSettingEnc(encoding);
    }
    void setSettingH(int height) override {
        calls += "height " + std::to_string(height) + ";";
        StreamIDClient::setSettingH(height);
    }
    void setSettingFramerate(int rate) override {
        calls += "rate " + std::to_string(rate) + ";";
        StreamIDClient::setSettingFramerate(rate);
    }

    std::string calls;
};

TEST_F(ProfileSyncLine, TracesAndStoresTheNewSize) {
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

TEST_F(ProfileSyncLine, SendsAllPiecesInTheirOrder) {
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

TEST_F(ProfileSyncLine, NamesTheGroupLengthAfterTheEncoding) {
    client.setSettingEnc("MPEG4");
    client.setSettingGovLength(12);
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), piece("Encoding=MPEG4") + piece("MPEG4.GovLength=12"));
}

TEST_F(ProfileSyncLine, NamesTheGroupLengthAfterH264WithoutAnEncoding) {
    client.setSettingEnc("");
    client.setSettingGovLength(12);
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), piece("H264.GovLength=12"));
}

TEST_F(ProfileSyncLine, SendsNothingWhenThereIsNothingToSay) {
    client.setSettingEnc("");
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), "nothing sent");
    EXPECT_TRUE(tracesAre({}));
}

TEST_F(ProfileSyncLine, NumbersThatAreNotPositiveAreNotSent) {
    client.setSettingFramerate(-1);
    client.setSettingBitrate(-1);
    client.setSettingGovLength(-1);
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), piece("Encoding=H264"));
    EXPECT_EQ(client.getSettingFramerate(), -1);
}

TEST_F(ProfileSyncLine, AQualityOfZeroIsSentAndANegativeOneIsNot) {
    client.setSettingQuality(0.0F);
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), piece("Encoding=H264") + piece("Quality=0.000000"));

    client.setHaveSyncProfileToken(0);
    client.setSettingQuality(-0.5F);
    request.lines.clear();
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), piece("Encoding=H264"));
}

TEST_F(ProfileSyncLine, LowersTheFrameRateToTheHighestOfTheSource) {
    client.setSettingFramerate(60);
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), piece("Encoding=H264") + piece("RateControl.FrameRateLimit=30"));
    EXPECT_EQ(client.getSettingFramerate(), 30);
}

TEST_F(ProfileSyncLine, RaisesTheFrameRateToTheLowestOfTheSource) {
    client.setSettingFramerateSrcMin(5);
    client.setSettingFramerate(2);
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), piece("Encoding=H264") + piece("RateControl.FrameRateLimit=5"));
    EXPECT_EQ(client.getSettingFramerate(), 5);
}

TEST_F(ProfileSyncLine, TheHighestFrameRateWinsOverTheLowest) {
    client.setSettingFramerateSrcMin(20);
    client.setSettingFramerateSrcMax(10);
    client.setSettingFramerate(5);
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), piece("Encoding=H264") + piece("RateControl.FrameRateLimit=10"));
}

TEST_F(ProfileSyncLine, TellsTheUsersRecordWhatItDecidesInThatOrder) {
    const boost::shared_ptr<StreamIDClient> former = request.get_streamid_client(kUid);
    const auto noted = boost::make_shared<NotedClient>();
    request.get_streamid_client(kUid) = noted;
    noted->set_profile_id(1);
    noted->setProfileMode_1("AUTO");
    noted->setSettingFramerateSrcMin(5);
    noted->setSettingFramerateSrcMax(30);
    noted->calls.clear();
    request.encoder(1, ".EncodingList", "H264");
    request.encoder(1, ".H264.Resolution.NxN.List", "640x480");
    for (const int rate : {4, 5, 30, 31}) {
        noted->setHaveSyncProfileToken(0);
        noted->StreamIDClient::setSettingFramerate(rate);
        noted->StreamIDClient::setSettingH(0);
        EXPECT_EQ(sync(), 1);
        const std::string limited = rate < 5 ? "rate 5;" : rate > 30 ? "rate 30;" : "";
        EXPECT_EQ(noted->calls, "height 720;encoding H264;" + limited + "height 480;") << rate;
        noted->calls.clear();
    }
    request.get_streamid_client(kUid) = former;
}

TEST_F(ProfileSyncLine, KeepsAFrameRateWithinTheSourcesRange) {
    for (const int rate : {1, 17, 30}) {
        client.setHaveSyncProfileToken(0);
        client.setSettingFramerate(rate);
        request.lines.clear();
        EXPECT_EQ(sync(), 1);
        EXPECT_EQ(sent(),
                  piece("Encoding=H264") + piece("RateControl.FrameRateLimit=" + std::to_string(rate)));
    }
}

TEST_F(ProfileSyncLine, Sends2047CharactersOfSettings) {
    const std::string encoding(2047 - piece("Encoding=").size(), 'E');
    client.setSettingEnc(encoding.c_str());
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent().size(), 2047U);
    EXPECT_EQ(sent(), piece("Encoding=" + encoding));
}

TEST_F(ProfileSyncLine, RefusesOneCharacterMore) {
    const std::string encoding(2048 - piece("Encoding=").size(), 'E');
    client.setSettingEnc(encoding.c_str());
    EXPECT_EQ(sync(), -8);
    EXPECT_TRUE(tracesAre({"???#2243 BaseRequest.syncProfileToken_1: err-8. \n"}));
    EXPECT_EQ(sent(), "nothing sent");
}

TEST_F(ProfileSyncLine, RefusesSettingsThatArePilesLonger) {
    client.setSettingEnc(std::string(1 << 20, 'E').c_str());
    client.setSettingGovLength(1);
    client.setSettingQuality(1.0F);
    EXPECT_EQ(sync(), -8);
    EXPECT_TRUE(tracesAre({"???#2243 BaseRequest.syncProfileToken_1: err-8. \n"}));
}

TEST_F(ProfileSyncLine, WithoutAUrlNothingIsSent) {
    platform().hooks.getTovlinCgiUrl = [](const char*, unsigned int, char*) -> char* { return nullptr; };
    EXPECT_EQ(sync(), 1);
    EXPECT_EQ(sent(), "nothing sent");
    EXPECT_TRUE(tracesAre({"??#2260 BaseRequest.syncProfileToken_1: err1. \n"}));
}

TEST_F(ProfileSyncLine, BuildsTheLineFromTheReplaceableNameOfTheDevice) {
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

TEST_F(ProfileSyncLine, ARefusedLineIsOnlyTraced) {
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
