#include "bounds.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <malloc.h>
#include <string>

namespace koine::test {
namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kSanitized = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || __has_feature(memory_sanitizer)
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif
#else
constexpr bool kSanitized = false;
#endif

// A machine that is busy with something else is no failure of the library.
constexpr double kStretch = kSanitized ? 20.0 : 1.0;

/// A line of the program's own status in KiB, 0 when the system does not say.
long statusOf(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.compare(0, name.size() + 1, name + ":") == 0)
            return std::stol(line.substr(name.size() + 1));
    return 0;
}

/// From now on the highest resident size is that of the time after. What earlier tests have freed is given
/// back first: it would go at the next free and count as if the call had taken it.
void forgetPeak() {
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << "5" << std::flush;
}

} // namespace

void within(double seconds, double mebibytes, const std::function<void()>& call) {
    forgetPeak();
    const long before = statusOf("VmRSS");
    const auto start = std::chrono::steady_clock::now();
    call();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    const double grown = static_cast<double>(statusOf("VmHWM") - before) / 1024.0;
    EXPECT_LE(taken.count(), seconds * kStretch);
    if (!kSanitized) {
        EXPECT_LE(grown, mebibytes);
    }
}

} // namespace koine::test
