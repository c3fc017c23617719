#include "media/encoding_list.h"

#include "text/tokens.h"
#include "text/words.h"

#include <array>

namespace koine {
namespace {

/// A spelling that devices use in their capabilities, and the name of the encoding in media profiles.
struct Spelling {
    std::string_view beginning; ///< in any case
    std::string_view name;
    bool droppedBesideName; ///< the device lists the encoding under its name as well
};

constexpr std::array<Spelling, 3> kSpellings = {{
    {"MJPEG", "JPEG", false},
    {"M.PEG4", "MPEG4", false},
    {"H.264", "H264", true},
}};

/// Empty for a word that adds nothing to the list.
std::string_view encodingName(std::string_view word, std::string_view format) {
    for (const Spelling& spelling : kSpellings) {
        if (!startsWithIgnoreCase(word, spelling.beginning))
            continue;
        const bool isDropped = spelling.droppedBesideName && contains(format, spelling.name);
        return isDropped ? std::string_view() : spelling.name;
    }
    return word;
}

} // namespace

std::string encodingList(std::string_view format) {
    std::string list;
    for (const std::string_view word : Tokens(format, kListSeparators)) {
        const std::string_view name = encodingName(word, format);
        if (name.empty())
            continue;
        if (!list.empty())
            list += ',';
        list += name;
    }
    return list;
}

} // namespace koine
