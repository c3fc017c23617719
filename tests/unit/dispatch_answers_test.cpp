// Lines that the library answers itself, and stream-only sources, which are never asked anything.

#include "dispatch_bench.h"

namespace koine::test {
namespace {

class StreamOnly : public DispatchBench {
protected:
    StreamOnly() {
        request.setVendor("ONLY_STREAM");
        request.steps.buildCgiStreamGet = says(1, "0\nOK\nStream.X=1");
    }
};

const std::string kStreamOnlyCapability =
    "0\nOK\nCapability.Audio.Format=ULAW\nCapability.Audio.Input.Channel=1\n"
    "Capability.Audio.Output.Channel=1\nCapability.Function=AudioVolume\n"
    "Capability.Peripherals=AudioIn,AudioOut\n";

TEST_F(StreamOnly, HasFixedCapabilities) {
    EXPECT_EQ(request.ask("http://camera/Capability.cgi?action=get&x=1"), (Reply{1, kStreamOnlyCapability}));
    EXPECT_TRUE(stepsTaken().empty());
    EXPECT_TRUE(tracesAre({entered("http://camera/Capability.cgi?action=get&x=1")}));
}

TEST_F(StreamOnly, AnswersAllOtherLinesPlainly) {
    for (const std::string line :
         {"Other.cgi", "Login.cgi", "Config.cgi?action=get&category=*", "Config.cgi?action=set&A=1",
          "Stream.cgi?action=set&A=1", "Onvif.cgi?action=GetStreamUri", "Capability.cgi", ""})
        EXPECT_EQ(request.ask(line), (Reply{1, kPlainOk})) << line;
    EXPECT_TRUE(stepsTaken().empty());
    EXPECT_TRUE(platform().requests().empty());
}

TEST_F(StreamOnly, IsRecognisedByTheBeginningOfItsVendorInAnyCase) {
    for (const char* vendor : {"ONLY_STREAM", "only_stream", "Only_Stream-XYZ", "oNLY_sTREAM 2"}) {
        request.setVendor(vendor);
        EXPECT_EQ(request.ask("Other.cgi").text, kPlainOk) << vendor;
    }
    for (const char* vendor : {"", "ONLY_STREA", "ONLY-STREAM", " ONLY_STREAM", "XONLY_STREAM"}) {
        request.setVendor(vendor);
        EXPECT_EQ(request.ask("Other.cgi").text, kDeviceText) << vendor;
    }
}

TEST_F(StreamOnly, TellsItsStream) {
    EXPECT_EQ(request.ask("Stream.cgi?action=get"), (Reply{1, "0\nOK\nStream.X=1"}));
    EXPECT_EQ(stepsTaken(), Lines{"buildCgiStreamGet(7, Stream.cgi?action=get, answer)"});
}

TEST_F(StreamOnly, TellsItsStreamBeforeItsCapabilities) {
    EXPECT_EQ(request.ask("Capability.cgi?action=get&Stream.cgi?action=get").text, "0\nOK\nStream.X=1");
}

TEST_F(StreamOnly, FailsWithZeroWhenTheStreamCannotBeTold) {
    for (const int result : {0, -1, -8}) {
        request.steps.buildCgiStreamGet = says(result, "half");
        platform().forget();
        EXPECT_EQ(request.ask("Stream.cgi?action=get"), (Reply{0, kUnknownParameter}));
        EXPECT_TRUE(
            tracesAre({entered("Stream.cgi?action=get"), "??#3717 BaseRequest.requestHttpStr: uid=7:3, "
                                                         "pchInputUrl=Stream.cgi?action=get, err0. \n"}));
    }
}

TEST_F(StreamOnly, IsCarriedOutWithoutAnAnswerPointerToo) {
    EXPECT_EQ(request.tell("Stream.cgi?action=get"), 1);
    EXPECT_EQ(stepsTaken(), Lines{"buildCgiStreamGet(7, Stream.cgi?action=get, answer)"});
    EXPECT_EQ(request.tell("Capability.cgi?action=get"), 1);
    EXPECT_EQ(request.tell("Other.cgi"), 1);
}

TEST_F(StreamOnly, FailsWhenTheFixedAnswerDoesNotFitIntoMemory) {
    for (std::string line : {"Other.cgi", "Capability.cgi?action=get"}) {
        Answer answer;
        FailAllocations fail(2, FailAllocations::Then::recover, FailAllocations::Which::texts);
        const int result =
            request.BaseRequest::requestHttpStr(kUser, line.data(), nullptr, nullptr,
                                                answer.out()); // the copy of the line comes first
        EXPECT_TRUE(fail.stop());
        EXPECT_EQ((Reply{result, answer.text()}), (Reply{-8, kUnknownParameter})) << line;
    }
}

TEST_F(StreamOnly, StartsAPendingStreamFirst) {
    request.init(kUser, "prepared");
    EXPECT_EQ(request.ask("Other.cgi").text, kPlainOk);
    EXPECT_EQ(stepsTaken(), (Lines{"ParseStreamInit(prepared)", "HandleInit(7)"}));
}

TEST(StreamOnlySource, NeverContactsTheDeviceEvenWhenAStreamIsSetUp) {
    TestRequest request;
    request.connect();
    request.setVendor("ONLY_STREAM_1");
    EXPECT_EQ(request.ask("Stream.cgi?action=set&StreamSetup.Transport.Protocol=RTSP").result, 1);
    EXPECT_EQ(request.ask("Stream.cgi?action=get").result, 1);
    EXPECT_TRUE(platform().requests().empty());
}

// ---- All other vendors

struct LocalLine {
    const char* marker;
    const char* step; // as noted, with its arguments; "$" stands for the line
    int traceLine;
    bool reportsZero;
};

void PrintTo(const LocalLine& line, std::ostream* out) { *out << line.marker; }

constexpr LocalLine kLocalLines[] = {
    {"Stream.cgi?action=get", "buildCgiStreamGet(7, $, answer)", 3758, true},
    {"Onvif.cgi?action=GetStreamUri", "buildCgiGetStreamUri(7, $, answer)", 3765, true},
    {"Config.cgi?action=get", "handleConfigGet(7, $, answer)", 3772, false},
    {"Login.cgi", "getCacheLogin(7, 0, $, answer)", 3781, false},
    {"Capability.cgi?action=get", "getCacheCapability(7, 0, $, answer)", 3790, false},
};

class LocalAnswers : public DispatchBench, public ::testing::WithParamInterface<LocalLine> {
protected:
    /// Lets all five steps give this result and text.
    void allSay(int result, const char* text) {
        const auto say = [result, text](char** answer) {
            if (text != nullptr)
                *answer = mallocedText(text);
            return result;
        };
        const auto line = [say](unsigned int, char*, char** answer) { return say(answer); };
        const auto cache = [say](unsigned int, int, const char*, char** answer) { return say(answer); };
        request.steps.buildCgiStreamGet = line;
        request.steps.buildCgiGetStreamUri = line;
        request.steps.handleConfigGet = line;
        request.steps.getCacheLogin = cache;
        request.steps.getCacheCapability = cache;
    }

