// The set-up text of a stream user: every item alone, together, and in either order.

#include "koine/StreamIDClient.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class SetupParser : public ::testing::Test {
protected:
    void parse(const std::string& text) {
        client.setInitStream(text.c_str());
        EXPECT_EQ(client.ParseStreamInit(), 1);
    }

    std::string mapEntry(const char* key) {
        const auto found = client.stream_setup_map().find(key);
        return found == client.stream_setup_map().end() ? "(absent)" : found->second;
    }

    StreamIDClient client;
};

const std::string kEncoder = "StreamSetup.VideoEncoderConfiguration.";

TEST_F(SetupParser, AnEmptyTextOnlySettlesTheTransport) {
    parse("");
    EXPECT_EQ(client.transport_protocol(), "TCP");
    EXPECT_EQ(mapEntry("StreamSetup.Transport.Protocol"), "TCP");
    EXPECT_EQ(client.get_req_mode(), TOVLIN_REQUEST_MODE_NONE);
    EXPECT_STREQ(client.profile_token(), "PROFILE-1");
    EXPECT_EQ(client.encoding(), "H264");
    EXPECT_EQ(client.audio_in_live(), 1);
    EXPECT_EQ(client.getSettingW(), 0);
    EXPECT_EQ(client.getSettingQuality(), -1.0F);
    EXPECT_EQ(client.profile_mode(), "");
}

TEST_F(SetupParser, TheTextItselfStaysAsItWas) {
    parse("StreamSetup.Stream=A&ProfileToken=B");
    EXPECT_EQ(client.getInitStream(), "StreamSetup.Stream=A&ProfileToken=B");
}

TEST_F(SetupParser, ReadsTheUserOrder) {
    parse("StreamSetup.UseruidOrder=12");
    EXPECT_EQ(client.get_userid_order(), 12);
}

TEST_F(SetupParser, AnOrdinaryStreamIsRequestModeZero) {
    parse("StreamSetup.Stream=RTP-Unicast");
    EXPECT_EQ(client.setting_stream(), "RTP-Unicast");
    EXPECT_EQ(mapEntry("StreamSetup.Stream"), "RTP-Unicast");
    EXPECT_EQ(client.get_req_mode(), TOVLIN_REQUEST_MODE_STREAM);
    EXPECT_EQ(client.transport_protocol(), "TCP");
}

TEST_F(SetupParser, MulticastSelectsUdp) {
    parse("StreamSetup.Stream=RTP-Multicast");
    EXPECT_EQ(client.transport_protocol(), "UDP");
    EXPECT_EQ(client.get_req_mode(), TOVLIN_REQUEST_MODE_STREAM);
}

TEST_F(SetupParser, OnlyTheWholeWordMulticastSelectsUdp) {
    parse("StreamSetup.Stream=RTP-Multicast2");
    EXPECT_EQ(client.transport_protocol(), "TCP");
    parse("StreamSetup.Stream=rtp-multicast");
    EXPECT_EQ(client.transport_protocol(), "TCP");
}

TEST_F(SetupParser, NetworkBackupIsRequestModeOneOverTcp) {
    parse("StreamSetup.Stream=TOVLIN-NetworkBk");
    EXPECT_EQ(client.get_req_mode(), TOVLIN_REQUEST_MODE_NETWORK_BACKUP);
    EXPECT_EQ(client.transport_protocol(), "TCP");
}

TEST_F(SetupParser, AnOrdinaryStreamAfterABackupIsOrdinaryAgain) {
    parse("StreamSetup.Stream=TOVLIN-NetworkBk");
    parse("StreamSetup.Stream=RTP-Unicast");
    EXPECT_EQ(client.get_req_mode(), TOVLIN_REQUEST_MODE_STREAM);
}

TEST_F(SetupParser, ALaterTransportWinsOverTheOneOfMulticast) {
    parse("StreamSetup.Stream=RTP-Multicast&StreamSetup.Transport.Protocol=TCP");
    EXPECT_EQ(client.transport_protocol(), "TCP");
}

TEST_F(SetupParser, MulticastWinsOverAnEarlierTransport) {
    parse("StreamSetup.Transport.Protocol=TCP&StreamSetup.Stream=RTP-Multicast");
    EXPECT_EQ(client.transport_protocol(), "UDP");
}

