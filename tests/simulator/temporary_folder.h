/// @file
/// Folders for the files of one test.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace koine::test {

/// A new empty folder among the temporary files.
inline std::filesystem::path makeTemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "koine-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("no folder for the test's files");
    return name;
}

} // namespace koine::test
