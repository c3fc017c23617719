/// @file
/// Completes what a media profile says about its encodings.
#pragma once

#include "media/media_map.h"
#include "media/profile_keys.h"
#include "media/size_list.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace koine {

/// Sizes and frame rates of the encodings, profile by profile.
class EncodingCompletion {
public:
    /// @param areas sizes that the stream user can show
    EncodingCompletion(MediaMap& media, const CgiMap& capability, AreaRange areas, int frameRateMin,
                       int frameRateMax);

    /// @param encodings the profile's list of them
    void complete(ProfileKeys& keys, std::string_view encodings);

private:
    using Entry = MediaMap::Entry;

    /// One encoding and the keys that the steps read or write.
    struct Encoding {
        std::string_view name;
        std::array<Entry, 6> entries; // in the order of the keys, up to the frame rates

        Entry& entry(EncodingKey key) { return entries[static_cast<unsigned>(key)]; }
    };
    using Pass = bool (EncodingCompletion::*)(ProfileKeys& keys, Encoding& encoding);

    /// What the last list gave: profiles mostly repeat each other's lists.
    struct LastBounds {
        std::string sizes;
        SizeBounds bounds; ///< in `sizes`
    };
    struct LastKept {
        std::string sizes;
        std::string kept;
    };

    void lookUp(ProfileKeys& keys, std::string_view encodings);
    bool noteBounds(ProfileKeys& keys, Encoding& encoding);
    bool narrowSizes(ProfileKeys& keys, Encoding& encoding);
    bool addFrameRates(ProfileKeys& keys, Encoding& encoding);

    const SizeBounds& boundsOf(const std::string& sizes);
    const std::string& keptOf(const std::string& sizes);
    const std::string* sizesOfCodec(std::string_view encoding);
    void set(ProfileKeys& keys, Encoding& encoding, EncodingKey key, std::string_view value);
    std::string& setIfAbsent(ProfileKeys& keys, Encoding& encoding, EncodingKey key, std::string_view value);

    MediaMap& media_;
    const CgiMap& capability_;
    const std::string* generalSizes_;
    AreaRange areas_;
    std::string frameRates_; // as they follow a size
    std::vector<Encoding> encodings_;
    std::vector<Encoding*> byName_;
    LastBounds lastBounds_;
    LastKept lastKept_;
    std::string work_;
};

} // namespace koine
