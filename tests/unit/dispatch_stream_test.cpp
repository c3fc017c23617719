// The stream that a line starts first, and the marks that every line leaves for the host's crash handler.

#include "dispatch_bench.h"
#include "request/checkpoint.h"

#include <cstring>

namespace koine::test {
namespace {

class PendingStream : public DispatchBench {};

TEST_F(PendingStream, StartsTheStreamThatASetLineAsksFor) {
    for (const std::string marker : {"StreamSetup.Transport.Protocol", "StreamSetup.Setting.Channel"}) {
        const std::string line = "Stream.cgi?action=set&" + marker + "=1";
        platform().forget();
        EXPECT_EQ(request.ask(line).result, 1);
        EXPECT_EQ(
            stepsTaken(),
            (Lines{"ParseStreamInit(" + line + ")", "HandleInit(7)", "checkCgiParameter(7, " + line + ")",
                   "recoveryUrl(7, " + line + ", answer)", "handleParameter(7, " + line + ", answer)",
                   "requestCgi(7, " + line + ", answer, 0, 0)"}));
        EXPECT_EQ(setup->getInitStream(), "");
    }
}

TEST_F(PendingStream, StartsNoStreamForOtherLines) {
    for (const std::string line : {"Stream.cgi?action=set&StreamSetup.Stream=1",
                                   "Stream.cgi?action=gets&StreamSetup.Setting.Channel=1",
                                   "stream.cgi?action=set&StreamSetup.Setting.Channel=1",
                                   "Stream.cgi?action=set&streamsetup.transport.protocol=x", "Other.cgi"}) {
        platform().forget();
        request.ask(line);
        EXPECT_EQ(platform().countOf("ParseStreamInit("), 0) << line;
        EXPECT_EQ(platform().countOf("HandleInit("), 0) << line;
    }
}

TEST_F(PendingStream, StartsTheStreamThatTheHostPrepared) {
    request.init(kUser, "prepared");
    request.ask("Other.cgi", 8); // somebody else
    EXPECT_EQ(platform().countOf("HandleInit("), 0);
    request.ask("Other.cgi");
    EXPECT_EQ(platform().countOf("ParseStreamInit(prepared)"), 1);
    EXPECT_EQ(platform().countOf("HandleInit(7)"), 1);
    request.ask("Other.cgi");
    EXPECT_EQ(platform().countOf("HandleInit("), 1) << "it was acted on twice";
}

TEST_F(PendingStream, ASetLineReplacesWhatTheHostPrepared) {
    request.init(kUser, "prepared");
    request.ask("Stream.cgi?action=set&StreamSetup.Setting.Channel=2");
    EXPECT_EQ(platform().countOf("ParseStreamInit(prepared)"), 0);
    EXPECT_EQ(platform().countOf("HandleInit("), 1);
}

TEST_F(PendingStream, FailsWithTheSetupThatCannotBeParsedAndTriesAgain) {
    request.init(kUser, "prepared");
    setup->parsed = -4;
    EXPECT_EQ(request.ask("Other.cgi"), (Reply{-4, kUnknownParameter}));
    EXPECT_TRUE(tracesAre(
        {entered("Other.cgi"), "??#3690 BaseRequest.requestHttpStr: uid=7:3, parseStreamInit error-4. \n"}));
    EXPECT_EQ(stepsTaken(), Lines{"ParseStreamInit(prepared)"});
    EXPECT_EQ(setup->getInitStream(), "prepared");
    setup->parsed = 1;
    EXPECT_EQ(request.ask("Other.cgi").result, 1);
    EXPECT_EQ(setup->getInitStream(), "");
}

TEST_F(PendingStream, FailsWithTheStreamThatCannotBeStartedAndTriesAgain) {
    request.init(kUser, "prepared");
    request.steps.HandleInit = [](unsigned int) { return 0; };
    EXPECT_EQ(request.ask("Other.cgi"), (Reply{0, kUnknownParameter}));
    EXPECT_TRUE(tracesAre(
        {entered("Other.cgi"), "??#3698 BaseRequest.requestHttpStr: uid=7:3, HandleInit error0. \n"}));
    EXPECT_EQ(stepsTaken(), (Lines{"ParseStreamInit(prepared)", "HandleInit(7)"}));
    EXPECT_EQ(setup->getInitStream(), "prepared");
    request.steps.HandleInit = [](unsigned int) { return -1; };
    EXPECT_EQ(request.ask("Other.cgi"), (Reply{-1, kRefusedCredentials}));
}

TEST_F(PendingStream, ALineSentWhileTheStreamStartsFindsTheSetupStillStored) {
    int starts = 0;
    request.steps.HandleInit = [&](unsigned int uid) {
        EXPECT_EQ(setup->getInitStream(), "prepared");
        return ++starts == 1 ? request.ask("Config.cgi?action=set&A=1", uid).result : 1;
    };
    request.init(kUser, "prepared");
    EXPECT_EQ(request.ask("Other.cgi").result, 1);
    EXPECT_EQ(starts, 2);
    EXPECT_EQ(platform().eventOf("requestCgi(7, Config.cgi?action=set&A=1").lockDepth, 2);
    EXPECT_EQ(setup->getInitStream(), "");
}

// ---- Marks for the host's crash handler

class Checkpoints : public DispatchBench {};

TEST_F(Checkpoints, MarksItsWay) {
    struct Watched : TestRequest {
        const char* getVendor() override {
            platform().note("getVendor");
            return TestRequest::getVendor();
        }
    };
    Watched watched;
    watched.connect();
    watched.steps = request.steps;
    watched.get_streamid_client(kUser) = setup;
    platform().forget();
    watched.ask("Stream.cgi?action=set&StreamSetup.Setting.Channel=1");
    EXPECT_EQ(platform().eventOf("ParseStreamInit(").checkpoint, 3683);
    EXPECT_EQ(platform().eventOf("HandleInit(").checkpoint, 3683);
    EXPECT_EQ(platform().eventOf("getVendor").checkpoint, 3708);
    EXPECT_EQ(platform().eventOf("checkCgiParameter(").checkpoint, 3796);
    EXPECT_EQ(platform().eventOf("recoveryUrl(").checkpoint, 3796);
    EXPECT_EQ(platform().eventOf("requestCgi(").checkpoint, 3854);
    EXPECT_EQ(platform().eventOf("unlock").checkpoint, 3920);
    platform().forget();
    watched.ask("Config.cgi?action=set&A=1");
    EXPECT_EQ(platform().eventOf("handleParameter(").checkpoint, 3873);
    EXPECT_EQ(platform().eventOf("handleConfigSet(").checkpoint, 3873);
    for (const Event& event : platform().events())
        EXPECT_EQ(event.function, event.checkpoint == 0 ? "" : "requestHttpStr") << event.text;
}

TEST_F(Checkpoints, CutANameThatIsTooLongAndEndIt) {
    markCheckpoint(std::string(100, 'n'), 5);
    EXPECT_EQ(std::string(g_login_debug_function_name), std::string(63, 'n'));
    EXPECT_EQ(g_login_debug_line, 5);
    markCheckpoint(std::string(63, 'm'), 6);
    EXPECT_EQ(std::string(g_login_debug_function_name), std::string(63, 'm'));
    markCheckpoint(std::string_view("abcdef").substr(0, 3), 7);
    EXPECT_STREQ(g_login_debug_function_name, "abc");
    EXPECT_EQ(g_login_debug_line, 7);
}

TEST_F(Checkpoints, MarksTheWayOutOfEveryCall) {
    const auto leaves = [this](const std::string& line) {
        platform().forget();
        g_login_debug_line = 0;
        std::memset(g_login_debug_function_name, 'x', sizeof g_login_debug_function_name - 1);
        request.ask(line);
        EXPECT_EQ(g_login_debug_line, 3920) << line;
        EXPECT_STREQ(g_login_debug_function_name, "requestHttpStr") << line;
        EXPECT_EQ(platform().eventOf("unlock").checkpoint, 3920) << line;
    };
    leaves("Other.cgi");
    request.steps.recoveryUrl = [](auto...) { return -2; };
    leaves("Other.cgi");
    setup->parsed = -2;
    leaves("Stream.cgi?action=set&StreamSetup.Setting.Channel=1");
    request.set_server_address("");
    leaves("no url");
}

} // namespace
} // namespace koine::test
