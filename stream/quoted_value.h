/// @file
/// Values of a set-up text that may hold "&" themselves.
#pragma once

#include <string_view>

namespace koine {

enum class ClosingQuote { next, last };

/// The value between double quotes behind a key.
///
/// Without a closing quote it goes on to the end of the text; without any quote it is the whole rest of the
/// text from the key on, the key included.
/// @return empty when the text does not have the key
std::string_view quotedValue(std::string_view text, std::string_view key, ClosingQuote closing);

} // namespace koine
