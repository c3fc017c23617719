/// @file
/// How many media profiles a step visits.
#pragma once

#include "cache/key_map.h"
#include "media/profile_keys.h"

#include <algorithm>

namespace koine {

/// No device has as many profiles as this: sixteen channels with eight profiles each are 128. A device that
/// claims more is visited up to here, so that a hostile or broken count cannot hang the host or fill its
/// memory; the claimed number is still what `getProfileCount` reports.
inline constexpr int kMostProfiles = 1024;

constexpr int boundedProfileCount(std::string_view claimed) {
    return std::min(readInt(claimed), kMostProfiles);
}

} // namespace koine
