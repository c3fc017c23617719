/// @file
/// The parts of a device's configuration, by the names that people use.
#pragma once

#include "koine/types.h"

#include <array>
#include <string>
#include <string_view>

namespace koine::tool {

/// What makes up a device's configuration, in the order in which it is shown and saved.
inline constexpr std::array<std::string_view, 6> kConfiguration = {"Media",        "Video", "Camera",
                                                                   "Notification", "Misc",  "VideoAnalytics"};

/// The request line for "Video", "Video.*", a single key or a pattern of keys of a category; also for
/// "Login" and "Capability".
/// @throws Failure for anything else
std::string readingLine(std::string_view category);

/// The category that holds a key; empty when none does.
std::string_view categoryOf(std::string_view key);

/// Is this how a device, or the library for it, says that it does not have what was asked for?
bool meansAbsent(int result, int status);

/// A value as part of a request line: what would end it or the URL becomes "%XX".
std::string lineValue(std::string_view value);

} // namespace koine::tool
