// A device that fails at any of its requests: result, traces, what is kept, and what the next call does.

#include "camera.h"

#include <ostream>

namespace koine::test {
namespace {

/// One request of the filling of all caches.
struct Step {
    const char* name;
    const char* line;
    bool isTriedAgain;       ///< a failure is not remembered
    const char* failedTrace; ///< null when it goes to standard error
    const char* parseTrace;  ///< without its code
};

const Step kSteps[] = {
    {"Login", kLoginLine, true, "??#* getCacheLogin: error, uid=7:0. \n",
     "??#* ParsingCGIData: uid=7:0, err"},
    {"Capability", kCapabilityLine, true, "??#* getCacheCapability: error, uid=7:0. \n",
     "??#* ParsingCGIData: uid=7:0, err"},
    {"Media", kMediaLine, true, nullptr, nullptr},
    {"Video", kVideoLine, false, "??#* getCacheConfigVideo: error, uid=7:0. \n",
     "??#* getCacheConfigVideo: uid=7:0, err"},
    {"Camera", kCameraLine, false, "??#* getCacheConfigCamera: error, uid=7:0. \n",
     "??#* getCacheConfigCamera: uid=7:0, err"},
    {"Notification", kNotificationLine, false, "??#* getCacheConfigNotification: error, uid=7:0. \n",
     "??#* getCacheConfigNotification: uid=7:0, err"},
    {"Misc", kMiscLine, false, "??#* getCacheConfigMisc: error, uid=7:0. \n",
     "??#* getCacheConfigMisc: uid=7:0, err"},
    {"VideoAnalytics", kAnalyticsLine, false, "??#* getCacheConfigVideoAnalytics: error, uid=7:0. \n",
     "??#* getCacheConfigVideoAnalytics: uid=7:0, err"},
};

/// One way to fail.
struct Failure {
    const char* name;
    int request; ///< result of the request; 1 when the answer is what is wrong
    bool hasText;
    const char* text;
    int result;
};

const Failure kFailures[] = {
    {"Refused", -6, false, "", -6},
    {"RefusedWithAPage", -6, true, "<html>500</html>", -6},
    {"Authentication", -1, false, "", -1},
    {"Unreachable", -3, false, "", -3},
    {"Garbage", 1, true, "<html>hello</html>", -2},
    {"ErrorAnswer", 1, true, "-77\nERROR: No.\nVideo.I0.Brightness=9\n", -77},
    {"AuthenticationAnswer", 1, true, "-35\nERROR: Authentication error.\n", -1},
    {"Empty", 1, true, "", -2},
    {"WithoutBody", 1, false, "", -2},
};

struct Case {
    std::size_t step;
    std::size_t failure;
};
std::ostream& operator<<(std::ostream& out, const Case& one) {
    return out << kSteps[one.step].name << ' ' << kFailures[one.failure].name;
}

std::vector<Case> everyCase() {
    std::vector<Case> cases;
    for (std::size_t step = 0; step < std::size(kSteps); ++step)
        for (std::size_t failure = 0; failure < std::size(kFailures); ++failure)
            cases.push_back({step, failure});
    return cases;
}

class DeviceFailure : public ::testing::TestWithParam<Case> {
protected:
    DeviceFailure() {
        camera.client(); // so that its making is not among the traces
        if (failure().hasText)
            camera.fails(step().line, failure().request, failure().text);
        else
            camera.fails(step().line, failure().request);
        forgetTraces();
    }
    const Step& step() const { return kSteps[GetParam().step]; }
    const Failure& failure() const { return kFailures[GetParam().failure]; }

