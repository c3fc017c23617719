// Whether changed profile sizes need the stream to be reconnected.

#include "bench_request.h"
#include "observed.h"

#include <gtest/gtest.h>

namespace koine::test {
namespace {

const std::string kPlain = "0\nOK\n";
const std::string kReconnect = "0\nOK\n;StreamSetup.Reconnect=1";

class Reconnect : public ::testing::Test {
protected:
    Reconnect() { forgetTraces(); }

    std::string decide(std::string parameters) {
        AnswerText answer;
        EXPECT_EQ(request.handleParameter_1(parameters.data(), answer.out()), 1);
        return answer.text();
    }
    static std::string width(const std::string& value, const std::string& number = "1") {
        return "Media.Profiles.Profile" + number + ".VideoEncoderConfiguration.Resolution.Width=" + value;
    }
    static std::string height(const std::string& value, const std::string& number = "1") {
        return "Media.Profiles.Profile" + number + ".VideoEncoderConfiguration.Resolution.Height=" + value;
    }

    BenchRequest request;
};

TEST_F(Reconnect, IsNeededForAnotherWidth) {
    request.set_strm_setting_channel(3);
    request.encoder(1, ".Resolution.Width", "640");
    EXPECT_EQ(decide(width("1280")), kReconnect);
    EXPECT_TRUE(tracesAre(
        {"#* BaseRequest.handleParameter2: uid=0:3, NeedReconnect, nGetWidth=640, nWidth=1280. \n"}));
}

TEST_F(Reconnect, IsNeededForAnotherHeight) {
    request.set_strm_setting_channel(3);
    request.encoder(1, ".Resolution.Height", "480");
    EXPECT_EQ(decide(height("720")), kReconnect);
    EXPECT_TRUE(tracesAre(
        {"#* BaseRequest.handleParameter2: uid=0:3, NeedReconnect, nGetHeight=480, nHeight=720. \n"}));
}

TEST_F(Reconnect, IsNotNeededForTheSameSize) {
    request.encoder(1, ".Resolution.Width", "1280");
    request.encoder(1, ".Resolution.Height", "720");
    EXPECT_EQ(decide("Config.cgi?action=set&" + width("1280") + "&" + height("720")), kPlain);
    EXPECT_TRUE(tracesAre({}));
}

TEST_F(Reconnect, TakesAMissingSizeAsZeroAndCreatesIt) {
    EXPECT_EQ(decide(width("1280")), kReconnect);
    EXPECT_EQ(request.encoderValue(1, ".Resolution.Width"), "");
    EXPECT_TRUE(
        tracesAre({"#* BaseRequest.handleParameter2: uid=0:0, NeedReconnect, nGetWidth=0, nWidth=1280. \n"}));
    EXPECT_EQ(decide(width("0")), kPlain);
    EXPECT_EQ(decide(height("0")), kPlain);
    EXPECT_EQ(request.encoderValue(1, ".Resolution.Height"), "");
}

TEST_F(Reconnect, ComparesNumbersAndNotTexts) {
    request.encoder(1, ".Resolution.Width", "0640p");
    EXPECT_EQ(decide(width("640")), kPlain);
    EXPECT_EQ(decide(width("+640x")), kPlain);
}

TEST_F(Reconnect, LooksAtTheProfileThatIsNamed) {
    request.encoder(1, ".Resolution.Width", "640");
    request.encoder(2, ".Resolution.Width", "1280");
    EXPECT_EQ(decide(width("1280", "2")), kPlain);
    EXPECT_EQ(decide(width("1280", "1")), kReconnect);
}

TEST_F(Reconnect, StopsAtTheFirstDifference) {
    request.encoder(1, ".Resolution.Width", "640");
    request.encoder(2, ".Resolution.Width", "640");
    EXPECT_EQ(decide(width("640") + "&" + height("720") + "&" + width("1", "2") + "&" + width("1", "3")),
              kReconnect);
    EXPECT_TRUE(tracesAre(
        {"#* BaseRequest.handleParameter2: uid=0:0, NeedReconnect, nGetHeight=0, nHeight=720. \n"}));
    EXPECT_EQ(request.encoderValue(3, ".Resolution.Width"), "(absent)");
}

TEST_F(Reconnect, SplitsAtAmpersandsAndLineEnds) {
    request.encoder(1, ".Resolution.Width", "640");
    EXPECT_EQ(decide("Media.Profiles.Count=1\n" + width("1280")), kReconnect);
    EXPECT_EQ(decide("Media.Profiles.Count=1;" + width("1280")), kPlain);
    EXPECT_EQ(decide("Media.Profiles.Count=1?" + width("1280")), kPlain);
}

TEST_F(Reconnect, NeedsBothNumbers) {
    EXPECT_EQ(decide(width("")), kPlain);
    EXPECT_EQ(decide(width("wide")), kPlain);
    EXPECT_EQ(decide(width("1280", "")), kPlain);
    EXPECT_EQ(decide(width("1280", "x")), kPlain);
}

TEST_F(Reconnect, OtherProfileSettingsNeedNone) {
    EXPECT_EQ(decide("Media.Profiles.Profile1.VideoEncoderConfiguration.Encoding=JPEG"), kPlain);
    EXPECT_EQ(decide("Media.Profiles.Profile1.VideoEncoderConfiguration.H264.Resolution.Width=1"), kPlain);
    EXPECT_TRUE(request.media().empty());
}

TEST_F(Reconnect, LinesWithoutProfilesNeedNone) {
    EXPECT_EQ(decide("Config.cgi?action=set&Video.I0.Width=1"), kPlain);
    EXPECT_EQ(decide(""), kPlain);
    EXPECT_TRUE(tracesAre({}));
}

TEST_F(Reconnect, TheMakersOwnDevicesNeedNone) {
    for (const char* vendor : {"TOVLIN", "tovlin", "TovlinX"}) {
        request.setVendor(vendor);
        EXPECT_EQ(decide(width("1280")), kPlain) << vendor;
    }
    for (const char* vendor : {"", "TOVLI", "xTOVLIN"}) {
        request.setVendor(vendor);
        EXPECT_EQ(decide(width("1280")), kReconnect) << vendor;
    }
}

TEST_F(Reconnect, AnEarlierAnswerIsReplaced) {
    std::string parameters = "Config.cgi?action=set";
    AnswerText answer("what the device said");
    EXPECT_EQ(request.handleParameter_1(parameters.data(), answer.out()), 1);
    EXPECT_EQ(answer.text(), kPlain);
}

TEST_F(Reconnect, NoParametersNeedNone) {
    AnswerText answer;
    EXPECT_EQ(request.handleParameter_1(nullptr, answer.out()), 1);
    EXPECT_EQ(answer.text(), kPlain);
}

TEST_F(Reconnect, IsTracedAlsoWhenNobodyWantsTheAnswer) {
    std::string parameters = width("1280");
    EXPECT_EQ(request.handleParameter_1(parameters.data(), nullptr), 1);
    EXPECT_TRUE(
        tracesAre({"#* BaseRequest.handleParameter2: uid=0:0, NeedReconnect, nGetWidth=0, nWidth=1280. \n"}));
}

TEST_F(Reconnect, NumbersInParametersAreReadAsTheyAreInItems) {
    request.encoder(-2, ".Resolution.Height", "-5");
    EXPECT_EQ(decide(height(" -5", " -2")), kPlain);
    EXPECT_EQ(decide(height("-6", "-2")), kReconnect);
}

TEST_F(Reconnect, TheParametersStayAsTheyWere) {
    std::string parameters = "Config.cgi?action=set&" + width("1280") + "&" + height("720") + "\nX=1";
    const std::string before = parameters;
    AnswerText answer;
    EXPECT_EQ(request.handleParameter_1(parameters.data(), answer.out()), 1);
    EXPECT_EQ(parameters, before);
}

} // namespace
} // namespace koine::test
