/// @file
/// The file that an argument names, or standard input for "-".
#pragma once

#include "tools/failure.h"

#include <fstream>
#include <iostream>
#include <string>

namespace koine::tool {

/// What `read` makes of the stream and of the name that messages give it.
/// @throws Failure when the file cannot be read
template <typename Reader>
auto readNamedInput(const std::string& path, const Reader& read) {
    if (path == "-")
        return read(std::cin, "standard input");
    std::ifstream file(path);
    if (!file)
        throw Failure(ExitCode::usage, path + ": cannot be read; check its name and permissions");
    return read(file, path);
}

} // namespace koine::tool
