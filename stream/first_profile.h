/// @file
/// The search for a profile by one of its values.
#pragma once

#include "cache/key_map.h"
#include "media/profile_keys.h"

#include <string_view>

namespace koine {

/// The first of so many profiles whose key has this value, or 0. Looking at a profile leaves its entry
/// behind, as the answers that follow show.
/// @tparam Key ProfileKey or EncoderKey
template <typename Key>
int firstProfileWith(CgiMap& media, int count, Key key, std::string_view value) {
    ProfileKeys keys(ProfileNumber{1});
    for (int number = 1; number <= count; ++number) {
        keys.select(ProfileNumber{number});
        if (entry(media, keys.of(key)) == value)
            return number;
    }
    return 0;
}

} // namespace koine
