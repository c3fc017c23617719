/// @file
/// The edge where running out of memory becomes a value instead of an exception.
#pragma once

#include "koine/types.h"

#include <new>
#include <utility>

namespace koine {

/// What `work` gives, or `otherwise` when memory runs out inside.
template <typename Value, typename Work>
Value orOnShortage(Value otherwise, Work&& work) {
    try {
        return std::forward<Work>(work)();
    } catch (const std::bad_alloc&) {
        return otherwise;
    }
}

/// The result of a step, or `kNoResource` when memory runs out inside.
template <typename Step>
int orNoResource(Step&& step) {
    return orOnShortage<int>(kNoResource, std::forward<Step>(step));
}

} // namespace koine
