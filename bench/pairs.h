/// @file
/// Calls held against their floors.
#pragma once

#include "bench/rows.h"

#include <functional>
#include <string>
#include <vector>

namespace koine::bench {

struct Pair {
    std::string what;
    std::function<void()> run;
    std::function<void()> floor; ///< none: the time is reported alone
    Target target;
    std::string note; ///< put before the allocations of a call
};

/// Measures calls and floors interleaved; each row tells the allocations of one call.
Rows measurePairs(const std::string& group, const std::vector<Pair>& pairs);

} // namespace koine::bench
