// A long run: many devices, several host threads, faults that come and go. At its end nothing may be lost,
// wrong, late or leaked.
#include "crew.h"
#include "fleet.h"
#include "healed.h"
#include "host.h"
#include "ledger.h"
#include "plan.h"
#include "resources.h"

#include "default_platform/host_settings.h"

#include <cstdio>
#include <exception>
#include <thread>

#include <malloc.h>

namespace koine::soak {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kBodyLimit = std::size_t{1} << 20;
// Tables that libraries keep for the process, once.
constexpr std::size_t kMostKept = std::size_t{256} << 10;
// As the host's guide advises. The C library would give the threads some sixteen heaps, each of which keeps
// the most that it ever held: what is resident then rises for longer than 20 minutes, until every heap has
// met the largest answers.
constexpr int kMostHeaps = 2;
constexpr std::size_t kMostResidentKilobytes = std::size_t{96} << 10;
// The short runs of the tests say nothing about memory, above all not under a sanitizer.
constexpr std::chrono::seconds kShortestMemoryRun{30};
// A shorter run is mostly warm-up.
constexpr std::chrono::minutes kShortestFlatRun{10};

struct Run {
    Usage before;
    Usage during;
    Usage after;
    MemoryWatch memory;
    std::uint64_t objects = 0;
    unsigned long faults = 0;
};

void watch(const Plan& plan, const Host& host, Run& run) {
    const Clock::time_point end = Clock::now() + plan.time;
    while (Clock::now() < end && host.moves()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(250));
        run.memory.sample();
    }
    run.during = usageNow();
}

/// What well devices answer: no matter when.
Results askAllPatiently(const Fleet& fleet, Ledger& ledger) {
    setRequestTimeLimit(0);
    Results results = askAll(fleet.units(), ledger);
    setRequestTimeLimit(static_cast<unsigned int>(kTimeLimit.count()));
    return results;
}

Run soak(const Plan& plan, Fleet& fleet, Ledger& ledger) {
    Run run;
    const Results well = askAllPatiently(fleet, ledger);
    run.before = usageNow();
    fleet.misbehave();
    {
        Host host(fleet.units(), ledger, plan.threads, plan.seed);
        watch(plan, host, run);
        if (!host.end())
            giveUp(ledger);
        run.objects = host.objectsMade();
    }
    run.faults = fleet.heal();
    compare(well, askAllPatiently(fleet, ledger), ledger);
    run.after = usageNow();
    return run;
}

bool verdict(const char* what, bool good) {
    std::printf("  %-4s %s\n", good ? "ok" : "BAD", what);
    return good;
}

void printUsage(const Run& run, const Plan& plan) {
    const double seconds = static_cast<double>(plan.time.count());
    std::printf("\n%-26s %10s %10s %10s\n", "THIS PROCESS", "BEFORE", "AT THE END", "AFTER");
    std::printf("%-26s %10zu %10zu %10zu\n", "resident memory, KiB", run.before.residentKilobytes,
                run.during.residentKilobytes, run.after.residentKilobytes);
    std::printf("%-26s %10zu %10zu %10zu\n", "allocated, KiB", run.before.allocatedBytes / 1024,
                run.during.allocatedBytes / 1024, run.after.allocatedBytes / 1024);
    std::printf("%-26s %10zu %10zu %10zu\n", "descriptors", run.before.descriptors, run.during.descriptors,
                run.after.descriptors);
    std::printf("%-26s %10zu %10zu %10zu\n", "threads", run.before.threads, run.during.threads,
                run.after.threads);
    std::printf("processor time %.1f %% of one core; %llu objects made and destroyed; %lu faults shown\n",
                100 * (run.during.processorSeconds - run.before.processorSeconds) / seconds,
                static_cast<unsigned long long>(run.objects), run.faults);
    std::printf("resident memory by fifths of the run (medians, KiB): %zu %zu %zu %zu %zu, at most %zu\n",
                run.memory.medianOfFifth(0), run.memory.medianOfFifth(1), run.memory.medianOfFifth(2),
                run.memory.medianOfFifth(3), run.memory.medianOfFifth(4), run.memory.largest());
}

bool judge(const Run& run, const Plan& plan, const Ledger& ledger) {
    const Tally total = ledger.total();
    std::printf("\n");
    bool good = verdict("every request was answered, with a text where one is due",
                        total.lost == 0 && total.ended > 0);
    good &= verdict("with a stated result", total.otherResults == 0);
    good &= verdict("by the right device, with a text that belongs to the result", total.faults == 0);
    good &= verdict("within its time limit and a tenth", total.late == 0);
    good &= verdict("and the healed devices answer as before",
                    ledger.complaints() == total.late + total.faults + total.lost + total.otherResults);
    good &= verdict("no descriptor is left over", run.after.descriptors == run.before.descriptors);
    good &= verdict("no thread is left over", run.after.threads == run.before.threads);
    if (plan.time >= kShortestMemoryRun)
        good &= verdict("resident memory stays below 96 MiB", run.memory.largest() <= kMostResidentKilobytes);
    if (plan.time >= kShortestFlatRun)
        good &= verdict("resident memory stays flat: last fifth at most 4 MiB and 10 % above the second",
                        run.memory.isFlat());
    good &= verdict("what was allocated was given back, but for 256 KiB",
                    run.after.allocatedBytes <= run.before.allocatedBytes + kMostKept);
    return good;
}

int run(const Plan& plan) {
    std::printf("%u devices, %u host threads, %lld seconds, seed %u\n", plan.devices, plan.threads,
                static_cast<long long>(plan.time.count()), plan.seed);
    std::fflush(stdout); // or the devices' process would print it again
    Fleet fleet(plan.devices, plan.seed);
    setBodyLimit(kBodyLimit);
    Ledger ledger;
    const Run run = soak(plan, fleet, ledger);
    ledger.print();
    printUsage(run, plan);
    bool good = judge(run, plan, ledger);
    good &= verdict("the devices ended well", fleet.end());
    return good ? 0 : 1;
}

} // namespace
} // namespace koine::soak

int main(int argc, char** argv) {
    int exitCode = 0;
    const auto plan = koine::soak::readPlan(
        argc, argv, "A host with many devices that misbehave, for a long time", {}, exitCode);
    if (!plan)
        return exitCode;
    ::mallopt(M_ARENA_MAX, koine::soak::kMostHeaps);
    try {
        return koine::soak::run(*plan);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "soak: %s\n", error.what());
        return 1;
    }
}
