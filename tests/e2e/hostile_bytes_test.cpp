// Bytes that no device should send, in answer to every kind of request.

#include "tests/e2e/cost.h"
#include "tests/e2e/small_camera.h"

#include "default_platform/host_settings.h"
#include "text/words.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <thread>
#include <vector>

namespace koine::test {
namespace {

using std::chrono::milliseconds;

constexpr int kAny = 99;
constexpr std::size_t kPieces = 4000; // no device sends more of them than this
constexpr std::chrono::seconds kForever{20};
constexpr const char* kChunked = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
const std::string kBlock(16 << 10, 'x');

struct Misdeed {
    const char* name;
    int result; ///< of any request that meets it
    Misbehaviour behaviour;
    std::size_t mostMemory = kMostMemory;
};

void PrintTo(const Misdeed& misdeed, std::ostream* stream) { *stream << misdeed.name; }

Misbehaviour saying(std::string text) {
    return [text = std::move(text)](RawConnection& connection, const std::string&) {
        connection.send(text);
        return false;
    };
}

/// Says it, and then goes on with the same again and again.
Misbehaviour goingOn(std::string text, std::string again, milliseconds pause) {
    return [text = std::move(text), again = std::move(again), pause](RawConnection& connection,
                                                                     const std::string&) {
        connection.send(text);
        connection.sendAgainAndAgain(again, pause, kPieces);
        return false;
    };
}

/// Refuses every request anew, on the same connection.
Misbehaviour challenging(std::function<std::string(int)> challenge) {
    const auto number = std::make_shared<std::atomic<int>>(0);
    return [challenge = std::move(challenge), number](RawConnection& connection, const std::string&) {
        return connection.send(
            answerText("401 Unauthorized", "no", "WWW-Authenticate: " + challenge((*number)++) + "\r\n"));
    };
}

std::string freshNonce(int number) {
    return "Digest realm=\"r\", nonce=\"" + std::to_string(number) + "\", stale=true";
}

const std::string kNul("\0", 1);

/// As many pairs as fit: each takes more memory than it has bytes.
std::string shortestPairs() {
    std::string text = "0\nOK\n";
    for (int number = 0; text.size() < kBodyLimit - 10; ++number)
        text += std::to_string(number) + "=\n";
    return text;
}

const std::vector<Misdeed>& misdeeds() {
    static const std::vector<Misdeed> all = {
        {"declares more than it sends, and closes", -5,
         saying("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n0\nOK\n")},
        {"declares more than it sends, and waits", -4,
         [](RawConnection& connection, const std::string&) {
             connection.send("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n0\nOK\n");
             connection.wait(kForever);
             return false;
         }},
        {"declares less than it sends", kAny,
         saying("HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\n0\nOK\nHTTP/1.1 500 x\r\n\r\n")},
        {"declares more than anybody may send", -5,
         saying("HTTP/1.1 200 OK\r\nContent-Length: 4000000000\r\n\r\n0\nOK\n")},
        {"chunks without an end, fast", -5, goingOn(kChunked, "4000\r\n" + kBlock + "\r\n", milliseconds(0))},
        {"chunks without an end, slowly", -4, goingOn(kChunked, "1\r\nx\r\n", milliseconds(4))},
        {"a chunk larger than memory", -5, saying(std::string(kChunked) + "FFFFFFFFFFFFFFF\r\nx")},
        {"a body without an end", -5, goingOn("HTTP/1.1 200 OK\r\n\r\n", kBlock, milliseconds(0))},
        {"a trickle of status line", -4, goingOn("HTTP/1.1 200 ", "O", milliseconds(4))},
        {"a trickle of headers", -4, goingOn("HTTP/1.1 200 OK\r\n", "X: y\r\n", milliseconds(4))},
        {"a trickle of body", -4,
         goingOn("HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n", "x", milliseconds(4))},
        {"a trickle of interim answers", -4, goingOn("", "HTTP/1.1 100 Continue\r\n\r\n", milliseconds(4))},
        {"a flood of headers", -5,
         goingOn("HTTP/1.1 200 OK\r\n", "X: " + std::string(1000, 'x') + "\r\n", milliseconds(0))},
        {"a header line without an end", -8, goingOn("HTTP/1.1 200 OK\r\nX: ", kBlock, milliseconds(0))},
        {"a challenge after each answer to one, Digest", -1, challenging(freshNonce)},
        {"a challenge after each answer to one, Basic", -1,
         challenging([](int) { return "Basic realm=\"r\""; })},
        {"a challenge that changes its kind each time", -1,
         challenging([](int n) { return n % 2 == 0 ? "Basic realm=\"r\"" : freshNonce(n); })},
        {"a challenge of a kind that nobody knows", -1, challenging([](int) { return "Negotiate %n%s%x"; })},
        {"a refusal whose body has no end", -5,
         goingOn(
             "HTTP/1.1 401 x\r\nWWW-Authenticate: Basic realm=\"r\"\r\nTransfer-Encoding: chunked\r\n\r\n",
             "4000\r\n" + kBlock + "\r\n", milliseconds(0))},
        {"a NUL in the status line", kAny, saying("HTTP/1.1 200 O" + kNul + "K\r\n\r\n0\nOK\n")},
        {"a NUL in a header", kAny, saying("HTTP/1.1 200 OK\r\nX: a" + kNul + "b\r\n\r\n0\nOK\n")},
        {"a NUL before everything", -5, saying(kNul + "HTTP/1.1 200 OK\r\n\r\n0\nOK\n")},
        {"NULs in the text", kAny, saying(answerText("200 OK", "0\nOK\nA" + kNul + "=1\nB=" + kNul + "\n"))},
        {"nothing but NULs", kAny, saying(answerText("200 OK", std::string(1000, '\0')))},
        {"a line of 10 MiB above the limit", -5,
         saying(answerText("200 OK", "0\nOK\nA=" + std::string(10 << 20, 'x') + "\n"))},
        {"as many pairs as fit", kAny, saying(answerText("200 OK", shortestPairs())), kMostCacheMemory},
        {"percent signs everywhere", kAny,
         saying("HTTP/1.1 200 %n%s%x\r\n%n%s%x: %n%s%x\r\nSet-Cookie: %n=%s\r\n\r\n0\n%n%s%x\n%n%s=%x%n\n")},
    };
    return all;
}

void expectNoHarm(const Misdeed& misdeed, const RequestKind& kind, const Limits& limits,
                  unsigned int connections) {
    const std::string what = kind.name + (", connections: " + std::to_string(connections));
    IllCamera camera(misdeed.behaviour, "");
    const auto object = camera.object(connections);
    const Cost cost = costOf([&] { return ask(*object, kind); });
    expectCheap(cost, what, limits.time(), {object->requestsSent(), object->requestsFailed()},
                connections == 1 ? misdeed.mostMemory : kAnyMemory);
    EXPECT_TRUE(isStated(cost.answer)) << what << ": " << cost.answer.text;
    if (misdeed.result != kAny) {
        EXPECT_EQ(cost.answer.result, misdeed.result) << what;
    }
    // At most five for each, challenges included, and what was asked ahead.
    const std::size_t ahead = connections == 1 ? 0 : 8;
    EXPECT_LE(camera.server().requests().size(), 5 * object->requestsSent() + ahead) << what;
    camera.heal();
    EXPECT_EQ(request(*object, 1, "PTZ.cgi?stop=1").result, 1) << what << ", healed";
}

class HostileBytes : public testing::TestWithParam<Misdeed> {};

TEST_P(HostileBytes, HarmNoKindOfRequest) {
    const Misdeed& misdeed = GetParam();
    const Limits limits(misdeed.result == -4 ? kShortLimit : kLongLimit);
    for (const unsigned int connections : kConnections) {
        std::vector<std::thread> threads; // most of the time is waiting
        for (const RequestKind& kind : kRequestKinds)
            threads.emplace_back([&] { expectNoHarm(misdeed, kind, limits, connections); });
        for (std::thread& thread : threads)
            thread.join();
    }
}

/// A text of `kBodyLimit` whose last value is a list of pieces, each made of its number.
std::string longList(std::string text, const std::function<std::string(int)>& piece) {
    for (int number = 0; text.size() < kBodyLimit - 20; ++number)
        text += piece(number) + ",";
    text.back() = '\n';
    return text;
}

/// Short names, all different.
std::string encodingName(int number) {
    std::string name;
    for (int digit = 0; digit < 4; ++digit, number /= 26)
        name += static_cast<char>('a' + number % 26);
    return name;
}

std::string sizeOf(int number) { return std::to_string(number % 4000) + "x" + std::to_string(number % 3000); }

struct Lists {
    const char* name;
    std::string capability;
    std::string media;
};

/// Lists of a megabyte which the library multiplies: by the keys of an encoding, by the number of profiles.
const std::vector<Lists>& lists() {
    static const std::string kFormat = "0\nOK\nDevice=IPCAM\nCapability.Video.Format=H264,H265,JPEG\n";
    static const std::string kFirst = "0\nOK\nMedia.Profiles.Count=1\nMedia.Profiles.Profile1.";
    static const std::string kMany = "0\nOK\nMedia.Profiles.Count=1024\n";
    static const std::string kEncodings = "VideoEncoderConfiguration.EncodingList=";
    static const std::string kSizes = "Capability.Video.Resolution.NxN=";
    static const std::vector<Lists> all = {
        {"encodings", kFormat + kSizes + "1x1\n", longList(kFirst + kEncodings, encodingName)},
        {"encodings, shorter", kFormat + kSizes + "1x1\n",
         longList(kFirst + kEncodings, encodingName).substr(0, 40'000) + "\n"},
        {"sizes", longList(kFormat + kSizes, sizeOf), kMany},
        {"sizes of one profile", kFormat,
         longList(kFirst + "VideoEncoderConfiguration.H264.Resolution.NxN.List=", sizeOf)},
        {"encodings and sizes", longList(kFormat + kSizes, sizeOf),
         longList(kFirst + kEncodings, encodingName)},
    };
    return all;
}

TEST(HostileBytes, ListsMultiplyWithinTheStatedMemory) {
    const Limits limits(kLongLimit);
    for (const Lists& each : lists()) {
        IllCamera camera(
            [&](RawConnection& connection, const std::string& asked) {
                return connection.send(
                    contains(firstLine(asked), "Capability.cgi")   ? answerText("200 OK", each.capability)
                    : contains(firstLine(asked), "category=Media") ? answerText("200 OK", each.media)
                                                                   : smallCameraAnswer(asked));
            },
            "");
        const auto object = camera.object();
        const Cost cost =
            costOf([&] { return request(*object, 1, "Config.cgi?action=get&category=Media.*"); });
        EXPECT_EQ(cost.answer.result, 1) << each.name;
        EXPECT_LE(cost.memory, kMostListMemory) << each.name;
        EXPECT_LE(cost.processor.count(), 2 * mostProcessorTime().count()) << each.name;
        RecordProperty(each.name, static_cast<int>(cost.memory >> 10U));
    }
}

/// For as long as it lives somebody reads the trace lines.
class TraceReader {
public:
    TraceReader() {
        traceToCallback(
            [](const char* line, void* self) {
                auto& longest = static_cast<TraceReader*>(self)->longest_;
                longest = std::max(longest, std::strlen(line));
            },
            this);
    }
    ~TraceReader() { traceToNowhere(); }
    TraceReader(const TraceReader&) = delete;
    TraceReader& operator=(const TraceReader&) = delete;

    std::size_t longest() const { return longest_; }

private:
    std::size_t longest_ = 0;
};

/// Masking a megabyte of '=' takes 22 ms, and 620 ms where nothing is inlined.
std::chrono::milliseconds mostTracedTime() {
#ifdef __OPTIMIZE__
    return mostProcessorTime();
#else
    return 5 * mostProcessorTime();
#endif
}

TEST(HostileBytes, TracedAreAsCheapAsOthers) {
    const Limits limits(kLongLimit);
    for (const char* const piece : {"=", "://", "password=&"}) {
        const TraceReader reader;
        std::string text = "0\nOK\nMedia.Profiles.Count=1\nMedia.Profiles.Profile1.token=";
        while (text.size() < kBodyLimit - 20)
            text += piece;
        IllCamera camera(saying(answerText("200 OK", text + "\n")), "category=Media");
        const auto object = camera.object();
        for (const RequestKind& kind : kRequestKinds) {
            const Cost cost = costOf([&] { return ask(*object, kind); });
            EXPECT_LE(cost.processor.count(), mostTracedTime().count()) << kind.name << " " << piece;
        }
        EXPECT_GT(reader.longest(), kBodyLimit / 2) << piece;
    }
}

INSTANTIATE_TEST_SUITE_P(Every, HostileBytes, testing::ValuesIn(misdeeds()));

/// A camera that cuts the connection within the answer that a kind is about.
class CuttingCamera {
public:
    explicit CuttingCamera(const RequestKind& kind)
        : camera_(
              [this](RawConnection& connection, const std::string& asked) { return cut(connection, asked); },
              // Whether a stream's encoder could be set makes no difference to its start.
              contains(kind.ownPath, "action=set") && !contains(kind.line, "Config.cgi") ? "category=Media"
                                                                                         : kind.ownPath) {}

    void cutAfter(std::size_t length, bool byReset) {
        length_ = length;
        byReset_ = byReset;
        camera_.fallIll();
    }
    void heal() { camera_.heal(); }
    std::size_t whole() const { return whole_; }
    boost::shared_ptr<DialectRequest> object() const { return camera_.object(); }

private:
    bool cut(RawConnection& connection, const std::string& asked) {
        const std::string answer = smallCameraAnswer(asked);
        whole_ = answer.size();
        connection.send(std::string_view(answer).substr(0, length_));
        if (byReset_)
            connection.reset();
        return false;
    }

    std::atomic<std::size_t> length_{0};
    std::atomic<bool> byReset_{false};
    std::atomic<std::size_t> whole_{1};
    IllCamera camera_;
};

class CutAnswers : public testing::TestWithParam<RequestKind> {};

TEST_P(CutAnswers, AfterEveryByteAreFailuresAndNoMore) {
    CuttingCamera camera(GetParam());
    for (std::size_t length = 0; length < camera.whole(); ++length)
        for (const bool byReset : {false, true}) {
            camera.cutAfter(length, byReset);
            const auto object = camera.object();
            const Answer answer = ask(*object, GetParam());
            EXPECT_EQ(answer.result, -5) << length;
            EXPECT_TRUE(isStated(answer)) << length << ": " << answer.text;
            camera.heal();
            EXPECT_EQ(request(*object, 1, "PTZ.cgi?stop=1").result, 1) << length << ", healed";
        }
    EXPECT_GT(camera.whole(), 40U);
}

INSTANTIATE_TEST_SUITE_P(Every, CutAnswers, testing::ValuesIn(kRequestKinds));

TEST(HostileBytes, ALineOf10MebibytesWithinTheLimitIsTaken) {
    const std::string answer = answerText("200 OK", "0\nOK\nA=" + std::string(10 << 20, 'x') + "\n");
    for (const RequestKind& kind : kRequestKinds) {
        IllCamera camera(saying(answer), kind.ownPath);
        const auto object = camera.object();
        const Cost cost = costOf([&] { return ask(*object, kind); });
        EXPECT_TRUE(isStated(cost.answer)) << kind.name;
        // The client's body, the copy that a step gets, what is kept of it and the answer made of that.
        EXPECT_LE(cost.memory, std::size_t{45} << 20) << kind.name;
        EXPECT_LE(cost.processor.count(), mostProcessorTime().count()) << kind.name;
        RecordProperty(kind.name, static_cast<int>(cost.memory >> 10));
    }
}

TEST(HostileBytes, RedirectsAreFollowedNowhere) {
    const RawServer elsewhere([](RawConnection&) {});
    const std::string place = "127.0.0.1:" + std::to_string(elsewhere.port());
    const std::vector<std::string> headers = {
        "Location: http://" + place + "/Login.cgi",
        "Location: //" + place + "/",
        "Location: http://admin:s3cret@" + place + "/",
        "Location: HTTP://" + place,
        "Location: https://" + place + "/",
        "Location: ftp://" + place + "/",
        "Location: http:\\\\" + place + "/",
        "Refresh: 0; url=http://" + place + "/",
        "Content-Location: http://" + place + "/",
        "Alt-Svc: http/1.1=\"" + place + "\"; ma=86400",
        "Link: <http://" + place + "/>; rel=canonical",
        "Strict-Transport-Security: max-age=1000",
    };
    for (const char* status : {"301 x", "302 x", "303 x", "305 x", "307 x", "308 x"})
        for (const std::string& header : headers) {
            IllCamera camera(saying(answerText(status, "0\nOK\n", header + "\r\n")), "");
            const auto object = camera.object();
            const Answer answer = request(*object, 1, "Login.cgi");
            EXPECT_EQ(answer.result, -6) << status << " " << header;
            EXPECT_EQ(camera.server().requests().size(), 1U) << status << " " << header;
            camera.heal();
            EXPECT_EQ(request(*object, 1, "Login.cgi").result, 1) << status << " " << header;
        }
    EXPECT_EQ(elsewhere.connections(), 0);
}

} // namespace
} // namespace koine::test