TEST_F(SetupParser, ATransportOnceSetIsKeptByATextThatNamesNone) {
    parse("StreamSetup.Transport.Protocol=HTTP");
    EXPECT_EQ(mapEntry("StreamSetup.Transport.Protocol"), "HTTP");
    parse("StreamSetup.StreamNo=1");
    EXPECT_EQ(client.transport_protocol(), "HTTP");
}

TEST_F(SetupParser, OffInAnyCaseAndWithMoreBehindItSwitchesAudioOff) {
    for (const char* value : {"OFF", "off", "oFf", "OFFLINE"}) {
        client.set_audio_in_live(1);
        parse(std::string("StreamSetup.Audio.Input.Live=") + value);
        EXPECT_EQ(client.audio_in_live(), 0) << value;
    }
}

TEST_F(SetupParser, AnyOtherAudioValueLeavesAudioAsItWas) {
    for (const char* value : {"ON", "OF", "1", "xOFF"})
        for (const int before : {0, 1}) {
            client.set_audio_in_live(before);
            parse(std::string("StreamSetup.Audio.Input.Live=") + value);
            EXPECT_EQ(client.audio_in_live(), before) << value;
        }
}

TEST_F(SetupParser, ReadsTokenAndModeOfTheProfile) {
    parse("ProfileToken=tok_3&ProfileMode=AUTO");
    EXPECT_STREQ(client.profile_token(), "tok_3");
    EXPECT_EQ(client.profile_mode(), "AUTO");
    EXPECT_EQ(mapEntry("ProfileMode"), "AUTO");
    EXPECT_EQ(client.audio_in_live(), 1);
    EXPECT_EQ(client.profile_id(), 0);
}

TEST_F(SetupParser, MobileSwitchesAudioOffWhateverTheAudioItemSays) {
    parse("StreamSetup.Audio.Input.Live=ON&ProfileMode=MOBILE");
    EXPECT_EQ(client.audio_in_live(), 0);
    client.set_audio_in_live(1);
    parse("ProfileMode=MOBILE&StreamSetup.Audio.Input.Live=ON");
    EXPECT_EQ(client.audio_in_live(), 0);
}

TEST_F(SetupParser, OnlyTheExactModeMobileSwitchesAudioOff) {
    parse("ProfileMode=mobile");
    EXPECT_EQ(client.audio_in_live(), 1);
    parse("ProfileMode=MOBILE2");
    EXPECT_EQ(client.audio_in_live(), 1);
}

TEST_F(SetupParser, ReadsTheLiveChannelAndRaisesItToOne) {
    parse("StreamSetup.Live.Channel=4");
    EXPECT_EQ(client.strm_nvr_subchannel(), 4);
    parse("StreamSetup.Live.Channel=0");
    EXPECT_EQ(client.strm_nvr_subchannel(), 1);
    parse("StreamSetup.Live.Channel=-3");
    EXPECT_EQ(client.strm_nvr_subchannel(), 1);
}

TEST_F(SetupParser, TheSettingChannelCountsFromZeroInTheTextAndFromOneInTheClient) {
    parse("StreamSetup.Setting.Channel=0");
    EXPECT_EQ(client.strm_setting_channel(), 1);
    parse("StreamSetup.Setting.Channel=15");
    EXPECT_EQ(client.strm_setting_channel(), 16);
    parse("StreamSetup.Setting.Channel=-1");
    EXPECT_EQ(client.strm_setting_channel(), 0);
}

TEST_F(SetupParser, ReadsTheStreamNumber) {
    parse("StreamSetup.StreamNo=2");
    EXPECT_EQ(client.strm_setting_no(), 2);
}

TEST_F(SetupParser, ReadsTheEncoding) {
    parse(kEncoder + "Encoding=JPEG");
    EXPECT_EQ(client.encoding(), "JPEG");
}

