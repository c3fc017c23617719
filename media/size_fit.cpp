#include "media/size_fit.h"

#include "text/scan.h"
#include "text/tokens.h"

namespace koine {
namespace {

constexpr std::string_view kSeparators = ",\n";
constexpr FrameSize kBeyondAll = {30000, 30000};

constexpr std::uint32_t areaOf(FrameSize size) { return size.width * size.height; }

} // namespace

FrameSize fitSize(FrameSize wanted, std::string_view offered) {
    const std::uint32_t target = areaOf(wanted);
    FrameSize below = {0, 0};
    FrameSize above = kBeyondAll;
    for (const std::string_view item : Tokens(offered, kSeparators)) {
        FrameSize size = {0, 0};
        if (!scan(item, into(size.width), "x", into(size.height)))
            continue;
        const std::uint32_t area = areaOf(size);
        if (area <= target && area >= areaOf(below))
            below = size;
        else if (area > target && area <= areaOf(above))
            above = size;
    }
    return below.height != 0 ? below : above;
}

} // namespace koine