    static std::string step(const std::string& line) {
        std::string text = GetParam().step;
        return text.replace(text.find('$'), 1, line);
    }
};

TEST_P(LocalAnswers, ComeFromTheirStepAndNotFromTheDevice) {
    allSay(1, "0\nOK\nlocal");
    const std::string line = std::string("http://x/") + GetParam().marker + "&more";
    EXPECT_EQ(request.ask(line), (Reply{1, "0\nOK\nlocal"}));
    EXPECT_EQ(stepsTaken(), (Lines{step(line), "recoveryUrl(7, " + line + ", answer)"}));
    EXPECT_TRUE(tracesAre({entered(line)}));
}

TEST_P(LocalAnswers, ComeFromTheDeviceWhenTheStepHasNoText) {
    allSay(1, nullptr);
    EXPECT_EQ(request.ask(GetParam().marker), (Reply{1, kDeviceText}));
    EXPECT_EQ(platform().countOf("requestCgi("), 1);
}

TEST_P(LocalAnswers, FailWithTheirTraceAndResult) {
    const std::string line = GetParam().marker;
    for (const int result : {0, -1, -2, -8, -14, 5}) {
        allSay(result, "half");
        platform().forget();
        const int reported = GetParam().reportsZero ? 0 : result;
        EXPECT_EQ(request.ask(line),
                  (Reply{reported, reported == -1 ? kRefusedCredentials : kUnknownParameter}));
        EXPECT_EQ(stepsTaken(), Lines{step(line)});
        EXPECT_TRUE(tracesAre({entered(line), "??#" + std::to_string(GetParam().traceLine) +
                                                  " BaseRequest.requestHttpStr: uid=7:3, pchInputUrl=" +
                                                  line + ", err" + std::to_string(reported) + ". \n"}));
    }
}

TEST_P(LocalAnswers, AreNotMadeWithoutAnAnswerPointer) {
    allSay(1, "0\nOK\nlocal");
    const std::string line = GetParam().marker;
    EXPECT_EQ(request.tell(line), 1);
    EXPECT_EQ(stepsTaken(),
              (Lines{"recoveryUrl(7, " + line + ", answer)", "requestCgi(7, " + line + ", answer, 0, 0)"}));
}

TEST_P(LocalAnswers, AreMadeForExactlyTheirMarker) {
    allSay(1, "0\nOK\nlocal");
    std::string line = GetParam().marker;
    line[0] = static_cast<char>(line[0] - 'A' + 'a');
    EXPECT_EQ(request.ask(line), (Reply{1, kDeviceText}));
}

TEST_P(LocalAnswers, AreMadeByTheFirstMarkerOfTheTable) {
    allSay(1, "0\nOK\nlocal");
    // This marker stands last in the line, behind all those that the table names later.
    std::string line;
    for (const LocalLine& other : kLocalLines)
        if (other.traceLine > GetParam().traceLine)
            line = std::string(other.marker) + "&" + line;
    line += GetParam().marker;
    EXPECT_EQ(request.ask(line).result, 1);
    EXPECT_EQ(stepsTaken().front(), step(line));
    EXPECT_EQ(stepsTaken().size(), 2U);
}

INSTANTIATE_TEST_SUITE_P(EveryRow, LocalAnswers, ::testing::ValuesIn(kLocalLines));

} // namespace
} // namespace koine::test
