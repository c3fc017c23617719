// koine simulate and koine demo.

#include "tests/tools/run_tool.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <sstream>

namespace koine::test {
namespace {

/// "dome at http://127.0.0.1:4711, ..." has the URL in it.
std::string urlIn(const std::string& line) {
    const std::size_t begin = line.find("http://");
    return begin == std::string::npos ? "no URL in: " + line
                                      : line.substr(begin, line.find_first_of(", \n", begin) - begin);
}

TEST(SimulateCommand, ServesUntilItIsToldToStopAndThenCounts) {
    for (const int stop : {SIGTERM, SIGINT}) {
        RunningTool simulator({"simulate", "--model", "minimal"});
        const std::string url = urlIn(simulator.readLine());
        EXPECT_EQ(runTool({"request", url, "Login.cgi"}).exitCode, 0) << url;
        simulator.signal(stop);
        const Outcome outcome = simulator.finish();
        EXPECT_EQ(outcome.exitCode, 0);
        EXPECT_TRUE(contains(outcome.out, "1 connection, 1 request, of which 0 answered with 401"))
            << outcome.out;
        EXPECT_TRUE(contains(outcome.out, "1  Login.cgi")) << outcome.out;
    }
}

TEST(SimulateCommand, WantsTheCredentialsThatItWasGiven) {
    const TemporaryFile password(std::string(kPassword) + "\n");
    RunningTool simulator({"simulate", "--auth", "digest", "--user", "operator", "--password-file",
                           password.path(), "--nonce-lifetime", "1"});
    const std::string url = urlIn(simulator.readLine());
    EXPECT_EQ(runTool({"request", "-u", "operator", "--password-file", password.path(), url, "Login.cgi",
                       "PTZ.cgi?stop=1"})
                  .exitCode,
              0);
    EXPECT_EQ(runTool({"request", url, "Login.cgi"}).exitCode, 3);
    simulator.signal(SIGTERM);
    const Outcome outcome = simulator.finish();
    EXPECT_TRUE(contains(outcome.out, "of which 3 answered with 401")) << outcome.out;
    EXPECT_FALSE(contains(outcome.out + outcome.err, kPassword));
}

TEST(SimulateCommand, MisbehavesOnDemand) {
    RunningTool simulator({"simulate", "--fault", "status=500;path=Login", "--fault", "close"});
    const std::string url = urlIn(simulator.readLine());
    EXPECT_EQ(runTool({"request", url, "Login.cgi"}).exitCode, 1);
    EXPECT_EQ(runTool({"request", url, "PTZ.cgi?stop=1"}).exitCode, 0);
}

TEST(SimulateCommand, ShowsEachRequestWhenAsked) {
    const TemporaryFile password(std::string(kPassword) + "\n");
    RunningTool simulator({"simulate", "-v", "--auth", "basic", "--password-file", password.path(), "--fault",
                           "status=503;path=PTZ", "--fault", "delay=1;path=PTZ"});
    const std::string url = urlIn(simulator.readLine());
    for (const char* line :
         {"Login.cgi", "PTZ.cgi?stop=1", "Config.cgi?action=set&Account.Password=n3w-s3cret"})
        runTool({"request", "-u", "admin", "--password-file", password.path(), url, line});
    simulator.signal(SIGTERM);
    const std::string shown = simulator.finish().err;
    EXPECT_EQ(shown.rfind("GET Login.cgi, 401\n", 0), 0U) << shown;
    EXPECT_TRUE(contains(shown, "\nGET Login.cgi, 200\n")) << shown;
    EXPECT_TRUE(contains(shown, "\nGET PTZ.cgi?stop=1&Profile=0, 503, faults: status delay\n")) << shown;
    EXPECT_TRUE(contains(shown, "Account.Password=*, ")) << shown;
    EXPECT_FALSE(contains(shown, "s3cret")) << shown;
}

TEST(SimulateCommand, SaysNothingOfRequestsUnlessAsked) {
    RunningTool simulator({"simulate"});
    runTool({"request", urlIn(simulator.readLine()), "Login.cgi"});
    simulator.signal(SIGTERM);
    EXPECT_EQ(simulator.finish().err, "");
}

TEST(SimulateCommand, APortThatIsTakenIsToldAtOnce) {
    GuardedDome dome;
    const Outcome outcome = runTool({"simulate", "--port", std::to_string(dome.device().port())});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_TRUE(contains(outcome.err, std::to_string(dome.device().port()))) << outcome.err;
}

TEST(SimulateCommand, ListsItsModels) {
    const Outcome outcome = runTool({"simulate", "--list-models"});
    EXPECT_EQ(outcome.exitCode, 0);
    for (const std::string& model : sim::modelNames())
        EXPECT_TRUE(contains(outcome.out, "\n" + model + " ")) << outcome.out;
}

TEST(SimulateCommand, ListsItsFaults) {
    const Outcome outcome = runTool({"simulate", "--list-faults"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_TRUE(contains(outcome.out, "truncated-body")) << outcome.out;
}

TEST(DemoCommand, ShowsTheWholeJob) {
    const Outcome outcome = runTool({"demo", "--delay", "1"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out.find('\x1b'), std::string::npos) << "no colours in a log";
    for (const char* part : {"device  Login.cgi", "from device, 9 requests", "from device, 1 request,",
                             "from cache", "Profile1.VideoEncoderConfiguration.Resolution.Width=1280",
                             "rtsp://127.0.0.1:554/PROFILE-MAIN?encoding=H264&size=1280x720",
                             "rtsp://127.0.0.1:554/PROFILE-MOBILE?", " answered with 401 (Digest)"})
        EXPECT_TRUE(contains(outcome.out, part)) << part;
}

TEST(DemoCommand, NoLineIsWiderThanATerminal) {
    std::istringstream page(runTool({"demo", "--delay", "1"}).out);
    for (std::string line; std::getline(page, line);) {
        const auto isFirstByte = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; };
        EXPECT_LE(std::count_if(line.begin(), line.end(), isFirstByte), 80) << line;
    }
}

TEST(DemoCommand, TracesOnlyWhenAsked) {
    const Outcome outcome = runTool({"demo", "--delay", "0", "-v"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_TRUE(contains(outcome.err, "#3627 BaseRequest::requestHttpStr: 0, uid=1:0")) << outcome.err;
    EXPECT_FALSE(contains(outcome.err, "only for the demo")) << "the password";
}

} // namespace
} // namespace koine::test
