/// @file
/// The resolution names and their sizes.
#pragma once

#include "koine/types.h"

#include <optional>
#include <string_view>

namespace koine::platform {

struct Size {
    int width = 0;
    int height = 0;
    bool operator==(const Size& other) const noexcept {
        return width == other.width && height == other.height;
    }
};

/// Size of a name of the table, in any case, or of a text "WIDTHxHEIGHT"; blanks around it do not count.
std::optional<Size> sizeOf(std::string_view name, _VIDEO_SYSTEM_DEF system) noexcept;

/// The first entry of a list whose size this is, in either video system, without the blanks around it; empty
/// when there is none. Entries are separated by commas, semicolons or line ends.
std::string_view entryOfSize(std::string_view list, Size size) noexcept;

} // namespace koine::platform
