/// @file
/// Stream URIs from a pattern.
#pragma once

#include "koine/export.h"

#include <array>
#include <stdexcept>
#include <string>
#include <string_view>

namespace koine {

/// What is wrong with a pattern and where.
class KOINE_EXPORT UriPatternError : public std::invalid_argument {
public:
    using std::invalid_argument::invalid_argument;
};

/// What a pattern can name.
enum class UriField : unsigned { credentials, address, rtspPort, token, encoding, audio, width, height };

/// The texts behind the fields, ready for a URI; an empty text is "no value".
class UriValues {
public:
    std::string& operator[](UriField field) { return texts_[static_cast<unsigned>(field)]; }
    const std::string& operator[](UriField field) const { return texts_[static_cast<unsigned>(field)]; }

private:
    std::array<std::string, 8> texts_;
};

/// A text with placeholders and optional groups.
///
/// - "{credentials}" (user:password), "{address}", "{rtsp_port}", "{token}", "{encoding}", "{audio}",
///   "{width}" and "{height}" stand for their values; a placeholder without a value stands for nothing.
/// - "[...]" is left out as a whole when a placeholder that stands directly in it has no value. Groups may
///   be nested; an inner group that is left out does not take the outer one with it.
/// - A backslash takes the character after it as it is.
class KOINE_EXPORT UriPattern {
public:
    static constexpr std::string_view kDefault =
        "rtsp://[{credentials}@]{address}:{rtsp_port}/{token}[?encoding={encoding}[&size={width}x{height}]]";

    /// @throws UriPatternError for an unknown placeholder and for brackets that do not pair up
    explicit UriPattern(std::string_view text = kDefault);

    std::string expand(const UriValues& values) const;

private:
    std::string text_;
};

} // namespace koine
