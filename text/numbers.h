/// @file
/// The one pair of helpers that read and print numbers. The locale of the host never matters.
#pragma once

#include <algorithm>
#include <array>
#include <cfloat>
#include <charconv>
#include <climits>
#include <clocale>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <locale.h>
#include <optional>
#include <string>
#include <string_view>

namespace koine {

constexpr bool isBlank(char c) noexcept { return c == ' ' || (c >= '\t' && c <= '\r'); }
constexpr bool isDigit(char c) noexcept { return c >= '0' && c <= '9'; }

constexpr std::string_view skipBlanks(std::string_view text) noexcept {
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    return text;
}

/// A whole number at the start of a text, as `strtol` reads it with base 10: leading blanks, a sign, digits.
struct LeadingLong {
    long value = 0;                         ///< saturated at the bounds of `long`
    std::string_view::size_type length = 0; ///< characters used, 0 when there is no number
};

constexpr LeadingLong leadingLong(std::string_view text) noexcept {
    const std::string_view trimmed = skipBlanks(text);
    std::string_view digits = trimmed;
    const bool negative = !digits.empty() && digits.front() == '-';
    if (negative || (!digits.empty() && digits.front() == '+'))
        digits.remove_prefix(1);
    constexpr std::size_t kSafeDigits = std::numeric_limits<long>::digits10; // so many never overflow
    std::size_t count = 0;
    long value = 0;
    for (; count < digits.size() && isDigit(digits[count]); ++count) {
        const long digit = digits[count] - '0';
        // Gathered on the negative side, which reaches one further.
        const bool isBelow = count >= kSafeDigits && value < (LONG_MIN + digit) / 10;
        value = isBelow ? LONG_MIN : value * 10 - digit;
    }
    if (count == 0)
        return {};
    if (!negative)
        value = value == LONG_MIN ? LONG_MAX : -value;
    return {value, text.size() - digits.size() + count};
}

/// `strtol` with base 10: 0 when there is no number, saturated when it is too large.
constexpr long readLong(std::string_view text) noexcept { return leadingLong(text).value; }

/// The same, saturated at the bounds of `int`.
constexpr int readInt(std::string_view text) noexcept {
    return static_cast<int>(std::clamp<long>(readLong(text), INT_MIN, INT_MAX));
}

/// The "C" locale, made once; null only when memory was short, and then the host's locale serves.
inline locale_t plainLocale() noexcept {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    return locale;
}

/// The part of a text that can belong to a decimal fraction, ended for the C library.
inline std::string numberText(std::string_view text) {
    const std::string_view trimmed = skipBlanks(text);
    const auto end = std::find_if_not(trimmed.begin(), trimmed.end(), [](char c) {
        return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '+' || c == '-' ||
               c == '.';
    });
    return {trimmed.begin(), end};
}

/// Digits with at most one point among them, and nothing else: what devices write. Few enough of them that
/// they and the power of ten are exact, so that the quotient is rounded once, as `strtod` rounds.
constexpr std::optional<double> plainFraction(std::string_view text) noexcept {
    constexpr std::size_t kExactDigits = 15;
    if (text.empty() || text.size() > kExactDigits || FLT_EVAL_METHOD != 0)
        return std::nullopt;
    std::int64_t digits = 0;
    std::int64_t divisor = 0; // 0 until the point
    for (const char c : text) {
        if (c == '.' && divisor == 0) {
            divisor = 1;
        } else if (isDigit(c)) {
            digits = digits * 10 + (c - '0');
            divisor *= 10;
        } else {
            return std::nullopt;
        }
    }
    if (text == ".")
        return std::nullopt;
    return divisor == 0 ? static_cast<double>(digits)
                        : static_cast<double>(digits) / static_cast<double>(divisor);
}

/// `strtod`: 0 when there is no number.
inline double readDouble(std::string_view text) {
    if (const std::optional<double> plain = plainFraction(text))
        return *plain;
    const std::string number = numberText(text);
    const locale_t locale = plainLocale();
    return locale == nullptr ? std::strtod(number.c_str(), nullptr)
                             : strtod_l(number.c_str(), nullptr, locale);
}

/// `strtod`, narrowed.
inline float readFloat(std::string_view text) { return static_cast<float>(readDouble(text)); }

inline void appendNumber(std::string& text, long value) {
    std::array<char, 24> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    text.append(digits.data(), end);
}

inline std::string numberAsText(long value) {
    std::string text;
    appendNumber(text, value);
    return text;
}

/// Prints with the plain locale for as long as it lives.
class PlainLocaleScope {
public:
    PlainLocaleScope() noexcept : before_(uselocale(plainLocale())) {}
    ~PlainLocaleScope() { uselocale(before_); }
    PlainLocaleScope(const PlainLocaleScope&) = delete;
    PlainLocaleScope& operator=(const PlainLocaleScope&) = delete;

private:
    locale_t before_;
};

/// As a text stream prints a float by default: up to six significant digits, no trailing zeros.
inline std::string generalText(float value) {
    if (value > 0.0F && value < 1e6F && value == static_cast<float>(static_cast<long>(value)))
        return numberAsText(static_cast<long>(value));
    const PlainLocaleScope plain;
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%g", static_cast<double>(value));
    return text.data();
}

/// With a fixed number of decimals, as "%.<decimals>f" prints.
inline std::string fixedText(double value, int decimals) {
    // Most values are whole, and printing those needs neither the locale nor the C library.
    if (decimals > 0 && value > 0.0 && value < 1e9 &&
        value == static_cast<double>(static_cast<long>(value))) {
        std::string text = numberAsText(static_cast<long>(value)) + '.';
        return text.append(static_cast<std::size_t>(decimals), '0');
    }
    const PlainLocaleScope plain;
    std::array<char, 352> text{}; // the largest double has 309 digits before the point
    std::snprintf(text.data(), text.size(), "%.*f", decimals, value);
    return text.data();
}

} // namespace koine
