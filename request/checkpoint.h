/// @file
/// Marks that tell a host's crash handler where a request was.
#pragma once

#include "platform/trace.h"

#include <string_view>

namespace koine {

/// Stores a character of a mark. One that stands there already is left alone, so that threads which store the
/// same name do not take its memory away from each other's processors.
inline void storeMark(char& place, char c) noexcept {
    if (__atomic_load_n(&place, __ATOMIC_RELAXED) != c)
        __atomic_store_n(&place, c, __ATOMIC_RELAXED);
}

/// Stores the operation's name and the checkpoint's line into the platform's globals. Every request object
/// writes them on every thread, so each byte is a relaxed atomic store: a reader may see a mix of two
/// marks, which is good enough to locate a crash.
inline void markCheckpoint(std::string_view operation, int line) noexcept {
    std::size_t i = 0;
    for (; i < operation.size() && i + 1 < sizeof g_login_debug_function_name; ++i)
        storeMark(g_login_debug_function_name[i], operation[i]);
    storeMark(g_login_debug_function_name[i], '\0');
    __atomic_store_n(&g_login_debug_line, line, __ATOMIC_RELAXED);
}

} // namespace koine