TEST_F(SetupParser, EachSizeItemSetsItsOwnPairOnly) {
    parse(kEncoder + "Resolution.NxN=640x480");
    EXPECT_EQ(client.getSettingW(), 640);
    EXPECT_EQ(client.getSettingH(), 480);
    EXPECT_EQ(client.getSettingMaxW(), 30000);
    EXPECT_EQ(client.getSettingMaxH_Ui(), 30000);
    EXPECT_EQ(client.getSettingMinW_Ui(), 0);

    parse(kEncoder + "Resolution.NxN.Max=1920x1080");
    EXPECT_EQ(client.getSettingMaxW(), 1920);
    EXPECT_EQ(client.getSettingMaxH(), 1080);
    EXPECT_EQ(client.getSettingW(), 640);
    EXPECT_EQ(client.getSettingMaxW_Ui(), 30000);

    parse(kEncoder + "Resolution.NxN.Max.Ui=1280x720");
    EXPECT_EQ(client.getSettingMaxW_Ui(), 1280);
    EXPECT_EQ(client.getSettingMaxH_Ui(), 720);
    EXPECT_EQ(client.getSettingMaxW(), 1920);

    parse(kEncoder + "Resolution.NxN.Min.Ui=320x240");
    EXPECT_EQ(client.getSettingMinW_Ui(), 320);
    EXPECT_EQ(client.getSettingMinH_Ui(), 240);
    EXPECT_EQ(client.getSettingW(), 640);
}

TEST_F(SetupParser, ASizeNeedsBothNumbers) {
    parse(kEncoder + "Resolution.NxN=640x");
    parse(kEncoder + "Resolution.NxN=x480");
    parse(kEncoder + "Resolution.NxN=640");
    parse(kEncoder + "Resolution.NxN=640X480");
    EXPECT_EQ(client.getSettingW(), 0);
    EXPECT_EQ(client.getSettingH(), 0);
}

TEST_F(SetupParser, ReadsRateBitrateAndGroupLength) {
    parse(kEncoder + "RateControl.FrameRateLimit=25&" + kEncoder + "RateControl.BitrateLimit=4096&" +
          kEncoder + "GovLength=50");
    EXPECT_EQ(client.getSettingFramerate(), 25);
    EXPECT_EQ(client.getSettingBitrate(), 4096);
    EXPECT_EQ(client.getSettingGovLength(), 50);
}

TEST_F(SetupParser, TheQualityIsAlsoTheCurrentQuality) {
    parse(kEncoder + "Quality=7.5");
    EXPECT_EQ(client.getSettingQuality(), 7.5F);
    EXPECT_EQ(client.getNowQuality(), 7.5F);
    EXPECT_EQ(mapEntry("StreamSetup.VideoEncoderConfiguration.Quality"), "5");
}

TEST_F(SetupParser, TheOrderOfTheSourceQualityItemsDecidesTheirValues) {
    client.setVendor("TOVLIN");
    parse(kEncoder + "Quality.Src.Min=1&" + kEncoder + "Quality.Src.Max=10");
    EXPECT_FLOAT_EQ(client.getSettingQualitySrcMin(), 0.1F);
    EXPECT_FLOAT_EQ(client.getSettingQualitySrcMax(), 0.9F);
    EXPECT_FLOAT_EQ(client.getQualityStep(), 0.08F);
}

TEST_F(SetupParser, TheSameItemsTheOtherWayRoundGiveOtherValues) {
    client.setVendor("TOVLIN");
    parse(kEncoder + "Quality.Src.Max=10&" + kEncoder + "Quality.Src.Min=1");
    // 0.1 * 10 = 1, step (1 - 0) * 0.1 = 0.1; then 0.1 * 1 = 0.1, step (1 - 0.1) * 0.1 = 0.09.
    EXPECT_FLOAT_EQ(client.getSettingQualitySrcMax(), 1.0F);
    EXPECT_FLOAT_EQ(client.getSettingQualitySrcMin(), 0.1F);
    EXPECT_FLOAT_EQ(client.getQualityStep(), 0.09F);
}

TEST_F(SetupParser, TheSourceQualityItemsNeedAVendorThatBeginsWithTheMakersName) {
    for (const char* vendor : {"", "OTHER", "TOVLI", "xTOVLIN"}) {
        client.setVendor(vendor);
        parse(kEncoder + "Quality.Src.Min=1&" + kEncoder + "Quality.Src.Max=10");
        EXPECT_EQ(client.getSettingQualitySrcMin(), 0.0F) << vendor;
        EXPECT_EQ(client.getSettingQualitySrcMax(), 1.0F) << vendor;
        EXPECT_EQ(client.getQualityStep(), 0.1F) << vendor;
    }
    client.setVendor("tovlin-xyz");
    parse(kEncoder + "Quality.Src.Max=20");
    EXPECT_FLOAT_EQ(client.getSettingQualitySrcMax(), 2.0F);
}

