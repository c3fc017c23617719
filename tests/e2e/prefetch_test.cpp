// The first stream over two connections: how many round trips it takes, and that nothing but time is
// different when devices hang, forget nonces or are asked by many.

#include "tests/e2e/rig.h"

#include "default_platform/host_settings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <map>
#include <thread>

namespace koine {
namespace {

using sim::AuthKind;
using std::chrono::milliseconds;
using std::chrono::steady_clock;
using test::Rig;

constexpr const char* kStart =
    "Stream.cgi?action=set&StreamSetup.Stream=RTP-Unicast&StreamSetup.Transport.Protocol=TCP&ProfileMode=AUTO"
    "&StreamSetup.VideoEncoderConfiguration.Resolution.NxN=1280x720";
constexpr const char* kUri = "Onvif.cgi?action=GetStreamUri";
constexpr std::size_t kRequests = 9;

// Long enough that a loaded machine does not add a round trip by itself.
constexpr int kRoundTrip = 100;

/// How long a stream took from nothing to its URI, in round trips.
double roundTripsToUri(Rig& rig) {
    rig.misbehave("delay=" + std::to_string(kRoundTrip));
    const steady_clock::time_point start = steady_clock::now();
    EXPECT_EQ(rig.ask(kStart).result, 1);
    EXPECT_EQ(rig.ask(kUri).result, 1);
    const std::chrono::duration<double, std::milli> time = steady_clock::now() - start;
    return time.count() / kRoundTrip;
}

/// Requests by connection, challenges included.
std::map<std::uint64_t, std::size_t> perConnection(Rig& rig) {
    std::map<std::uint64_t, std::size_t> counts;
    for (const sim::LoggedRequest& request : rig.peer().requests())
        ++counts[request.connection];
    return counts;
}

struct Expected {
    unsigned int connections;
    unsigned int roundTrips;
};

class RoundTrips : public testing::TestWithParam<Expected> {};

TEST_P(RoundTrips, ToAFirstStreamWithDigest) {
    const auto [connections, expected] = GetParam();
    const double limit = expected + 0.9;
    double best = 100;
    std::size_t longest = 100;
    for (int i = 0; i < 5 && best >= limit; ++i) {
        Rig rig(AuthKind::digestMd5);
        rig.device().setConnections(connections);
        best = std::min(best, roundTripsToUri(rig));
        EXPECT_EQ(rig.traffic(), test::trafficText(connections, kRequests + connections, connections))
            << "a challenge for each connection, and nothing asked twice";
        std::size_t most = 0;
        for (const auto& [connection, count] : perConnection(rig))
            most = std::max(most, count);
        longest = std::min(longest, most);
    }
    EXPECT_LE(longest, expected) << "requests that followed each other on one connection";
    EXPECT_GE(best, expected) << "the device waits before each answer";
    EXPECT_LT(best, limit);
}

INSTANTIATE_TEST_SUITE_P(Connections, RoundTrips,
                         testing::Values(Expected{2, 6}, Expected{3, 5}, Expected{4, 4}),
                         [](const testing::TestParamInfo<Expected>& tested) {
                             return std::to_string(tested.param.connections);
                         });

TEST(RoundTripsInOrder, AreOneForEachRequestAndOneForTheChallenge) {
    Rig rig(AuthKind::digestMd5);
    rig.device().setConnections(1);
    EXPECT_GE(roundTripsToUri(rig), 10.0);
    EXPECT_EQ(rig.traffic(), test::trafficText(1, kRequests + 1, 1));
}

class Prefetching : public testing::Test {
protected:
    ~Prefetching() override { setRequestTimeLimit(0); }

    /// The result of a fill and how long it took.
    std::pair<int, milliseconds> timedFill(Rig& rig) {
        const steady_clock::time_point start = steady_clock::now();
        const int result = rig.device().cacheCgi(1);
        return {result, std::chrono::duration_cast<milliseconds>(steady_clock::now() - start)};
    }
};

TEST_F(Prefetching, AHungDeviceFailsWithinTheLimitOfOneRequest) {
    constexpr unsigned int kLimit = 300;
    setRequestTimeLimit(kLimit);
    Rig rig(AuthKind::digestMd5);
    rig.misbehave("hang");
    const auto [result, time] = timedFill(rig);
    EXPECT_EQ(result, -4);
    EXPECT_LT(time, milliseconds(2 * kLimit)) << "what hangs ahead is not waited for";
}

TEST_F(Prefetching, AHungLineFailsAsItWouldAlone) {
    setRequestTimeLimit(300);
    for (const char* category : {"Media", "Camera", "VideoAnalytics"}) {
        Rig rig(AuthKind::digestMd5);
        rig.misbehave(std::string("hang;path=category=") + category);
        const auto [result, time] = timedFill(rig);
        EXPECT_EQ(result, -4) << category;
        EXPECT_LT(time, milliseconds(600)) << category << ": what hangs ahead costs next to nothing";
        EXPECT_EQ(rig.device().requestsFailed(), 1U);
    }
}

TEST_F(Prefetching, ANonceThatExpiresCostsARefusalAndNoMore) {
    Rig rig(AuthKind::digestMd5, [](sim::Options& options) { options.nonceLifetimeRequests = 2; });
    EXPECT_EQ(rig.ask(kStart).result, 1);
    EXPECT_EQ(rig.device().requestsFailed(), 0U);
}

/// How often the login and how often other lines were refused in two starts with a wrong password.
std::pair<std::size_t, std::size_t> refusals(unsigned int connections) {
    Rig rig(AuthKind::digestMd5);
    rig.device().setConnections(connections);
    rig.peer().setCredentials(test::kUser, "another");
    EXPECT_EQ(rig.ask(kStart).text, test::kAuthenticationError);
    EXPECT_EQ(rig.ask(kStart).text, test::kAuthenticationError);
    const std::vector<std::string> log = rig.peer().requestLog();
    const auto logins = static_cast<std::size_t>(std::count(log.begin(), log.end(), "401 Login.cgi"));
    rig.peer().setCredentials(test::kUser, test::kPassword);
    EXPECT_EQ(rig.ask(kStart).result, 1);
    return {logins, log.size() - logins};
}

TEST_F(Prefetching, AWrongPasswordIsSentAheadOnceAndNeverAgain) {
    const auto plain = refusals(1);
    const auto ahead = refusals(2);
    EXPECT_EQ(plain.second, 0U);
    EXPECT_EQ(ahead.first, plain.first);
    EXPECT_LE(ahead.second, 2U) << "the challenge and one refusal";
}

TEST_F(Prefetching, ManyObjectsFillAtTheSameTime) {
    Rig rig(AuthKind::digestMd5);
    std::vector<std::thread> threads;
    for (unsigned int thread = 0; thread < 6; ++thread)
        threads.emplace_back([&rig, thread] {
            for (int i = 0; i < 3; ++i) {
                const auto device = rig.another();
                device->setConnections(2 + thread % 3);
                EXPECT_EQ(device->cacheCgi(thread), 1);
                EXPECT_EQ(device->requestsSent(), 8U);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
}

TEST_F(Prefetching, ClosingMeanwhileDisturbsNothing) {
    Rig rig(AuthKind::basic);
    std::atomic<bool> filled{false};
    std::thread closing([&] {
        while (!filled) {
            rig.device().close();
            std::this_thread::sleep_for(milliseconds(1));
        }
    });
    EXPECT_EQ(rig.device().cacheCgi(1), 1);
    filled = true;
    closing.join();
}

} // namespace
} // namespace koine
