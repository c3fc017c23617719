// Credentials stay with the device; a hung device holds nobody else; a running request can be ended.

#include "tests/e2e/rig.h"

#include "platform/http_client.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

namespace koine {
namespace {

using sim::AuthKind;
using std::chrono::milliseconds;
using std::chrono::steady_clock;
using test::Rig;

TEST(Hosts, ARedirectIsNeverFollowed) {
    Rig other;
    Rig rig(AuthKind::basic);
    rig.misbehave("redirect=" + other.peer().url() + "/Login.cgi");
    const Answer answer = rig.ask("Login.cgi");
    EXPECT_EQ(answer.result, -6);
    EXPECT_EQ(answer.text, test::kUnknownParameter);
    EXPECT_EQ(other.peer().counters().connections, 0U);
}

TEST(Hosts, ALineForAnotherHostIsRefusedAndSentNowhere) {
    Rig rig(AuthKind::basic);
    const Answer answer = rig.ask("http://localhost:" + std::to_string(rig.peer().port()) + "/PTZ.cgi");
    EXPECT_EQ(answer.result, -2);
    EXPECT_EQ(answer.text, test::kUnknownParameter);
    EXPECT_EQ(rig.peer().counters().connections, 0U);
}

TEST(Hosts, TheFirstLineTellsWhereTheDeviceIs) {
    Rig rig(AuthKind::digestMd5);
    const auto device = boost::shared_ptr<DialectRequest>(new DialectRequest);
    std::string line = rig.peer().url() + "/Login.cgi";
    std::string user = test::kUser;
    std::string password = test::kPassword;
    char* text = nullptr;
    EXPECT_EQ(device->requestHttpStr(1, line.data(), user.data(), password.data(), &text), 1);
    device->freeData(text);
    EXPECT_STREQ(device->server_address(), "127.0.0.1");
    EXPECT_EQ(device->server_port(), rig.peer().port());
    EXPECT_EQ(request(*device, 1, "PTZ.cgi?stop=1").result, 1) << "bare lines are enough from then on";
}

TEST(Hosts, AHungDeviceHoldsOnlyItsOwnObject) {
    Rig hung;
    Rig well;
    hung.misbehave("delay=1000");
    std::atomic<bool> isBack{false};
    std::thread waiting([&] {
        EXPECT_EQ(hung.ask("Login.cgi").result, 1);
        isBack = true;
    });
    while (hung.peer().counters().requests == 0)
        std::this_thread::sleep_for(milliseconds(1));
    EXPECT_EQ(well.ask("Login.cgi").result, 1);
    EXPECT_FALSE(isBack) << "the well device is not behind the hung one";
    waiting.join();
}

TEST(Hosts, LinesOfManyThreadsAreCarriedOneAfterTheOther) {
    constexpr int kThreads = 6;
    constexpr int kLines = 10;
    Rig rig(AuthKind::digestMd5);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread)
        threads.emplace_back([&rig, thread] {
            for (int i = 0; i < kLines; ++i)
                EXPECT_EQ(rig.ask("PTZ.cgi?stop=1", static_cast<unsigned int>(thread)).result, 1);
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(rig.traffic(), test::trafficText(1, kThreads * kLines + 1, 1));
}

TEST(Hosts, AbortEndsARunningRequestWithinATenthOfASecond) {
    Rig rig;
    rig.misbehave("hang");
    struct Release {
        void operator()(IHttpClient* client) const { client->Release(); }
    };
    const std::unique_ptr<IHttpClient, Release> client(CreateIHttpClient());
    ASSERT_TRUE(client);
    const std::string url = rig.peer().url() + "/Login.cgi";
    steady_clock::time_point aborted;
    std::thread aborting([&] {
        while (rig.peer().counters().requests == 0)
            std::this_thread::sleep_for(milliseconds(1));
        aborted = steady_clock::now();
        client->Abort();
    });
    char* body = nullptr;
    unsigned int length = 0;
    EXPECT_EQ(client->Request(url.c_str(), nullptr, nullptr, nullptr, 0, "", "", &body, &length, 0, 0), -7);
    const auto ended = steady_clock::now();
    aborting.join();
    EXPECT_LT(ended - aborted, milliseconds(100));
    rig.peer().clearFaults();
    EXPECT_EQ(client->Request(url.c_str(), nullptr, nullptr, nullptr, 0, "", "", &body, &length, 0, 0), 1);
}

} // namespace
} // namespace koine
