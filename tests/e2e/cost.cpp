#include "tests/e2e/cost.h"

#include "tests/support/memory_gauge.h"

#include "default_platform/host_settings.h"

#include <gtest/gtest.h>

#include <ctime>

namespace koine::test {
namespace {

std::chrono::nanoseconds processorTime() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

std::chrono::milliseconds rounded(std::chrono::nanoseconds time) {
    return std::chrono::round<std::chrono::milliseconds>(time);
}

} // namespace

Cost costOf(const std::function<Answer()>& request) {
    Cost cost;
    const MemoryGauge gauge;
    const std::chrono::nanoseconds before = processorTime();
    const auto start = std::chrono::steady_clock::now();
    cost.answer = request();
    cost.took = rounded(std::chrono::steady_clock::now() - start);
    cost.processor = rounded(processorTime() - before);
    cost.memory = gauge.peak();
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

void expectCheap(const Cost& cost, const std::string& what, std::size_t mostMemory) {
    EXPECT_LE(cost.took.count(), kLatest.count()) << what;
    EXPECT_LE(cost.processor.count(), mostProcessorTime().count()) << what;
    EXPECT_LE(cost.memory, mostMemory) << what;
}

} // namespace koine::test
