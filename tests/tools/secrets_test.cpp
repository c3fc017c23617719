// The password is used and nowhere to be seen.

#include "tests/tools/run_tool.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <sstream>
#include <thread>

namespace koine::test {
namespace {

/// What the list of processes shows of a command once its device was asked: by then the arguments have been
/// read.
std::string commandLineOf(const RunningTool& tool, GuardedDome& dome) {
    for (int i = 0; i < 4000 && dome.device().counters().requests == 0; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    std::ifstream file("/proc/" + std::to_string(tool.id()) + "/cmdline", std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

TEST(Secrets, TheProcessListDoesNotShowThePassword) {
    GuardedDome dome;
    dome.device().setFault(sim::parseFault("hang"));
    RunningTool tool({"request", "--timeout", "5", dome.url(), "Login.cgi"});
    const std::string shown = commandLineOf(tool, dome);
    EXPECT_TRUE(contains(shown, "admin@127.0.0.1")) << shown;
    EXPECT_FALSE(contains(shown, kPassword)) << shown;
    dome.device().stop();
    const Outcome outcome = tool.finish();
    EXPECT_EQ(outcome.exitCode, 4);
    EXPECT_FALSE(contains(outcome.out + outcome.err, kPassword));
}

TEST(Secrets, TheProcessListDoesNotShowTheSecretsOfALine) {
    GuardedDome dome;
    dome.device().setFault(sim::parseFault("hang"));
    const std::string token = "can4ry-t0ken";
    RunningTool tool(
        {"request", "--timeout", "5", dome.url(), "Login.cgi", "PTZ.cgi?token=" + token + "&stop=1"});
    const std::string shown = commandLineOf(tool, dome);
    EXPECT_TRUE(contains(shown, "PTZ.cgi?token=*&stop=1")) << shown;
    EXPECT_FALSE(contains(shown, token)) << shown;
    dome.device().stop();
    EXPECT_FALSE(contains(tool.finish().err, token));
}

TEST(Secrets, AFileMayHoldThePassword) {
    GuardedDome dome;
    const TemporaryFile file(std::string(kPassword) + "\r\nanother line\n");
    EXPECT_EQ(runTool({"request", "-u", kUser, "--password-file", file.path(), dome.plainUrl(), "Login.cgi"})
                  .exitCode,
              0);
}

TEST(Secrets, StandardInputMayHoldThePassword) {
    GuardedDome dome;
    EXPECT_EQ(runTool({"request", "-u", kUser, "--password-file", "-", dome.plainUrl(), "Login.cgi"},
                      std::string(kPassword) + "\n")
                  .exitCode,
              0);
}

TEST(Secrets, ASpecialCharacterInTheUrlIsWrittenAsAnEscape) {
    GuardedDome dome;
    dome.device().setCredentials(kUser, "a@b:c/d%e");
    EXPECT_EQ(runTool({"request", dome.urlFor("a%40b%3Ac%2Fd%25e"), "Login.cgi"}).exitCode, 0);
    EXPECT_EQ(runTool({"request", dome.urlFor("a@b:c%2Fd%25e"), "Login.cgi"}).exitCode, 0);
}

TEST(Secrets, NoErrorShowsThePassword) {
    const std::string secret = kPassword;
    const std::vector<std::vector<std::string>> mistakes = {
        {"request", "htp://admin:" + secret + "@127.0.0.1", "Login.cgi"},
        {"request", "admin:" + secret + "@127.0.0.1", "Login.cgi"},
        {"request", "http://admin:" + secret + "@127.0.0.1:port", "Login.cgi"},
        {"request", "http://admin:" + secret + "/x@127.0.0.1", "Login.cgi"},
        {"request", "http://admin:x/" + secret + "@127.0.0.1", "Login.cgi"},
        {"request", "http://admin:" + secret + "%@127.0.0.1", "Login.cgi"},
        {"request", "http://admin:" + secret + "@127.0.0.1/path", "Login.cgi"},
        {"request", "http://a", "http://admin:" + secret + "@127.0.0.1", "--no-such-option"},
        {"http://admin:" + secret + "@127.0.0.1"},
        {"info", "http://a", "http://admin:" + secret + "@127.0.0.1"},
    };
    for (const std::vector<std::string>& mistake : mistakes)
        EXPECT_EQ(runTool(mistake).exitCode, 2) << testing::PrintToString(mistake);
}

TEST(Secrets, TracesDoNotShowThePassword) {
    GuardedDome dome(sim::AuthKind::basic);
    EXPECT_EQ(runTool({"stream", "--trace", dome.url()}).exitCode, 0);
    const Outcome line = runTool({"request", "--trace", dome.url(),
                                  "http://admin:" + std::string(kPassword) +
                                      "@127.0.0.1:" + std::to_string(dome.device().port()) + "/Login.cgi"});
    EXPECT_EQ(line.exitCode, 0);
}

TEST(Secrets, NoCommandShowsPasswordCookieOrToken) {
    const std::string token = "can4ry-t0ken";
    for (const bool isIll : {false, true}) {
        GuardedDome dome(sim::AuthKind::basic);
        if (isIll)
            dome.device().setFault(sim::parseFault("truncated-body"));
        const std::string url = dome.url();
        const std::string own = "http://admin:" + std::string(kPassword) + "@" + dome.plainUrl().substr(7);
        const std::vector<std::vector<std::string>> commands = {
            {"info", "--trace", url},
            {"info", "--json", "--trace", url},
            {"get", "--trace", url, "Video.*"},
            {"set", "--trace", url, "Video.I0.Brightness=60"},
            {"stream", "--trace", "--json", url},
            {"dump", "--trace", url},
            {"set", "--trace", url, "Network.Account.Password=" + token},
            {"request", "--trace", url, "PTZ.cgi?access_token=" + token},
            {"request", "--trace", "--json", url, "PTZ.cgi?token=" + token + "&stop=1"},
            {"request", "--trace", url, own + "/PTZ.cgi?session=" + token},
            {"request", url, "Login.cgi", "Config.cgi?action=set&Network.Account.Password=" + token + "&A=1"},
        };
        for (const std::vector<std::string>& command : commands) {
            const Outcome outcome = runTool(command);
            EXPECT_NE(outcome.exitCode, 2) << command[0] << ": " << outcome.err;
            EXPECT_FALSE(contains(outcome.out + outcome.err, token)) << outcome.out << outcome.err;
        }
    }
}

TEST(Secrets, TheUriCarriesCredentialsOnlyWhenAskedTo) {
    GuardedDome dome;
    EXPECT_FALSE(contains(runTool({"stream", "--uri-only", dome.url()}).out, kUser));
    RunningTool tool({"stream", "--uri-only", "--with-credentials", dome.url()});
    const Outcome asked = tool.finish();
    EXPECT_TRUE(contains(asked.out, std::string("rtsp://admin:") + kPassword + "@127.0.0.1:554/"))
        << asked.out;
}

} // namespace
} // namespace koine::test
