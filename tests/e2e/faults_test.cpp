// Every way in which the device misbehaves, with every kind of authentication: the stated result and answer,
// a bounded number of connections and requests, and a next line that works as soon as the device does.

#include "tests/e2e/rig.h"

#include "default_platform/host_settings.h"

#include <gtest/gtest.h>

#include <chrono>

namespace koine {
namespace {

using sim::AuthKind;
using test::Rig;

// Short where the limit is what ends the request; elsewhere a loaded machine must not reach it.
constexpr unsigned int kShortLimit = 250;
constexpr unsigned int kLongLimit = 10'000;

/// How the challenge of a device that asks for credentials changes the numbers.
enum class Challenge {
    addsRequest,  ///< on the same connection
    isHit,        ///< the fault hits the challenge already
    closes,       ///< the connection is closed after it
    makesRepeated ///< on a connection that worked before, an answer that does not even begin is asked for
                  ///< again
};

/// What a faulty "Login.cgi" gives; the numbers are those of a device that asks for no credentials.
struct Expected {
    const char* fault;
    int result;
    std::uint64_t connections;
    std::uint64_t requests;
    Challenge challenge = Challenge::addsRequest;
};

void PrintTo(const Expected& expected, std::ostream* stream) { *stream << expected.fault; }

constexpr Expected kFaults[] = {
    {"delay=30", 1, 1, 1},
    {"hang", -4, 1, 1, Challenge::isHit},
    {"refuse", -3, 0, 0, Challenge::isHit},
    {"reset-connection", -5, 1, 0, Challenge::isHit},
    {"reset-before-body", -5, 1, 1},
    {"reset-within-body=20", -5, 1, 1},
    {"reset-within-answer=10", -5, 1, 1, Challenge::makesRepeated},
    {"close-within-answer=10", -5, 1, 1, Challenge::makesRepeated},
    {"truncated-body=20", -5, 1, 1},
    {"short-length=5", 1, 1, 1},
    {"drip=20", -4, 1, 1, Challenge::isHit},
    {"endless-body", -5, 1, 1},
    {"endless-chunks", -5, 1, 1},
    {"chunked=7", 1, 1, 1},
    {"empty-body", -2, 1, 1},
    {"garbage", -5, 1, 1},
    {"wrong-status-line", -5, 1, 1},
    {"status=500", -6, 1, 1},
    {"status=404", -14, 1, 1},
    {"status=403", -1, 1, 1},
    {"status=503", -6, 1, 1},
    {"header-flood", -5, 1, 1},
    {"close", 1, 1, 1, Challenge::closes},
    {"close-silently", 1, 1, 1, Challenge::closes},
    {"answer=-11\\nERROR: Unknown parameter.\\n", -11, 1, 1},
    {"answer=<html>not the dialect</html>", -2, 1, 1},
    {"answer=0\\nOK\\nProduct-Name=%n%s\\nA=\\0B=2\\n", 1, 1, 1},
    {"raw=HTTP/1.1 200 OK\\r\\n\\r\\n0\\nOK\\nA=1", 1, 1, 1},
};

class Faults : public testing::TestWithParam<std::tuple<Expected, AuthKind>> {
protected:
    Faults() {
        setRequestTimeLimit(expected().result == -4 ? kShortLimit : kLongLimit);
        setBodyLimit(1 << 20);
    }
    ~Faults() override {
        setRequestTimeLimit(0);
        setBodyLimit(0);
    }

    const Expected& expected() const { return std::get<0>(GetParam()); }
    AuthKind auth() const { return std::get<1>(GetParam()); }
};

TEST_P(Faults, EndAsStatedAndLeaveAWorkingObject) {
    Rig rig(auth());
    rig.misbehave(expected().fault);
    const auto start = std::chrono::steady_clock::now();
    const Answer answer = rig.ask("Login.cgi");
    const auto took = std::chrono::steady_clock::now() - start;

    if (std::string_view(expected().fault) == "reset-connection" && answer.result == -3)
        SUCCEED() << "the reset may come before the connection counts as made";
    else
        EXPECT_EQ(answer.result, expected().result);
    EXPECT_LE(took, std::chrono::milliseconds(2000));
    if (answer.ok()) {
        EXPECT_EQ(answer.status(), 0) << answer.text;
    } else {
        EXPECT_EQ(answer.text, answer.result == -1 ? test::kAuthenticationError : test::kUnknownParameter);
    }
    const Challenge challenge = auth() == AuthKind::none ? Challenge::isHit : expected().challenge;
    const bool repeated = challenge == Challenge::makesRepeated;
    const sim::Counters counters = rig.peer().counters();
    EXPECT_EQ(counters.requests,
              expected().requests + (challenge == Challenge::isHit ? 0 : 1) + (repeated ? 1 : 0));
    EXPECT_EQ(counters.connections,
              expected().connections + (challenge == Challenge::closes || repeated ? 1 : 0));

    rig.peer().clearFaults();
    setRequestTimeLimit(0);
    const Answer healed = rig.ask("Login.cgi");
    EXPECT_EQ(healed.result, 1);
    EXPECT_EQ(rig.ask(test::kVideo).result, 1);
}

INSTANTIATE_TEST_SUITE_P(Every, Faults,
                         testing::Combine(testing::ValuesIn(kFaults),
                                          testing::Values(AuthKind::none, AuthKind::basic,
                                                          AuthKind::digestMd5, AuthKind::digestSha256)));

TEST(FaultSequence, AStormOfChallengesEndsAfterFewRequests) {
    for (const AuthKind auth : {AuthKind::basic, AuthKind::digestMd5, AuthKind::digestSha256}) {
        Rig rig(auth);
        rig.misbehave("401-storm");
        const Answer answer = rig.ask("Login.cgi");
        EXPECT_EQ(answer.result, -1);
        EXPECT_EQ(answer.text, test::kAuthenticationError);
        EXPECT_LE(rig.peer().counters().requests, 5U);
        rig.peer().clearFaults();
        EXPECT_EQ(rig.ask("Login.cgi").result, 1);
    }
}

TEST(FaultSequence, ACategoryThatCouldNotBeReadIsNotAskedForAgain) {
    Rig rig;
    rig.misbehave("status=500;path=category=Video;count=1");
    const Answer failed = rig.ask(test::kVideo);
    EXPECT_EQ(failed.result, -6);
    EXPECT_EQ(failed.text, test::kUnknownParameter);
    rig.peer().resetCounters();
    EXPECT_EQ(rig.ask(test::kVideo).result, -8);
    EXPECT_EQ(rig.peer().counters().requests, 0U);
}

TEST(FaultSequence, ASetWhoseAnswerIsLostLeavesTheCachesAsTheyWere) {
    Rig rig;
    const std::string before = rig.ask(test::kVideo).text;
    rig.misbehave("reset-before-body;count=1");
    EXPECT_EQ(rig.ask("Config.cgi?action=set&Video.I0.Brightness=61").result, -5);
    EXPECT_EQ(rig.ask(test::kVideo).text, before);
    EXPECT_EQ(rig.peer().value("Video.I0.Brightness"), "61") << "the device did carry it out";
}

TEST(FaultSequence, AClosedIdleConnectionIsReplacedUnnoticed) {
    Rig rig(AuthKind::digestMd5);
    rig.misbehave("close-silently");
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(rig.ask("PTZ.cgi?stop=1").result, 1) << i;
    EXPECT_EQ(rig.peer().counters().requests, 5U);
    EXPECT_EQ(rig.peer().counters().connections, 5U);
}

} // namespace
} // namespace koine
