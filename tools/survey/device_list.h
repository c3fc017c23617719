/// @file
/// The devices of a survey, from a file.
#pragma once

#include <string>
#include <vector>

namespace koine::tool {

/// One device of the list.
struct ListedDevice {
    std::string url;   ///< as it was written, maybe with a password
    std::string shown; ///< without user name and password
    bool hasUser = false;
    bool hasPassword = false;
};

/// Reads a URL a line; blank lines and lines that begin with "#" are skipped. "-" is standard input.
/// @throws Failure when it cannot be read, holds no URL or a line is none; the text never holds a password
std::vector<ListedDevice> readDeviceList(const std::string& path);

} // namespace koine::tool
