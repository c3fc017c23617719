/// @file
/// Answers of devices of any size, always the same for the same size.
#pragma once

#include <map>
#include <memory>
#include <string>

namespace koine::bench {

/// Answers by a part of the request line that asks for them.
using DeviceTexts = std::map<std::string, std::string, std::less<>>;

/// How much a device has to say.
struct DeviceShape {
    int loginKeys = 400;
    int capabilityKeys = 400;
    int categoryKeys = 400; ///< of each configuration category, media apart
    int profiles = 3;
    int encodings = 3; ///< of each profile, at most 3
    int sizes = 12;    ///< of each encoding
};

/// A shape that has this many keys in every answer but the media answer.
DeviceShape withKeys(int keys);

/// "0\nOK\n" and so many pairs in the order of their keys, the ones that the library looks at among them.
std::string loginText(int keys);
std::string capabilityText(int keys, int sizes);
/// @param category "Video", "Camera", ...
std::string categoryText(const std::string& category, int keys);
std::string mediaText(int profiles, int encodings, int sizes);

/// All answers; any number of devices may share them.
std::shared_ptr<const DeviceTexts> deviceTexts(const DeviceShape& shape);

} // namespace koine::bench
