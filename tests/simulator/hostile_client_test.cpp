#include "raw_client.h"
#include "test_device.h"

#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <vector>

namespace koine::test {
namespace {

using sim::SimulatedDevice;

/// After each ill treatment the device must still serve.
class HostileClients : public testing::Test {
protected:
    ~HostileClients() override { EXPECT_EQ(getOnce(device_.port(), kLine).status(), 200); }

    RawAnswer answerTo(const std::string& bytes) {
        RawClient client(device_.port());
        client.send(bytes);
        return client.receive();
    }

    SimulatedDevice device_{optionsFor("dome")};
};

TEST_F(HostileClients, WhatIsNoHttpIsToldSo) {
    const RawAnswer answer = answerTo("\x16\x03\x01 this is not a request\r\n\r\n");
    EXPECT_EQ(answer.status(), 400);
    EXPECT_EQ(answer.header("Connection"), "close");
    EXPECT_EQ(answerTo("GET\r\n\r\n").status(), 400);
    EXPECT_EQ(answerTo("GET / HTTP/1.1\r\nContent-Length: many\r\n\r\n").status(), 400);
}

TEST_F(HostileClients, RandomBytes) {
    std::mt19937 random(20190514);
    for (int i = 0; i < 200; ++i) {
        std::string bytes(random() % 300, '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(random());
        RawClient client(device_.port());
        client.send((i % 2 == 0 ? "GET /" : "") + bytes + "\r\n\r\n");
    }
}

TEST_F(HostileClients, OtherMethodsAreNotAllowed) {
    EXPECT_EQ(answerTo("DELETE /Login.cgi HTTP/1.1\r\n\r\n").status(), 405);
    EXPECT_EQ(answerTo("BREW /Login.cgi HTTP/1.1\r\n\r\n").status(), 405);
}

TEST_F(HostileClients, AMegabyteOfTargetIsReadAndThreeAreNot) {
    EXPECT_EQ(getOnce(device_.port(), "/" + std::string(1U << 20U, 'a')).status(), 404);
    const RawAnswer answer = getOnce(device_.port(), "/" + std::string(3U << 20U, 'a'));
    EXPECT_TRUE(answer.status() == 400 || answer.end == End::reset);
}

TEST_F(HostileClients, AskingForEverythingManyTimesIsRefused) {
    std::string line = "/Config.cgi?action=get&category=*";
    for (int i = 0; i < 100000; ++i)
        line += ",*";
    EXPECT_EQ(getOnce(device_.port(), line).body, "-11\nERROR: Unknown parameter.\n");
}

TEST_F(HostileClients, NewKeysWithoutEndAreRefused) {
    RawClient client(device_.port());
    std::string refusal;
    for (int round = 0; round < 40 && refusal.empty(); ++round) {
        std::string line = "/Config.cgi?action=set";
        for (int i = 0; i < 1000; ++i)
            line += "&Misc.K" + std::to_string(round * 1000 + i) + "=1";
        const RawAnswer answer = client.get(line);
        if (answer.body != "0\nOK\n")
            refusal = answer.body;
    }
    EXPECT_EQ(refusal, "-11\nERROR: Unknown parameter.\n");
}

TEST_F(HostileClients, ManyPathsDoNotFillTheCounters) {
    RawClient client(device_.port());
    for (int i = 0; i < 400; ++i)
        client.get("/path" + std::to_string(i));
    const sim::Counters counters = device_.counters();
    EXPECT_EQ(counters.requests, 400U);
    EXPECT_LE(counters.perPath.size(), 257U);
    EXPECT_EQ(counters.perPath.at("(other)"), 400U - 256U);
}

TEST_F(HostileClients, NulsAndEscapesInTheTarget) {
    EXPECT_EQ(getOnce(device_.port(), "/Config.cgi?action=get&category=%00%ff%").status(), 200);
    EXPECT_EQ(getOnce(device_.port(), "/%4c%6Fgin.cgi").status(), 200);
    EXPECT_EQ(answerTo(std::string("GET /\0 HTTP/1.1\r\n\r\n", 19)).status(), 400);
}

TEST_F(HostileClients, RequestsThatAreNeverFinished) {
    std::vector<std::unique_ptr<RawClient>> clients;
    for (int i = 0; i < 50; ++i) {
        clients.push_back(std::make_unique<RawClient>(device_.port()));
        clients.back()->send("GET /Login.cgi HTTP/1.1\r\nX: ");
    }
    EXPECT_EQ(getOnce(device_.port(), kLine).status(), 200);
}

TEST_F(HostileClients, ClientsThatLeaveInTheMiddleOfAnAnswer) {
    device_.setFault(sim::parseFault("endless-body"));
    for (int i = 0; i < 20; ++i) {
        RawClient client(device_.port());
        client.send("GET /Login.cgi HTTP/1.1\r\n\r\n");
        client.receiveAll(std::chrono::seconds(1), 1000);
    }
    device_.clearFaults();
}

} // namespace
} // namespace koine::test
