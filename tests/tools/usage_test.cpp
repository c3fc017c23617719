// What the command says to somebody who does not know it, or mistypes.

#include "tests/tools/run_tool.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

namespace koine::test {
namespace {

constexpr const char* kCommands[] = {"request", "info", "profiles", "stream",   "get", "set",
                                     "dump",    "diff", "survey",   "simulate", "demo"};

TEST(Usage, HelpNamesEveryCommandAndTheExitCodes) {
    const Outcome help = runTool({"--help"});
    EXPECT_EQ(help.exitCode, 0);
    for (const char* command : kCommands)
        EXPECT_TRUE(contains(help.out, std::string("\n  ") + command + " ")) << command;
    EXPECT_TRUE(contains(help.out, "Exit codes: 0 answered"));
}

TEST(Usage, EveryCommandExplainsItself) {
    for (const std::string command : kCommands) {
        const Outcome help = runTool({command, "--help"});
        EXPECT_EQ(help.exitCode, 0);
        EXPECT_TRUE(contains(help.out, "Usage: koine " + command)) << help.out;
        EXPECT_TRUE(command == "demo" || contains(help.out, "Example")) << command;
    }
}

TEST(Usage, TheFaultsOfTheExamplesExist) {
    const std::string known = "\n" + runTool({"simulate", "--list-faults"}).out;
    std::istringstream help(runTool({"simulate", "--help"}).out);
    int faults = 0;
    for (std::string before, word; help >> word; before = word) {
        if (before != "--fault" || word == "FAULT")
            continue;
        EXPECT_TRUE(contains(known, "\n" + word.substr(0, word.find('=')))) << word;
        ++faults;
    }
    EXPECT_GT(faults, 0);
}

TEST(Usage, NoHelpIsWiderThanATerminal) {
    std::vector<std::vector<std::string>> helps = {{"--help"}};
    for (const char* command : kCommands)
        helps.push_back({command, "--help"});
    for (const std::vector<std::string>& arguments : helps) {
        std::istringstream help(runTool(arguments).out);
        for (std::string line; std::getline(help, line);)
            EXPECT_LE(line.size(), 80U) << line;
    }
}

TEST(Usage, TheVersionIsTold) {
    const Outcome version = runTool({"--version"});
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_EQ(version.out.rfind("koine ", 0), 0U) << version.out;
}

struct Mistake {
    std::vector<std::string> arguments;
    const char* said;
};

TEST(Usage, AMistakeGetsOneLineAndTheExitCode2) {
    const TemporaryFile noPairs("nothing\n");
    const Mistake mistakes[] = {
        {{}, "no command given"},
        {{"reqest"}, "no such command: reqest"},
        {{""}, "no such command"},
        {{"request"}, "URL"},
        {{"request", "http://a"}, "LINE"},
        {{"info", "a.b"}, "must begin with http:// or https://"},
        {{"info", "ftp://a"}, "must begin with http:// or https://"},
        {{"info", "http://a/Login.cgi"}, "must end after the host and port"},
        {{"info", "http://a:0"}, "cannot be used"},
        {{"info", "http://a:70000"}, "cannot be used"},
        {{"info", "http://"}, "cannot be used"},
        {{"info", "http://a", "--nonsense"}, "--nonsense"},
        {{"info", "http://a", "http://b"}, "not expected"},
        {{"info", "http://a", "--timeout", "0"}, "--timeout"},
        {{"info", "http://a", "--timeout", "soon"}, "--timeout"},
        {{"info", "http://a", "--password-file", "/nowhere"}, "cannot be read"},
        {{"info", "http://a", "--password-file", "/dev/null"}, "empty"},
        {{"info", "https://a", "--ca-file", "/nowhere"}, "--ca-file"},
        {{"info", "http://a", "--connections", "0"}, "--connections"},
        {{"stream", "http://a", "--mode", "auto"}, "--mode"},
        {{"stream", "http://a", "--size", "big"}, "like 1280x720"},
        {{"stream", "http://a", "--size", "0x720"}, "like 1280x720"},
        {{"stream", "http://a", "--size", "1280x720&x=1"}, "like 1280x720"},
        {{"stream", "http://a", "--token", "a&b"}, "--token"},
        {{"stream", "http://a", "--token", "a", "--mode", "AUTO"}, " excludes --"},
        {{"stream", "http://a", "--encoding", "VP9"}, "--encoding"},
        {{"stream", "http://a", "--fps", "0"}, "--fps"},
        {{"stream", "http://a", "--quality", "11"}, "--quality"},
        {{"stream", "http://a", "--transport", "tcp"}, "--transport"},
        {{"get", "http://a", "Vidio"}, "no category or key: Vidio"},
        {{"get", "http://a", "Video.A&x=1"}, "no category or key"},
        {{"set", "http://a", "Video.A"}, "no setting: Video.A"},
        {{"set", "http://a", "=1"}, "no setting"},
        {{"set", "http://a", "Video.A&B=1"}, "no setting"},
        {{"diff", "http://a", "/nowhere"}, "/nowhere: cannot be read"},
        {{"diff", "http://a", noPairs.path()}, "line 1 is no key=value"},
        {{"diff", "http://a", "/dev/null"},
         "holds no key=value; give a file that koine dump wrote without --json"},
        {{"survey"}, "FILE"},
        {{"survey", "/nowhere"}, "/nowhere: cannot be read"},
        {{"survey", "/dev/null"}, "holds no device"},
        {{"survey", "-j", "0", "-"}, "--jobs"},
        {{"survey", "--password-file", "-", "-"}, "cannot be both"},
        {{"simulate", "--model", "nothing"}, "dome"},
        {{"simulate", "--auth", "kerberos"}, "--auth"},
        {{"simulate", "--auth", "digest"}, "needs a password"},
        {{"simulate", "--fault", "hiccup"}, "truncated-body"},
        {{"simulate", "--address", "nowhere"}, "nowhere"},
        {{"simulate", "--tls-key", "/dev/null"}, "needs both"},
    };
    for (const Mistake& mistake : mistakes) {
        const Outcome outcome = runTool(mistake.arguments);
        const std::string shown = ::testing::PrintToString(mistake.arguments);
        EXPECT_EQ(outcome.exitCode, 2) << shown;
        EXPECT_EQ(outcome.out, "") << shown;
        EXPECT_EQ(outcome.err.rfind("koine: ", 0), 0U) << shown << outcome.err;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1) << shown << outcome.err;
        EXPECT_TRUE(contains(outcome.err, mistake.said)) << shown << outcome.err;
    }
}

} // namespace
} // namespace koine::test
