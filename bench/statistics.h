/// @file
/// What repeated measurements say together.
#pragma once

#include <algorithm>
#include <chrono>
#include <vector>

namespace koine::bench {

inline double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Wall time of one call.
template <typename Call>
double millisecondsOf(Call call) {
    const auto start = std::chrono::steady_clock::now();
    call();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

} // namespace koine::bench
