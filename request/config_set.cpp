// After the device has accepted a "Config.cgi?action=set" line: the caches follow it.

#include "cache/key_map.h"
#include "koine/BaseRequest.h"
#include "media/profile_keys.h"
#include "request/config_traces.h"
#include "request/line_copy.h"
#include "text/numbers.h"
#include "text/shortage.h"
#include "text/tokens.h"
#include "text/words.h"

#include <array>

using namespace koine;

namespace {

constexpr std::string_view kSourceSuffix = ".Src";

enum class Category : unsigned { media, video, camera, notification, misc, videoAnalytics };

/// An item belongs to the first of these that occurs anywhere in it.
constexpr std::array<std::string_view, 6> kCategoryNames = {"Media.",        "Video.", "Camera.",
                                                            "Notification.", "Misc.",  "VideoAnalytics."};

} // namespace

/// One set line being written into the caches.
class BaseRequest::ConfigSet {
public:
    ConfigSet(BaseRequest& request, std::string& work) : request_(request), sourceKey_(work) {}

    void item(std::string_view token) {
        for (unsigned i = 0; i < kCategoryNames.size(); ++i)
            if (contains(token, kCategoryNames[i]))
                return store(static_cast<Category>(i), token);
    }

    int bringInLine(unsigned int uid, char* url) {
        if (changed(Category::media) && request_.syncVideoConfigByMediaConfig(uid, url) != kOk) {
            config_trace::mediaNotSynchronised(orEmpty(url), kNotBuilt);
            return kNotBuilt;
        }
        if (changed(Category::video))
            request_.convertCgiVideo(&request_.video_.map);
        if (changed(Category::camera))
            request_.convertCgiCamera(&request_.camera_.map);
        if (changed(Category::notification) || changed(Category::misc))
            request_.convertCgiMisc(&request_.misc_.map, &request_.notification_.map);
        return kOk;
    }

private:
    bool changed(Category category) const { return changed_[static_cast<unsigned>(category)]; }

    CgiMap& cacheOf(Category category) {
        const std::array<DeviceCache*, kCategoryNames.size()> caches = {
            &request_.media_,        &request_.video_, &request_.camera_,
            &request_.notification_, &request_.misc_,  &request_.videoAnalytics_};
        return caches[static_cast<unsigned>(category)]->map;
    }

    void store(Category category, std::string_view token) {
        if (category == Category::media && request_.getMediaProfile() != 1)
            return;
        changed_[static_cast<unsigned>(category)] = true;
        const std::size_t equals = token.find('=');
        if (equals == std::string_view::npos)
            return;
        const std::string_view key = token.substr(0, equals);
        const std::string_view value = token.substr(equals + 1);
        if (category == Category::media && contains(key, kEncoderQuality))
            return storeQuality(key, value);
        entry(cacheOf(category), key) = value;
    }

    /// The line carries the device's scale by now; the host reads its own scale under the key itself.
    void storeQuality(std::string_view key, std::string_view value) {
        const float onDevice = readFloat(value);
        const float aboveMinimum = onDevice - request_.getSettingQualitySrcMin();
        const float forHost = aboveMinimum / request_.getQualityStep();
        sourceKey_.assign(key).append(kSourceSuffix);
        entry(request_.media_.map, sourceKey_) = generalText(onDevice);
        entry(request_.media_.map, key) = generalText(forHost);
    }

    static constexpr std::string_view kEncoderQuality = "VideoEncoderConfiguration.Quality";

    BaseRequest& request_;
    std::string& sourceKey_;
    std::array<bool, kCategoryNames.size()> changed_{}; ///< so that what is derived from a cache follows once
};

int BaseRequest::handleConfigSet(unsigned int uid, char* url) {
    LineCopy line(url);
    if (!line.hasText()) {
        config_trace::setOutOfMemory(3411, kNoResource);
        return kNoResource;
    }
    if (!line.hasWork()) {
        config_trace::setOutOfMemory(3418, kNoResource);
        return kNoResource;
    }
    // Entries that were written before memory ran out stay written.
    return orNoResource([&] {
        ConfigSet set(*this, line.work);
        for (const std::string_view token : Tokens(line.text(), "&\n"))
            set.item(token);
        return set.bringInLine(uid, url);
    });
}
