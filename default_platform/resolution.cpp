#include "platform/resolution.h"

#include "default_platform/characters.h"
#include "default_platform/resolution_table.h"
#include "text/owned_text.h"
#include "text/tokens.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace koine::platform {
namespace {

struct NamedSize {
    std::string_view name;
    int width;
    int heightNtsc;
    int heightPal;
};

// The names that come from television have one height per video system, the computer ones do not.
constexpr std::array kNamedSizes = {
    NamedSize{"QCIF", 176, 120, 144},     NamedSize{"CIF", 352, 240, 288},
    NamedSize{"2CIF", 704, 240, 288},     NamedSize{"HD1", 352, 480, 576},
    NamedSize{"4CIF", 704, 480, 576},     NamedSize{"D1", 720, 480, 576},
    NamedSize{"QVGA", 320, 240, 240},     NamedSize{"VGA", 640, 480, 480},
    NamedSize{"SVGA", 800, 600, 600},     NamedSize{"XGA", 1024, 768, 768},
    NamedSize{"SXGA", 1280, 1024, 1024},  NamedSize{"UXGA", 1600, 1200, 1200},
    NamedSize{"720P", 1280, 720, 720},    NamedSize{"960P", 1280, 960, 960},
    NamedSize{"1080P", 1920, 1080, 1080}, NamedSize{"QXGA", 2048, 1536, 1536},
    NamedSize{"4K", 3840, 2160, 2160},
};

constexpr std::string_view kListSeparators = ",;\n";

// More do not fit into an int.
constexpr std::size_t kMostDigits = 9;

/// Digits only; 0 for anything else.
int pixels(std::string_view text) noexcept {
    const bool number = text.size() <= kMostDigits && std::all_of(text.begin(), text.end(), isDigit);
    return number ? readInt(text) : 0;
}

std::optional<Size> sizeInDigits(std::string_view text) noexcept {
    const std::size_t times = text.find_first_of("xX");
    if (times == std::string_view::npos)
        return std::nullopt;
    const Size size{pixels(text.substr(0, times)), pixels(text.substr(times + 1))};
    return size.width > 0 && size.height > 0 ? std::optional(size) : std::nullopt;
}

} // namespace

std::optional<Size> sizeOf(std::string_view name, _VIDEO_SYSTEM_DEF system) noexcept {
    name = trimmed(name);
    for (const NamedSize& known : kNamedSizes)
        if (sameWord(name, known.name))
            return Size{known.width, system == VIDEO_SYSTEM_PAL ? known.heightPal : known.heightNtsc};
    return sizeInDigits(name);
}

std::string_view entryOfSize(std::string_view list, Size size) noexcept {
    for (const std::string_view entry : Tokens(list, kListSeparators))
        for (const _VIDEO_SYSTEM_DEF system : {VIDEO_SYSTEM_NTSC, VIDEO_SYSTEM_PAL})
            if (sizeOf(entry, system) == size)
                return trimmed(entry);
    return {};
}

} // namespace koine::platform

using koine::platform::Size;

int getResolutionByStr(const char* name, _VIDEO_SYSTEM_DEF system, int* width, int* height) {
    const std::optional<Size> size = koine::platform::sizeOf(koine::viewOf(name), system);
    if (!size || width == nullptr || height == nullptr)
        return 0;
    *width = size->width;
    *height = size->height;
    return 1;
}

int getResolutionStrByValue2(const char* resolutionList, int width, int height, char* name,
                             unsigned int nameSize) {
    if (name == nullptr || nameSize == 0)
        return 0;
    const std::string_view entry =
        koine::platform::entryOfSize(koine::viewOf(resolutionList), Size{width, height});
    const bool found = !entry.empty() && entry.size() < nameSize;
    if (found)
        std::memcpy(name, entry.data(), entry.size());
    name[found ? entry.size() : 0] = '\0';
    return found ? 1 : 0;
}
