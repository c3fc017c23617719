/// @file
/// The one scanner: reads an item of a request line as `sscanf` would, from a view and without buffers.
#pragma once

#include "text/numbers.h"
#include "text/words.h"

#include <string>
#include <string_view>

namespace koine {

/// A place in a text. Every step moves on when it succeeds and stays when it does not.
class Cursor {
public:
    explicit constexpr Cursor(std::string_view text) noexcept : rest_(text) {}

    constexpr std::string_view rest() const noexcept { return rest_; }

    /// Exactly these characters.
    constexpr bool literal(std::string_view expected) noexcept {
        if (!startsWith(rest_, expected))
            return false;
        rest_.remove_prefix(expected.size());
        return true;
    }

    /// "%d": what does not fit into `long` is saturated there, then cut to `int`, as the C library does.
    constexpr bool integer(int& value) noexcept {
        const LeadingLong number = leadingLong(rest_);
        if (number.length == 0)
            return false;
        value = static_cast<int>(static_cast<unsigned int>(number.value));
        rest_.remove_prefix(number.length);
        return true;
    }

    /// "%u": as "%d", with a sign taken modulo.
    bool whole(unsigned int& value) noexcept;

    /// "%f".
    bool real(float& value);

    /// "%s": characters up to the next blank.
    constexpr bool word(std::string_view& value) noexcept {
        const std::string_view text = skipBlanks(rest_);
        std::size_t length = 0;
        while (length < text.size() && !isBlank(text[length]))
            ++length;
        if (length == 0)
            return false;
        value = text.substr(0, length);
        rest_ = text.substr(length);
        return true;
    }

    /// "%[^c]": characters up to `stop`, blanks included.
    constexpr bool wordUntil(char stop, std::string_view& value) noexcept {
        const std::size_t length = std::min(rest_.find(stop), rest_.size());
        if (length == 0)
            return false;
        value = rest_.substr(0, length);
        rest_.remove_prefix(length);
        return true;
    }

private:
    std::string_view rest_;
};

inline bool Cursor::whole(unsigned int& value) noexcept {
    const LeadingLong number = leadingLong(rest_);
    if (number.length == 0)
        return false;
    const std::string_view digits = skipBlanks(rest_.substr(0, number.length));
    if (number.value == LONG_MAX || number.value == LONG_MIN) {
        // Unsigned reading reaches twice as far: "18446744073709551615" is no overflow.
        const bool signedText = digits.front() == '-' || digits.front() == '+';
        unsigned long wide = 0;
        const char* first = digits.data() + (signedText ? 1 : 0);
        const auto result = std::from_chars(first, digits.data() + digits.size(), wide);
        if (result.ec != std::errc())
            value = static_cast<unsigned int>(~0UL);
        else
            value = static_cast<unsigned int>(digits.front() == '-' ? 0UL - wide : wide);
    } else {
        value = static_cast<unsigned int>(number.value);
    }
    rest_.remove_prefix(number.length);
    return true;
}

inline bool Cursor::real(float& value) {
    const std::string_view blanksSkipped = skipBlanks(rest_);
    const std::string number = numberText(blanksSkipped);
    std::string_view body = number;
    if (!body.empty() && (body.front() == '-' || body.front() == '+'))
        body.remove_prefix(1);
    // Where strtof would stop early and be content, sscanf has already taken too much: "0x" without a hex
    // digit, and "inf" followed by an "i" that does not go on to "infinity".
    if (startsWithIgnoreCase(body, "0x")) {
        const char next = body.size() > 2 ? lowered(body[2]) : '\0';
        if (!isDigit(next) && !(next >= 'a' && next <= 'f') && next != '.')
            return false;
    }
    if (startsWithIgnoreCase(body, "infi") && !startsWithIgnoreCase(body, "infinity"))
        return false;
    char* end = nullptr;
    const locale_t locale = plainLocale();
    const float read =
        locale == nullptr ? std::strtof(number.c_str(), &end) : strtof_l(number.c_str(), &end, locale);
    if (end == number.c_str())
        return false;
    value = read;
    rest_ = blanksSkipped.substr(static_cast<std::size_t>(end - number.c_str()));
    return true;
}

/// A word that ends at a character, for `scan`.
struct Until {
    char stop;
    std::string_view& value;
};

namespace detail {
constexpr bool step(Cursor& cursor, std::string_view expected) noexcept { return cursor.literal(expected); }
constexpr bool step(Cursor& cursor, const char* expected) noexcept { return cursor.literal(expected); }
} // namespace detail

/// What `scan` writes to; made by `into`.
template <typename Value>
struct Into {
    Value& value;
};
template <typename Value>
constexpr Into<Value> into(Value& value) noexcept {
    return {value};
}

namespace detail {
constexpr bool step(Cursor& cursor, Into<int> target) noexcept { return cursor.integer(target.value); }
inline bool step(Cursor& cursor, Into<unsigned int> target) noexcept { return cursor.whole(target.value); }
inline bool step(Cursor& cursor, Into<float> target) { return cursor.real(target.value); }
constexpr bool step(Cursor& cursor, Into<std::string_view> target) noexcept {
    return cursor.word(target.value);
}
constexpr bool step(Cursor& cursor, Until target) noexcept {
    return cursor.wordUntil(target.stop, target.value);
}
} // namespace detail

/// Does the item begin like this? Texts stand for themselves, `into(int)` for "%d", `into(unsigned)` for
/// "%u", `into(float)` for "%f", `into(std::string_view)` for "%s". All parts must match; what follows the
/// last one is ignored. Parts read before a mismatch keep what was read.
template <typename... Parts>
bool scan(std::string_view item, Parts... parts) {
    Cursor cursor(item);
    return (detail::step(cursor, parts) && ...);
}

} // namespace koine
