// Answers as key maps: what a request leaves for `GetCgiMapStr`.

#include "observed.h"
#include "tests/support/test_request.h"

#include <gtest/gtest.h>

namespace koine::test {
namespace {

class HttpData : public ::testing::Test {
protected:
    HttpData() {
        request.connect();
        request.set_strm_setting_channel(3);
        request.client();
        platform().forget();
    }

    int ask(const std::string& line) {
        std::string copy = line;
        return request.requestHttpData(kUser, copy.data(), nullptr, nullptr);
    }

    void answer(const std::string& text) {
        request.steps.requestHttpStr = [text](unsigned int, char*, char*, char*, char** out) {
            *out = mallocedText(text);
            return 1;
        };
    }

    TestRequest request;
};

TEST_F(HttpData, RunsTheDispatchUnderTheLockAndParsesItsAnswer) {
    device().on("Other.cgi", "0\nOK\nA=1\nB=two words\n");
    EXPECT_EQ(ask("Other.cgi"), 1);
    EXPECT_STREQ(request.GetCgiMapStr(kUser, "A"), "1");
    EXPECT_STREQ(request.GetCgiMapStr(kUser, "B"), "two words");
    EXPECT_EQ(platform().transcript().front(), "lock");
    EXPECT_EQ(platform().transcript().back(), "unlock");
    EXPECT_EQ(platform().eventOf("requestHttpStr(").lockDepth, 1);
    EXPECT_EQ(platform().eventOf("createMapstrFromCgi").lockDepth, 1);
    EXPECT_EQ(platform().countOf("trace ??"), 0);
}

TEST_F(HttpData, PassesItsArgumentsOn) {
    Lines seen;
    request.steps.requestHttpStr = [&seen](unsigned int uid, char* url, char* username, char* password,
                                           char** answer) {
        seen = {std::to_string(uid), url, username, password, *answer == nullptr ? "null" : "not null"};
        return -3;
    };
    char url[] = "Other.cgi";
    char user[] = "u";
    char word[] = "w";
    EXPECT_EQ(request.requestHttpData(9, url, user, word), -3);
    EXPECT_EQ(seen, (Lines{"9", "Other.cgi", "u", "w", "null"}));
}

TEST_F(HttpData, KeepsTheOldPairsOfTheUser) {
    answer("0\nOK\nA=1\nB=1\n");
    EXPECT_EQ(ask("Other.cgi"), 1);
    answer("0\nOK\nB=2\nC=3\n");
    EXPECT_EQ(ask("Other.cgi"), 1);
    EXPECT_STREQ(request.GetCgiMapStr(kUser, "A"), "1");
    EXPECT_STREQ(request.GetCgiMapStr(kUser, "B"), "2");
    EXPECT_STREQ(request.GetCgiMapStr(kUser, "C"), "3");
    EXPECT_EQ(request.GetCgiMapStr(8, "A"), nullptr) << "another user's";
}

TEST_F(HttpData, GivesTheDispatchsFailureAndParsesNothing) {
    device().on("Other.cgi", {-14, ""});
    EXPECT_EQ(ask("Other.cgi"), -14);
    device().on("Other.cgi", -1);
    EXPECT_EQ(ask("Other.cgi"), -1);
    EXPECT_EQ(platform().countOf("createMapstrFromCgi"), 0);
    EXPECT_EQ(platform().lockDepth(), 0);
}

TEST_F(HttpData, FreesTheTextOfAFailedDispatch) {
    request.steps.requestHttpStr = [](unsigned int, char*, char*, char*, char** answer) {
        *answer = mallocedText(kUnknownParameter);
        return -2;
    };
    EXPECT_EQ(ask("Other.cgi"), -2);
}

TEST_F(HttpData, GivesTheParsersFailureAndSaysSo) {
    answer("no answer at all");
    for (const int code : {-5, 0, 2, -2, -8}) {
        platform().hooks.createMapstrFromCgi = [code](auto...) { return code; };
        platform().forget();
        EXPECT_EQ(ask("Other.cgi"), code);
        EXPECT_EQ(traces(), Lines{"??#3589 ParsingCGIData: uid=7:3, err" + std::to_string(code) + ". \n"});
    }
}

TEST_F(HttpData, ParsesIntoTheMapOfTheUser) {
    answer("0\nOK\n");
    CgiMap* given = nullptr;
    std::string text;
    platform().hooks.createMapstrFromCgi = [&](const char* parsed, CgiMap* map) {
        text = parsed;
        given = map;
        return 1;
    };
    EXPECT_EQ(ask("Other.cgi"), 1);
    EXPECT_EQ(given, &request.client().get_temp_cgicache_map());
    EXPECT_EQ(text, kPlainOk);
}

TEST_F(HttpData, HoldsTheStreamClientByACountedReference) {
    long during = 0;
    request.steps.requestHttpStr = [&](auto...) {
        during = request.get_streamid_client(kUser).use_count();
        return -2;
    };
    ask("Other.cgi");
    EXPECT_EQ(during, 2);
    EXPECT_EQ(request.get_streamid_client(kUser).use_count(), 1);
}

// ---- Looking up

TEST_F(HttpData, AKeyThatIsAbsentOrEmptyReadsAsNull) {
    CgiMap& map = request.client().get_temp_cgicache_map();
    map = {{"Empty", ""}, {"Full", "x"}};
    EXPECT_EQ(request.GetCgiMapStr(kUser, "Empty"), nullptr);
    EXPECT_EQ(request.GetCgiMapStr(kUser, "Absent"), nullptr);
    EXPECT_EQ(request.GetCgiMapStr(kUser, ""), nullptr);
    EXPECT_EQ(request.GetCgiMapStr(kUser, nullptr), nullptr);
    EXPECT_EQ(request.GetCgiMapStr(kUser, "full"), nullptr);
    EXPECT_EQ(map.size(), 2U) << "looking up left something behind";
}

TEST_F(HttpData, AValueIsGivenWithoutACopy) {
    CgiMap& map = request.client().get_temp_cgicache_map();
    map["Full"] = "x";
    EXPECT_EQ(request.GetCgiMapStr(kUser, "Full"), map["Full"].c_str());
}

} // namespace
} // namespace koine::test
