/// @file
/// Look-ups of keys that stand close together.
#pragma once

#include "koine/types.h"

#include <iterator>
#include <string_view>
#include <utility>

namespace koine {

/// Look-ups that start at the place of the last one.
///
/// The keys of one profile stand side by side in the map, so the next key is usually a few steps away; a
/// search from the root compares the long common beginning of the keys at every level. Ask for keys in their
/// order. Entries may be added meanwhile, none may be erased.
/// @tparam Map CgiMap, const or not
template <typename Map>
class NearbySearch {
public:
    using Place = decltype(std::declval<Map&>().begin());

    explicit NearbySearch(Map& map) : map_(map), place_(map.begin()) {}

    /// Goes to the key, or to the place where it belongs.
    /// @return is it there?
    bool moveTo(std::string_view key) {
        if (isFound_)
            ++place_; // the next key lies behind
        isFound_ = walkTo(key);
        return isFound_;
    }

    Place place() const { return place_; }

private:
    static constexpr int kNear = 6; // the keys of one encoding

    bool walkTo(std::string_view key) {
        for (int steps = 0; steps < kNear && place_ != map_.end(); ++steps, ++place_) {
            const int order = place_->first.compare(key);
            if (order == 0)
                return true;
            if (order > 0 && (steps > 0 || isBehindPrevious(key)))
                return false;
            if (order > 0)
                break; // it lies before, who knows how far
        }
        place_ = map_.lower_bound(key);
        return place_ != map_.end() && place_->first == key;
    }

    bool isBehindPrevious(std::string_view key) const {
        return place_ == map_.begin() || std::prev(place_)->first < key;
    }

    Map& map_;
    Place place_;
    bool isFound_ = false;
};

} // namespace koine
