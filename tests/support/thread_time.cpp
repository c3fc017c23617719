#include "tests/support/thread_time.h"

#include <cstdint>
#include <ctime>
#include <fstream>

namespace koine::test {

std::chrono::nanoseconds threadProcessorTime() {
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

std::chrono::nanoseconds threadWaitingTime() {
    std::uint64_t ran = 0;
    std::uint64_t waited = 0;
    std::ifstream("/proc/thread-self/schedstat") >> ran >> waited;
    return std::chrono::nanoseconds(waited);
}

} // namespace koine::test
