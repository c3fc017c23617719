/// @file
/// Percent-encoding of texts in URLs.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace koine {

/// Everything but letters, digits, "-", ".", "_" and "~" becomes "%XX".
std::string percentEncoded(std::string_view text);

/// The text behind "%XX" escapes; nothing when an escape is broken or stands for a NUL.
std::optional<std::string> percentDecoded(std::string_view text);

} // namespace koine
