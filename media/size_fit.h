/// @file
/// The picture size of a stream: the nearest one that the profile offers.
#pragma once

#include <cstdint>
#include <string_view>

namespace koine {

/// Pixels. 0 in both: none.
struct FrameSize {
    std::uint32_t width;
    std::uint32_t height;
};

/// The size of largest area that is not above the wanted one, else that of smallest area above it; the last
/// of several equal ones. Areas are taken modulo 2^32. An offer without any size gives 30000 x 30000.
/// @param offered sizes as a profile lists them ("640x480,1920x1080"); what is no size is skipped
FrameSize fitSize(FrameSize wanted, std::string_view offered);

} // namespace koine
