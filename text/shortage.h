/// @file
/// A shortage of memory as a result instead of an exception.
#pragma once

#include "koine/types.h"

#include <new>

namespace koine {

/// Runs a step that gives a result code.
/// @retval kNoResource memory ran out inside
/// @return otherwise the result of the step
template <typename Step>
int orNoResource(Step step) {
    try {
        return step();
    } catch (const std::bad_alloc&) {
        return kNoResource;
    }
}

} // namespace koine
