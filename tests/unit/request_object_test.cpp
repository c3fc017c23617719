// Birth and death of a request object, and the operations that need no device.

#include "observed.h"
#include "tests/support/failing_allocations.h"
#include "tests/support/test_request.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace koine::test {
namespace {

TEST(RequestObject, MakesItsLockAndThenItsHttpClientUnderTheLock) {
    const TestRequest request;
    EXPECT_EQ(platform().transcript(),
              (Lines{"vm_mutex_set_invalid", "vm_mutex_init", "lock", "CreateIHttpClient", "unlock"}));
    EXPECT_EQ(platform().eventOf("CreateIHttpClient").lockDepth, 1);
    EXPECT_EQ(platform().clientsAlive(), 1);
}

TEST(RequestObject, ReleasesItsHttpClientUnderTheLockAndThenEndsTheLock) {
    {
        const TestRequest request;
        platform().forget();
    }
    EXPECT_EQ(platform().transcript(), (Lines{"lock", "client.Release", "unlock", "vm_mutex_destroy"}));
    EXPECT_EQ(platform().eventOf("client.Release").lockDepth, 1);
    EXPECT_EQ(platform().clientsAlive(), 0);
    EXPECT_EQ(platform().locksInUse(), 0);
}

TEST(RequestObject, SaysThatItGotNoHttpClientAndLivesOn) {
    platform().clientsCanBeMade = false;
    {
        TestRequest request;
        EXPECT_EQ(traces(), Lines{"??? #193 BaseRequest::requestCgi_1, uid=0:0. \n"});
        EXPECT_EQ(platform().traces().front().format, "??? #%d BaseRequest::requestCgi_1, uid=%d:%d. \n");
        EXPECT_EQ(platform().lockDepth(), 0);
        request.close();
        platform().forget();
    }
    EXPECT_EQ(platform().transcript(), (Lines{"lock", "unlock", "vm_mutex_destroy"}));
}

TEST(RequestObject, IsOwnedByAPointerToItsInterface) {
    struct Counted : TestRequest {
        explicit Counted(int& deaths) : deaths_(deaths) {}
        ~Counted() override { ++deaths_; }
        int& deaths_;
    };
    int deaths = 0;
    {
        const boost::shared_ptr<IBaseRequest> owner(new Counted(deaths));
        const boost::shared_ptr<IBaseRequest> second = owner->shared_from_this();
        EXPECT_EQ(second, owner);
        EXPECT_EQ(deaths, 0);
    }
    EXPECT_EQ(deaths, 1);
}

TEST(RequestObject, ReleasesItsStreamClients) {
    boost::weak_ptr<StreamIDClient> client;
    {
        TestRequest request;
        client = request.get_streamid_client(1);
        EXPECT_FALSE(client.expired());
    }
    EXPECT_TRUE(client.expired());
}

TEST(RequestObject, FreesAnswersAndIgnoresNull) {
    TestRequest request;
    request.freeData(nullptr);
    request.freeData(mallocedText("a leak if nobody frees it"));
}

TEST(RequestObject, HasALockThatItsOwnerMayTakeAgain) {
    TestRequest request;
    EXPECT_EQ(vm_mutex_lock(request.getLock()), 1);
    EXPECT_EQ(request.testOK(nullptr, 0, nullptr, nullptr), 1);
    EXPECT_EQ(platform().lockDepth(), 1);
    EXPECT_EQ(vm_mutex_unlock(request.getLock()), 1);
    EXPECT_EQ(request.getLock(), request.getLock());
}

TEST(RequestObject, TestOkTakesAndReleasesTheLockAndNothingElse) {
    TestRequest request;
    platform().forget();
    char text[] = "ignored";
    EXPECT_EQ(request.testOK(text, 99, text, text), 1);
    EXPECT_EQ(platform().transcript(), (Lines{"lock", "unlock"}));
    EXPECT_STREQ(text, "ignored");
}

TEST(RequestObject, TestOkWaitsForARunningRequest) {
    TestRequest request;
    request.connect();
    std::atomic<bool> asked{false};
    std::atomic<bool> released{false};
    std::atomic<bool> waited{false};
    request.steps.requestCgi = [&](auto...) {
        asked = true;
        while (!released)
            std::this_thread::yield();
        return 1;
    };
    std::thread asking([&] { request.tell("Other.cgi"); });
    while (!asked)
        std::this_thread::yield();
    std::thread waiting([&] {
        request.testOK(nullptr, 0, nullptr, nullptr);
        waited = true;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_FALSE(waited);
    released = true;
    asking.join();
    waiting.join();
    EXPECT_TRUE(waited);
}

TEST(RequestObject, KeepsTheSetupTextOfItsStreamUser) {
    TestRequest request;
    request.init(3, "StreamSetup.Stream=1");
    EXPECT_EQ(request.client(3).getInitStream(), "StreamSetup.Stream=1");
    EXPECT_EQ(request.client(4).getInitStream(), "");
    request.init(3, nullptr);
    EXPECT_EQ(request.client(3).getInitStream(), "");
}

TEST(RequestObject, GivesTheSetupTextToTheClientThroughItsOperation) {
    struct Watched : StreamIDClient {
        void setInitStream(const char* text) override { seen = text; }
        std::string seen;
    };
    TestRequest request;
    const auto client = boost::make_shared<Watched>();
    request.get_streamid_client(3) = client;
    request.init(3, "text");
    EXPECT_EQ(client->seen, "text");
}

TEST(RequestObject, SupportsNoJoystick) {
    TestRequest request;
    EXPECT_EQ(request.CallJoystickCmd("UP", "1", 1, 2, 3), -2);
    EXPECT_EQ(request.CallJoystickCmd(nullptr, nullptr, 0, 0, 0), -2);
}

TEST(RequestObject, DoesNothingWithCommandsAndCallbacks) {
    TestRequest request;
    platform().forget();
    int context = 1;
    const unsigned char data[] = {1, 2};
    request.HandleMultiCmd("command", &context, 1);
    request.HandleMultiCmd("", nullptr, 0);
    request.PTZCmdCB(1, QA_HTTP_ERR_NONE, data, sizeof data, &context);
    request.PTZCmdCB(1, QA_HTTP_ERR_NONE, nullptr, 0, nullptr);
    EXPECT_EQ(context, 1);
    EXPECT_TRUE(platform().transcript().empty());
}

TEST(RequestObject, TouchesNothingWhenParsingNotifications) {
    TestRequest request;
    const unsigned char data[] = {1};
    for (const bool before : {false, true}) {
        bool flags[3] = {before, before, before};
        EXPECT_EQ(request.ParsingBaseNotification(data, 1, &flags[0], &flags[1], &flags[2]), 1);
        EXPECT_TRUE(flags[0] == before && flags[1] == before && flags[2] == before);
    }
    EXPECT_EQ(request.ParsingBaseNotification(nullptr, 0, nullptr, nullptr, nullptr), 1);
}

TEST(RequestObject, ForbidsNothing) {
    TestRequest request;
    EXPECT_EQ(request.forbiRequest(), 0);
}

TEST(RequestObject, NeverCallsItsFirstTwoOperationsItself) {
    TestRequest request;
    request.connect();
    device().answerAsCamera();
    request.ask("Login.cgi");
    request.ask("Config.cgi?action=get&category=*");
    request.ask("Stream.cgi?action=set&StreamSetup.Transport.Protocol=RTSP");
    EXPECT_EQ(platform().countOf("probe("), 0);
}

} // namespace
} // namespace koine::test
