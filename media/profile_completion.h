/// @file
/// Completes the media profiles of a device, so that every later step finds the keys it reads.
#pragma once

#include "koine/types.h"
#include "media/size_list.h"

#include <string>

namespace koine {

/// What the completion depends on besides the maps.
struct CompletionSettings {
    float qualityStep;      ///< of the device's quality scale; 0 leaves the qualities alone
    float qualitySourceMin; ///< where that scale begins
    AreaRange areas;        ///< sizes that the stream user can show
    int frameRateMin;
    int frameRateMax;
    bool isPellDevice; ///< reserves the second profile for mobile viewing instead of the last
};

/// Fills in what the device left out and normalises the rest, for the first `count` profiles.
/// @return is a profile reserved for mobile viewing?
bool completeProfiles(CgiMap& media, const CgiMap& capability, const CompletionSettings& settings, int count);

} // namespace koine
