/// @file
/// The lines that ask a device for its configuration.
#pragma once

#include "text/numbers.h"

#include <string>
#include <string_view>

namespace koine::request_lines {

inline constexpr const char* kVideo = "Config.cgi?action=get&category=Video.*";
inline constexpr const char* kCamera = "Config.cgi?action=get&category=Camera.*";
inline constexpr const char* kNotification = "Config.cgi?action=get&category=Notification.*";
inline constexpr const char* kMisc = "Config.cgi?action=get&category=Misc.*";
inline constexpr const char* kVideoAnalytics = "Config.cgi?action=get&category=VideoAnalytics.*";

/// @param channel of a recorder; 1 for a device that is none
inline std::string media(int channel) {
    std::string line("Config.cgi?action=get&category=Media.*&ch=");
    appendNumber(line, channel);
    return line;
}

} // namespace koine::request_lines
