// Percent-encoding of texts in URLs.

#include "devices/percent.h"

#include "text/numbers.h"

namespace koine {
namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEF";
constexpr std::string_view kUnreservedMarks = "-._~";

constexpr bool isUnreserved(char c) {
    return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
           kUnreservedMarks.find(c) != std::string_view::npos;
}

constexpr int hexValue(char c) {
    if (isDigit(c))
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

} // namespace

std::string percentEncoded(std::string_view text) {
    std::string encoded;
    encoded.reserve(text.size());
    for (const char c : text) {
        if (isUnreserved(c)) {
            encoded += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        encoded += '%';
        encoded += kHexDigits[byte >> 4U];
        encoded += kHexDigits[byte & 0xFU];
    }
    return encoded;
}

std::optional<std::string> percentDecoded(std::string_view text) {
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            decoded += text[i];
            continue;
        }
        if (text.size() - i < 3)
            return std::nullopt;
        const int high = hexValue(text[i + 1]);
        const int low = hexValue(text[i + 2]);
        if (high < 0 || low < 0 || (high == 0 && low == 0))
            return std::nullopt;
        decoded += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return decoded;
}

} // namespace koine
