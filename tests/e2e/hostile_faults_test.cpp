// Every fault of the simulated device against every kind of request: the request ends in time with a stated
// result, costs little, and the healed device is served.

#include "tests/e2e/cost.h"
#include "tests/e2e/request_kinds.h"

#include "text/words.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace koine::test {
namespace {

using sim::AuthKind;

constexpr int kDependsOnTheKind = 99;
constexpr int kDependsOnTheMachine = 99; // it takes the device a while to say all that

struct Fault {
    const char* text;
    int result; ///< of any request that meets it
};

void PrintTo(const Fault& fault, std::ostream* stream) { *stream << fault.text; }

constexpr Fault kFaults[] = {
    {"delay=20", 1},
    {"delay=2000", -4},
    {"hang", -4},
    {"refuse", -3},
    {"reset-connection", kDependsOnTheKind}, // -3 or -5: it may come before the connection counts as made
    {"reset-before-body", -5},
    {"reset-within-body=3", -5},
    {"reset-within-answer=10", -5},
    {"close-within-answer=10", -5},
    {"truncated-body=3", -5},
    {"short-length=5", kDependsOnTheKind},
    {"drip=20", -4},
    {"endless-body", -5},
    {"endless-chunks", -5},
    {"chunked=7", 1},
    {"empty-body", kDependsOnTheKind},
    {"garbage", -5},
    {"wrong-status-line", -5},
    {"status=500", -6},
    {"status=404", -14},
    {"status=403", -1},
    {"status=503", -6},
    {"401-storm", -1},
    {"redirect=http://127.0.0.1:1/Login.cgi", -6},
    {"header-flood=6000", kDependsOnTheMachine},
    {"close", 1},
    {"close-silently", 1},
    {"answer=-11\\nERROR: Unknown parameter.\\n", kDependsOnTheKind},
    {"answer=<html>not the dialect</html>", kDependsOnTheKind},
    {"answer=0\\nOK\\n%n%s%x=%n%s%x\\nA=\\0B=2\\n", kDependsOnTheKind},
    {"answer=0\\nOK\\nMedia.Profiles.Count=2147483647\\nProduct-Name=%n%s%x\\n", kDependsOnTheKind},
    {"raw=HTTP/1.1 200 OK\\r\\n\\r\\n0\\nOK\\nA=1", kDependsOnTheKind},
};

/// Where it shows: at the first request to the device already, or at the one that the kind is about.
enum class Place { everywhere, atItsOwnRequest };

std::string faultText(const Fault& fault, const RequestKind& kind, Place place) {
    std::string text = fault.text;
    if (place == Place::atItsOwnRequest)
        text.append(";path=").append(kind.ownPath);
    return text;
}

bool takesPath(const Fault& fault) {
    const std::string_view text = fault.text;
    return text != "refuse" && text != "reset-connection" && text != "401-storm";
}

int expectedResult(const Fault& fault, const RequestKind& kind, Place place) {
    const std::string_view path = kind.ownPath;
    // A device without media profiles is no failure, and a stream starts with what the encoder is set to when
    // it cannot be set.
    const bool isMedia = path == "category=Media" && fault.result == -14;
    const bool setsEncoder =
        place == Place::atItsOwnRequest && path == "action=set" && contains(kind.line, "Stream.cgi");
    return isMedia || setsEncoder ? 1 : fault.result;
}

void expectHealed(Rig& rig, const RequestKind& kind, const std::string& what) {
    rig.peer().clearFaults();
    EXPECT_EQ(rig.ask("Login.cgi").result, 1) << what;
    EXPECT_EQ(rig.ask("PTZ.cgi?stop=1").result, 1) << what;
    EXPECT_EQ(ask(*rig.another(), kind).result, 1) << what;
}

void expectEndsWell(const Fault& fault, const RequestKind& kind, Place place, AuthKind auth) {
    Rig rig(auth);
    const std::string text = faultText(fault, kind, place);
    const std::string what = std::string(kind.name) + ", " + text;
    rig.misbehave(text);
    const Cost cost = costOf([&] { return ask(rig.device(), kind); });
    expectCheap(cost, what, rig.device().requestsSent(),
                contains(text, "Profiles.Count") ? kMostCacheMemory : kMostMemory);
    EXPECT_TRUE(isStated(cost.answer)) << what << ": " << cost.answer.result << " " << cost.answer.text;
    if (fault.result != kDependsOnTheKind) {
        EXPECT_EQ(cost.answer.result, expectedResult(fault, kind, place)) << what;
    }
    expectHealed(rig, kind, what);
}

class HostileFaults : public testing::TestWithParam<Fault> {};

TEST_P(HostileFaults, HarmNoKindOfRequest) {
    const ShortLimits limits;
    const Fault& fault = GetParam();
    std::vector<std::thread> threads; // most of the time is waiting
    for (const RequestKind& kind : kRequestKinds) {
        threads.emplace_back([&] { expectEndsWell(fault, kind, Place::everywhere, AuthKind::none); });
        if (takesPath(fault))
            threads.emplace_back(
                [&] { expectEndsWell(fault, kind, Place::atItsOwnRequest, AuthKind::digestMd5); });
    }
    for (std::thread& thread : threads)
        thread.join();
}

INSTANTIATE_TEST_SUITE_P(Every, HostileFaults, testing::ValuesIn(kFaults));

} // namespace
} // namespace koine::test
