/// @file
/// The edge where running out of memory becomes a value.
#pragma once

#include <new>

namespace koine::platform {

/// What `work` gives, or `otherwise` when memory runs out. No other exception is meant to arrive here.
template <typename Value, typename Work>
Value orOnShortage(Value otherwise, Work&& work) noexcept {
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return otherwise;
    }
}

} // namespace koine::platform
