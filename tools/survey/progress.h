/// @file
/// How far a survey is, for the person at the terminal.
#pragma once

#include "tools/terminal.h"

#include <cstddef>
#include <string>

namespace koine::tool {

/// One line on standard error that is written over and over, and taken away at the end. Does nothing where
/// there is no terminal that can do that.
class Progress {
public:
    /// @param wanted whether it may be shown at all
    Progress(std::size_t devices, bool wanted);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// @param newest the device whose finding came last
    void show(std::size_t finished, std::size_t failed, const std::string& newest);

private:
    Style style_{stderr};
    std::size_t devices_;
    bool shown_;
};

/// The line, at most `width` wide: a bar where there is room for one, the counts, the newest device.
std::string progressText(const Style& style, std::size_t finished, std::size_t devices, std::size_t failed,
                         const std::string& newest, std::size_t width);

} // namespace koine::tool
