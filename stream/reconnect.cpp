// Does a change of parameters mean that the stream must be opened again?

#include "cache/key_map.h"
#include "cache/keys.h"
#include "koine/BaseRequest.h"
#include "media/profile_keys.h"
#include "stream/stream_traces.h"
#include "text/numbers.h"
#include "text/owned_text.h"
#include "text/tokens.h"
#include "text/words.h"

#include <cstdlib>
#include <optional>

using namespace koine;

namespace {

constexpr std::string_view kReconnectAnswer = "0\nOK\n;StreamSetup.Reconnect=1";

struct SizeChange {
    EncoderKey side;
    int cached;
    int asked;
};

/// The first width or height that differs from what the cache holds; an absent one counts as 0.
std::optional<SizeChange> firstSizeChange(std::string_view parameters, CgiMap& media) {
    for (const std::string_view item : Tokens(parameters, "&\n")) {
        for (const EncoderKey side : {EncoderKey::width, EncoderKey::height}) {
            int profile = 0;
            int asked = 0;
            if (!scanEncoderItem(item, profile, side, into(asked)))
                continue;
            const int cached = readInt(entry(media, ProfileKeys(ProfileNumber{profile}).of(side)));
            if (cached != asked)
                return SizeChange{side, cached, asked};
        }
    }
    return std::nullopt;
}

} // namespace

int BaseRequest::handleParameter_1(char* params, char** answer) {
    int result = kOk;
    std::optional<SizeChange> change;
    const bool isMakers = startsWithIgnoreCase(viewOf(getVendor()), kMakerVendor);
    if (!isMakers && contains(viewOf(params), "Media.Profiles.")) {
        const OwnedText copy = copyText(viewOf(params));
        if (copy) {
            change = firstSizeChange(copy.get(), media_.map);
        } else {
            stream_trace::reconnectOutOfMemory(__LINE__, strm_setting_channel(), kNoResource);
            result = kNoResource;
        }
    }
    if (change && change->side == EncoderKey::width)
        stream_trace::widthChanges(__LINE__, strm_setting_channel(), change->cached, change->asked);
    else if (change)
        stream_trace::heightChanges(__LINE__, strm_setting_channel(), change->cached, change->asked);

    if (answer == nullptr)
        return result;
    std::free(*answer);
    *answer = copyText(change ? kReconnectAnswer : answers::kOk).release();
    if (*answer == nullptr) {
        stream_trace::reconnectOutOfMemory(__LINE__, strm_setting_channel(), kNoResource);
        return kNoResource;
    }
    return result;
}
