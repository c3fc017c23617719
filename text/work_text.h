/// @file
/// Work buffers whose absence is a stated result instead of an exception.
#pragma once

#include <new>
#include <string>

namespace koine {

/// @return is there room for so many bytes?
inline bool reserveText(std::string& text, std::size_t bytes) noexcept {
    try {
        text.reserve(bytes);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

} // namespace koine
