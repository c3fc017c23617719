// Devices that keep their encoder settings in video keys, while the host sets them by media profile.

#include "cache/keys.h"
#include "koine/BaseRequest.h"
#include "media/media_traces.h"
#include "media/profile_records.h"
#include "text/owned_text.h"
#include "text/tokens.h"
#include "text/words.h"

using namespace koine;

namespace {

constexpr std::string_view kFirstSeparators = "?&\n"; // the first "?" ends the request's name
constexpr std::string_view kItemSeparators = "&\n";

void takeItems(ProfileRecords& records, std::string_view line) {
    Tokens items(line);
    for (auto item = items.next(kFirstSeparators); item; item = items.next(kItemSeparators))
        records.take(*item);
}

} // namespace

int BaseRequest::syncVideoConfigByMediaConfig(unsigned int uid, char* url) {
    const bool isMakers = startsWithIgnoreCase(viewOf(getVendor()), kMakerVendor);
    if (!isMakers || getIsONVIFProduct() != 0 || getIsTovlinNVRDevice() != 0 || getIsTlProfile() != 0)
        return kOk;
    ProfileRecords records(getIsPellDevice() == 0 ? &media_.map : nullptr);
    takeItems(records, viewOf(url));
    if (getMediaProfile() == 1 && records.isEmpty()) {
        media_trace::noProfileNamed(static_cast<int>(uid));
        return kNotBuilt;
    }
    std::map<int, _tagProfileMap*> profiles = records.byProfile();
    const OwnedText line(getConfigVideoStr(profiles));
    if (!line)
        return kOk;
    std::string username = get_username();
    std::string password = get_password();
    if (requestHttpStr(uid, line.get(), username.data(), password.data(), nullptr) != kOk) {
        media_trace::videoNotSet(static_cast<int>(uid));
        return kNotBuilt;
    }
    return kOk;
}
