// The set line that carries the settings of media profiles in the device's video keys.

#include "cache/key_map.h"
#include "cache/keys.h"
#include "koine/BaseRequest.h"
#include "media/media_traces.h"
#include "platform/resolution.h"
#include "text/owned_text.h"

using namespace koine;

namespace {

/// Empty when the device's keys cannot express the settings.
OwnedText videoKeys(const char* resolutions, int resoIndep, const _tagProfileMap& profile) {
    std::string encoding(orEmpty(profile.encoding)); // the platform takes a text that it could change
    return OwnedText(getConfigVideoStr_TovlinNVR(
        resolutions, resoIndep, profile.encoding == nullptr ? nullptr : encoding.data(), profile.width,
        profile.height, profile.quality, profile.frameRateLimit, profile.bitrateLimit, profile.govLength));
}

} // namespace

char* BaseRequest::getConfigVideoStr(std::map<int, _tagProfileMap*>& profiles) {
    const OwnedText url(deviceUrl("Config.cgi?action=set"));
    if (!url) {
        media_trace::noUrlForVideo();
        return nullptr;
    }
    std::string line(url.get());
    bool isWhole = true;
    for (const auto& [number, profile] : profiles) {
        const std::string& resolutions = entry(capability_.map, keys::kVideoResolution);
        const OwnedText keys = videoKeys(resolutions.c_str(), getIsResoIndep(), *profile);
        isWhole = isWhole && !viewOf(keys.get()).empty();
        if (isWhole)
            line += keys.get();
    }
    // All or nothing: a line with some of the profiles would leave the device half changed.
    return isWhole ? copyText(line).release() : nullptr;
}
