/// @file
/// Memory that runs out when a test says so.
#pragma once

#include <cstddef>

namespace koine::torture {

/// Which allocations of this thread fail.
enum class Shortage {
    once,     ///< the chosen one only
    fromThen, ///< the chosen one and all that follow
};

/// While it lives, the `k`-th allocation (counted from 1) of this thread fails, be it by `malloc`, `calloc`,
/// `realloc`, `strdup` or `new`.
class FailingMemory {
public:
    FailingMemory(std::size_t k, Shortage shortage) noexcept;
    ~FailingMemory();
    FailingMemory(const FailingMemory&) = delete;
    FailingMemory& operator=(const FailingMemory&) = delete;

    /// Did an allocation fail? When not, there were fewer than `k`.
    bool hasFailed() const noexcept;
};

/// Allocations of this thread's program that were not given back yet.
std::ptrdiff_t liveAllocations() noexcept;

} // namespace koine::torture
