#include "media/profile_completion.h"

#include "cache/key_map.h"
#include "cache/keys.h"
#include "media/encoding_completion.h"
#include "media/encoding_list.h"
#include "media/media_map.h"
#include "media/media_traces.h"
#include "media/profile_keys.h"
#include "media/profile_words.h"
#include "text/numbers.h"

#include <optional>

namespace koine {
namespace {

constexpr float kBestQuality = 10.0F; // of the host's scale, which begins at 0
constexpr std::string_view kIsAvailable = "1";
constexpr std::string_view kBitrateMost = "20000";
constexpr std::string_view kBitrateLeast = "64";
constexpr int kPellMobileIndex = 1;

/// The host's quality for one of the device's. What is no number counts as the best.
float hostQuality(float source, float sourceMin, float step) {
    const float value = (source - sourceMin) / step;
    const float limited = value < kBestQuality ? value : kBestQuality;
    return limited > 0.0F ? limited : 0.0F;
}

using Entry = MediaMap::Entry;

/// The keys of the encoder of one profile, encodings apart. Looked up in the order of the keys.
struct EncoderEntries {
    EncoderEntries(MediaMap& media, ProfileKeys& keys)
        : quality(media.look(keys.of(EncoderKey::quality))),
          qualityMax(media.look(keys.of(EncoderKey::qualityMax))),
          qualityMin(media.look(keys.of(EncoderKey::qualityMin))),
          qualitySrc(media.look(keys.of(EncoderKey::qualitySrc))),
          bitrateMax(media.look(keys.of(EncoderKey::bitrateLimitMax))),
          bitrateMin(media.look(keys.of(EncoderKey::bitrateLimitMin))),
          token(media.look(keys.of(EncoderKey::token))) {}

    Entry quality;
    Entry qualityMax;
    Entry qualityMin;
    Entry qualitySrc;
    Entry bitrateMax;
    Entry bitrateMin;
    Entry token;
};

class Completion {
public:
    Completion(CgiMap& media, const CgiMap& capability, const CompletionSettings& settings, int count)
        : media_(media),
          capability_(capability),
          settings_(settings),
          count_(count),
          encodings_(media_, capability, settings.areas, settings.frameRateMin, settings.frameRateMax),
          qualityMax_(findValue(capability, keys::kQualityMax)),
          qualityMin_(findValue(capability, keys::kQualityMin)) {}

    /// The steps do not depend on each other, so they take the keys in their order.
    /// @return is this profile reserved for mobile viewing?
    bool profile(int index) {
        ProfileKeys keys(ProfileNumber{index + 1});
        Entry available = media_.look(keys.of(ProfileKey::available));
        setIfAbsent(available, keys, ProfileKey::available, kIsAvailable);
        Entry allowLive = media_.look(keys.of(ProfileKey::allowLive));
        setIfAbsent(allowLive, keys, ProfileKey::allowLive, liveClass(index));
        completeEncodings(keys);
        completeEncoder(keys, index);
        return allowLive.text() == kLiveMobile;
    }

    bool isExhausted() const { return media_.isExhausted(); }

private:
    template <typename Key>
    void setIfAbsent(Entry& entry, ProfileKeys& keys, Key key, std::string_view value) {
        if (!entry.isPresent())
            media_.add(entry, keys.of(key), value);
    }

    void completeEncodings(ProfileKeys& keys) {
        Entry list = media_.look(keys.of(EncoderKey::encodingList));
        if (!list.isPresent())
            offerEncodings(keys, list);
        if (list.isPresent())
            encodings_.complete(keys, list.text());
    }

    void completeEncoder(ProfileKeys& keys, int index) {
        EncoderEntries entries(media_, keys);
        if (!entries.token.isPresent())
            media_trace::profileHasNoToken(index);
        scaleQuality(keys, entries);
        if (qualityMax_ != nullptr)
            setIfAbsent(entries.qualityMax, keys, EncoderKey::qualityMax, *qualityMax_);
        if (qualityMin_ != nullptr)
            setIfAbsent(entries.qualityMin, keys, EncoderKey::qualityMin, *qualityMin_);
        setIfAbsent(entries.bitrateMax, keys, EncoderKey::bitrateLimitMax, kBitrateMost);
        setIfAbsent(entries.bitrateMin, keys, EncoderKey::bitrateLimitMin, kBitrateLeast);
    }

    /// The scale is the same for every vendor.
    void scaleQuality(ProfileKeys& keys, EncoderEntries& entries) {
        if (settings_.qualityStep == 0.0F || !entries.quality.isPresent())
            return;
        setIfAbsent(entries.qualitySrc, keys, EncoderKey::qualitySrc, entries.quality.text());
        const float source = readFloat(entries.qualitySrc.text());
        if (source < 0.0F)
            return;
        const float quality = hostQuality(source, settings_.qualitySourceMin, settings_.qualityStep);
        media_.assign(entries.quality, generalText(quality));
    }

    std::string_view liveClass(int index) const {
        const int mobileIndex = settings_.isPellDevice ? kPellMobileIndex : count_ - 1;
        return index == mobileIndex ? kLiveMobile : kLiveAny;
    }

    /// A profile that does not say has the encodings of the device.
    void offerEncodings(ProfileKeys& keys, Entry& list) {
        if (!deviceEncodings_) {
            const std::string* format = findValue(capability_, keys::kVideoFormat);
            if (format == nullptr)
                return;
            deviceEncodings_ = encodingList(*format);
        }
        media_.add(list, keys.of(EncoderKey::encodingList), *deviceEncodings_);
    }

    MediaMap media_;
    const CgiMap& capability_;
    const CompletionSettings& settings_;
    int count_;
    EncodingCompletion encodings_;
    const std::string* qualityMax_;
    const std::string* qualityMin_;
    std::optional<std::string> deviceEncodings_;
};

} // namespace

bool completeProfiles(CgiMap& media, const CgiMap& capability, const CompletionSettings& settings,
                      int count) {
    Completion completion(media, capability, settings, count);
    bool hasMobile = false;
    for (int index = 0; index < count && !completion.isExhausted(); ++index)
        hasMobile = completion.profile(index) || hasMobile;
    return hasMobile;
}

} // namespace koine
