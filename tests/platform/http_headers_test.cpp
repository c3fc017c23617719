// Headers of requests and answers, and the cookies that stand in them.

#include "tests/platform/http_caller.h"
#include "tests/support/raw_server.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

using koine::test::always;
using koine::test::answering;
using koine::test::answerText;
using koine::test::headerOf;
using koine::test::HttpCaller;
using koine::test::HttpReply;
using koine::test::RawServer;

TEST(HttpHeaders, FurtherHeadersAreSentAndCannotSmuggle) {
    RawServer server(always(answerText("200 OK", "x")));
    HttpCaller caller;
    caller.headers = "X-One: 1\r\nX-Two: two words\n\n";
    EXPECT_EQ(caller.get(server.url()).result, 1);
    EXPECT_EQ(headerOf(server.requests().at(0), "X-One"), "1");
    EXPECT_EQ(headerOf(server.requests().at(0), "X-Two"), "two words");
    caller.headers = nullptr;
    EXPECT_EQ(caller.get(server.url()).result, 1);
    EXPECT_EQ(headerOf(server.requests().at(1), "X-One"), "");
    EXPECT_EQ(caller.post(server.url(), "x", "text/plain\r\nX-Evil: 1").result, -2);
}

TEST(HttpHeaders, HeaderIsFoundWhateverItsCase) {
    RawServer server(always(
        answerText("200 OK", "x", "X-Camera:  Yard \r\nSet-Cookie: a=1\r\nset-cookie: b=2\r\nX-Empty:\r\n")));
    HttpCaller caller;
    EXPECT_EQ(caller.client().GetHeader("X-Camera"), nullptr) << "there was no answer yet";
    EXPECT_EQ(caller.client().GetStatus(), 0);
    ASSERT_EQ(caller.get(server.url()).result, 1);
    EXPECT_STREQ(caller.client().GetHeader("x-cAMERA"), "Yard");
    EXPECT_STREQ(caller.client().GetHeader("SET-COOKIE"), "a=1");
    EXPECT_STREQ(caller.client().GetHeader("X-Empty"), "");
    EXPECT_EQ(caller.client().GetHeader("X-Cam"), nullptr);
    EXPECT_EQ(caller.client().GetHeader(""), nullptr);
    EXPECT_EQ(caller.client().GetHeader(nullptr), nullptr);
}

TEST(HttpHeaders, LineThatBeginsWithABlankIsNoHeader) {
    RawServer server(always(answerText("200 OK", "x", "X-One: 1\r\n X-Two: 2\r\n\tX-Three: 3\r\n")));
    HttpCaller caller;
    ASSERT_EQ(caller.get(server.url()).result, 1);
    EXPECT_STREQ(caller.client().GetHeader("X-One"), "1");
    for (const char* name : {"X-Two", " X-Two", "X-Three", "\tX-Three"})
        EXPECT_EQ(caller.client().GetHeader(name), nullptr) << name;
}

TEST(HttpHeaders, LinesOfAHeadMayEndInABareLineFeed) {
    RawServer server(always("HTTP/1.1 200 OK\nX-One: 1\nContent-Length: 5\n\n0\nOK\n"));
    HttpCaller caller;
    const HttpReply reply = caller.get(server.url());
    EXPECT_EQ(reply.result, 1);
    EXPECT_EQ(reply.body, "0\nOK\n");
    EXPECT_STREQ(caller.client().GetHeader("X-One"), "1");
}

TEST(HttpHeaders, HeaderMayFollowAChunkedBody) {
    RawServer server(always("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\nX-One: 1\r\n\r\n"
                            "5\r\n0\nOK\n\r\n0\r\nX-One: 2\r\nX-Two: 3\r\n\r\n"));
    HttpCaller caller;
    const HttpReply reply = caller.get(server.url());
    EXPECT_EQ(reply.result, 1);
    EXPECT_EQ(reply.body, "0\nOK\n");
    EXPECT_STREQ(caller.client().GetHeader("X-One"), "1") << "the first one counts";
    EXPECT_STREQ(caller.client().GetHeader("X-Two"), "3");
}

TEST(HttpHeaders, HeadersAreThoseOfTheLastAnswer) {
    int count = 0;
    RawServer server(answering([&count](const std::string&) {
        return ++count == 1 ? answerText("200 OK", "x", "X-First: 1\r\n")
                            : "HTTP/1.1 100 Continue\r\nX-Interim: 1\r\n\r\n" +
                                  answerText("200 OK", "x", "X-Second: 2\r\n");
    }));
    HttpCaller caller;
    caller.get(server.url());
    EXPECT_STREQ(caller.client().GetHeader("X-First"), "1");
    caller.get(server.url());
    EXPECT_EQ(caller.client().GetHeader("X-First"), nullptr);
    EXPECT_EQ(caller.client().GetHeader("X-Interim"), nullptr);
    EXPECT_STREQ(caller.client().GetHeader("X-Second"), "2");
    caller.get("nonsense");
    EXPECT_EQ(caller.client().GetHeader("X-Second"), nullptr);
}

TEST(HttpHeaders, CookieIsSentBack) {
    RawServer server(always(answerText("200 OK", "x", "Set-Cookie: session=abc; Path=/\r\n")));
    HttpCaller caller;
    caller.get(server.url());
    caller.get(server.url("/next"));
    EXPECT_EQ(headerOf(server.requests().at(0), "Cookie"), "");
    EXPECT_EQ(headerOf(server.requests().at(1), "Cookie"), "session=abc");
    caller.client().Close();
    caller.get(server.url());
    EXPECT_EQ(headerOf(server.requests().at(2), "Cookie"), "session=abc")
        << "a cookie outlasts the connection";
}

TEST(HttpHeaders, CookieOfOneDeviceIsNotSentToAnother) {
    RawServer one(always(answerText("200 OK", "x", "Set-Cookie: session=abc; Path=/\r\n")));
    RawServer other(always(answerText("200 OK", "x")));
    HttpCaller caller;
    caller.get(one.url());
    caller.get(other.url());
    EXPECT_EQ(headerOf(other.requests().at(0), "Cookie"), "");
    caller.get(one.url());
    EXPECT_EQ(headerOf(one.requests().at(1), "Cookie"), "");
}

TEST(HttpHeaders, DeviceThatInventsCookiesDoesNotFillTheJar) {
    int number = 0;
    RawServer server(answering([&number](const std::string&) {
        std::string cookies;
        for (int i = 0; i < 40; ++i)
            cookies += "Set-Cookie: c" + std::to_string(number++) + "=1; Path=/\r\n";
        return answerText("200 OK", "x", cookies);
    }));
    HttpCaller caller;
    std::size_t longest = 0;
    for (int i = 0; i < 30; ++i) {
        ASSERT_EQ(caller.get(server.url()).result, 1);
        longest = std::max(longest, headerOf(server.requests().back(), "Cookie").size());
    }
    // 1,200 were set; at most 256 and one answer's worth were in the jar at a time.
    EXPECT_GT(longest, 0U);
    EXPECT_LT(longest, 300U * 9U);
}

TEST(HttpHeaders, SteadyCookieStaysHoweverOftenItIsSet) {
    RawServer server(always(answerText("200 OK", "x", "Set-Cookie: session=abc; Path=/\r\n")));
    HttpCaller caller;
    for (int i = 0; i < 300; ++i)
        ASSERT_EQ(caller.get(server.url()).result, 1);
    EXPECT_EQ(headerOf(server.requests().back(), "Cookie"), "session=abc");
}

} // namespace
