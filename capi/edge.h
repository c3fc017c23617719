/// @file
/// The one place where what is thrown becomes a code.
#pragma once

#include "koine/koine.h"

namespace koine {

/// Runs an operation for a caller in C. What the operations throw, other than for bad input, is a shortage:
/// of memory, of locks.
template <typename Operation>
int atEdge(const Operation& operation) noexcept {
    try {
        return operation();
    } catch (...) {
        return KOINE_NO_RESOURCE;
    }
}

} // namespace koine
