#include "tests/e2e/cost.h"

#include "tests/support/memory_gauge.h"

#include "default_platform/host_settings.h"

#include <gtest/gtest.h>

#include <ctime>
#include <fstream>

namespace koine::test {
namespace {

std::chrono::nanoseconds processorTime() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

/// How long this thread could have run but another one did. Nothing where the system does not tell.
std::chrono::nanoseconds waitedForProcessor() {
    std::uint64_t ran = 0;
    std::uint64_t waited = 0;
    std::ifstream("/proc/thread-self/schedstat") >> ran >> waited;
    return std::chrono::nanoseconds(waited);
}

std::chrono::milliseconds rounded(std::chrono::nanoseconds time) {
    return std::chrono::round<std::chrono::milliseconds>(time);
}

} // namespace

Cost costOf(const std::function<Answer()>& request) {
    Cost cost;
    const std::chrono::nanoseconds waitedBefore = waitedForProcessor();
    const MemoryGauge gauge;
    const std::chrono::nanoseconds before = processorTime();
    const auto start = std::chrono::steady_clock::now();
    cost.answer = request();
    const auto took = std::chrono::steady_clock::now() - start;
    cost.processor = rounded(processorTime() - before);
    cost.memory = gauge.peak();
    cost.took = rounded(took - (waitedForProcessor() - waitedBefore));
    return cost;
}

std::chrono::milliseconds mostProcessorTime() {
    return std::chrono::milliseconds(memoryIsMeasured() ? 100 : 1000);
}

ShortLimits::ShortLimits() {
    setRequestTimeLimit(static_cast<unsigned int>(kTimeLimit.count()));
    setBodyLimit(kBodyLimit);
}

ShortLimits::~ShortLimits() {
    setRequestTimeLimit(0);
    setBodyLimit(0);
}

void expectCheap(const Cost& cost, const std::string& what, std::uint64_t requests, std::size_t mostMemory) {
    EXPECT_LE(cost.took.count(), kLatest.count() * static_cast<long>(requests)) << what;
    EXPECT_LE(cost.processor.count(), mostProcessorTime().count()) << what;
    EXPECT_LE(cost.memory, mostMemory) << what;
}

} // namespace koine::test
