/// @file
/// Comparisons of words, as the dialect makes them: ASCII only, whatever the locale.
#pragma once

#include <string_view>

namespace koine {

constexpr char lowered(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr bool startsWith(std::string_view text, std::string_view prefix) noexcept {
    return text.substr(0, prefix.size()) == prefix;
}

/// Prefix comparison over the length of the keyword, case ignored.
constexpr bool startsWithIgnoreCase(std::string_view text, std::string_view keyword) noexcept {
    if (text.size() < keyword.size())
        return false;
    for (std::size_t i = 0; i < keyword.size(); ++i)
        if (lowered(text[i]) != lowered(keyword[i]))
            return false;
    return true;
}

constexpr bool contains(std::string_view text, std::string_view part) noexcept {
    return text.find(part) != std::string_view::npos;
}

} // namespace koine
