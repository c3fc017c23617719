// What the start of a stream asks the device: every line, in its order, for every model and mode.

#include "bench.h"

#include <map>

namespace koine::test {
namespace {

constexpr const char* kSetUp =
    "Stream.cgi?action=set&StreamSetup.Stream=RTP-Unicast&StreamSetup.Transport.Protocol=TCP";
constexpr const char* kSettings = "&StreamSetup.VideoEncoderConfiguration.RateControl.FrameRateLimit=60"
                                  "&StreamSetup.VideoEncoderConfiguration.Quality=5"
                                  "&StreamSetup.VideoEncoderConfiguration.RateControl.BitrateLimit=1000"
                                  "&StreamSetup.VideoEncoderConfiguration.GovLength=20";

/// What a profile is fitted to.
struct Fit {
    int profile;
    const char* encoding;
    int width;
    int height;
};

/// How the streams of a model end up. AUTO and the token's profile are asked for 1280x720, MOBILE for
/// 352x288.
struct Expected {
    const char* quality; ///< what the host's quality 5 is to the device
    Fit first;           ///< with AUTO, and with no mode and no known token
    Fit mobile;          ///< profile 0: the device refuses mobile streams
    const char* token;
    Fit ofToken;
    bool hasAnalytics;
};

// Worked out from the models' texts. The largest size not above the area asked for, else the smallest above;
// 352x288 on a device of 240 lines is 352x240, and "analytics" has nothing that small.
const std::map<std::string, Expected> kExpected = {
    {"analytics",
     {"2.50", {1, "H264", 1280, 720}, {3, "H264", 640, 480}, "VA-LIVE", {2, "H264", 1280, 720}, true}},
    {"dome",
     {"50.00",
      {1, "H264", 1280, 720},
      {3, "H264", 352, 240},
      "PROFILE-SECOND",
      {2, "H264", 1280, 720},
      false}},
    {"minimal", {"5.00", {1, "H264", 1280, 720}, {2, "H264", 352, 288}, "2", {2, "H264", 1280, 720}, false}},
    {"nocapability",
     {"0.50", {1, "H264", 720, 480}, {2, "MPEG4", 352, 240}, "TOKEN2", {2, "H264", 720, 480}, false}},
    {"onvif",
     {"50.50",
      {1, "H264", 1280, 720},
      {4, "H264", 320, 240},
      "profile_token_2",
      {2, "H264", 1280, 720},
      false}},
    {"pell", {"2.00", {1, "H264", 1280, 720}, {0, "", 0, 0}, "PELL-2", {2, "H264", 1280, 720}, false}},
    {"recorder",
     {"5.00", {1, "H264", 1280, 720}, {2, "H264", 352, 288}, "CH01-SUB", {2, "H264", 704, 576}, false}},
    {"videoserver",
     {"3.00", {1, "H264", 720, 576}, {4, "MPEG4", 352, 288}, "PROFILE-2", {2, "H264", 720, 576}, false}},
};

/// The one line with the encoder settings.
std::string settingsLine(const Fit& fit, const std::string& quality) {
    const std::string key =
        "&Media.Profiles.Profile" + std::to_string(fit.profile) + ".VideoEncoderConfiguration.";
    return kConfigSet + key + "Encoding=" + fit.encoding + key + "RateControl.FrameRateLimit=30" + key +
           "Resolution.Width=" + std::to_string(fit.width) + key +
           "Resolution.Height=" + std::to_string(fit.height) + key + "Quality=" + quality + key +
           "RateControl.BitrateLimit=1000" + key + fit.encoding + ".GovLength=20";
}

class StreamStart : public OnEveryModel {
protected:
    void SetUp() override {
        ASSERT_TRUE(hasProfiles() ? kExpected.count(model()) == 1 : kExpected.count(model()) == 0)
            << "a new model needs a row in kExpected";
    }

    bool hasProfiles() const { return model() != "noprofiles"; }
    const Expected& expected() const { return kExpected.at(model()); }

    static std::string startLine(const std::string& items, const std::string& size = "1280x720") {
        return kSetUp + items + kSettings + "&StreamSetup.VideoEncoderConfiguration.Resolution.NxN=" + size;
    }

