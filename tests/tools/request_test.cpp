// koine request, and what its exit codes say.

#include "tests/support/certificate.h"
#include "tests/tools/run_tool.h"

#include <gtest/gtest.h>

namespace koine::test {
namespace {

TEST(RequestCommand, OneAnswerGoesToStandardOutputByteForByte) {
    GuardedDome dome;
    dome.device().setFault(sim::parseFault("answer=0\\nOK\\nA=\x1b[31mred\xff\\n;path=PTZ"));
    const Outcome outcome = runTool({"request", dome.url(), "PTZ.cgi?x=1"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out, "0\nOK\nA=\x1b[31mred\xff\n");
    EXPECT_EQ(outcome.err, "");
}

TEST(RequestCommand, SeveralLinesGoOverOneConnection) {
    GuardedDome dome;
    const Outcome outcome = runTool(
        {"request", dome.url(), "Login.cgi", "PTZ.cgi?stop=1", "Config.cgi?action=get&category=Video.*"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_TRUE(contains(outcome.out, "> Login.cgi\n0\nOK\n")) << outcome.out;
    EXPECT_TRUE(contains(outcome.out, "> PTZ.cgi?stop=1\n0\nOK\n")) << outcome.out;
    EXPECT_EQ(dome.device().counters().connections, 1U);
    EXPECT_EQ(dome.device().counters().unauthorized, 1U);
}

TEST(RequestCommand, JsonTellsEverythingAboutEachLine) {
    GuardedDome dome;
    const Outcome outcome = runTool({"request", "--json", dome.url(), "Login.cgi", "Login.cgi", "Nope.cgi"});
    EXPECT_EQ(outcome.exitCode, 1);
    const std::string& json = outcome.out;
    ASSERT_EQ(jsonSize(json), 3U);
    EXPECT_EQ(jsonAt(json, "/0/line"), "Login.cgi");
    EXPECT_EQ(jsonAt(json, "/0/result"), "1");
    EXPECT_EQ(jsonAt(json, "/0/status"), "0");
    EXPECT_EQ(jsonAt(json, "/0/answered"), "true");
    EXPECT_EQ(jsonAt(json, "/0/values/Product-Name"), "TL-4410 Dome");
    EXPECT_EQ(jsonAt(json, "/0/device_requests"), "1");
    EXPECT_GT(std::stod(jsonAt(json, "/0/milliseconds")), 0);
    EXPECT_EQ(jsonAt(json, "/1/device_requests"), "0") << "from the cache";
    EXPECT_EQ(jsonAt(json, "/2/result"), "-14");
    EXPECT_EQ(jsonAt(json, "/2/answered"), "false");
    EXPECT_EQ(jsonAt(json, "/2/text"), "-11\nERROR: Unknown parameter.\n");
}

TEST(RequestCommand, JsonRepairsTextsThatAreNoUtf8) {
    GuardedDome dome;
    dome.device().setFault(sim::parseFault("answer=0\\nOK\\nA=\xff\xfe\\n;path=PTZ"));
    const Outcome outcome = runTool({"request", "--json", dome.url(), "PTZ.cgi"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(jsonAt(outcome.out, "/0/values/A"), "\xef\xbf\xbd\xef\xbf\xbd");
}

TEST(RequestCommand, ARefusalOfTheDeviceHasTheExitCode1) {
    GuardedDome dome;
    const Outcome refused =
        runTool({"request", dome.url(), "Config.cgi?action=set&Video.I0.Brightness=high"});
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_EQ(refused.out, "-11\nERROR: Unknown parameter.\n");
    EXPECT_TRUE(contains(refused.err, "unknown parameter or value (status -11)")) << refused.err;
    EXPECT_TRUE(contains(refused.err, dome.plainUrl())) << "says where: " << refused.err;

    dome.device().setFault(sim::parseFault("answer=-12\\nERROR: Busy.\\n;path=PTZ"));
    const Outcome busy = runTool({"request", dome.url(), "PTZ.cgi?x=1"});
    EXPECT_EQ(busy.exitCode, 1) << "a passed-through answer that refuses";
    EXPECT_TRUE(contains(busy.err, "status -12")) << busy.err;
}

TEST(RequestCommand, ARefusedLineDoesNotStopTheNext) {
    GuardedDome dome;
    const Outcome outcome = runTool({"request", dome.url(), "Nope.cgi", "PTZ.cgi?stop=1"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(contains(outcome.out, "> PTZ.cgi?stop=1\n0\nOK\n")) << outcome.out;
    EXPECT_TRUE(contains(outcome.err, "the device does not have this function")) << outcome.err;
}

TEST(RequestCommand, RefusedCredentialsHaveTheExitCode3AndEndIt) {
    GuardedDome dome;
    const Outcome outcome = runTool({"request", dome.urlFor("wrong"), "Login.cgi", "PTZ.cgi?stop=1"});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_TRUE(contains(outcome.err, "refused the user name or password; check --user")) << outcome.err;
    EXPECT_FALSE(contains(outcome.out, "PTZ")) << "the second line would meet the same wall";
}

TEST(RequestCommand, AStatusOfMinus35OnAPassedThroughLineIsAnAuthenticationFailureToo) {
    GuardedDome dome;
    dome.device().setFault(sim::parseFault("answer=-35\\nERROR: Authentication error.\\n;path=PTZ"));
    EXPECT_EQ(runTool({"request", dome.url(), "PTZ.cgi?x=1"}).exitCode, 3);
}

struct Unreachable {
    const char* fault;
    const char* said;
};

TEST(RequestCommand, ADeviceThatDoesNotAnswerHasTheExitCode4) {
    for (const Unreachable& unreachable :
         {Unreachable{"refuse", "cannot connect"}, Unreachable{"hang", "no answer within the time limit"},
          Unreachable{"garbage", "broken"}}) {
        GuardedDome dome;
        dome.device().setFault(sim::parseFault(unreachable.fault));
        const Outcome outcome = runTool({"request", "--timeout", "0.3", dome.url(), "Login.cgi"});
        EXPECT_EQ(outcome.exitCode, 4) << unreachable.fault;
        EXPECT_TRUE(contains(outcome.err, unreachable.said)) << outcome.err;
    }
}

TEST(RequestCommand, TheClientsReasonIsTold) {
    GuardedDome dome;
    dome.device().setFault(sim::parseFault("refuse"));
    const Outcome outcome = runTool({"request", dome.url(), "Login.cgi"});
    EXPECT_TRUE(contains(outcome.err, "(Failed to connect")) << outcome.err;
}

TEST(RequestCommand, TracesGoToStandardErrorOnlyWhenAskedFor) {
    GuardedDome dome;
    EXPECT_EQ(runTool({"request", dome.url(), "Login.cgi"}).err, "");
    const Outcome traced = runTool({"request", "--trace", dome.url(), "Login.cgi"});
    EXPECT_TRUE(contains(traced.err, "#3627 BaseRequest::requestHttpStr: 0, uid=1:0")) << traced.err;
}

TEST(RequestCommand, TheUserNumberIsPassedOn) {
    GuardedDome dome;
    const Outcome traced = runTool({"request", "--trace", "--uid", "42", dome.url(), "Login.cgi"});
    EXPECT_TRUE(contains(traced.err, "uid=42:0")) << traced.err;
}

TEST(RequestCommand, HttpsNeedsAKnownCertificateOrTheUsersWord) {
    const Certificate certificate;
    sim::Options options(sim::builtinModel("dome"));
    options.https = true;
    options.certificateFile = certificate.certificateFile();
    options.privateKeyFile = certificate.keyFile();
    const sim::SimulatedDevice device(options);
    const Outcome unknown = runTool({"request", device.url(), "Login.cgi"});
    EXPECT_EQ(unknown.exitCode, 4);
    EXPECT_TRUE(contains(unknown.err, "check --ca-file")) << unknown.err;
    EXPECT_TRUE(contains(unknown.err, "certificate")) << "and why: " << unknown.err;
    EXPECT_EQ(
        runTool({"request", "--ca-file", certificate.certificateFile(), device.url(), "Login.cgi"}).exitCode,
        0);
    EXPECT_EQ(runTool({"request", "--insecure", device.url(), "Login.cgi"}).exitCode, 0);
}

TEST(RequestCommand, ADeviceThatSpeaksNoTlsIsNotAskedInTheClear) {
    GuardedDome dome;
    EXPECT_EQ(runTool({"request", "--insecure", "https" + dome.url().substr(4), "Login.cgi"}).exitCode, 4);
    EXPECT_EQ(dome.device().counters().requests, 0U);
}

} // namespace
} // namespace koine::test
