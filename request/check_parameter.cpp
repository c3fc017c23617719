// A look at the parameters of a set line before it is sent.

#include "koine/BaseRequest.h"
#include "media/profile_keys.h"
#include "request/line_copy.h"
#include "request/rewrite_traces.h"
#include "stream/required_client.h"
#include "text/tokens.h"
#include "text/words.h"

using namespace koine;

namespace {

constexpr int kLowestFrameRate = 1;

/// The host changes the quality of the profile that the user watches: the user's record follows.
void noteQuality(const boost::shared_ptr<StreamIDClient>& client, int profile, float quality) {
    StreamIDClient& watching = required(client);
    if (watching.profile_id() != profile)
        return;
    watching.setSettingQuality(quality);
    watching.setNowQuality(quality);
}

} // namespace

int BaseRequest::checkCgiParameter(unsigned int uid, char* url) {
    if (!contains(viewOf(url), "Media.Profiles.") && !contains(viewOf(url), "StreamSetup.Event."))
        return kOk;
    const boost::shared_ptr<StreamIDClient> client = get_streamid_client(uid);
    const LineCopy line(url);
    if (!line.hasText()) {
        rewrite_trace::notChecked(3211, kNoResource);
        return kNoResource;
    }
    if (!line.hasWork()) {
        rewrite_trace::notChecked(3218, kNoResource);
        return kNoResource;
    }

    // Sizes, encodings and event settings are accepted as they are.
    for (const std::string_view item : Tokens(line.text(), "&\n")) {
        int profile = 0;
        int frameRate = 0;
        float quality = 0.0F;
        if (scanEncoderItem(item, profile, EncoderKey::quality, into(quality)))
            noteQuality(client, profile, quality);
        else if (scanEncoderItem(item, profile, EncoderKey::frameRateLimit, into(frameRate)) &&
                 frameRate < kLowestFrameRate)
            return kRefused;
    }
    return kOk;
}