    /// What the caches ask for again once they are filled.
    Lines askedAgain() const {
        return hasProfiles() ? Lines() : Lines{"404 " + getLine("Media.*") + "&ch=1"};
    }

    /// Everything that a first start costs, the settings of `fit` included.
    Lines firstLines(const Fit& fit) const {
        Lines lines = learningLines(model());
        if (hasProfiles())
            lines.push_back(settingsLine(fit, expected().quality));
        return lines;
    }

    Lines secondLines(const Fit& fit) const {
        return hasProfiles() ? Lines{settingsLine(fit, expected().quality)} : askedAgain();
    }

    /// A first user, another one, the first again, and what can be asked of a stream.
    void expectThreeStarts(const std::string& line, const Fit& fit) {
        Bench bench(model());
        EXPECT_EQ(bench.ask(line, 1).text, kDone);
        EXPECT_EQ(bench.takeLines(), firstLines(fit));
        EXPECT_EQ(bench.ask(line, 2).result, kOk);
        EXPECT_EQ(bench.takeLines(), secondLines(fit));
        EXPECT_EQ(bench.ask(line, 1).result, kOk);
        EXPECT_EQ(bench.takeLines(), askedAgain());
        EXPECT_TRUE(bench.ask("Stream.cgi?action=get", 1).ok());
        EXPECT_TRUE(bench.ask("Onvif.cgi?action=GetStreamUri", 1).ok());
        EXPECT_EQ(bench.takeLines(), Lines());
    }

