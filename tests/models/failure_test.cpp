// Every request to the device failing in turn, in every way: what the host hears, what is cached, and what
// the next line makes of it.

#include "bench.h"

#include "text/owned_text.h"

#include <algorithm>
#include <array>

namespace koine::test {
namespace {

constexpr const char* kBitrateKey =
    "Media.Profiles.Profile1.VideoEncoderConfiguration.RateControl.BitrateLimit";

/// One way to fail and what the library calls it.
struct Failure {
    const char* name;
    sim::Fault fault;
    int result;
    const char* answer;
};

const std::vector<Failure>& failures() {
    static const std::vector<Failure> all = {
        {"refused connection", {sim::FaultKind::refuse}, -3, kUnknownParameter},
        {"HTTP 401", {sim::FaultKind::unauthorizedStorm}, kAuthFailed, kAuthenticationError},
        {"HTTP 500", {sim::FaultKind::status, 500}, -6, kUnknownParameter},
        {"HTTP 404", {sim::FaultKind::status, 404}, kNoFunction, kUnknownParameter},
        {"garbage", {sim::FaultKind::garbage}, -5, kUnknownParameter},
        {"reset", {sim::FaultKind::resetWithinBody, 2}, -5, kUnknownParameter},
        {"empty body", {sim::FaultKind::emptyBody}, kRefused, kUnknownParameter},
        {"no status", {sim::FaultKind::answer, "<html>\nbusy\n"}, kRefused, kUnknownParameter},
        {"error status", {sim::FaultKind::answer, "-7\nERROR: Busy.\n"}, -7, kUnknownParameter},
        {"refused in the text",
         {sim::FaultKind::answer, kAuthenticationError},
         kAuthFailed,
         kAuthenticationError},
    };
    return all;
}

/// One cache of a device: the request that fills it, and whether a failure is forgiven.
struct Step {
    const char* part; ///< of the request's line
    int (*fill)(BaseRequest&);
    bool isTriedAgain;
};

constexpr std::array<Step, 8> kSteps = {{
    {"Login.cgi", [](BaseRequest& r) { return r.getCacheLogin(9, 0, nullptr, nullptr); }, true},
    {"Capability.cgi", [](BaseRequest& r) { return r.getCacheCapability(9, 0, nullptr, nullptr); }, true},
    {"category=Media.", [](BaseRequest& r) { return r.getCacheConfigMedia(9, 0, nullptr, nullptr, nullptr); },
     true},
    {"category=Video.", [](BaseRequest& r) { return r.getCacheConfigVideo(9, 0, nullptr, nullptr, nullptr); },
     false},
    {"category=Camera.",
     [](BaseRequest& r) { return r.getCacheConfigCamera(9, 0, nullptr, nullptr, nullptr); }, false},
    {"category=Notification.",
     [](BaseRequest& r) { return r.getCacheConfigNotification(9, 0, nullptr, nullptr, nullptr); }, false},
    {"category=Misc.", [](BaseRequest& r) { return r.getCacheConfigMisc(9, 0, nullptr, nullptr, nullptr); },
     false},
    {"category=VideoAnalytics.",
     [](BaseRequest& r) { return r.getCacheConfigVideoAnalytics(9, 0, nullptr, nullptr, nullptr); }, false},
}};

/// The fault on one request; a device that nobody can reach knows no lines.
sim::Fault on(const std::string& part, sim::Fault fault) {
    return fault.kind == sim::FaultKind::refuse ? fault : fault.onPath(part);
}

class FailingStep : public testing::TestWithParam<std::size_t> {
protected:
    const Step& step() const { return kSteps.at(GetParam()); }

    /// Everything that comes before the step is known.
    void fillUpToStep(Bench& bench) const {
        for (std::size_t i = 0; i < GetParam(); ++i)
            ASSERT_EQ(kSteps.at(i).fill(bench.request()), kOk);
        bench.takeLines();
    }

    /// What a start asks from this place on: the step itself or the one after it.
    static Lines startLines(std::size_t firstStep) {
        Lines lines = learningLines("analytics");
        lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(firstStep));
        lines.push_back(std::string(kConfigSet) +
                        "&Media.Profiles.Profile1.VideoEncoderConfiguration.Encoding=H264"
                        "&Media.Profiles.Profile1.VideoEncoderConfiguration.Resolution.Width=640"
                        "&Media.Profiles.Profile1.VideoEncoderConfiguration.Resolution.Height=480&" +
                        kBitrateKey + "=1000");
        return lines;
    }

