/// @file
/// A camera with three media profiles, and the lines with which a host starts streams on it.
#pragma once

#include "tests/support/scripted_platform.h"

#include <string>
#include <vector>

namespace koine::test {

/// The eight requests that fill the caches, in their order.
const std::vector<std::string>& fillingLines();

/// Scripts the camera: tokens "main", "sub", "phone"; the third profile is for mobile viewers.
void scriptThreeProfiles();

/// What an AUTO user asks for.
inline const std::string kAuto =
    "&ProfileMode=AUTO&StreamSetup.VideoEncoderConfiguration.Resolution.NxN=1280x720";

/// A set-up line of the host with these further items ("&ProfileMode=AUTO").
std::string setUpLine(const std::string& items);

/// The settings of one profile as they stand in a set line: `encoderItem(1, "Encoding=H264")`.
std::string encoderItem(int profile, const std::string& setting);

/// What a new AUTO user who asks for 1280x720 has the device set.
std::string autoSetLine();
/// What a new MOBILE user has the device set.
std::string mobileSetLine();

} // namespace koine::test
