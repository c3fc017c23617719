/// @file
/// Names of the media profile keys: the only place that puts them together.
#pragma once

#include "text/numbers.h"
#include "text/scan.h"

#include <algorithm>
#include <array>
#include <charconv>
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

template <std::size_t Count>
constexpr std::size_t longest(const std::array<std::string_view, Count>& texts) {
    std::size_t length = 0;
    for (const std::string_view text : texts)
        length = std::max(length, text.size());
    return length;
}

/// How long a key without an encoding can be, whatever the profile's number.
constexpr std::size_t longestProfileKey() {
    return kProfilePrefix.size() + std::string_view("-2147483648").size() + kEncoderPart.size() +
           std::max(longest(kEncoderSuffixes), longest(kProfileSuffixes));
}

/// Builds the keys of one profile, in place. A view it returns stays valid until the next one is asked for.
class ProfileKeys {
public:
    explicit ProfileKeys(ProfileNumber profile) {
        put(0, kProfilePrefix);
        select(profile);
    }

    /// Goes on with another profile.
    void select(ProfileNumber profile) {
        char* const number = text_.data() + kProfilePrefix.size();
        const auto end = std::to_chars(number, text_.data() + text_.size(), profile.value).ptr;
        prefixLength_ = static_cast<std::size_t>(end - text_.data());
    }

    std::string_view of(ProfileKey key) { return put(prefixLength_, suffixOf(key)); }
    std::string_view of(EncoderKey key) { return put(encoder().size(), suffixOf(key)); }

    /// What the keys of the encoder configuration begin with.
    std::string_view encoder() { return put(prefixLength_, kEncoderPart); }

private:
    std::string_view put(std::size_t at, std::string_view part) {
        part.copy(text_.data() + at, part.size());
        return {text_.data(), at + part.size()};
    }

    std::array<char, longestProfileKey()> text_;
    std::size_t prefixLength_ = 0;
};

/// Builds the keys of one encoding ("H264") of a profile, in place unless its name is one that nobody uses. A
/// view it returns stays valid until the next one is asked for.
class EncodingKeys {
public:
    EncodingKeys(ProfileKeys& profile, std::string_view encoding) {
        const std::string_view encoder = profile.encoder();
        headLength_ = encoder.size() + 1 + encoding.size();
        if (headLength_ + kLongestSuffix > head_.size()) {
            longer_.assign(encoder).append(1, '.').append(encoding);
            return;
        }
        char* const end = std::copy(encoder.begin(), encoder.end(), head_.data());
        *end = '.';
        std::copy(encoding.begin(), encoding.end(), end + 1);
    }

    std::string_view of(EncodingKey key) {
        const std::string_view suffix = suffixOf(key);
        if (!longer_.empty())
            return longer_.replace(headLength_, std::string::npos, suffix);
        suffix.copy(head_.data() + headLength_, suffix.size());
        return {head_.data(), headLength_ + suffix.size()};
    }

private:
    static constexpr std::size_t kLongestSuffix = longest(kEncodingSuffixes);

    std::array<char, 128> head_; // the known encodings have short names
    std::size_t headLength_ = 0;
    std::string longer_;
};

/// Reads "Media.Profiles.Profile<n>.VideoEncoderConfiguration<key>=<value>"; `value` is made by `into`.
template <typename Value>
bool scanEncoderItem(std::string_view item, int& profile, EncoderKey key, Value value) {
    return scan(item, kProfilePrefix, into(profile), kEncoderPart, suffixOf(key), "=", value);
}

} // namespace koine
