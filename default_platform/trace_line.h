/// @file
/// What a finished trace line still needs before it is shown.
#pragma once

#include <cstddef>

namespace koine::platform {

/// Makes `line` presentable, in place: passwords in URLs ("scheme://user:password@") and the values of items
/// whose key ends in a word for a password become "*", control characters become blanks, and a line end at
/// the end goes. Never grows the line and never allocates.
/// @return the new length; the line is ended by a NUL there
std::size_t tidyTraceLine(char* line, std::size_t length) noexcept;

} // namespace koine::platform
