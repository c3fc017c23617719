// What no host and no device should send: a defined result, one of the two error answers, a free lock.

#include "dispatch_bench.h"

#include <new>

namespace koine::test {
namespace {

class BadInput : public ::testing::Test {
protected:
    BadInput() {
        request.connect();
        request.set_strm_setting_channel(3);
        request.client();
        device().answerAsCamera();
        platform().forget();
    }
    ~BadInput() override { EXPECT_EQ(platform().lockDepth(), 0); }

    int send(char* line, char** answer) {
        return request.BaseRequest::requestHttpStr(kUser, line, nullptr, nullptr, answer);
    }

    TestRequest request;
};

// ---- Lines

TEST_F(BadInput, ANullLineIsRefused) {
    Answer answer;
    EXPECT_EQ(send(nullptr, answer.out()), -2);
    EXPECT_EQ(answer.text(), kUnknownParameter);
    ASSERT_EQ(traces().size(), 2U) << "entry, and one line for the failure";
    EXPECT_NE(traces().back().find("uid=7:3, pchUrl=(null), err-2"), std::string::npos) << traces().back();
    EXPECT_EQ(send(nullptr, nullptr), -2);
    EXPECT_EQ(request.requestHttpData(kUser, nullptr, nullptr, nullptr), -2);
    EXPECT_TRUE(platform().requests().empty());
}

TEST_F(BadInput, ANullLineIsRefusedWithoutAnAddressToo) {
    TestRequest fresh;
    Answer answer;
    EXPECT_EQ(fresh.requestHttpStr(kUser, nullptr, nullptr, nullptr, answer.out()), -2);
    EXPECT_EQ(answer.text(), kUnknownParameter);
    EXPECT_EQ(fresh.server_address_2(), "");
}

TEST_F(BadInput, ANullLineStartsNoPendingStream) {
    request.init(kUser, "StreamSetup.Stream=1");
    EXPECT_EQ(send(nullptr, nullptr), -2);
    EXPECT_EQ(request.client().getInitStream(), "StreamSetup.Stream=1");
}

TEST_F(BadInput, NullCredentialsAreEmptyOnes) {
    TestRequest fresh;
    std::string line = "http://camera/Other.cgi";
    device().on("Other.cgi", kPlainOk);
    EXPECT_EQ(fresh.requestHttpStr(kUser, line.data(), nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(fresh.get_username(), "");
    EXPECT_EQ(platform().requests().front().username, "");
    EXPECT_EQ(platform().requests().front().password, "");
}

TEST_F(BadInput, AnEmptyLineGoesToTheDeviceWhenTheAddressIsKnown) {
    EXPECT_EQ(request.ask(""), (Reply{-6, kUnknownParameter}));
    EXPECT_EQ(platform().requests().size(), 1U);
}

TEST_F(BadInput, LinesThatAreNoUrlsAreRefusedWithoutAnAddress) {
    for (const std::string line :
         {"", " ", "Login.cgi", "http://", "http:///Login.cgi", "http://:80/Login.cgi",
          "http://camera:0/Login.cgi", "http://camera:70000/Login.cgi", "http://camera:port/Login.cgi",
          "ftp://camera/Login.cgi", "//camera/Login.cgi", "\x01\xff\xfe"}) {
        TestRequest fresh;
        EXPECT_EQ(fresh.ask(line), (Reply{-2, kUnknownParameter})) << line;
        EXPECT_EQ(fresh.server_address_2(), "") << line;
        EXPECT_EQ(fresh.server_port(), 80U) << line;
    }
    EXPECT_TRUE(platform().requests().empty());
}

TEST_F(BadInput, ALineOfAMebibyteIsCarriedOut) {
    const std::string tail(1024 * 1024, 'x');
    device().onBeginning("Other.cgi", kPlainOk);
    for (const std::string head :
         {"Other.cgi?", "Config.cgi?action=set&Video.I0.X=", "Stream.cgi?action=set&StreamSetup.Stream=",
          "Config.cgi?action=set&Camera.Detection.Sensitivity=1&", "PTZ.cgi?", "Other.cgi?Camera.DPTZ="}) {
        device().onBeginning(head.substr(0, 7), kPlainOk);
        EXPECT_EQ(request.ask(head + tail).result, 1) << head;
        EXPECT_GE(platform().requests().back().line.size(), tail.size()) << head;
    }
}

TEST_F(BadInput, BytesThatAreNoTextReachTheDeviceAsTheyAre) {
    std::string line = "Other.cgi?";
    for (int c = 1; c < 256; ++c)
        line += static_cast<char>(c);
    device().on(line, kPlainOk);
    EXPECT_EQ(request.ask(line), (Reply{1, kPlainOk}));
    EXPECT_EQ(platform().requestLines(), std::vector<std::string>{line});
}

TEST_F(BadInput, FormatsInLinesAndAnswersAreOnlyText) {
    const std::string formats = "%n%s%d%999999d%*c";
    const std::string line = "Other.cgi?" + formats;
    device().on(line, "0\nOK\nA=" + formats + "\n");
    EXPECT_EQ(request.ask(line), (Reply{1, "0\nOK\nA=" + formats + "\n"}));
    device().on(line, -6);
    EXPECT_EQ(request.ask(line).result, -6);
    EXPECT_EQ(traces().back(),
              "??#3868 BaseRequest.requestHttpStr: uid=7:3, pchInputUrl=" + line + ", error-6. \n");
    device().on("Login.cgi", "0\nOK\nProduct-ID=P\nProduct-Name=" + formats + "\n");
    EXPECT_EQ(request.ask("Login.cgi"), (Reply{1, "0\nOK\nProduct-ID=P\nProduct-Name=" + formats + "\n"}));
}

TEST_F(BadInput, UserNumbersOfAnySizeAreUsers) {
    for (const unsigned int uid : {0U, 2147483648U, 4294967295U}) {
        device().on("Other.cgi", kPlainOk);
        EXPECT_EQ(request.ask("Other.cgi", uid), (Reply{1, kPlainOk}));
        EXPECT_EQ(platform().requests().back().uid, uid);
    }
}

// ---- Answers

TEST_F(BadInput, AnAnswerWithoutABodyIsAPlainSuccessOrAFailedCache) {
    device().otherwise(1);
    EXPECT_EQ(request.ask("Other.cgi"), (Reply{1, kPlainOk}));
    device().on("Login.cgi", 1);
    EXPECT_EQ(request.ask("Login.cgi"), (Reply{-2, kUnknownParameter}));
    EXPECT_EQ(request.ask("Config.cgi?action=get&category=Video.*").text, kUnknownParameter);
    EXPECT_EQ(request.tell("Other.cgi"), 1);
}

TEST_F(BadInput, AnAnswerWithoutAFinalLineEndIsRead) {
    device().on("Login.cgi", "0\nOK\nProduct-ID=P\nProduct-Name=CAM");
    EXPECT_EQ(request.ask("Login.cgi"), (Reply{1, "0\nOK\nProduct-ID=P\nProduct-Name=CAM\n"}));
    device().on("Other.cgi", "0\nOK\nA=1");
    EXPECT_EQ(request.ask("Other.cgi"), (Reply{1, "0\nOK\nA=1"}));
}

TEST_F(BadInput, AnAnswerEndsAtItsFirstNul) {
    using namespace std::string_literals;
    device().on("Other.cgi", "0\nOK\nA=1\0\nB=2\n"s);
    EXPECT_EQ(request.ask("Other.cgi"), (Reply{1, "0\nOK\nA=1"}));
    device().on("Login.cgi", "0\nOK\nProduct-ID=P\nProduct-Name=CAM\0\nX=1\n"s);
    EXPECT_EQ(request.ask("Login.cgi"), (Reply{1, "0\nOK\nProduct-ID=P\nProduct-Name=CAM\n"}));
}

TEST_F(BadInput, AnswersThatAreNoneFailTheCachesAndAreNotKept) {
    for (const std::string text :
         {"", "\n", "garbage", "OK\n0\n", "<html>", "-1\nERROR: no.\n", "0x\nOK\n", "\xff\xfe"}) {
        TestRequest fresh;
        fresh.connect();
        device().on("Login.cgi", text);
        EXPECT_NE(fresh.ask("Login.cgi").result, 1) << text;
        device().on("Login.cgi", "0\nOK\nProduct-ID=P\nProduct-Name=N\n");
        EXPECT_EQ(fresh.ask("Login.cgi"), (Reply{1, "0\nOK\nProduct-ID=P\nProduct-Name=N\n"})) << text;
    }
}

TEST_F(BadInput, ARefusalInsideAnAnswerIsToldToTheHost) {
    device().on("Login.cgi", "-35\nERROR: Authentication error.\n");
    EXPECT_EQ(request.ask("Login.cgi"), (Reply{-1, kRefusedCredentials}));
}

TEST_F(BadInput, AnAnswerOfManyMebibytesIsPassedOn) {
    const std::string text = "0\nOK\nA=" + std::string(8 * 1024 * 1024, 'x') + "\n";
    device().on("Other.cgi", text);
    const Reply reply = request.ask("Other.cgi");
    EXPECT_EQ(reply.result, 1);
    EXPECT_TRUE(reply.text == text);
}

// ---- No memory

/// Each kind of line that takes its own way through the library.
const char* const kEveryKind[] = {
    "Other.cgi?a=b",
    "Login.cgi",
    "Capability.cgi?action=get",
    "Config.cgi?action=get&category=*",
    "Config.cgi?action=get&category=Video.*,Camera.*",
    "Config.cgi?action=set&Video.I0.Brightness=2&Camera.Detection.Sensitivity=3",
    "Config.cgi?action=set&Media.Profiles.Profile1.VideoEncoderConfiguration.Quality=5",
    "Stream.cgi?action=get",
    "Stream.cgi?action=set&StreamSetup.Transport.Protocol=RTSP&StreamSetup.Stream=1",
    "Stream.cgi?action=set&StreamSetup.Event.Resolution=640x480",
    "Onvif.cgi?action=GetStreamUri&ProfileToken=ONE",
    "PTZ.cgi?move=1",
};

class ShortOfMemory : public ::testing::TestWithParam<const char*> {
protected:
    /// One call on a new object; nothing but the call runs short.
    struct Outcome {
        int result;
        bool failed;
    };

    static Outcome attempt(unsigned int n, FailAllocations::Then then) {
        platform().reset();
        device().answerAsCamera();
        device().otherwise(kPlainOk);
        TestRequest request;
        std::string line = "http://camera/" + std::string(GetParam());
        std::string name = "admin";
        char unowned[] = "never read";
        char* answer = unowned;
        FailAllocations fail(n, then);
        const int result =
            request.BaseRequest::requestHttpStr(kUser, line.data(), name.data(), name.data(), &answer);
        const bool failed = fail.stop();
        EXPECT_EQ(platform().lockDepth(), 0) << n;
        EXPECT_NE(answer, unowned) << n << ": nothing was stored";
        expectText(result, answer, then);
        request.freeData(answer);
        // The object is as good as before.
        answer = nullptr;
        request.requestHttpStr(kUser, line.data(), nullptr, nullptr, &answer);
        EXPECT_NE(answer, nullptr) << n;
        request.freeData(answer);
        return {result, failed};
    }

    static void expectText(int result, const char* answer, FailAllocations::Then then) {
        if (answer == nullptr) { // not even the error answer fits
            EXPECT_TRUE(then == FailAllocations::Then::stayOut);
            EXPECT_NE(result, 1);
        } else if (result != 1) {
            EXPECT_EQ(answer, result == -1 ? kRefusedCredentials : kUnknownParameter);
        }
    }
};

TEST_P(ShortOfMemory, OneFailedAllocationAnywhereLeavesNothingBehind) {
    const StandardError said;
    const unsigned int attempts =
        failEachAllocation([](unsigned int n) { return attempt(n, FailAllocations::Then::recover).failed; });
    EXPECT_GT(attempts, 3U);
}

TEST_P(ShortOfMemory, NoMemoryFromAnyPointOnLeavesNothingBehind) {
    const StandardError said;
    const unsigned int attempts =
        failEachAllocation([](unsigned int n) { return attempt(n, FailAllocations::Then::stayOut).failed; });
    EXPECT_GT(attempts, 3U);
}

INSTANTIATE_TEST_SUITE_P(EveryKindOfLine, ShortOfMemory, ::testing::ValuesIn(kEveryKind));

TEST_F(BadInput, AnyAllocationThatFailsInAPassedOnLineGivesMinusEight) {
    device().otherwise(kDeviceText);
    const unsigned int attempts = failEachAllocation([](unsigned int n) {
        TestRequest fresh;
        std::string line = "http://camera/Other.cgi";
        std::string name = "a name that is too long to fit into a small string";
        Answer answer;
        FailAllocations fail(n);
        const int result =
            fresh.BaseRequest::requestHttpStr(kUser, line.data(), name.data(), name.data(), answer.out());
        const bool failed = fail.stop();
        EXPECT_EQ((Reply{result, answer.text()}),
                  failed ? (Reply{-8, kUnknownParameter}) : (Reply{1, kDeviceText}))
            << n;
        return failed;
    });
    EXPECT_GT(attempts, 5U);
}

TEST(BadInputOfADeviceClass, AStepThatRunsOutOfMemoryGivesMinusEight) {
    TestRequest request;
    request.connect();
    const auto throwing = [](auto...) -> int { throw std::bad_alloc(); };
    const auto fails = [&](const std::string& line) {
        EXPECT_EQ(request.ask(line), (Reply{-8, kUnknownParameter})) << line;
        EXPECT_EQ(platform().lockDepth(), 0) << line;
    };
    request.steps.requestCgi = throwing;
    fails("Other.cgi");
    request.steps.recoveryUrl = throwing;
    fails("Other.cgi");
    request.steps.getCacheLogin = throwing;
    fails("Login.cgi");
    request.steps.HandleInit = throwing;
    fails("Stream.cgi?action=set&StreamSetup.Setting.Channel=1");
    EXPECT_EQ(request.client().getInitStream().empty(), false) << "the stream was not started";
}

} // namespace
} // namespace koine::test