    void expectFailureAndRecovery(const Failure& failure) const {
        SCOPED_TRACE(std::string(step().part) + ": " + failure.name);
        Bench bench("analytics");
        fillUpToStep(bench);
        bench.device().setFault(on(step().part, failure.fault));
        const Answer failed = bench.ask(kStart);
        EXPECT_EQ(failed.result, failure.result);
        EXPECT_EQ(failed.text, failure.answer);
        for (const std::string& line : bench.takeLines())
            EXPECT_NE(line.find(step().part), std::string::npos) << line << " follows the failure";

        if (step().isTriedAgain) {
            EXPECT_EQ(bench.ask("Stream.cgi?action=get").result, failure.result) << "the start is still due";
            bench.takeLines();
            bench.device().clearFaults();
            EXPECT_TRUE(bench.ask("Stream.cgi?action=get").ok());
            EXPECT_EQ(bench.takeLines(), startLines(GetParam()));
            return;
        }
        // The category counts as known: the stream starts without it, and it stays empty on a healthy device.
        if (failure.fault.kind == sim::FaultKind::refuse)
            bench.device().clearFaults();
        EXPECT_TRUE(bench.ask("Stream.cgi?action=get").ok());
        EXPECT_EQ(bench.takeLines(), startLines(GetParam() + 1));
        bench.device().clearFaults();
        const std::string category = std::string(step().part).substr(std::string("category=").size());
        const Answer empty = bench.ask(getLine(category + "*"));
        EXPECT_EQ(empty.result, kNoResource);
        EXPECT_EQ(empty.text, kUnknownParameter);
        EXPECT_EQ(bench.takeLines(), Lines());
    }
};

TEST_P(FailingStep, failsTheStartAsItFails) {
    for (const Failure& failure : failures())
        if (failure.result != kNoFunction || std::string(step().part) != "category=Media.")
            expectFailureAndRecovery(failure);
}

std::string stepName(const testing::TestParamInfo<std::size_t>& info) {
    std::string name(kSteps.at(info.param).part);
    name = name.substr(name.find('=') + 1);
    return name.substr(0, name.find('.'));
}

INSTANTIATE_TEST_SUITE_P(Steps, FailingStep, testing::Range<std::size_t>(0, kSteps.size()), stepName);

// Requests that only some kinds of devices get. They belong to the capabilities, which are tried again.

void expectCapabilitiesAreTriedAgain(const std::string& model, const char* line, std::size_t firstLine) {
    for (const Failure& failure : failures()) {
        if (failure.fault.kind == sim::FaultKind::refuse)
            continue; // nobody can refuse the second of two requests that follow each other at once
        SCOPED_TRACE(model + ": " + failure.name);
        Bench bench(model);
        bench.device().setFault(on(line, failure.fault));
        const Answer failed = bench.ask(kStart);
        EXPECT_EQ(failed.result, failure.result);
        EXPECT_EQ(failed.text, failure.answer);
        bench.device().clearFaults();
        bench.takeLines();
        EXPECT_TRUE(bench.ask(kStart).ok());
        Lines expected = learningLines(model);
        expected.erase(expected.begin(), expected.begin() + static_cast<std::ptrdiff_t>(firstLine));
        Lines asked = bench.takeLines();
        asked.resize(std::min(asked.size(), expected.size()));
        EXPECT_EQ(asked, expected);
    }
}

TEST(FailingCapabilities, ofAVideoServersChannelAreAllAskedAgain) {
    expectCapabilitiesAreTriedAgain("videoserver", "channel=1", 1);
}

TEST(FailingCapabilities, ofAMachineAreAskedAgain) {
    expectCapabilitiesAreTriedAgain("nocapability", "Machine.cgi", 1);
}

// The line with the encoder settings.

TEST(FailingSettings, doNotStopTheStreamAndAreNotSentAgain) {
    for (const Failure& failure : failures()) {
        SCOPED_TRACE(failure.name);
        Bench bench("dome");
        for (const Step& step : kSteps)
            ASSERT_EQ(step.fill(bench.request()), kOk);
        const std::string before = bench.device().value(kBitrateKey);
        bench.takeLines();
        bench.device().setFault(on("action=set", failure.fault));
        EXPECT_TRUE(bench.ask(kStart).ok());
        bench.device().clearFaults();
        for (const std::string& line : bench.takeLines())
            EXPECT_NE(line.find("action=set&Media."), std::string::npos) << line;
        EXPECT_TRUE(bench.ask("Stream.cgi?action=get").ok());
        EXPECT_TRUE(bench.ask(kStart).ok());
        EXPECT_EQ(bench.takeLines(), Lines());
        const std::string cached = bench.ask(getLine(kBitrateKey)).values().at(kBitrateKey);
        // Only silence is taken for a yes: HTTP 200 without a body.
        const bool isSilent = failure.fault.kind == sim::FaultKind::emptyBody;
        EXPECT_EQ(cached, isSilent ? "1000" : before);
    }
}

TEST(FailingSettings, ofTheHostLeaveCachesAlone) {
    for (const Failure& failure : failures()) {
        if (failure.fault.kind == sim::FaultKind::emptyBody)
            continue; // silence is a yes
        SCOPED_TRACE(failure.name);
        Bench bench("dome");
        ASSERT_TRUE(bench.ask(getLine("Camera.*")).ok());
        bench.device().setFault(on("action=set", failure.fault));
        const Answer failed = bench.ask(std::string(kConfigSet) + "&Camera.Name=Failed");
        EXPECT_EQ(failed.result, failure.result);
        EXPECT_EQ(failed.text, failure.answer);
        bench.device().clearFaults();
        EXPECT_EQ(bench.ask(getLine("Camera.Name")).text, "0\nOK\nCamera.Name=Camera\n");
        EXPECT_TRUE(bench.ask(std::string(kConfigSet) + "&Camera.Name=Healed").ok());
        EXPECT_EQ(bench.device().value("Camera.Name"), "Healed");
        EXPECT_EQ(bench.ask(getLine("Camera.Name")).text, "0\nOK\nCamera.Name=Healed\n");
    }
}

// What a host hears that asks for the failing thing itself.

TEST(FailingAnswers, giveTheStepsTextsAndTheDispatchsErrors) {
    Bench bench("dome");
    bench.device().setFault(sim::Fault(sim::FaultKind::answer, "-7\nERROR: Busy.\n"));
    OwnedText text;
    EXPECT_EQ(bench.request().getCacheLogin(1, 0, nullptr, OutText(text)), -7);
    EXPECT_EQ(viewOf(text.get()), "-7\nERROR: Busy.\n");
    for (const char* line : {"Login.cgi", "Capability.cgi?action=get"}) {
        const Answer answer = bench.ask(line);
        EXPECT_EQ(answer.result, -7);
        EXPECT_EQ(answer.text, kUnknownParameter);
    }
    bench.device().clearFaults();
    EXPECT_TRUE(bench.ask("Capability.cgi?action=get").ok());
}

// A device without a function for profiles has no profiles; so has one whose login or capabilities are
// missing, as far as the profiles go.
TEST(FailingAnswers, ofAFunctionThatTheDeviceDoesNotHaveLeaveItWithoutProfiles) {
    for (const char* part : {"Login.cgi", "Capability.cgi", "category=Media."}) {
        Bench bench("dome");
        bench.device().setFault(on(part, {sim::FaultKind::status, 404}));
        const Answer answer = bench.ask(getLine("Media.*"));
        EXPECT_EQ(answer.result, kOk) << part;
        EXPECT_EQ(answer.text, kUnknownParameter) << part;
        EXPECT_EQ(bench.request().getMediaProfile(), 0) << part;
        bench.device().clearFaults();
        EXPECT_EQ(bench.ask(getLine("Media.Profiles.Count")).text, "0\nOK\nMedia.Profiles.Count=3\n") << part;
        EXPECT_EQ(bench.request().getMediaProfile(), 1) << part;
    }
}

// A refresh makes the Camera category ask again, and no other.
TEST(FailingAnswers, ofTheCameraAreAskedForAgainByARefresh) {
    for (const std::size_t place : {std::size_t{4}, std::size_t{3}}) {
        Bench bench("dome");
        bench.device().setFault(on(kSteps.at(place).part, {sim::FaultKind::status, 500}));
        EXPECT_EQ(kSteps.at(place).fill(bench.request()), -6);
        bench.device().clearFaults();
        OwnedText text;
        const bool isCamera = place == 4;
        EXPECT_EQ(isCamera ? bench.request().getCacheConfigCamera(1, 1, nullptr, "Camera.Name", OutText(text))
                           : bench.request().getCacheConfigVideo(1, 1, nullptr, "Video.*", OutText(text)),
                  isCamera ? kOk : kNoResource);
        EXPECT_EQ(viewOf(text.get()), isCamera ? "0\nOK\nCamera.Name=Camera\n" : kUnknownParameter);
    }
}

} // namespace
} // namespace koine::test
