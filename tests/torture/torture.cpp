// Fails each allocation of each scenario in turn, once and from then on, and looks at what is left behind.
#include "scenarios.h"
#include "tests/support/failing_allocations.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <future>
#include <new>

namespace koine::torture {
namespace {

using test::FailAllocations;
using test::liveAllocations;

/// Everything an operation may say when memory runs out. A shortage may also look like a device that gave
/// no text (-2) or an answer that could not be built (0).
constexpr std::array<int, 5> kStatedResults = {kOk, kNotBuilt, kRefused, kNoResource, kAuthFailed};

struct Tally {
    std::size_t runs = 0;
    std::size_t defects = 0;
};

class Torture {
public:
    explicit Torture(const Scenario& scenario) : scenario_(scenario) {}

    /// Every `stride`-th allocation, until the scenario has none left to fail.
    Tally run(FailAllocations::Then then, unsigned int stride) {
        Tally tally;
        for (unsigned int k = 1; oneRun(k, then, tally); k += stride) {
        }
        return tally;
    }

private:
    /// @return did the k-th allocation exist?
    bool oneRun(unsigned int k, FailAllocations::Then then, Tally& tally) {
        const std::ptrdiff_t before = liveAllocations();
        bool hasFailed = false;
        {
            std::vector<int> results;
            results.reserve(16);
            const auto device = boost::make_shared<fuzz::Device>();
            fuzz::answerAsCamera(*device);
            scenario_.prepare(*device);
            hasFailed = underShortage(*device, results, k, then, tally);
            checkResults(results, k, tally);
            checkLockIsFree(device, k);
            checkAnswersAgain(*device, k, tally);
        }
        check(liveAllocations() == before, "something was not given back", k, tally);
        ++tally.runs;
        return hasFailed;
    }

    bool underShortage(fuzz::Device& device, std::vector<int>& results, unsigned int k,
                       FailAllocations::Then then, Tally& tally) {
        FailAllocations memory(k, then);
        try {
            scenario_.run(device, results);
        } catch (const std::bad_alloc&) {
            check(scenario_.mayThrow, "std::bad_alloc reached the host", k, tally);
        }
        return memory.stop();
    }

    void checkResults(const std::vector<int>& results, unsigned int k, Tally& tally) {
        for (const int result : results)
            check(std::find(kStatedResults.begin(), kStatedResults.end(), result) != kStatedResults.end(),
                  "a result that is not stated", k, tally);
    }

    void checkLockIsFree(const boost::shared_ptr<fuzz::Device>& device, unsigned int k) {
        auto other =
            std::async(std::launch::async, [device] { return device->testOK(nullptr, 0, nullptr, nullptr); });
        if (other.wait_for(std::chrono::seconds(10)) == std::future_status::ready)
            return;
        std::fprintf(stderr, "%s: allocation %u: the lock is still held\n", scenario_.name, k);
        std::abort(); // waiting for the thread would hang
    }

    void checkAnswersAgain(fuzz::Device& device, unsigned int k, Tally& tally) {
        char* answer = nullptr;
        const int result =
            device.requestHttpStr(9, const_cast<char*>("http://camera/Login.cgi"), nullptr, nullptr, &answer);
        const bool isWhole = answer != nullptr && std::strstr(answer, "Product-Name=CAM-1\n") != nullptr;
        device.freeData(answer);
        check(result == kOk && isWhole, "the object does not answer the next call", k, tally);
    }

    void check(bool good, const char* what, unsigned int k, Tally& tally) {
        if (good)
            return;
        ++tally.defects;
        std::fprintf(stderr, "%s: allocation %u: %s\n", scenario_.name, k, what);
    }

    const Scenario& scenario_;
};

int tortureAll(unsigned int stride) {
    Tally total;
    std::printf("%-30s %10s %14s %9s\n", "scenario", "once", "from then on", "defects");
    for (const Scenario& scenario : scenarios()) {
        const Tally once = Torture(scenario).run(FailAllocations::Then::recover, stride);
        const Tally onwards = Torture(scenario).run(FailAllocations::Then::stayOut, stride);
        std::printf("%-30s %10zu %14zu %9zu\n", scenario.name, once.runs, onwards.runs,
                    once.defects + onwards.defects);
        total.runs += once.runs + onwards.runs;
        total.defects += once.defects + onwards.defects;
    }
    std::printf("%zu runs, %zu defects\n", total.runs, total.defects);
    return total.runs > 0 && total.defects == 0 ? 0 : 1;
}

} // namespace
} // namespace koine::torture

/// `torture [STRIDE]`: every allocation, or every STRIDE-th.
int main(int argc, char** argv) {
    const long stride = argc > 1 ? std::strtol(argv[1], nullptr, 10) : 1;
    if (stride < 1) {
        std::fprintf(stderr, "torture: the stride must be 1 or more\n");
        return 2;
    }
    return koine::torture::tortureAll(static_cast<unsigned int>(stride));
}
