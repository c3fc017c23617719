#include "tests/e2e/cost.h"

#include "tests/support/memory_gauge.h"
#include "tests/support/thread_time.h"

#include "default_platform/host_settings.h"

#include <gtest/gtest.h>

namespace koine::test {
namespace {

std::chrono::milliseconds rounded(std::chrono::nanoseconds time) {
    return std::chrono::round<std::chrono::milliseconds>(time);
}

} // namespace

Cost costOf(const std::function<Answer()>& request) {
    Cost cost;
    const std::chrono::nanoseconds waitedBefore = threadWaitingTime();
    const MemoryGauge gauge;
    const std::chrono::nanoseconds before = threadProcessorTime();
    const auto start = std::chrono::steady_clock::now();
    cost.answer = request();
    const auto took = std::chrono::steady_clock::now() - start;
    cost.processor = rounded(threadProcessorTime() - before);
    cost.memory = gauge.peak();
    cost.took = rounded(took - (threadWaitingTime() - waitedBefore));
    return cost;
}

/// Reading eight answers of 65,536 pairs each takes 105 ms in a build without the optimiser.
std::chrono::milliseconds mostProcessorTime() {
#ifdef __OPTIMIZE__
    constexpr int kOrdinary = 100;
#else
    constexpr int kOrdinary = 200;
#endif
    return std::chrono::milliseconds(memoryIsMeasured() ? kOrdinary : 1000);
}

Limits::Limits(std::chrono::milliseconds time) : time_(time) {
    setRequestTimeLimit(static_cast<unsigned int>(time.count()));
    setBodyLimit(kBodyLimit);
}

Limits::~Limits() {
    setRequestTimeLimit(0);
    setBodyLimit(0);
}

void expectCheap(const Cost& cost, const std::string& what, std::chrono::milliseconds limit,
                 const Requests& requests, std::size_t mostMemory) {
    const auto tenths = 10 * requests.failed + requests.sent;
    EXPECT_LE(cost.took.count(), limit.count() * static_cast<long>(tenths) / 10) << what;
    EXPECT_LE(cost.processor.count(), mostProcessorTime().count()) << what;
    EXPECT_LE(cost.memory, mostMemory) << what;
}

} // namespace koine::test
