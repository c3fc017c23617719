// Every fault of the simulated device against every kind of request: the request ends in time with a stated
// result, costs little, and the healed device is served.

#include "tests/e2e/cost.h"
#include "tests/e2e/request_kinds.h"

#include "text/words.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace koine::test {
namespace {

using sim::AuthKind;
using std::chrono::milliseconds;

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

/// A device and a kind of request, before and after the device is healed.
class Trial {
public:
    Trial(const Fault& fault, const RequestKind& kind, Place place, unsigned int connections)
        : fault_(fault),
          kind_(kind),
          place_(place),
          text_(faultText(fault, kind, place)),
          what_(std::string(kind.name) + ", " + text_ + ", connections: " + std::to_string(connections)),
          // Digest is asked for before the second place is reached.
          rig_(place == Place::everywhere ? AuthKind::none : AuthKind::digestMd5) {
        rig_.device().setConnections(connections);
    }

    void expectEndsWell(milliseconds limit) {
        rig_.misbehave(text_);
        const Cost cost = costOf([&] { return ask(rig_.device(), kind_); });
        expectCheap(cost, what_, limit, {rig_.device().requestsSent(), rig_.device().requestsFailed()},
                    mostMemory());
        EXPECT_TRUE(isStated(cost.answer)) << what_ << ": " << cost.answer.result << cost.answer.text;
        if (fault_.result != kDependsOnTheKind) {
            EXPECT_EQ(cost.answer.result, expectedResult(fault_, kind_, place_)) << what_;
        }
    }

    void expectHealed() {
        rig_.peer().clearFaults();
        EXPECT_EQ(rig_.ask("Login.cgi").result, 1) << what_;
        EXPECT_EQ(rig_.ask("PTZ.cgi?stop=1").result, 1) << what_;
        EXPECT_EQ(ask(*rig_.another(), kind_).result, 1) << what_;
    }

private:
    std::size_t mostMemory() {
        if (rig_.device().connections() != 1)
            return kAnyMemory;
        return contains(text_, "Profiles.Count") ? kMostCacheMemory : kMostMemory;
    }

    const Fault& fault_;
    const RequestKind& kind_;
    const Place place_;
    const std::string text_;
    const std::string what_;
    Rig rig_;
};

/// All at once: most of the time is waiting.
void forAll(std::vector<std::unique_ptr<Trial>>& trials, const std::function<void(Trial&)>& step) {
    std::vector<std::thread> threads;
    for (const auto& trial : trials)
        threads.emplace_back([&] { step(*trial); });
    for (std::thread& thread : threads)
        thread.join();
}

class HostileFaults : public testing::TestWithParam<Fault> {};

TEST_P(HostileFaults, HarmNoKindOfRequest) {
    const Fault& fault = GetParam();
    for (const unsigned int connections : kConnections) {
        std::vector<std::unique_ptr<Trial>> trials;
        for (const RequestKind& kind : kRequestKinds) {
            trials.push_back(std::make_unique<Trial>(fault, kind, Place::everywhere, connections));
            if (takesPath(fault))
                trials.push_back(std::make_unique<Trial>(fault, kind, Place::atItsOwnRequest, connections));
        }
        {
            const Limits limits(fault.result == -4 ? kShortLimit : kLongLimit);
            forAll(trials, [&](Trial& trial) { trial.expectEndsWell(limits.time()); });
        }
        forAll(trials, [](Trial& trial) { trial.expectHealed(); });
    }
}

/// The words that the simulated device knows.
std::set<std::string> faultWords() {
    std::set<std::string> words;
    std::istringstream help(sim::faultHelp());
    for (std::string line; std::getline(help, line);)
        words.insert(line.substr(0, line.find_first_of("=[ ")));
    return words;
}

TEST(HostileFaults, AreAllThatTheDeviceKnows) {
    std::set<std::string> tried;
    for (const Fault& fault : kFaults)
        tried.emplace(sim::faultName(sim::parseFault(fault.text).kind));
    EXPECT_EQ(tried, faultWords());
}

INSTANTIATE_TEST_SUITE_P(Every, HostileFaults, testing::ValuesIn(kFaults));

} // namespace
} // namespace koine::test
