// The encoding to use on a profile.

#include "cache/key_map.h"
#include "cache/keys.h"
#include "koine/BaseRequest.h"
#include "media/profile_keys.h"
#include "text/words.h"

#include <array>

using namespace koine;

namespace {

/// Who offers the encodings: device-wide capabilities are not asked for the newest one.
enum class Offer { profile, device };

struct Preference {
    const char* encoding;
    std::string_view unless; ///< not when this is offered as well; empty for no such rule
    bool fromProfileOnly;
};

/// Best first.
constexpr std::array<Preference, 4> kPreferences = {{
    {"H265", {}, true},
    {"H264", {}, false},
    {"JPEG", "MPEG4", false},
    {"MPEG4", {}, false},
}};

const char* pickEncoding(const char* wanted, std::string_view offered, Offer by) {
    if (contains(offered, wanted))
        return wanted;
    for (const Preference& preference : kPreferences) {
        if (preference.fromProfileOnly && by != Offer::profile)
            continue;
        if (!contains(offered, preference.encoding))
            continue;
        if (preference.unless.empty() || !contains(offered, preference.unless))
            return preference.encoding;
    }
    return nullptr;
}

} // namespace

const char* BaseRequest::getAutoStrmEnc(const char* encoding, int profileNo) {
    if (encoding == nullptr)
        return nullptr;
    ProfileKeys keys(ProfileNumber{profileNo});
    if (const std::string* list = findValue(media_.map, keys.of(EncoderKey::encodingList)))
        return pickEncoding(encoding, *list, Offer::profile);
    if (const std::string* format = findValue(capability_.map, keys::kVideoFormat))
        return pickEncoding(encoding, *format, Offer::device);
    return nullptr;
}