TEST_F(SetupParser, TheBoundsOfTheQualityAreNotTheQuality) {
    client.setVendor("TOVLIN");
    parse(kEncoder + "Quality.Src.Min=1");
    EXPECT_EQ(client.getSettingQuality(), -1.0F);
    EXPECT_EQ(client.getNowQuality(), -1.0F);
}

TEST_F(SetupParser, LineEndsSeparateItemsAsWell) {
    parse("StreamSetup.StreamNo=2\nProfileToken=x\n\n&&StreamSetup.UseruidOrder=5");
    EXPECT_EQ(client.strm_setting_no(), 2);
    EXPECT_STREQ(client.profile_token(), "x");
    EXPECT_EQ(client.get_userid_order(), 5);
}

TEST_F(SetupParser, OtherSeparatorsDoNotSeparate) {
    parse("StreamSetup.StreamNo=2;StreamSetup.UseruidOrder=5,ProfileToken=x");
    EXPECT_EQ(client.strm_setting_no(), 2);
    EXPECT_EQ(client.get_userid_order(), 0);
    EXPECT_STREQ(client.profile_token(), "PROFILE-1");
}

TEST_F(SetupParser, AnItemIsMatchedFromItsFirstCharacterAndInItsOwnCase) {
    parse("xStreamSetup.StreamNo=2&streamsetup.UseruidOrder=4& "
          "ProfileToken=x&Stream.cgi?action=setProfileMode=AUTO");
    EXPECT_EQ(client.strm_setting_no(), 0);
    EXPECT_EQ(client.get_userid_order(), 0);
    EXPECT_STREQ(client.profile_token(), "PROFILE-1");
    EXPECT_EQ(client.profile_mode(), "");
}

TEST_F(SetupParser, NumbersThatCannotBeReadLeaveTheField) {
    client.set_strm_setting_no(9);
    client.setSettingFramerate(8);
    client.setSettingQuality(3.0F);
    parse("StreamSetup.StreamNo=&StreamSetup.StreamNo=abc&" + kEncoder + "RateControl.FrameRateLimit=x25&" +
          kEncoder + "Quality=good");
    EXPECT_EQ(client.strm_setting_no(), 9);
    EXPECT_EQ(client.getSettingFramerate(), 8);
    EXPECT_EQ(client.getSettingQuality(), 3.0F);
}

TEST_F(SetupParser, EmptyWordsLeaveTheField) {
    parse("ProfileToken=&ProfileMode=&StreamSetup.Stream=&" + kEncoder + "Encoding=");
    EXPECT_STREQ(client.profile_token(), "PROFILE-1");
    EXPECT_EQ(client.encoding(), "H264");
    EXPECT_EQ(client.setting_stream(), "");
    EXPECT_EQ(client.get_req_mode(), TOVLIN_REQUEST_MODE_NONE);
}

TEST_F(SetupParser, TextAfterANumberIsIgnored) {
    parse("StreamSetup.StreamNo=3rd&" + kEncoder + "Resolution.NxN=640x480p");
    EXPECT_EQ(client.strm_setting_no(), 3);
    EXPECT_EQ(client.getSettingH(), 480);
}

TEST_F(SetupParser, WordsEndAtTheFirstBlank) {
    parse("ProfileToken=two words&ProfileMode= AUTO");
    EXPECT_STREQ(client.profile_token(), "two");
    EXPECT_EQ(client.profile_mode(), "AUTO");
}

TEST_F(SetupParser, WordsAreCutAt127Characters) {
    parse("ProfileToken=" + std::string(127, 'a') + "&ProfileMode=" + std::string(128, 'b') +
          "&StreamSetup.Stream=" + std::string(5000, 'c'));
    EXPECT_EQ(client.profile_token(), std::string(127, 'a'));
    EXPECT_EQ(client.profile_mode(), std::string(127, 'b'));
    EXPECT_EQ(client.setting_stream(), std::string(127, 'c'));
}

