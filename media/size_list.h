/// @file
/// Lists of picture sizes ("640x480,1920x1080") as media profiles give them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace koine {

/// A picture in pixels, as a device wrote it: nothing is promised about the numbers.
struct PictureSize {
    int width;
    int height;
};

/// Cannot overflow.
constexpr std::int64_t areaOf(PictureSize size) { return std::int64_t{size.width} * size.height; }

/// Reads a word that holds an "x": the numbers before and after the first one, 0 for what is none.
std::optional<PictureSize> readPictureSize(std::string_view word);

/// The words of a list with the largest and the smallest area; the first of several equal ones.
struct SizeBounds {
    std::string_view largest;
    std::string_view smallest;

    bool areKnown() const { return !largest.empty() && !smallest.empty(); }
};
SizeBounds sizeBounds(std::string_view sizes);

/// Both ends belong to it.
struct AreaRange {
    std::int64_t least;
    std::int64_t most;
};

/// Writes the sizes whose area lies in the range into `kept`, in order, joined by ",".
/// @return was there any? Otherwise `kept` is empty
bool keepSizes(std::string_view sizes, AreaRange range, std::string& kept);

/// Writes every item of a list, followed by `rates`, into `text`, joined by ",".
void appendToSizes(std::string_view sizes, std::string_view rates, std::string& text);

} // namespace koine
