#include "media/size_list.h"

#include "media/encoding_list.h"
#include "text/numbers.h"
#include "text/tokens.h"

namespace koine {
namespace {

/// No picture is as large as this; a larger one is not taken for the smallest of its list.
constexpr std::int64_t kBeyondAllAreas = 900000000;

/// Items of a list that frame rates are added to: ";" does not separate here.
constexpr std::string_view kRateItemSeparators = ",\n";

void startItem(std::string& list) {
    if (!list.empty())
        list += ',';
}

} // namespace

std::optional<PictureSize> readPictureSize(std::string_view word) {
    const std::size_t cross = word.find('x');
    if (cross == std::string_view::npos)
        return std::nullopt;
    return PictureSize{readInt(word.substr(0, cross)), readInt(word.substr(cross + 1))};
}

SizeBounds sizeBounds(std::string_view sizes) {
    SizeBounds bounds;
    std::int64_t largest = 0;
    std::int64_t smallest = kBeyondAllAreas;
    for (const std::string_view word : Tokens(sizes, kListSeparators)) {
        const std::optional<PictureSize> size = readPictureSize(word);
        if (!size)
            continue;
        const std::int64_t area = areaOf(*size);
        if (area > largest) {
            largest = area;
            bounds.largest = word;
        }
        if (area < smallest) {
            smallest = area;
            bounds.smallest = word;
        }
    }
    return bounds;
}

bool keepSizes(std::string_view sizes, AreaRange range, std::string& kept) {
    kept.clear();
    for (const std::string_view word : Tokens(sizes, kListSeparators)) {
        const std::optional<PictureSize> size = readPictureSize(word);
        if (!size || areaOf(*size) < range.least || areaOf(*size) > range.most)
            continue;
        startItem(kept);
        appendNumber(kept, size->width);
        kept += 'x';
        appendNumber(kept, size->height);
    }
    return !kept.empty();
}

void appendToSizes(std::string_view sizes, std::string_view rates, std::string& text) {
    text.clear();
    for (const std::string_view item : Tokens(sizes, kRateItemSeparators)) {
        startItem(text);
        text += item;
        text += rates;
    }
}

} // namespace koine