TEST_F(SetupParser, ALaterItemWins) {
    parse("StreamSetup.StreamNo=1&StreamSetup.StreamNo=2&ProfileToken=a&ProfileToken=b");
    EXPECT_EQ(client.strm_setting_no(), 2);
    EXPECT_STREQ(client.profile_token(), "b");
}

TEST_F(SetupParser, AllItemsTogether) {
    client.setVendor("Tovlin");
    parse("Stream.cgi?action=set&StreamSetup.UseruidOrder=1&StreamSetup.Stream=RTP-Unicast&"
          "StreamSetup.Transport.Protocol=UDP&StreamSetup.Audio.Input.Live=OFF&ProfileToken=p&ProfileMode="
          "ONLY_META&"
          "StreamSetup.Live.Channel=2&StreamSetup.Setting.Channel=3&StreamSetup.StreamNo=4&" +
          kEncoder + "Encoding=MPEG4&" + kEncoder + "Resolution.NxN=1x2&" + kEncoder +
          "Resolution.NxN.Max=3x4&" + kEncoder + "Resolution.NxN.Max.Ui=5x6&" + kEncoder +
          "Resolution.NxN.Min.Ui=7x8&" + kEncoder + "RateControl.FrameRateLimit=9&" + kEncoder +
          "Quality=10&" + kEncoder + "RateControl.BitrateLimit=11&" + kEncoder + "GovLength=12&" + kEncoder +
          "Quality.Src.Max=100&StreamSetup.Unknown=13");
    EXPECT_EQ(client.get_userid_order(), 1);
    EXPECT_EQ(client.setting_stream(), "RTP-Unicast");
    EXPECT_EQ(client.transport_protocol(), "UDP");
    EXPECT_EQ(client.audio_in_live(), 0);
    EXPECT_STREQ(client.profile_token(), "p");
    EXPECT_EQ(client.profile_mode(), "ONLY_META");
    EXPECT_EQ(client.strm_nvr_subchannel(), 2);
    EXPECT_EQ(client.strm_setting_channel(), 4);
    EXPECT_EQ(client.strm_setting_no(), 4);
    EXPECT_EQ(client.encoding(), "MPEG4");
    EXPECT_EQ(client.getSettingW() * 10 + client.getSettingH(), 12);
    EXPECT_EQ(client.getSettingMaxW() * 10 + client.getSettingMaxH(), 34);
    EXPECT_EQ(client.getSettingMaxW_Ui() * 10 + client.getSettingMaxH_Ui(), 56);
    EXPECT_EQ(client.getSettingMinW_Ui() * 10 + client.getSettingMinH_Ui(), 78);
    EXPECT_EQ(client.getSettingFramerate(), 9);
    EXPECT_EQ(client.getSettingQuality(), 10.0F);
    EXPECT_EQ(client.getSettingBitrate(), 11);
    EXPECT_EQ(client.getSettingGovLength(), 12);
    EXPECT_FLOAT_EQ(client.getSettingQualitySrcMax(), 10.0F);
    EXPECT_FLOAT_EQ(client.getQualityStep(), 1.0F);
}

/// Sees which setters the parser calls: a device class may replace any of them.
class ReplacedSetters : public StreamIDClient {
public:
    void setSettingTranPro(const char* protocol) override {
        calls += std::string("transport ") + protocol + ";";
        StreamIDClient::setSettingTranPro(protocol);
    }
    void setSettingQuality(float) override { calls += "quality;"; }
    void setNowQuality(float) override { calls += "now;"; }
    void set_audio_in_live(int live) override { calls += "audio " + std::to_string(live) + ";"; }
    std::string getInitStream() override { return text; }

    std::string text;
    std::string calls;
};

TEST(SetupParserCalls, GoThroughTheVirtualTable) {
    ReplacedSetters client;
    client.text =
        "StreamSetup.VideoEncoderConfiguration.Quality=3&StreamSetup.Stream=RTP-Multicast&ProfileMode=MOBILE";
    EXPECT_EQ(client.ParseStreamInit(), 1);
    EXPECT_EQ(client.calls, "quality;now;transport UDP;audio 0;");
}

} // namespace
