// One fill by itself: what its helpers ask and hand out, how long it waits for them, and how it ends.

#include "devices/prefetch.h"
#include "devices/prefetching_client.h"
#include "tests/devices/scripted_client.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <thread>

namespace koine {
namespace {

using Lines = std::vector<std::string>;

class OnePrefetch : public ::testing::Test {
protected:
    OnePrefetch() {
        peer.answers("http://a/1", std::string("one\0more", 8));
        peer.answers("http://a/2", "two");
    }

    static PrefetchPlan plan() { return {{"http://a/1", "http://a/2"}, "admin", "pw", 1}; }

    test::ScriptedDevice peer;
};

TEST_F(OnePrefetch, GivesEachAnswerOnceAndWhole) {
    Prefetch prefetch(plan());
    prefetch.start();
    prefetch.start();
    ASSERT_TRUE(peer.awaits(2));
    const std::optional<ClientAnswer> answer = prefetch.take("http://a/1", "admin", "pw");
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->result, 1);
    EXPECT_EQ(answer->status, 200);
    EXPECT_EQ(answer->body.value_or(""), std::string("one\0more", 8));
    EXPECT_FALSE(answer->cookie);
    EXPECT_FALSE(prefetch.take("http://a/1", "admin", "pw"));
    EXPECT_FALSE(prefetch.take("http://a/3", "admin", "pw"));
    EXPECT_EQ(peer.clientsMade(), 1);
}

TEST_F(OnePrefetch, GivesNoAnswerThatWasAskedWithOtherCredentials) {
    Prefetch prefetch(plan());
    prefetch.start();
    ASSERT_TRUE(peer.awaits(2));
    EXPECT_FALSE(prefetch.take("http://a/1", "operator", "pw"));
    EXPECT_FALSE(prefetch.take("http://a/2", "admin", "new"));
}

TEST_F(OnePrefetch, LeavesToTheLibraryWhatItAsksFirst) {
    Prefetch prefetch(plan());
    EXPECT_FALSE(prefetch.take("http://a/2", "admin", "pw"));
    prefetch.start();
    ASSERT_TRUE(peer.awaits(1));
    EXPECT_TRUE(prefetch.take("http://a/1", "admin", "pw"));
    EXPECT_EQ(peer.urls(), Lines{"http://a/1"});
}

TEST_F(OnePrefetch, EndsARequestThatHangs) {
    peer.hold("http://a/");
    {
        Prefetch prefetch(plan());
        prefetch.start();
        ASSERT_TRUE(peer.awaits(1));
    }
    EXPECT_EQ(peer.aborted(), 1);
    EXPECT_EQ(peer.clientsAlive(), 0);
}

TEST_F(OnePrefetch, GivesTheHelpersTheTimeLimitThatWasSet) {
    PrefetchPlan limited = plan();
    limited.timeLimit = 250;
    Prefetch prefetch(std::move(limited));
    prefetch.start();
    ASSERT_TRUE(peer.awaits(2));
    EXPECT_EQ(peer.sent().size(), 2U);
    for (const test::SentRequest& request : peer.sent())
        EXPECT_EQ(request.timeLimit, 250U);
}

TEST_F(OnePrefetch, WaitsATwentiethOfTheTimeLimitAtMost) {
    peer.hold("http://a/");
    PrefetchPlan limited = plan();
    limited.timeLimit = 4000;
    Prefetch prefetch(std::move(limited));
    const auto start = std::chrono::steady_clock::now();
    prefetch.start();
    ASSERT_TRUE(peer.awaits(1));
    EXPECT_FALSE(prefetch.take("http://a/2", "admin", "pw"));
    const auto took = std::chrono::steady_clock::now() - start;
    EXPECT_GE(took, std::chrono::milliseconds(200));
    EXPECT_LT(took, std::chrono::milliseconds(600));
}

TEST_F(OnePrefetch, AnAbortWakesWhoeverWaits) {
    peer.hold("http://a/");
    Prefetch prefetch(plan());
    prefetch.start();
    ASSERT_TRUE(peer.awaits(1));
    std::atomic<bool> isBack{false};
    std::thread host([&] { // also before somebody waits, and then to no effect
        while (!isBack)
            prefetch.abort();
    });
    const std::optional<ClientAnswer> answer = prefetch.take("http://a/2", "admin", "pw");
    isBack = true;
    host.join();
    EXPECT_TRUE(!answer || answer->result == -7);
    EXPECT_EQ(peer.urls(), Lines{"http://a/2"}) << "nothing more is asked ahead";
}

TEST_F(OnePrefetch, AClientThatThrowsIsAFailureLikeOthers) {
    peer.throwsAt("http://a/2");
    Prefetch prefetch(plan());
    prefetch.start();
    ASSERT_TRUE(peer.awaits(1));
    EXPECT_FALSE(prefetch.take("http://a/2", "admin", "pw"));
    EXPECT_EQ(peer.urls(), Lines{"http://a/2"});
}

TEST_F(OnePrefetch, TheClientBeforeItHandsOnLimitsAndAborts) {
    peer.hold("http://a/");
    auto* const client = new PrefetchingClient(*CreateIHttpClient());
    client->SetTimeout(250);
    client->begin(plan(), PrefetchingClient::Begin::atOnce);
    ASSERT_TRUE(peer.awaits(1));
    EXPECT_EQ(peer.sent().front().timeLimit, 250U);
    const auto start = std::chrono::steady_clock::now();
    std::future<int> result = std::async(std::launch::async, [&] {
        return client->Request("http://a/2", nullptr, nullptr, nullptr, 0, "admin", "pw", nullptr, nullptr, 0,
                               0);
    });
    while (result.wait_for(std::chrono::milliseconds(100)) != std::future_status::ready)
        client->Abort();
    EXPECT_EQ(result.get(), -7);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(900));
    client->end();
    client->Release();
    EXPECT_EQ(peer.clientsAlive(), 0);
}

TEST_F(OnePrefetch, EndsAtOnceWhenItHasHardlyBegun) {
    peer.hold("http://a/");
    for (int i = 0; i < 100; ++i) {
        Prefetch prefetch(plan());
        prefetch.start();
    }
    EXPECT_EQ(peer.clientsAlive(), 0);
}

} // namespace
} // namespace koine
