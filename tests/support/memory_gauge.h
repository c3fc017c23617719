/// @file
/// How much memory a thread takes, from whichever library it is allocated.
#pragma once

#include <cstddef>

namespace koine::test {

/// Whether allocations can be seen: not under a sanitizer, which keeps freed memory back.
bool memoryIsMeasured() noexcept;

/// Watches the thread that made it. One at a time per thread.
class MemoryGauge {
public:
    MemoryGauge() noexcept;
    ~MemoryGauge();
    MemoryGauge(const MemoryGauge&) = delete;
    MemoryGauge& operator=(const MemoryGauge&) = delete;

    /// The most that was allocated at one time beyond what there was at the start, in bytes. A block that is
    /// moved to grow counts twice for as long as that takes.
    std::size_t peak() const noexcept;
};

} // namespace koine::test
