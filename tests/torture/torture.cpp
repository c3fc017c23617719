// Fails each allocation of each scenario in turn, once and from then on, and looks at what is left behind.
#include "scenarios.h"
#include "tests/support/failing_allocations.h"
#include "usable_answers.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <new>
#include <string>

#include <unistd.h>

namespace koine::torture {
namespace {

using test::FailAllocations;
using test::liveAllocations;

/// Everything an operation may say when memory runs out. A shortage may also look like a device that gave
/// no text (-2) or an answer that could not be built (0), but never like wrong credentials.
constexpr std::array<int, 4> kStatedResults = {kOk, kNotBuilt, kRefused, kNoResource};

struct Tally {
    std::size_t runs = 0;
    std::size_t defects = 0;
};

/// An object where the scenario begins.
Subject prepared(const Scenario& scenario) {
    Subject subject;
    subject.device = scenario.make();
    scenario.prepare(subject);
    return subject;
}

class Torture {
public:
    Torture(const Scenario& scenario, FailAllocations::Then then)
        : scenario_(scenario), then_(then), whole_(*prepared(scenario).device) {}

    /// Every `stride`-th allocation, until the scenario has none left to fail.
    Tally run(unsigned int stride) {
        setUpProcess();
        for (k_ = 1; oneRun(); k_ += stride) {
        }
        return tally_;
    }

private:
    /// What the first call of an operation in a process sets up for good is no loss.
    void setUpProcess() {
        Subject subject = prepared(scenario_);
        scenario_.run(subject);
    }

    /// @return did the k-th allocation exist?
    bool oneRun() {
        const std::ptrdiff_t before = liveAllocations();
        bool hasFailed = false;
        {
            Subject subject = prepared(scenario_);
            subject.results.reserve(64);
            hasFailed = underShortage(subject);
            checkAnswers(subject);
            if (!subject.device)
                subject = prepared(scenario_);
            checkLockIsFree(subject.device);
            checkAnswersAgain(*subject.device);
        }
        check(liveAllocations() == before, "something was not given back");
        ++tally_.runs;
        return hasFailed;
    }

    bool underShortage(Subject& subject) {
        FailAllocations memory(k_, then_);
        try {
            scenario_.run(subject);
        } catch (const std::bad_alloc&) {
            check(scenario_.mayThrow, "std::bad_alloc reached the host");
        }
        return memory.stop();
    }

    void checkAnswers(const Subject& subject) {
        for (const int result : subject.results)
            check(std::find(kStatedResults.begin(), kStatedResults.end(), result) != kStatedResults.end(),
                  "a result that is not stated");
        check(subject.wrongTexts == 0, "an answer that does not belong to its result");
        // With only one failing, there is memory for the text that tells of the failure.
        if (then_ == FailAllocations::Then::recover)
            check(subject.missingTexts == 0, "no text for the host");
    }

    void checkLockIsFree(const boost::shared_ptr<BaseRequest>& device) {
        auto other =
            std::async(std::launch::async, [device] { return device->testOK(nullptr, 0, nullptr, nullptr); });
        if (other.wait_for(std::chrono::seconds(10)) == std::future_status::ready)
            return;
        std::fprintf(stderr, "%s: allocation %u: the lock is still held\n", scenario_.name, k_);
        std::abort(); // waiting for the thread would hang
    }

    void checkAnswersAgain(BaseRequest& device) {
        for (const std::string& fault : whole_.faultsOf(device, scenario_.decides))
            check(false, fault.c_str());
    }

    void check(bool good, const char* what) {
        if (good)
            return;
        ++tally_.defects;
        std::fprintf(stderr, "%s: allocation %u fails %s: %s\n", scenario_.name, k_,
                     then_ == FailAllocations::Then::recover ? "once" : "and all after it", what);
    }

    const Scenario& scenario_;
    FailAllocations::Then then_;
    UsableAnswers whole_;
    unsigned int k_ = 1;
    Tally tally_;
};

int tortureAll(unsigned int stride, std::FILE* table) {
    Tally total;
    std::fprintf(table, "%-30s %10s %14s %9s\n", "scenario", "once", "from then on", "defects");
    for (const Scenario& scenario : scenarios()) {
        const Tally once = Torture(scenario, FailAllocations::Then::recover).run(stride);
        const Tally onwards = Torture(scenario, FailAllocations::Then::stayOut).run(stride);
        std::fprintf(table, "%-30s %10zu %14zu %9zu\n", scenario.name, once.runs, onwards.runs,
                     once.defects + onwards.defects);
        total.runs += once.runs + onwards.runs;
        total.defects += once.defects + onwards.defects;
    }
    std::fprintf(table, "%zu runs, %zu defects\n", total.runs, total.defects);
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
    // The library's own warnings, of which a shortage makes many, would hide the table.
    std::FILE* const table = fdopen(dup(STDOUT_FILENO), "w");
    if (table == nullptr || std::freopen("/dev/null", "w", stdout) == nullptr) {
        std::fprintf(stderr, "torture: there is nowhere to print to\n");
        return 2;
    }
    const int result = koine::torture::tortureAll(static_cast<unsigned int>(stride), table);
    return std::fclose(table) == 0 ? result : 2;
}