    Lines linesUpTo(std::size_t last) const {
        Lines lines;
        for (std::size_t i = 0; i <= last; ++i)
            lines.emplace_back(kSteps[i].line);
        return lines;
    }
    Lines expectedTraces() const {
        if (step().failedTrace == nullptr)
            return {};
        if (failure().request != 1)
            return {step().failedTrace};
        return {step().parseTrace + std::to_string(failure().result) + ". \n"};
    }
    std::string expectedMessage() const {
        if (step().failedTrace != nullptr)
            return "";
        const std::string code = std::to_string(failure().result);
        return failure().request != 1
                   ? "Error : getCacheConfigMedia-544 call requestCgi() error " + code + ", uid 7\n"
                   : "Error : getCacheConfigMedia-556 with createMapStr error " + code + ", uid=7\n";
    }

    Camera camera;
};

std::string caseName(const ::testing::TestParamInfo<Case>& one) {
    return std::string(kSteps[one.param.step].name) + kFailures[one.param.failure].name;
}
INSTANTIATE_TEST_SUITE_P(AtEveryRequest, DeviceFailure, ::testing::ValuesIn(everyCase()), caseName);

TEST_P(DeviceFailure, EndsTheFillingWithItsResultAndOneMessage) {
    StandardError standardError;
    EXPECT_EQ(camera.cacheCgi(kUser), failure().result);
    EXPECT_EQ(standardError.text(), expectedMessage());
    EXPECT_TRUE(tracesAre(expectedTraces()));
    EXPECT_EQ(camera.asked(), linesUpTo(GetParam().step)) << "nothing is asked after it";
}

TEST_P(DeviceFailure, LeavesWhatWasLearnedBefore) {
    StandardError quiet;
    EXPECT_EQ(camera.cacheCgi(kUser), failure().result);
    camera.asked();
    Answer answer;
    if (GetParam().step > 0) {
        EXPECT_EQ(camera.getCacheLogin(kUser, 0, nullptr, answer.out()), 1);
        EXPECT_EQ(pairsOf(answer.text())["Product-ID"], "C100");
    }
    if (GetParam().step > 1) {
        EXPECT_EQ(camera.getCacheCapability(kUser, 0, nullptr, answer.out()), 1);
        EXPECT_EQ(pairsOf(answer.text())["Device"], "IPCAM");
        EXPECT_EQ(camera.get_model_name(), "C100");
    }
    if (GetParam().step > 3) {
        EXPECT_EQ(camera.getCacheConfigVideo(kUser, 0, nullptr, nullptr, answer.out()), 1);
        EXPECT_EQ(answer.text(), "0\nOK\nVideo.I0.Brightness=1\n");
    }
    EXPECT_EQ(camera.asked(), Lines{}) << "none of it is asked for again";
}

TEST_P(DeviceFailure, IsOverWhenTheDeviceRecovers) {
    StandardError quiet;
    EXPECT_EQ(camera.cacheCgi(kUser), failure().result);
    camera.recovers(step().line);
    camera.asked();
    EXPECT_EQ(camera.cacheCgi(kUser), 1);
    Lines again = linesUpTo(std::size(kSteps) - 1);
    again.erase(again.begin(), again.begin() + static_cast<std::ptrdiff_t>(GetParam().step));
    if (!step().isTriedAgain)
        again.erase(again.begin());
    EXPECT_EQ(camera.asked(), again);
    EXPECT_EQ(camera.cacheCgi(kUser), 1);
    EXPECT_EQ(camera.asked(), Lines{});
}

TEST_P(DeviceFailure, LeavesNothingOfAFailedAnswerInTheCache) {
    StandardError quiet;
    EXPECT_EQ(camera.cacheCgi(kUser), failure().result);
    if (step().isTriedAgain) {
        EXPECT_EQ(camera.cacheCgi(kUser), failure().result) << "it still fails";
        return;
    }
    Answer answer;
    std::string line = std::string("Config.cgi?action=get&category=") + step().name + ".*";
    EXPECT_EQ(camera.handleConfigGet(kUser, line.data(), answer.out()), -8);
    EXPECT_TRUE(answer.isNull());
}

// ---- Requests that only some devices get

TEST_F(CameraTest, AVideoServerThatFailsAtItsSecondRequestIsAskedBothAgain) {
    camera.has(kCapabilityLine, "Device=VIDEO SERVER\nID=V1\n");
    camera.fails(kSecondCapabilityLine, -4);
    EXPECT_EQ(camera.cacheCgi(kUser), -4);
    EXPECT_EQ(camera.get_model_name(), "");
    camera.recovers(kSecondCapabilityLine);
    camera.asked();
    EXPECT_EQ(camera.cacheCgi(kUser), 1);
    const Lines again = camera.asked();
    EXPECT_EQ(Lines(again.begin(), again.begin() + 2), (Lines{kCapabilityLine, kSecondCapabilityLine}));
    EXPECT_EQ(camera.get_model_name(), "V1");
}

TEST_F(CameraTest, AMachineThatFailsIsAskedAgain) {
    camera.has(kLoginLine, "Product-ID-Minor=NOCAP\n");
    camera.answers(kMachineLine, "<html>");
    EXPECT_EQ(camera.cacheCgi(kUser), -2);
    EXPECT_TRUE(tracesAre({"??#* getCacheCapability: uid=7:0, err-2. \n"}));
    camera.recovers(kMachineLine);
    EXPECT_EQ(camera.cacheCgi(kUser), 1);
    EXPECT_EQ(camera.get_model_name(), "M100");
}

TEST_F(CameraTest, ADeviceWithoutMediaIsFilledAllTheSame) {
    StandardError standardError;
    camera.fails(kMediaLine, -14);
    EXPECT_EQ(camera.cacheCgi(kUser), 1);
    EXPECT_EQ(standardError.text(), "Error : getCacheConfigMedia-544 call requestCgi() error -14, uid 7\n");
    EXPECT_EQ(camera.getProfileCount(), 0);
    EXPECT_EQ(camera.getMediaProfile(), 0);
}

TEST_F(CameraTest, ADeviceThatLacksAnyOtherFunctionFails) {
    for (const Step& step : kSteps) {
        if (step.failedTrace == nullptr)
            continue;
        Camera one;
        one.fails(step.line, -14);
        EXPECT_EQ(one.cacheCgi(kUser), -14) << step.name;
    }
}

// ---- What the host sees

TEST_F(CameraTest, TheHostIsToldOfRefusedCredentialsOnceAndOfAnEmptyCategoryAfterwards) {
    camera.fails(kVideoLine, -1);
    const std::string line = "Config.cgi?action=get&category=Video.*";
    EXPECT_EQ(camera.ask(line), (Reply{-1, "-35\nERROR: Authentication error.\n"}));
    camera.recovers(kVideoLine);
    EXPECT_EQ(camera.ask(line), (Reply{-8, "-11\nERROR: Unknown parameter.\n"}));
}

TEST_F(CameraTest, TheHostGetsTheLoginAsSoonAsTheDeviceGivesIt) {
    camera.fails(kLoginLine, -1);
    EXPECT_EQ(camera.ask("Login.cgi"), (Reply{-1, "-35\nERROR: Authentication error.\n"}));
    camera.answers(kLoginLine, "junk");
    EXPECT_EQ(camera.ask("Login.cgi"), (Reply{-2, "-11\nERROR: Unknown parameter.\n"}));
    camera.recovers(kLoginLine);
    EXPECT_EQ(camera.ask("Login.cgi"), (Reply{1, "0\nOK\nProduct-ID=C100\nProduct-Name=Camera\n"}));
}

TEST_F(CameraTest, PartsBeforeAFailureDoNotReachTheHost) {
    camera.fails(kCameraLine, -6);
    EXPECT_EQ(camera.ask("Config.cgi?action=get&category=Video.*,Camera.*"),
              (Reply{-6, "-11\nERROR: Unknown parameter.\n"}));
}

} // namespace
} // namespace koine::test
