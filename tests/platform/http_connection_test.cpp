#include "tests/platform/http_caller.h"
#include "tests/support/raw_server.h"

#include "default_platform/host_settings.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

namespace {

using koine::test::answering;
using koine::test::answerText;
using koine::test::headerOf;
using koine::test::HttpCaller;
using koine::test::HttpReply;
using koine::test::kGood;
using koine::test::RawConnection;
using koine::test::RawServer;
using std::chrono::milliseconds;

RawServer::Script good() {
    return answering([](const std::string&) { return kGood; });
}

/// Reads the request and then says nothing until the server ends.
void silence(RawConnection& connection) {
    connection.readRequest();
    connection.wait(std::chrono::seconds(20));
}

/// Waits until the server has let go of this many connections.
bool endedWithin(const RawServer& server, int count, milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (server.ended() < count && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(milliseconds(2));
    return server.ended() >= count;
}

bool requestedWithin(const RawServer& server, std::size_t count, milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (server.requests().size() < count && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(milliseconds(2));
    return server.requests().size() >= count;
}

TEST(HttpConnection, IsKeptAndUsedAgain) {
    RawServer server(good());
    HttpCaller caller;
    for (int i = 0; i < 50; ++i)
        ASSERT_EQ(caller.get(server.url()).result, 1);
    EXPECT_EQ(server.connections(), 1);
}

TEST(HttpConnection, IsOpenedAgainWhenTheDeviceHasClosedIt) {
    RawServer server([](RawConnection& connection) {
        connection.readRequest();
        connection.send(kGood);
    });
    HttpCaller caller;
    for (int i = 1; i <= 5; ++i) {
        EXPECT_EQ(caller.get(server.url()).result, 1);
        EXPECT_TRUE(endedWithin(server, i, milliseconds(1000)));
    }
    EXPECT_EQ(server.connections(), 5);
}

TEST(HttpConnection, IsOpenedAgainWhenTheDeviceClosesItUponTheNextRequest) {
    // The device closes at the moment the next request arrives, without a word.
    std::atomic<bool> silent{false};
    RawServer server([&silent](RawConnection& connection) {
        for (int i = 0; !connection.readRequest().empty(); ++i) {
            if (i == 1 && silent.exchange(false))
                return;
            connection.send(kGood);
        }
    });
    HttpCaller caller;
    EXPECT_EQ(caller.get(server.url()).result, 1);
    silent = true;
    EXPECT_EQ(caller.get(server.url()).result, 1);
    EXPECT_EQ(server.connections(), 2);
    EXPECT_EQ(server.requests().size(), 3U);
}

TEST(HttpConnection, IsOpenedAgainAfterAReset) {
    RawServer server([](RawConnection& connection) {
        connection.readRequest();
        connection.send(kGood);
        connection.wait(milliseconds(20));
        connection.reset();
    });
    HttpCaller caller;
    for (int i = 1; i <= 3; ++i) {
        EXPECT_EQ(caller.get(server.url()).result, 1);
        EXPECT_TRUE(endedWithin(server, i, milliseconds(1000)));
    }
}

TEST(HttpConnection, FreshOneIsClosedAfterwards) {
    RawServer server(good());
    HttpCaller caller;
    ASSERT_EQ(caller.get(server.url()).result, 1);
    caller.connection = 1;
    ASSERT_EQ(caller.get(server.url()).result, 1);
    EXPECT_EQ(server.connections(), 2);
    EXPECT_EQ(headerOf(server.requests().at(1), "Connection"), "close");
    EXPECT_TRUE(endedWithin(server, 1, milliseconds(1000)));
    caller.connection = 0;
    ASSERT_EQ(caller.get(server.url()).result, 1);
    EXPECT_EQ(server.connections(), 2) << "the kept one is still there";
    EXPECT_EQ(headerOf(server.requests().at(2), "Connection"), "");
}

TEST(HttpConnection, CloseClosesAndTheNextRequestOpensAgain) {
    RawServer server(good());
    HttpCaller caller;
    caller.client().Close();
    ASSERT_EQ(caller.get(server.url()).result, 1);
    caller.client().Close();
    EXPECT_TRUE(endedWithin(server, 1, milliseconds(1000)));
    caller.client().Close();
    ASSERT_EQ(caller.get(server.url()).result, 1);
    EXPECT_EQ(server.connections(), 2);
}

TEST(HttpConnection, CloseWhileARequestRunsClosesAfterIt) {
    RawServer server([](RawConnection& connection) {
        while (!connection.readRequest().empty() && connection.wait(milliseconds(100)))
            connection.send(kGood);
    });
    HttpCaller caller;
    std::thread closing([&] {
        EXPECT_TRUE(requestedWithin(server, 1, milliseconds(2000)));
        caller.client().Close();
    });
    EXPECT_EQ(caller.get(server.url()).result, 1);
    closing.join();
    EXPECT_TRUE(endedWithin(server, 1, milliseconds(1000)));
    EXPECT_EQ(caller.get(server.url()).result, 1);
    EXPECT_EQ(server.connections(), 2);
}

TEST(HttpConnection, ReleaseClosesIt) {
    RawServer server(good());
    {
        HttpCaller caller;
        ASSERT_EQ(caller.get(server.url()).result, 1);
    }
    EXPECT_TRUE(endedWithin(server, 1, milliseconds(1000)));
}

TEST(HttpConnection, ClientWithoutARequestIsReleased) { EXPECT_NO_FATAL_FAILURE(HttpCaller()); }

TEST(HttpAbort, EndsARunningRequestWithinATenthOfASecond) {
    RawServer server(silence);
    HttpCaller caller;
    std::chrono::steady_clock::time_point aborted;
    std::thread aborting([&] {
        EXPECT_TRUE(requestedWithin(server, 1, milliseconds(2000)));
        aborted = std::chrono::steady_clock::now();
        caller.client().Abort();
    });
    const HttpReply reply = caller.get(server.url());
    const auto ended = std::chrono::steady_clock::now();
    aborting.join();
    EXPECT_EQ(reply.result, -7);
    EXPECT_FALSE(reply.hasBody);
    EXPECT_LT(ended - aborted, milliseconds(100));
}

TEST(HttpAbort, EndsARequestThatIsStillConnecting) {
    // A server that never answers the TLS hello; nothing on loopback leaves a connection itself hanging.
    RawServer server([](RawConnection& connection) { connection.wait(std::chrono::seconds(20)); });
    HttpCaller caller;
    koine::setTlsVerification(false); // reading the system's authorities takes longer than the rest
    std::thread aborting([&] {
        std::this_thread::sleep_for(milliseconds(100));
        caller.client().Abort();
    });
    const HttpReply reply = caller.get("https://127.0.0.1:" + std::to_string(server.port()) + "/");
    aborting.join();
    EXPECT_EQ(reply.result, -7);
    koine::setTlsVerification(true);
    EXPECT_LT(reply.took, milliseconds(300));
}

TEST(HttpAbort, EndsAnAnswerThatFloods) {
    const std::string chunk(64 << 10, 'x');
    RawServer server([&chunk](RawConnection& connection) {
        connection.readRequest();
        connection.send("HTTP/1.1 200 OK\r\nContent-Length: 16000000\r\n\r\n");
        connection.sendAgainAndAgain(chunk, std::chrono::milliseconds(10), 200);
    });
    HttpCaller caller;
    std::thread aborting([&] {
        EXPECT_TRUE(requestedWithin(server, 1, milliseconds(2000)));
        std::this_thread::sleep_for(milliseconds(50));
        caller.client().Abort();
    });
    EXPECT_EQ(caller.get(server.url()).result, -7);
    aborting.join();
}

TEST(HttpAbort, WithoutARequestDoesNothing) {
    RawServer server(good());
    HttpCaller caller;
    caller.client().Abort();
    EXPECT_EQ(caller.get(server.url()).result, 1);
    caller.client().Abort();
    caller.client().Abort();
    EXPECT_EQ(caller.get(server.url()).result, 1);
}

TEST(HttpAbort, NextRequestWorksAfterOne) {
    std::atomic<bool> silent{true};
    RawServer server([&silent](RawConnection& connection) {
        while (!connection.readRequest().empty()) {
            if (silent)
                connection.wait(std::chrono::seconds(20));
            if (!connection.send(kGood))
                return;
        }
    });
    HttpCaller caller;
    std::thread aborting([&] {
        EXPECT_TRUE(requestedWithin(server, 1, milliseconds(2000)));
        silent = false;
        caller.client().Abort();
    });
    EXPECT_EQ(caller.get(server.url()).result, -7);
    aborting.join();
    EXPECT_EQ(caller.get(server.url()).result, 1);
}

TEST(HttpAbort, AbortsAndClosesFromOtherThreadsRaceWithRequests) {
    RawServer server(good());
    HttpCaller caller;
    std::atomic<bool> done{false};
    std::vector<std::thread> threads;
    threads.emplace_back([&] {
        while (!done) {
            caller.client().Abort();
            std::this_thread::sleep_for(std::chrono::microseconds(300));
        }
    });
    threads.emplace_back([&] {
        while (!done) {
            caller.client().Close();
            std::this_thread::sleep_for(std::chrono::microseconds(700));
        }
    });
    threads.emplace_back([&] {
        while (!done) {
            static_cast<void>(caller.client().GetStatus());
            static_cast<void>(caller.client().GetHeader("Content-Length"));
            caller.client().SetTimeout(5000);
            caller.client().SetUid(3);
        }
    });
    for (int i = 0; i < 200; ++i) {
        const int result = caller.get(server.url()).result;
        EXPECT_TRUE(result == 1 || result == -7) << result;
    }
    done = true;
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(caller.get(server.url()).result, 1);
}

TEST(HttpConnection, ManyClientsWorkAtOnce) {
    RawServer server(good());
    std::vector<std::thread> threads;
    std::atomic<int> answered{0};
    for (int i = 0; i < 8; ++i)
        threads.emplace_back([&] {
            HttpCaller caller;
            for (int round = 0; round < 20; ++round)
                answered += caller.get(server.url()).result == 1 ? 1 : 0;
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(answered, 160);
    EXPECT_EQ(server.connections(), 8);
}

} // namespace
