/// @file
/// What the library learned about a device, gathered for showing.
#pragma once

#include "tools/connection.h"
#include "tools/json.h"
#include "tools/terminal.h"

#include <string>
#include <vector>

namespace koine::tool {

/// One media profile with the encoder settings that it holds now, as the caches have them.
struct Profile {
    int number = 0;
    std::string token;
    std::string live; ///< who may view: "ANY" or "MOBILE"
    std::string encoding;
    std::string size; ///< "1280x720"
    std::string frameRate;
    std::string quality;
    std::string bitrate;
    std::string govLength;
    std::string encodings; ///< what it can do
};

/// A name for a person and whether it holds.
struct Kind {
    const char* key;  ///< for programs
    const char* name; ///< for people
    bool holds;
};

struct Learned {
    CgiMap login;
    CgiMap capability;
    CgiMap media; ///< empty when the device has no media profiles
    std::vector<Profile> profiles;
    std::vector<Kind> kinds;
};

/// Asks what is not known yet.
/// @throws Failure when login or capabilities cannot be had
Learned learn(Connection& connection);

/// The media profiles in an answer to "Media.*".
std::vector<Profile> profilesIn(const CgiMap& media);

/// The profiles as a table with a row each.
Table profileTable(const std::vector<Profile>& profiles);

Json profilesAsJson(const std::vector<Profile>& profiles);

} // namespace koine::tool
