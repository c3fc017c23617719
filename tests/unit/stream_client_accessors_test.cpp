// The record of a stream user: initial values, plain accessors, and the setters that do more.

#include "tests/support/test_request.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

namespace koine::test {
namespace {

TEST(StreamClient, StartsWithItsInitialValues) {
    StreamIDClient client;
    EXPECT_EQ(client.get_ibase_stream(), nullptr);
    EXPECT_EQ(client.getInitStream(), "");
    EXPECT_STREQ(client.getVendor(), "");
    EXPECT_EQ(client.strm_setting_channel(), 0);
    EXPECT_EQ(client.uid(), 0U);
    EXPECT_EQ(client.get_userid_order(), 0);
    EXPECT_EQ(client.profile_id(), 0);
    EXPECT_STREQ(client.profile_token(), "PROFILE-1");
    EXPECT_EQ(client.profile_mode(), "");
    EXPECT_EQ(client.strm_setting_no(), 0);
    EXPECT_EQ(client.setting_stream(), "");
    EXPECT_EQ(client.transport_protocol(), "");
    EXPECT_EQ(client.encoding(), "H264");
    EXPECT_EQ(client.getSettingW(), 0);
    EXPECT_EQ(client.getSettingH(), 0);
    EXPECT_EQ(client.getSettingMaxW(), 30000);
    EXPECT_EQ(client.getSettingMaxH(), 30000);
    EXPECT_EQ(client.getSettingMaxW_Ui(), 30000);
    EXPECT_EQ(client.getSettingMaxH_Ui(), 30000);
    EXPECT_EQ(client.getSettingMinW_Ui(), 0);
    EXPECT_EQ(client.getSettingMinH_Ui(), 0);
    EXPECT_EQ(client.getSettingFramerate(), 0);
    EXPECT_EQ(client.getSettingFramerateSrcMin(), 1);
    EXPECT_EQ(client.getSettingFramerateSrcMax(), 30);
    EXPECT_EQ(client.getSettingQuality(), -1.0F);
    EXPECT_EQ(client.getNowQuality(), -1.0F);
    EXPECT_EQ(client.getQualityStep(), 0.1F);
    EXPECT_EQ(client.getSettingQualitySrcMin(), 0.0F);
    EXPECT_EQ(client.getSettingQualitySrcMax(), 1.0F);
    EXPECT_EQ(client.getSettingBitrate(), 0);
    EXPECT_EQ(client.getSettingGovLength(), 0);
    EXPECT_EQ(client.audio_in_live(), 1);
    EXPECT_EQ(client.strm_nvr_subchannel(), 1);
    EXPECT_EQ(static_cast<int>(client.get_req_mode()), -1);
    EXPECT_EQ(client.stream_setup_map(), (CgiMap{{"StreamSetup.VideoEncoderConfiguration.Quality", "5"}}));
    EXPECT_TRUE(client.get_temp_cgicache_map().empty());
    EXPECT_EQ(client.getHaveSyncProfileToken(), 0);
}

struct Number {
    const char* name;
    int (*get)(StreamIDClient&);
    void (StreamIDClient::*set)(int);
};

void PrintTo(const Number& number, std::ostream* out) { *out << number.name; }

const Number kNumbers[] = {
    {"channel", [](StreamIDClient& c) { return c.strm_setting_channel(); },
     &StreamIDClient::set_strm_setting_channel},
    {"order", [](StreamIDClient& c) { return c.get_userid_order(); }, &StreamIDClient::set_userid_order},
    {"profile", [](StreamIDClient& c) { return c.profile_id(); }, &StreamIDClient::set_profile_id},
    {"stream", [](StreamIDClient& c) { return c.strm_setting_no(); }, &StreamIDClient::set_strm_setting_no},
    {"W", [](StreamIDClient& c) { return c.getSettingW(); }, &StreamIDClient::setSettingW},
    {"H", [](StreamIDClient& c) { return c.getSettingH(); }, &StreamIDClient::setSettingH},
    {"MaxW", [](StreamIDClient& c) { return c.getSettingMaxW(); }, &StreamIDClient::setSettingMaxW},
    {"MaxH", [](StreamIDClient& c) { return c.getSettingMaxH(); }, &StreamIDClient::setSettingMaxH},
    {"MaxW_Ui", [](StreamIDClient& c) { return c.getSettingMaxW_Ui(); }, &StreamIDClient::setSettingMaxW_Ui},
    {"MaxH_Ui", [](StreamIDClient& c) { return c.getSettingMaxH_Ui(); }, &StreamIDClient::setSettingMaxH_Ui},
    {"MinW_Ui", [](StreamIDClient& c) { return c.getSettingMinW_Ui(); }, &StreamIDClient::setSettingMinW_Ui},
    {"MinH_Ui", [](StreamIDClient& c) { return c.getSettingMinH_Ui(); }, &StreamIDClient::setSettingMinH_Ui},
    {"FramerateSrcMax", [](StreamIDClient& c) { return c.getSettingFramerateSrcMax(); },
     &StreamIDClient::setSettingFramerateSrcMax},
    {"FramerateSrcMin", [](StreamIDClient& c) { return c.getSettingFramerateSrcMin(); },
     &StreamIDClient::setSettingFramerateSrcMin},
    {"Framerate", [](StreamIDClient& c) { return c.getSettingFramerate(); },
     &StreamIDClient::setSettingFramerate},
    {"Bitrate", [](StreamIDClient& c) { return c.getSettingBitrate(); }, &StreamIDClient::setSettingBitrate},
    {"GovLength", [](StreamIDClient& c) { return c.getSettingGovLength(); },
     &StreamIDClient::setSettingGovLength},
    {"audio", [](StreamIDClient& c) { return c.audio_in_live(); }, &StreamIDClient::set_audio_in_live},
    {"synchronised", [](StreamIDClient& c) { return c.getHaveSyncProfileToken(); },
     &StreamIDClient::setHaveSyncProfileToken},
};

class StreamClientNumbers : public ::testing::TestWithParam<Number> {};

TEST_P(StreamClientNumbers, AreKeptByThemselves) {
    StreamIDClient untouched;
    StreamIDClient client;
    for (const int value : {1, 77, 0, -5}) {
        (client.*GetParam().set)(value);
        for (const Number& number : kNumbers)
            EXPECT_EQ(number.get(client), number.set == GetParam().set ? value : number.get(untouched))
                << number.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Each, StreamClientNumbers, ::testing::ValuesIn(kNumbers));

TEST(StreamClient, KeepsTheUserAndTheMode) {
    StreamIDClient client;
    client.set_userid(4000000000U);
    client.set_req_mode(TOVLIN_REQUEST_MODE_NETWORK_BACKUP);
    EXPECT_EQ(client.uid(), 4000000000U);
    EXPECT_EQ(static_cast<int>(client.get_req_mode()), 1);
    client.set_req_mode(TOVLIN_REQUEST_MODE_STREAM);
    EXPECT_EQ(static_cast<int>(client.get_req_mode()), 0);
}

TEST(StreamClient, KeepsItsQualities) {
    StreamIDClient client;
    client.setNowQuality(1.5F);
    client.setSettingQuality(2.5F);
    client.setQualityStep(3.5F);
    EXPECT_EQ(client.getNowQuality(), 1.5F);
    EXPECT_EQ(client.getSettingQuality(), 2.5F);
    EXPECT_EQ(client.getQualityStep(), 3.5F);
}

TEST(StreamClient, KeepsItsVendorAndSetupText) {
    StreamIDClient client;
    client.setVendor("TOVLIN");
    client.setInitStream("a text");
    EXPECT_STREQ(client.getVendor(), "TOVLIN");
    EXPECT_EQ(client.getInitStream(), "a text");
    client.setVendor(nullptr);
    client.setInitStream(nullptr);
    EXPECT_STREQ(client.getVendor(), "");
    EXPECT_EQ(client.getInitStream(), "");
}

TEST(StreamClient, ANullEncodingIsH264) {
    StreamIDClient client;
    client.setSettingEnc("JPEG");
    EXPECT_EQ(client.encoding(), "JPEG");
    client.setSettingEnc(nullptr);
    EXPECT_EQ(client.encoding(), "H264");
    client.setSettingEnc("");
    EXPECT_EQ(client.encoding(), "");
}

struct MirroredText {
    const char* key;
    void (*set)(StreamIDClient&, const char*);
};

void PrintTo(const MirroredText& text, std::ostream* out) { *out << text.key; }

const MirroredText kMirrored[] = {
    {"StreamSetup.Stream", [](StreamIDClient& c, const char* t) { c.setSettingStream(t); }},
    {"StreamSetup.Param", [](StreamIDClient& c, const char* t) { c.setStreamSettingCgiParam(t); }},
    {"StreamSetup.Stream.Param", [](StreamIDClient& c, const char* t) { c.setSettingStrmparam(t); }},
    {"StreamSetup.Stream.Param1", [](StreamIDClient& c, const char* t) { c.setSettingStrmparam1(t); }},
    {"StreamSetup.Stream.InnrParam", [](StreamIDClient& c, const char* t) { c.set_strmp_innrparam(t); }},
    {"StreamSetup.Stream.PreInnrParam",
     [](StreamIDClient& c, const char* t) { c.set_strmp_pre_innrparam(t); }},
    {"StreamSetup.Transport.Protocol", [](StreamIDClient& c, const char* t) { c.setSettingTranPro(t); }},
    {"ProfileMode", [](StreamIDClient& c, const char* t) { c.setProfileMode_1(t); }},
};

class StreamClientTexts : public ::testing::TestWithParam<MirroredText> {};

TEST_P(StreamClientTexts, AreMirroredInTheSetupMap) {
    TestRequest request;
    GetParam().set(request.client(), "a text");
    EXPECT_STREQ(request.GetStreamMapStr(kUser, GetParam().key), "a text");
    EXPECT_EQ(request.client().stream_setup_map().size(), 2U) << "the default quality and this one";
    GetParam().set(request.client(), "another");
    EXPECT_STREQ(request.GetStreamMapStr(kUser, GetParam().key), "another");
    GetParam().set(request.client(), nullptr);
    EXPECT_EQ(request.client().stream_setup_map().at(GetParam().key), "");
}

INSTANTIATE_TEST_SUITE_P(Each, StreamClientTexts, ::testing::ValuesIn(kMirrored));

TEST(StreamClient, KeepsTheMirroredTextsItReadsItself) {
    StreamIDClient client;
    client.setSettingStream("1");
    client.setSettingTranPro("RTSP");
    client.setProfileMode_1("AUTO");
    EXPECT_EQ(client.setting_stream(), "1");
    EXPECT_EQ(client.transport_protocol(), "RTSP");
    EXPECT_EQ(client.profile_mode(), "AUTO");
}

// ---- The quality step

TEST(StreamClient, TheStepIsATenthOfTheSourcesRange) {
    StreamIDClient client;
    client.setSettingQualitySrcMax(10);
    EXPECT_EQ(client.getQualityStep(), 10.0F * 0.1F);
    client.setSettingQualitySrcMin(2);
    EXPECT_EQ(client.getQualityStep(), 8.0F * 0.1F);
    EXPECT_EQ(client.getSettingQualitySrcMax(), 10.0F);
    EXPECT_EQ(client.getSettingQualitySrcMin(), 2.0F);
}

TEST(StreamClient, TheStepIsComputedInSinglePrecision) {
    StreamIDClient client;
    client.setSettingQualitySrcMax(7);
    EXPECT_EQ(client.getQualityStep(), 7.0F * 0.1F);
    client.setSettingQualitySrcMin(6.3F);
    EXPECT_EQ(client.getQualityStep(), (7.0F - 6.3F) * 0.1F);
}

TEST(StreamClient, TheStepGoesThroughTheClientsOwnOperations) {
    struct Odd : StreamIDClient {
        float getSettingQualitySrcMax() override { return 40; }
        float getSettingQualitySrcMin() override { return 20; }
        void setQualityStep(float step) override { seen.push_back(step); }
        std::vector<float> seen;
    };
    Odd client;
    client.setSettingQualitySrcMax(1);
    client.setSettingQualitySrcMin(1);
    EXPECT_EQ(client.seen, (std::vector<float>{20.0F * 0.1F, 20.0F * 0.1F}));
}

// ---- What the setters do besides

TEST(StreamClient, TheRecorderChannelIsAtLeastOne) {
    StreamIDClient client;
    for (const auto& [given, kept] :
         std::vector<std::pair<int, int>>{{4, 4}, {0, 1}, {9, 9}, {-5, 1}, {1, 1}}) {
        client.set_strm_nvr_subchannel(given);
        EXPECT_EQ(client.strm_nvr_subchannel(), kept) << given;
    }
}

TEST(StreamClient, KeepsOnlyAWeakReferenceToTheStreamObject) {
    StreamIDClient client;
    auto stream = boost::make_shared<IBase>();
    client.set_ibase_stream(stream);
    EXPECT_EQ(stream.use_count(), 1);
    EXPECT_EQ(client.get_ibase_stream(), stream);
    stream.reset();
    EXPECT_EQ(client.get_ibase_stream(), nullptr);
}

TEST(StreamClient, ForgetsTheStreamObjectWhenGivenNone) {
    StreamIDClient client;
    const auto stream = boost::make_shared<IBase>();
    client.set_ibase_stream(stream);
    client.set_ibase_stream(nullptr);
    EXPECT_EQ(client.get_ibase_stream(), nullptr);
}

TEST(StreamClient, TheTemporaryMapMayBeChanged) {
    StreamIDClient client;
    client.get_temp_cgicache_map()["A"] = "1";
    EXPECT_EQ(client.get_temp_cgicache_map().at("A"), "1");
}

} // namespace
} // namespace koine::test