    const Fit none_ = {0, "", 0, 0};
};

TEST_P(StreamStart, ofModeAuto) {
    expectThreeStarts(startLine("&ProfileMode=AUTO"), hasProfiles() ? expected().first : none_);
}

TEST_P(StreamStart, withoutModeAndToken) {
    expectThreeStarts(startLine(""), hasProfiles() ? expected().first : none_);
}

TEST_P(StreamStart, ofAToken) {
    expectThreeStarts(startLine(hasProfiles() ? std::string("&ProfileToken=") + expected().token : ""),
                      hasProfiles() ? expected().ofToken : none_);
}

TEST_P(StreamStart, ofModeMobile) {
    const std::string line = startLine("&ProfileMode=MOBILE", "352x288");
    if (!hasProfiles() || expected().mobile.profile != 0) {
        expectThreeStarts(line, hasProfiles() ? expected().mobile : none_);
        return;
    }
    Bench bench(model());
    const Answer refused = bench.ask(line);
    EXPECT_EQ(refused.result, kRefused);
    EXPECT_EQ(refused.text, kUnknownParameter);
    EXPECT_EQ(bench.takeLines(), learningLines(model()));
    EXPECT_EQ(bench.ask(line).result, kRefused);
    EXPECT_EQ(bench.takeLines(), Lines());
}

// A metadata stream needs video analytics; neither kind touches an encoder.
TEST_P(StreamStart, ofModeOnlyMeta) {
    Bench bench(model());
    const Answer answer = bench.ask(startLine("&ProfileMode=ONLY_META"));
    EXPECT_EQ(bench.takeLines(), learningLines(model()));
    const bool isServed = hasProfiles() && expected().hasAnalytics;
    EXPECT_EQ(answer.result, isServed ? kOk : kRefused);
    EXPECT_EQ(answer.text, isServed ? kDone : kUnknownParameter);
    EXPECT_EQ(bench.ask(startLine("&ProfileMode=ONLY_META"), 2).result, answer.result);
    EXPECT_EQ(bench.takeLines(), askedAgain());
}

TEST_P(StreamStart, ofModeOnlyStatus) {
    Bench bench(model());
    EXPECT_EQ(bench.ask(startLine("&ProfileMode=ONLY_STATUS")).text, kDone);
    EXPECT_EQ(bench.takeLines(), learningLines(model()));
    EXPECT_EQ(bench.ask(startLine("&ProfileMode=ONLY_STATUS"), 2).result, kOk);
    EXPECT_EQ(bench.takeLines(), askedAgain());
}

// The user's fields and the device agree on what was sent.
TEST_P(StreamStart, leavesTheSettingsAtTheDevice) {
    if (!hasProfiles())
        return;
    Bench bench(model());
    ASSERT_TRUE(bench.ask(startLine("&ProfileMode=AUTO")).ok());
    const Fit& fit = expected().first;
    const std::string encoder =
        "Media.Profiles.Profile" + std::to_string(fit.profile) + ".VideoEncoderConfiguration.";
    const std::map<std::string, std::string> wanted = {
        {"Encoding", fit.encoding},
        {"RateControl.FrameRateLimit", "30"},
        {"Resolution.Width", std::to_string(fit.width)},
        {"Resolution.Height", std::to_string(fit.height)},
        {"Quality", expected().quality},
        {"RateControl.BitrateLimit", "1000"},
        {std::string(fit.encoding) + ".GovLength", "20"},
    };
    for (const auto& [key, value] : wanted)
        EXPECT_EQ(bench.device().value(encoder + key), value) << key;
    const CgiMap answer = bench.ask(getLine("Media.*")).values();
    EXPECT_EQ(answer.at(encoder + "Quality"), "5");
    EXPECT_EQ(answer.at(encoder + "Resolution.Width"), wanted.at("Resolution.Width"));
}

// A user that names no stream only fills the caches.
TEST_P(StreamStart, withoutAStreamOnlyLearns) {
    Bench bench(model());
    EXPECT_TRUE(bench.ask("Stream.cgi?action=set&StreamSetup.Transport.Protocol=TCP").ok());
    EXPECT_EQ(bench.takeLines(), learningLines(model()));
}

TEST_P(StreamStart, takesOneConnection) {
    for (const sim::AuthKind auth : {sim::AuthKind::none, sim::AuthKind::basic}) {
        Bench bench(model(), {}, auth);
        ASSERT_TRUE(bench.ask(startLine("&ProfileMode=AUTO")).ok());
        ASSERT_TRUE(bench.ask(startLine("&ProfileMode=AUTO"), 2).ok());
        EXPECT_EQ(bench.device().counters().connections, 1U);
    }
}

TEST_P(StreamStart, costsOneRefusalWithDigest) {
    for (const sim::AuthKind auth : {sim::AuthKind::digestMd5, sim::AuthKind::digestSha256}) {
        Bench bench(model(), {}, auth);
        ASSERT_TRUE(bench.ask(startLine("&ProfileMode=AUTO")).ok());
        const sim::Counters counters = bench.device().counters();
        EXPECT_LE(counters.unauthorized, 1U);
        EXPECT_EQ(counters.connections, 1U);
        Lines expectedLines = firstLines(hasProfiles() ? expected().first : none_);
        if (counters.unauthorized == 1)
            expectedLines.insert(expectedLines.begin(), "401 Login.cgi");
        EXPECT_EQ(bench.takeLines(), expectedLines);
        ASSERT_TRUE(bench.ask(startLine("&ProfileMode=AUTO"), 2).ok());
        EXPECT_EQ(bench.takeLines(), secondLines(hasProfiles() ? expected().first : none_));
        EXPECT_EQ(bench.device().counters().connections, 0U) << "counted since the lines were taken";
    }
}

INSTANTIATE_TEST_SUITE_P(Models, StreamStart, testing::ValuesIn(sim::modelNames()), modelOf);

// A recorder keeps the settings of its channels to itself, and is asked for little.
TEST(StreamStartOnARecorder, asksForLoginCapabilitiesAndProfilesOnly) {
    Bench bench("recorder");
    bench.request().setIsTovlinNVRDevice(1);
    EXPECT_TRUE(bench.ask(std::string(kSetUp) + "&ProfileMode=AUTO&StreamSetup.Live.Channel=7").ok());
    EXPECT_EQ(bench.takeLines(),
              (Lines{"Login.cgi", "Capability.cgi?action=get", getLine("Media.*") + "&ch=7"}));
    EXPECT_STREQ(bench.request().profile_token(1), "CH07-MAIN");
}

} // namespace
} // namespace koine::test
