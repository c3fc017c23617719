/// @file
/// The settings as the clients see them.
#pragma once

#include <cstddef>
#include <string>

namespace koine::platform {

struct Settings {
    unsigned int requestMilliseconds = 30'000;
    unsigned int connectMilliseconds = 10'000;
    std::size_t bodyLimit = std::size_t{16} << 20;
    bool verifyTls = true;
    std::string authorityFile;
    std::string pinnedKey;
};

/// A copy of what holds now. Any thread.
Settings currentSettings();

} // namespace koine::platform
