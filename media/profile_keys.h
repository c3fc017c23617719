/// @file
/// Names of the media profile keys: the only place that puts them together.
#pragma once

#include "text/numbers.h"
#include "text/scan.h"

#include <array>
#include <string>
#include <string_view>

namespace koine {

/// Number of a media profile, counted from 1. A type of its own: a channel or an index does not fit.
struct ProfileNumber {
    int value;
};

inline constexpr std::string_view kProfileCountKey = "Media.Profiles.Count";
inline constexpr std::string_view kProfilePrefix = "Media.Profiles.Profile";
inline constexpr std::string_view kEncoderPart = ".VideoEncoderConfiguration";

/// Keys directly under a profile.
enum class ProfileKey : unsigned { token, available, allowLive, dptz };
inline constexpr std::array<std::string_view, 4> kProfileSuffixes = {".token", ".Available",
                                                                     ".Tovlin.AllowLive", ".DPTZ"};

/// Keys under a profile's encoder configuration.
enum class EncoderKey : unsigned {
    token,
    encoding,
    encodingList,
    width,
    height,
    quality,
    qualitySrc,
    qualityMax,
    qualityMin,
    frameRateLimit,
    bitrateLimit,
    bitrateLimitMax,
    bitrateLimitMin,
    h264Profile,
    mpeg4Profile,
    govLength,
};
inline constexpr std::array<std::string_view, 16> kEncoderSuffixes = {
    ".token",
    ".Encoding",
    ".EncodingList",
    ".Resolution.Width",
    ".Resolution.Height",
    ".Quality",
    ".Quality.Src",
    ".Quality.Max",
    ".Quality.Min",
    ".RateControl.FrameRateLimit",
    ".RateControl.BitrateLimit",
    ".RateControl.BitrateLimit.Max",
    ".RateControl.BitrateLimit.Min",
    ".H264.H264Profile",
    ".MPEG4.Mpeg4Profile",
    ".GovLength",
};

/// Keys under one encoding of a profile's encoder configuration.
enum class EncodingKey : unsigned {
    sizes,
    sizesSrc,
    sizesUi,
    largestSize,
    smallestSize,
    frameRates,
    govLength
};
inline constexpr std::array<std::string_view, 7> kEncodingSuffixes = {
    ".Resolution.NxN.List", ".Resolution.NxN.List.Src", ".Resolution.NxN.List.Ui",
    ".Resolution.NxN.Max",  ".Resolution.NxN.Min",      ".ResolutionFrameRateRange.NxN.List",
    ".GovLength",
};

constexpr std::string_view suffixOf(ProfileKey key) { return kProfileSuffixes[static_cast<unsigned>(key)]; }
constexpr std::string_view suffixOf(EncoderKey key) { return kEncoderSuffixes[static_cast<unsigned>(key)]; }
constexpr std::string_view suffixOf(EncodingKey key) { return kEncodingSuffixes[static_cast<unsigned>(key)]; }

/// Builds the keys of one profile. A view it returns stays valid until the next one is asked for.
class ProfileKeys {
public:
    explicit ProfileKeys(ProfileNumber profile) {
        text_.reserve(kUsualLength); // one allocation for all keys
        text_ += kProfilePrefix;
        select(profile);
    }

    /// Goes on with another profile.
    void select(ProfileNumber profile) {
        text_.resize(kProfilePrefix.size());
        appendNumber(text_, profile.value);
        prefixLength_ = text_.size();
    }

    std::string_view of(ProfileKey key) { return build(prefixLength_, suffixOf(key)); }

    std::string_view of(EncoderKey key) {
        restoreEncoderPart();
        return build(text_.size(), suffixOf(key));
    }

    /// Key of one encoding ("H264").
    std::string_view of(EncodingKey key, std::string_view encoding) {
        restoreEncoderPart();
        text_ += '.';
        text_ += encoding;
        return build(text_.size(), suffixOf(key));
    }

private:
    void restoreEncoderPart() {
        text_.resize(prefixLength_);
        text_ += kEncoderPart;
    }

    std::string_view build(std::size_t keep, std::string_view suffix) {
        text_.resize(keep);
        text_ += suffix;
        return text_;
    }

    static constexpr std::size_t kUsualLength = 95; ///< no key of a known encoding is longer

    std::string text_;
    std::size_t prefixLength_ = 0;
};

/// Reads "Media.Profiles.Profile<n>.VideoEncoderConfiguration<key>=<value>"; `value` is made by `into`.
template <typename Value>
bool scanEncoderItem(std::string_view item, int& profile, EncoderKey key, Value value) {
    return scan(item, kProfilePrefix, into(profile), kEncoderPart, suffixOf(key), "=", value);
}

} // namespace koine
