/// @file
/// The line that asks a device for its media profiles.
#pragma once

#include "text/numbers.h"

#include <string>

namespace koine {

/// @param channel of a recorder; 1 for a device that is none
inline std::string mediaLine(int channel) {
    std::string line("Config.cgi?action=get&category=Media.*&ch=");
    appendNumber(line, channel);
    return line;
}

} // namespace koine
