/// @file
/// The encodings that a device offers.
#pragma once

#include <string>
#include <string_view>

namespace koine {

/// Separators of the lists of a profile.
inline constexpr std::string_view kListSeparators = ",;\n";

/// Translates the value of "Capability.Video.Format" into the names that media profiles use, joined by ",".
std::string encodingList(std::string_view format);

} // namespace koine
