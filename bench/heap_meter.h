/// @file
/// What the process takes from the heap, counted at the allocation functions themselves.
#pragma once

#include <cstdint>

namespace koine::bench {

struct HeapUse {
    std::int64_t allocations = 0; ///< calls that gave memory out
    std::int64_t bytes = 0;       ///< taken and not given back, with what the allocator adds to each piece
};

/// Counts from its construction until `stop`, on all threads: the library may have helpers. One at a time.
class HeapMeter {
public:
    HeapMeter();
    ~HeapMeter() { stop(); }
    HeapMeter(const HeapMeter&) = delete;
    HeapMeter& operator=(const HeapMeter&) = delete;

    HeapUse stop();
};

/// What one call takes from the heap.
template <typename Call>
HeapUse heapUseOf(Call call) {
    HeapMeter meter;
    call();
    return meter.stop();
}

} // namespace koine::bench
