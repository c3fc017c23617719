/// @file
/// A device's configuration as a file: one `key=value` a line, sorted, "#" begins a remark.
#pragma once

#include "tools/connection.h"

#include <string>
#include <vector>

namespace koine::tool {

struct Configuration {
    CgiMap values;
    std::vector<std::string> absent; ///< categories that the device does not have
};

/// Reads every category of the device.
/// @throws Failure when one cannot be read; a category that the device does not have is no failure
Configuration readConfiguration(Connection& connection);

/// Reads such a file; "-" is standard input.
/// @throws Failure when it cannot be read or is no such file
CgiMap readConfigurationFile(const std::string& path);

} // namespace koine::tool
