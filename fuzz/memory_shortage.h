/// @file
/// A single allocation that fails, chosen by number.
#pragma once

namespace koine::fuzz {

/// While it lives, the `n`-th allocation with `new` of this thread fails; 0 fails none.
class MemoryShortage {
public:
    explicit MemoryShortage(unsigned int n) noexcept;
    ~MemoryShortage();
    MemoryShortage(const MemoryShortage&) = delete;
    MemoryShortage& operator=(const MemoryShortage&) = delete;
};

} // namespace koine::fuzz
