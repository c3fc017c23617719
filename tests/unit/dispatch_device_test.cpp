// Lines that go to the device: what is done before and after.

#include "dispatch_bench.h"

namespace koine::test {
namespace {

class DeviceLines : public DispatchBench {
protected:
    /// Every rewriting gives this line.
    void rewriteTo(const std::string& line) {
        request.steps.recoveryUrl = [line](unsigned int, char*, char** rewritten) {
            EXPECT_EQ(*rewritten, nullptr);
            *rewritten = mallocedText(line);
            return 1;
        };
    }

    /// The one trace line after the entry of a failing call.
    static std::string failure(int line, const std::string& what) {
        return "??#" + std::to_string(line) + " BaseRequest.requestHttpStr: uid=7:3, pchInputUrl=" + what +
               ". \n";
    }

    std::string reached(const std::string& line) const {
        return "#3827 BaseRequest::HandleInit: 0, uid=7:3, this=" + shortAddress(&request) +
               ", pchUrl=" + line + ". \n";
    }
};

TEST_F(DeviceLines, AreSentAsTheyWereRewritten) {
    rewriteTo("Better.cgi");
    EXPECT_EQ(request.ask("Other.cgi"), (Reply{1, kDeviceText}));
    EXPECT_EQ(stepsTaken(),
              (Lines{"recoveryUrl(7, Other.cgi, answer)", "requestCgi(7, Better.cgi, answer, 0, 0)"}));
}

TEST_F(DeviceLines, FailWhenTheyCannotBeRewritten) {
    request.steps.recoveryUrl = [](auto...) { return -8; };
    EXPECT_EQ(request.ask("Other.cgi"), (Reply{-8, kUnknownParameter}));
    EXPECT_EQ(stepsTaken(), Lines{"recoveryUrl(7, Other.cgi, answer)"});
    EXPECT_TRUE(tracesAre({entered("Other.cgi"), failure(3842, "Other.cgi, recoveryUrl err-8")}));
}

TEST_F(DeviceLines, ForgetWhatAFailedRewritingLeft) {
    request.steps.recoveryUrl = [](unsigned int, char*, char** rewritten) {
        *rewritten = mallocedText("half");
        return -8;
    };
    EXPECT_EQ(request.ask("Other.cgi").result, -8);
}

TEST_F(DeviceLines, FailWithTheDevicesResult) {
    rewriteTo("Better.cgi");
    request.steps.requestCgi = [](auto...) { return -14; };
    EXPECT_EQ(request.ask("Other.cgi"), (Reply{-14, kUnknownParameter}));
    EXPECT_TRUE(tracesAre({entered("Other.cgi"), failure(3868, "Other.cgi, error-14")}));
}

TEST_F(DeviceLines, AreCarriedOutWithoutAnAnswerPointer) {
    rewriteTo("Better.cgi");
    EXPECT_EQ(request.tell("Other.cgi"), 1);
    EXPECT_EQ(stepsTaken(),
              (Lines{"recoveryUrl(7, Other.cgi, answer)", "requestCgi(7, Better.cgi, answer, 0, 0)"}));
}

TEST_F(DeviceLines, TestTheLineItselfForASetRequest) {
    // A read that is rewritten into a set line was not checked as one.
    rewriteTo("Stream.cgi?action=set");
    EXPECT_EQ(request.ask("Other.cgi").result, 1);
    EXPECT_EQ(stepsTaken(), (Lines{"recoveryUrl(7, Other.cgi, answer)",
                                   "requestCgi(7, Stream.cgi?action=set, answer, 0, 0)"}));
}

// ---- Stream settings

const std::string kStreamSet = "Stream.cgi?action=set&A=1";
const std::string kConfigSet = "Config.cgi?action=set&A=1";

TEST_F(DeviceLines, StreamSettingsAreCheckedRewrittenHandledAndSent) {
    rewriteTo("Stream.cgi?action=set&B=2");
    EXPECT_EQ(request.ask(kStreamSet), (Reply{1, kDeviceText}));
    EXPECT_EQ(stepsTaken(),
              (Lines{"checkCgiParameter(7, " + kStreamSet + ")", "recoveryUrl(7, " + kStreamSet + ", answer)",
                     "handleParameter(7, Stream.cgi?action=set&B=2, answer)",
                     "requestCgi(7, Stream.cgi?action=set&B=2, answer, 0, 0)"}));
    EXPECT_TRUE(tracesAre({entered(kStreamSet), reached(kStreamSet)}));
}

TEST_F(DeviceLines, StreamSettingsThatWereAnsweredAreNotSent) {
    request.steps.handleParameter = says(1, "0\nOK\nhandled");
    EXPECT_EQ(request.ask(kStreamSet), (Reply{1, "0\nOK\nhandled"}));
    EXPECT_EQ(platform().countOf("requestCgi("), 0);
    EXPECT_EQ(request.tell(kStreamSet), 1);
    EXPECT_EQ(platform().countOf("requestCgi("), 0);
}

TEST_F(DeviceLines, StreamSettingsThatAreRefusedGoNoFurther) {
    request.steps.checkCgiParameter = [](auto...) { return -2; };
    EXPECT_EQ(request.ask(kStreamSet), (Reply{-2, kUnknownParameter}));
    EXPECT_EQ(stepsTaken(), Lines{"checkCgiParameter(7, " + kStreamSet + ")"});
    EXPECT_TRUE(tracesAre({entered(kStreamSet), failure(3810, kStreamSet + ", checkCgiParameter err-2")}));
}

TEST_F(DeviceLines, StreamSettingsFailWhenTheyCannotBeRewritten) {
    request.steps.recoveryUrl = [](auto...) { return -8; };
    EXPECT_EQ(request.ask(kStreamSet), (Reply{-8, kUnknownParameter}));
    EXPECT_EQ(platform().countOf("handleParameter("), 0);
    EXPECT_TRUE(tracesAre({entered(kStreamSet), failure(3818, kStreamSet + ", recoveryUrl err-8")}));
}

TEST_F(DeviceLines, StreamSettingsFailWhenTheyCannotBeHandled) {
    request.steps.handleParameter = says(-1, "half");
    EXPECT_EQ(request.ask(kStreamSet), (Reply{-1, kRefusedCredentials}));
    EXPECT_EQ(platform().countOf("requestCgi("), 0);
    EXPECT_TRUE(tracesAre(
        {entered(kStreamSet), reached(kStreamSet), failure(3831, kStreamSet + ", handleParameter err-1")}));
}

TEST_F(DeviceLines, WhetherStreamSettingsAreHandledIsSeenFromTheRewrittenLine) {
    rewriteTo("Other.cgi");
    EXPECT_EQ(request.ask(kStreamSet).result, 1);
    EXPECT_EQ(platform().countOf("handleParameter("), 0);
    platform().forget();
    rewriteTo(kStreamSet);
    EXPECT_EQ(request.ask(kConfigSet).result, 1);
    EXPECT_EQ(stepsTaken(),
              (Lines{"checkCgiParameter(7, " + kConfigSet + ")", "recoveryUrl(7, " + kConfigSet + ", answer)",
                     "handleParameter(7, " + kStreamSet + ", answer)",
                     "requestCgi(7, " + kStreamSet + ", answer, 0, 0)"}));
    EXPECT_TRUE(tracesAre({entered(kConfigSet), reached(kConfigSet)}));
}

// ---- Configuration settings

TEST_F(DeviceLines, ConfigurationSettingsAreSentThenHandledThenKept) {
    rewriteTo("Config.cgi?action=set&B=2");
    EXPECT_EQ(request.ask(kConfigSet), (Reply{1, kDeviceText}));
    EXPECT_EQ(stepsTaken(),
              (Lines{"checkCgiParameter(7, " + kConfigSet + ")", "recoveryUrl(7, " + kConfigSet + ", answer)",
                     "requestCgi(7, Config.cgi?action=set&B=2, answer, 0, 0)",
                     "handleParameter(7, Config.cgi?action=set&B=2, answer)",
                     "handleConfigSet(7, Config.cgi?action=set&B=2)"}));
    EXPECT_TRUE(tracesAre({entered(kConfigSet)}));
}

TEST_F(DeviceLines, ConfigurationSettingsGetTheAnswerOfTheirHandling) {
    request.steps.handleParameter = [](unsigned int, char*, char** answer) {
        EXPECT_STREQ(*answer, kDeviceText.c_str());
        std::free(*answer);
        *answer = mallocedText("0\nOK\nhandled");
        return 1;
    };
    EXPECT_EQ(request.ask(kConfigSet), (Reply{1, "0\nOK\nhandled"}));
}

TEST_F(DeviceLines, ConfigurationSettingsThatTheDeviceRefusesAreNotKept) {
    request.steps.requestCgi = [](auto...) { return -6; };
    EXPECT_EQ(request.ask(kConfigSet), (Reply{-6, kUnknownParameter}));
    EXPECT_EQ(platform().countOf("handleParameter("), 0);
    EXPECT_EQ(platform().countOf("handleConfigSet("), 0);
    EXPECT_TRUE(tracesAre({entered(kConfigSet), failure(3868, kConfigSet + ", error-6")}));
}

TEST_F(DeviceLines, ConfigurationSettingsAreRefusedBeforeTheyAreSent) {
    request.steps.checkCgiParameter = [](auto...) { return -2; };
    EXPECT_EQ(request.ask(kConfigSet), (Reply{-2, kUnknownParameter}));
    EXPECT_EQ(platform().countOf("requestCgi("), 0);
    EXPECT_TRUE(tracesAre({entered(kConfigSet), failure(3810, kConfigSet + ", checkCgiParameter err-2")}));
}

TEST_F(DeviceLines, ConfigurationSettingsFailWhenTheyCannotBeHandled) {
    rewriteTo("Config.cgi?action=set&B=2");
    request.steps.handleParameter = [](auto...) { return 0; };
    EXPECT_EQ(request.ask(kConfigSet), (Reply{0, kUnknownParameter}));
    EXPECT_EQ(platform().countOf("handleConfigSet("), 0);
    EXPECT_TRUE(tracesAre({entered(kConfigSet), failure(3883, kConfigSet + ", handleParameter err0")}));
}

TEST_F(DeviceLines, ConfigurationSettingsFailWhenTheyCannotBeKept) {
    rewriteTo("Config.cgi?action=set&B=2");
    request.steps.handleConfigSet = [](auto...) { return 0; };
    EXPECT_EQ(request.ask(kConfigSet), (Reply{0, kUnknownParameter}));
    EXPECT_TRUE(tracesAre({entered(kConfigSet), failure(3892, kConfigSet + ", err0")}));
}

TEST_F(DeviceLines, WhetherSettingsAreKeptIsSeenFromTheRewrittenLine) {
    rewriteTo("Other.cgi");
    EXPECT_EQ(request.ask(kConfigSet).result, 1);
    EXPECT_EQ(platform().countOf("handleConfigSet("), 0);
    rewriteTo(kConfigSet);
    EXPECT_EQ(request.ask("Other.cgi").result, 1);
    EXPECT_EQ(platform().countOf("handleConfigSet(7, " + kConfigSet), 1);
}

TEST_F(DeviceLines, ALineWithBothMarkersIsHandledTwice) {
    const std::string both = "Stream.cgi?action=set&Config.cgi?action=set";
    EXPECT_EQ(request.ask(both).result, 1);
    EXPECT_EQ(stepsTaken(),
              (Lines{"checkCgiParameter(7, " + both + ")", "recoveryUrl(7, " + both + ", answer)",
                     "handleParameter(7, " + both + ", answer)", "requestCgi(7, " + both + ", answer, 0, 0)",
                     "handleParameter(7, " + both + ", answer)", "handleConfigSet(7, " + both + ")"}));
}

TEST_F(DeviceLines, AnAnswerThatIsAlreadyThereKeepsTheDeviceUntouchedButTheCachesFollow) {
    request.steps.handleParameter = [](unsigned int, char*, char** answer) {
        if (*answer == nullptr)
            *answer = mallocedText("0\nOK\nhandled");
        return 1;
    };
    EXPECT_EQ(request.ask("Stream.cgi?action=set&Config.cgi?action=set"), (Reply{1, "0\nOK\nhandled"}));
    EXPECT_EQ(platform().countOf("requestCgi("), 0);
    EXPECT_EQ(platform().countOf("handleConfigSet("), 1);
}

TEST_F(DeviceLines, LocallyAnsweredSettingsLinesKeepTheirAnswer) {
    request.steps.getCacheLogin = [](unsigned int, int, const char*, char** answer) {
        *answer = mallocedText("0\nOK\nlogin");
        return 1;
    };
    EXPECT_EQ(request.ask("Config.cgi?action=set&Login.cgi"), (Reply{1, "0\nOK\nlogin"}));
    EXPECT_EQ(platform().countOf("requestCgi("), 0);
    EXPECT_EQ(platform().countOf("handleConfigSet("), 1);
}

TEST_F(DeviceLines, PrintTheChannelThatTheObjectTells) {
    struct Elsewhere : TestRequest {
        using TestRequest::strm_setting_channel;
        int strm_setting_channel() override { return 12; }
    };
    Elsewhere elsewhere;
    elsewhere.connect();
    elsewhere.steps = request.steps;
    elsewhere.steps.requestCgi = [](auto...) { return -3; };
    elsewhere.ask("Other.cgi");
    EXPECT_EQ(traces().back(),
              "??#3868 BaseRequest.requestHttpStr: uid=7:12, pchInputUrl=Other.cgi, error-3. \n");
}

} // namespace
} // namespace koine::test
