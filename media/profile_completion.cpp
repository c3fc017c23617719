#include "media/profile_completion.h"

#include "cache/key_map.h"
#include "cache/keys.h"
#include "media/encoding_list.h"
#include "media/media_map.h"
#include "media/media_traces.h"
#include "media/profile_keys.h"
#include "media/profile_words.h"
#include "text/numbers.h"
#include "text/tokens.h"

#include <array>
#include <optional>

namespace koine {
namespace {

constexpr float kBestQuality = 10.0F; // of the host's scale, which begins at 0
constexpr std::string_view kIsAvailable = "1";
constexpr int kPellMobileIndex = 1;

struct EncoderDefault {
    EncoderKey key;
    std::string_view value;
};
constexpr std::array<EncoderDefault, 2> kBitrateDefaults = {
    {{EncoderKey::bitrateLimitMax, "20000"}, {EncoderKey::bitrateLimitMin, "64"}}};

/// The host's quality for one of the device's. What is no number counts as the best.
float hostQuality(float source, float sourceMin, float step) {
    const float value = (source - sourceMin) / step;
    const float limited = value < kBestQuality ? value : kBestQuality;
    return limited > 0.0F ? limited : 0.0F;
}

std::string frameRateSuffix(int least, int most) {
    return ":" + numberAsText(least) + "-" + numberAsText(most);
}

class Completion {
public:
    Completion(CgiMap& media, const CgiMap& capability, const CompletionSettings& settings, int count)
        : media_(media),
          capability_(capability),
          settings_(settings),
          count_(count),
          generalSizes_(findValue(capability, keys::kVideoResolutionNxN)),
          qualityMax_(findValue(capability, keys::kQualityMax)),
          qualityMin_(findValue(capability, keys::kQualityMin)),
          frameRates_(frameRateSuffix(settings.frameRateMin, settings.frameRateMax)) {}

    /// @return is this profile reserved for mobile viewing?
    bool profile(int index) {
        ProfileKeys keys(ProfileNumber{index + 1});
        if (media_.find(keys.of(EncoderKey::token)) == nullptr)
            media_trace::profileHasNoToken(index);
        scaleQuality(keys);
        media_.setIfAbsent(keys.of(ProfileKey::available), kIsAvailable);
        const bool isMobile =
            media_.setIfAbsent(keys.of(ProfileKey::allowLive), liveClass(index)) == kLiveMobile;
        if (const std::string* encodings = encodingsOf(keys))
            completeEncodings(keys, *encodings);
        copyIfAbsent(keys.of(EncoderKey::qualityMax), qualityMax_);
        copyIfAbsent(keys.of(EncoderKey::qualityMin), qualityMin_);
        for (const EncoderDefault& bound : kBitrateDefaults)
            media_.setIfAbsent(keys.of(bound.key), bound.value);
        return isMobile;
    }

    bool isExhausted() const { return media_.isExhausted(); }

private:
    /// The scale is the same for every vendor.
    void scaleQuality(ProfileKeys& keys) {
        if (settings_.qualityStep == 0.0F)
            return;
        std::string* const quality = media_.find(keys.of(EncoderKey::quality));
        if (quality == nullptr)
            return;
        const float source = readFloat(media_.setIfAbsent(keys.of(EncoderKey::qualitySrc), *quality));
        if (!(source < 0.0F))
            media_.assign(*quality, generalText(hostQuality(source, settings_.qualitySourceMin,
                                                            settings_.qualityStep)));
    }

    std::string_view liveClass(int index) const {
        const int mobileIndex = settings_.isPellDevice ? kPellMobileIndex : count_ - 1;
        return index == mobileIndex ? kLiveMobile : kLiveAny;
    }

    const std::string* encodingsOf(ProfileKeys& keys) {
        if (const std::string* encodings = media_.find(keys.of(EncoderKey::encodingList)))
            return encodings;
        if (!offeredEncodings_) {
            const std::string* format = findValue(capability_, keys::kVideoFormat);
            if (format == nullptr)
                return nullptr;
            offeredEncodings_ = encodingList(*format);
        }
        return &media_.setIfAbsent(keys.of(EncoderKey::encodingList), *offeredEncodings_);
    }

    using Pass = bool (Completion::*)(ProfileKeys& keys, std::string_view encoding);

    /// The passes follow each other because each reads what the one before left for all encodings.
    void completeEncodings(ProfileKeys& keys, std::string_view encodings) {
        for (const Pass pass :
             {&Completion::noteBounds, &Completion::narrowSizes, &Completion::addFrameRates})
            for (const std::string_view encoding : Tokens(encodings, kListSeparators))
                if (media_.isExhausted() || !(this->*pass)(keys, encoding))
                    break;
    }

    /// @return false when there is no list to be had: the pass ends
    bool noteBounds(ProfileKeys& keys, std::string_view encoding) {
        const std::string* sizes = media_.find(keys.of(EncodingKey::sizes, encoding));
        if (sizes == nullptr && generalSizes_ != nullptr)
            sizes = &media_.setIfAbsent(keys.of(EncodingKey::sizes, encoding), *generalSizes_);
        if (sizes == nullptr)
            return false;
        const SizeBounds bounds = sizeBounds(*sizes);
        media_.note(sizes->size());
        if (bounds.areKnown()) {
            media_.set(keys.of(EncodingKey::largestSize, encoding), bounds.largest);
            media_.set(keys.of(EncodingKey::smallestSize, encoding), bounds.smallest);
        }
        return true;
    }

    /// @return false when there is no list to be had: the pass ends
    bool narrowSizes(ProfileKeys& keys, std::string_view encoding) {
        std::string* sizes = media_.find(keys.of(EncodingKey::sizes, encoding));
        if (sizes == nullptr) {
            const std::string* own = sizesOfCodec(encoding);
            if (own == nullptr)
                return false;
            sizes = &media_.setIfAbsent(keys.of(EncodingKey::sizes, encoding), *own);
        }
        const std::string& all = media_.setIfAbsent(keys.of(EncodingKey::sizesSrc, encoding), *sizes);
        media_.note(all.size());
        if (keepSizes(all, settings_.areas, work_)) {
            media_.set(keys.of(EncodingKey::sizesUi, encoding), work_);
            media_.assign(*sizes, work_);
        }
        return true;
    }

    /// An encoding without a list is passed over.
    bool addFrameRates(ProfileKeys& keys, std::string_view encoding) {
        const std::string* sizes = media_.find(keys.of(EncodingKey::sizes, encoding));
        if (sizes == nullptr || media_.find(keys.of(EncodingKey::frameRates, encoding)) != nullptr)
            return true;
        appendToSizes(*sizes, frameRates_, work_);
        media_.note(sizes->size());
        if (!work_.empty())
            media_.set(keys.of(EncodingKey::frameRates, encoding), work_);
        return true;
    }

    const std::string* sizesOfCodec(std::string_view encoding) {
        work_.assign("Capability.Video.").append(encoding).append(".Resolution.NxN");
        return findValue(capability_, work_);
    }

    void copyIfAbsent(std::string_view key, const std::string* value) {
        if (value != nullptr)
            media_.setIfAbsent(key, *value);
    }

    MediaMap media_;
    const CgiMap& capability_;
    const CompletionSettings& settings_;
    int count_;
    const std::string* generalSizes_;
    const std::string* qualityMax_;
    const std::string* qualityMin_;
    std::string frameRates_; // as they follow a size
    std::optional<std::string> offeredEncodings_;
    std::string work_;
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
