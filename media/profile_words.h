/// @file
/// Words of the media profiles: what a stream user asks for, and what a profile offers.
#pragma once

#include <string_view>

namespace koine {

/// Profile modes of a stream user that choose among profiles. Other words take the first profile.
inline constexpr const char* kModeAuto = "AUTO";
inline constexpr const char* kModeMobile = "MOBILE";

/// Who may view a profile live.
inline constexpr std::string_view kLiveAny = "ANY";
inline constexpr std::string_view kLiveMobile = "MOBILE";

} // namespace koine
