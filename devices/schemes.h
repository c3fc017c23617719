/// @file
/// How URLs of devices begin.
#pragma once

#include <string_view>

namespace koine {

constexpr std::string_view kHttp = "http://";
constexpr std::string_view kHttps = "https://";

} // namespace koine
