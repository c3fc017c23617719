/// @file
/// Small questions about characters, ASCII whatever the locale.
#pragma once

#include "text/numbers.h"
#include "text/words.h"

#include <string_view>

namespace koine::platform {

/// `char` has a sign on some processors and none on others.
constexpr bool isControl(char c) noexcept { return static_cast<unsigned char>(c) < 0x20 || c == '\x7f'; }

constexpr bool isHexDigit(char c) noexcept { return isDigit(c) || (lowered(c) >= 'a' && lowered(c) <= 'f'); }

/// The text without the blanks around it.
constexpr std::string_view trimmed(std::string_view text) noexcept {
    text = skipBlanks(text);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

/// The same word, case ignored.
constexpr bool sameWord(std::string_view a, std::string_view b) noexcept {
    return a.size() == b.size() && startsWithIgnoreCase(a, b);
}

} // namespace koine::platform
