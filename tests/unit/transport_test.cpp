// How a request reaches the device: the client's operations, the credentials, the codes, the copy.

#include "observed.h"
#include "tests/support/failing_allocations.h"
#include "tests/support/test_request.h"

#include <gtest/gtest.h>

namespace koine::test {
namespace {

class Transport : public ::testing::Test {
protected:
    Transport() {
        request.connect();
        request.set_strm_setting_channel(3);
        platform().forget();
    }

    int send(const char* url, char** answer, int method = 0, int connection = 0) {
        std::string copy = url;
        return request.BaseRequest::requestCgi_1(kUser, copy.data(), answer,
                                                 static_cast<_REQCGI_METHOD_DEF>(method),
                                                 static_cast<_REQCGI_CONNECTION_DEF>(connection));
    }

    TestRequest request;
};

TEST_F(Transport, SendsOneRequestUnderTheLock) {
    device().on("Login.cgi", kPlainOk);
    Answer answer;
    EXPECT_EQ(send("http://camera:80/Login.cgi", answer.out()), 1);
    EXPECT_EQ(answer.text(), kPlainOk);
    EXPECT_EQ(platform().transcript(),
              (Lines{"lock",
                     "trace #3513 BaseRequest::requestCgi_1: 0, uid=7:3, "
                     "pchUrl=http://camera:80/Login.cgi. \n",
                     "client.SetUid(7)", "client.Request(http://camera:80/Login.cgi, admin, secret, 0, 0)",
                     "unlock"}));
}

TEST_F(Transport, GivesTheClientNothingButTheUrlAndTheCredentials) {
    send("http://camera:80/Login.cgi", nullptr);
    ASSERT_EQ(platform().requests().size(), 1U);
    const DeviceRequest sent = platform().requests().front();
    EXPECT_TRUE(sent.plain);
    EXPECT_TRUE(sent.cleared);
    EXPECT_EQ(sent.uid, kUser);
    EXPECT_EQ(sent.url, "http://camera:80/Login.cgi");
}

TEST_F(Transport, SendsTheLineAsItIs) {
    send("Login.cgi?a=%20%n#x y", nullptr);
    EXPECT_EQ(platform().requests().front().url, "Login.cgi?a=%20%n#x y");
    EXPECT_EQ(traces().front(),
              "#3513 BaseRequest::requestCgi_1: 0, uid=7:3, pchUrl=Login.cgi?a=%20%n#x y. \n");
}

TEST_F(Transport, AsksTheObjectForTheCredentials) {
    struct Other : TestRequest {
        std::string get_username() override { return "other"; }
        std::string get_password() override { return "word"; }
    };
    Other other;
    other.connect();
    char url[] = "Login.cgi";
    other.requestCgi_1(1, url, nullptr, REQCGI_METHOD_GET, REQCGI_CONNECTION_KEEP);
    EXPECT_EQ(platform().requests().front().username, "other");
    EXPECT_EQ(platform().requests().front().password, "word");
}

TEST_F(Transport, SendsEmptyCredentialsAsEmptyTexts) {
    request.set_username("");
    request.set_password("");
    send("Login.cgi", nullptr);
    EXPECT_EQ(platform().requests().front().username, "");
    EXPECT_EQ(platform().requests().front().password, "");
}

TEST_F(Transport, AnyOtherMethodIsTheOtherOne) {
    for (const auto& [method, code] : std::vector<std::pair<int, int>>{{0, 0}, {1, 2}, {5, 2}, {-1, 2}}) {
        platform().forget();
        send("Login.cgi", nullptr, method);
        EXPECT_EQ(platform().requests().front().method, code) << method;
        EXPECT_EQ(platform().requests().front().connection, 0);
    }
}

TEST_F(Transport, AnyOtherConnectionIsTheOtherOne) {
    for (const auto& [connection, flag] : std::vector<std::pair<int, int>>{{0, 0}, {1, 1}, {7, 1}, {-1, 1}}) {
        platform().forget();
        send("Login.cgi", nullptr, 0, connection);
        EXPECT_EQ(platform().requests().front().connection, flag) << connection;
        EXPECT_EQ(platform().requests().front().method, 0);
    }
}

TEST_F(Transport, MarksEachRequestWithItsUser) {
    char url[] = "Login.cgi";
    for (const unsigned int uid : {1U, 4000000000U}) {
        platform().forget();
        request.requestCgi_1(uid, url, nullptr, REQCGI_METHOD_GET, REQCGI_CONNECTION_KEEP);
        EXPECT_EQ(platform().requests().front().uid, uid);
    }
}

TEST_F(Transport, CopiesTheBodyOnlyWhenItIsWanted) {
    device().otherwise("a body");
    EXPECT_EQ(send("Login.cgi", nullptr), 1);
    Answer answer;
    EXPECT_EQ(send("Login.cgi", answer.out()), 1);
    device().otherwise("another body"); // the client's buffer is used again
    EXPECT_EQ(send("Login.cgi", nullptr), 1);
    EXPECT_EQ(answer.text(), "a body");
}

TEST_F(Transport, WritesNothingWithoutABody) {
    device().otherwise(1);
    char kept[] = "kept";
    char* answer = kept;
    EXPECT_EQ(send("Login.cgi", &answer), 1);
    EXPECT_EQ(answer, kept);
}

TEST_F(Transport, GivesAnEmptyBodyAsAnEmptyText) {
    device().otherwise("");
    Answer answer;
    EXPECT_EQ(send("Login.cgi", answer.out()), 1);
    EXPECT_EQ(answer.text(), "");
}

TEST_F(Transport, LeavesTheAnswerAloneWhenTheClientFails) {
    char kept[] = "kept";
    for (const int result : {0, -1, -2, -7, -14, 2}) {
        platform().forget();
        device().otherwise({result, "a body all the same"});
        char* answer = kept;
        EXPECT_EQ(send("Login.cgi", &answer), result);
        EXPECT_EQ(answer, kept);
        EXPECT_EQ(traces().size(), 2U);
        EXPECT_EQ(traces().back(), "??#3547 BaseRequest.requestCgi: uid=7:3, pchUrl=Login.cgi, err" +
                                       std::to_string(result) + ". \n");
        EXPECT_EQ(platform().lockDepth(), 0);
    }
}

TEST_F(Transport, RefusesANullUrlWithoutTouchingTheClient) {
    char kept[] = "kept";
    char* answer = kept;
    EXPECT_EQ(
        request.BaseRequest::requestCgi_1(kUser, nullptr, &answer, REQCGI_METHOD_GET, REQCGI_CONNECTION_KEEP),
        -2);
    EXPECT_EQ(answer, kept);
    EXPECT_EQ(
        platform().transcript(),
        (Lines{"lock", "trace #3513 BaseRequest::requestCgi_1: 0, uid=7:3, pchUrl=(null). \n",
               "trace ???#3517 BaseRequest.requestCgi_1: uid=7:3, pchUrl=(null), err-2. \n", "unlock"}));
}

TEST(TransportWithoutClient, FailsAndDoesNotTryToGetOne) {
    platform().clientsCanBeMade = false;
    TestRequest request;
    request.connect();
    platform().clientsCanBeMade = true;
    platform().forget();
    char url[] = "Login.cgi";
    char* answer = nullptr;
    EXPECT_EQ(
        request.BaseRequest::requestCgi_1(kUser, url, &answer, REQCGI_METHOD_GET, REQCGI_CONNECTION_KEEP),
        -8);
    EXPECT_EQ(answer, nullptr);
    EXPECT_EQ(platform().transcript(),
              (Lines{"lock", "trace #3513 BaseRequest::requestCgi_1: 0, uid=7:0, pchUrl=Login.cgi. \n",
                     "trace ???#3537 BaseRequest.requestCgi_1: uid=7:0, pchUrl=Login.cgi, err-8. will "
                     "break\n",
                     "unlock"}));
}

TEST(TransportWithoutClient, RefusesANullUrlFirst) {
    platform().clientsCanBeMade = false;
    TestRequest request;
    EXPECT_EQ(request.requestCgi_1(kUser, nullptr, nullptr, REQCGI_METHOD_GET, REQCGI_CONNECTION_KEEP), -2);
}

TEST(TransportWithoutClient, HasNoCookieAndNothingToClose) {
    platform().clientsCanBeMade = false;
    TestRequest request;
    EXPECT_EQ(request.getCookie(), nullptr);
    request.close();
    EXPECT_EQ(platform().countOf("client."), 0);
}

TEST_F(Transport, TellsTheCookieOfTheLastAnswer) {
    EXPECT_EQ(request.getCookie(), nullptr);
    device().header("SET-COOKIE", "session=5");
    EXPECT_STREQ(request.getCookie(), "session=5");
    EXPECT_EQ(platform().headersAsked(), (Lines{"SET-COOKIE", "SET-COOKIE"}));
}

TEST_F(Transport, ClosesTheConnectionAndStaysUsable) {
    request.close();
    EXPECT_EQ(platform().countOf("client.Close"), 1);
    device().otherwise("0\nOK\n");
    EXPECT_EQ(send("Login.cgi", nullptr), 1);
    EXPECT_EQ(platform().countOf("CreateIHttpClient"), 0);
}

TEST_F(Transport, RunsOutOfMemoryWithoutALeak) {
    device().otherwise("a body");
    const unsigned int attempts = failEachAllocation([this](unsigned int n) {
        std::string url = "Login.cgi";
        Answer answer;
        FailAllocations fail(n);
        int result = 0;
        try {
            result = request.BaseRequest::requestCgi_1(kUser, url.data(), answer.out(), REQCGI_METHOD_GET,
                                                       REQCGI_CONNECTION_KEEP);
        } catch (const std::bad_alloc&) {
            result = -8;
        }
        const bool failed = fail.stop();
        EXPECT_EQ(result, failed ? -8 : 1);
        EXPECT_EQ(platform().lockDepth(), 0);
        return failed;
    });
    EXPECT_GT(attempts, 1U);
}

// ---- Where the requests of the library itself go

TEST_F(Transport, TheLibraryAddressesTheDeviceThroughTheObjectsOperations) {
    struct Moved : TestRequest {
        const char* server_address() const override { return "moved"; }
        unsigned int server_port() const override { return 8081; }
    };
    Moved moved;
    moved.connect();
    moved.getCacheLogin(kUser, 0, nullptr, nullptr);
    moved.getCacheConfigVideo(kUser, 0, nullptr, nullptr, nullptr);
    EXPECT_EQ(platform().countOf("getTovlinCgiUrl(moved, 8081, Login.cgi)"), 2); // each cache begins there
    EXPECT_EQ(platform().requests().front().url, "http://moved:8081/Login.cgi");
}

} // namespace
} // namespace koine::test
