/// @file
/// Look-ups in a key map. Whether a look-up leaves an entry behind shows in later answers, so each has a
/// name of its own.
#pragma once

#include "koine/types.h"

#include <string>
#include <string_view>

namespace koine {

/// The value of a key, or null. Leaves nothing behind.
inline const std::string* findValue(const CgiMap& map, std::string_view key) {
    const auto found = map.find(key);
    return found == map.end() ? nullptr : &found->second;
}

inline bool hasKey(const CgiMap& map, std::string_view key) { return map.find(key) != map.end(); }

/// The value of a key, empty when absent. Leaves nothing behind.
inline std::string_view valueOr(const CgiMap& map, std::string_view key, std::string_view fallback = {}) {
    const std::string* value = findValue(map, key);
    return value == nullptr ? fallback : std::string_view(*value);
}

/// The inserting look-up: an absent key is present afterwards, with an empty value.
inline std::string& entry(CgiMap& map, std::string_view key) {
    const auto place = map.lower_bound(key);
    if (place != map.end() && place->first == key)
        return place->second;
    return map.emplace_hint(place, key, std::string())->second;
}

/// Sets a key that is absent; a present one is kept, also when it is empty.
inline void setIfAbsent(CgiMap& map, std::string_view key, std::string_view value) {
    const auto place = map.lower_bound(key);
    if (place == map.end() || place->first != key)
        map.emplace_hint(place, key, value);
}

} // namespace koine
