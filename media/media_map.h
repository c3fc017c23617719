/// @file
/// The media map while its profiles are completed.
#pragma once

#include "koine/types.h"

#include <string>
#include <string_view>

namespace koine {

/// Look-ups that start at the place of the last one.
///
/// The keys of one encoding stand side by side in the map, and so do those of one profile, so the next key is
/// usually a few steps away; a search from the root compares the long common beginning of the keys at every
/// level. Texts it hands out stay where they are: entries are only ever added.
///
/// It also counts the characters that go through it. A device that claims thousands of profiles and gives
/// lists of megabytes multiplies the one with the other; the count tells when to leave it at that.
class MediaMap {
public:
    explicit MediaMap(CgiMap& map) : map_(map), place_(map.begin()) {}

    /// The value of a key, or null.
    std::string* find(std::string_view key) { return moveTo(key) ? &place_->second : nullptr; }

    /// The value of a key, which is set first when it is absent.
    std::string& setIfAbsent(std::string_view key, std::string_view value) {
        if (!moveTo(key)) {
            place_ = map_.emplace_hint(place_, key, value);
            note(key.size() + value.size());
        }
        return place_->second;
    }

    void set(std::string_view key, std::string_view value) {
        if (moveTo(key))
            assign(place_->second, value);
        else
            setIfAbsent(key, value);
    }

    void assign(std::string& text, std::string_view value) {
        text = value;
        note(value.size());
    }

    /// Work that the map does not see: so many characters were read.
    void note(std::size_t characters) { handled_ += characters; }

    /// Far more than any device needs was handled: sixteen profiles with three encodings of a dozen sizes
    /// are some 200,000 characters.
    bool isExhausted() const { return handled_ > kMostCharacters; }

private:
    static constexpr int kNear = 6; // the keys of one encoding
    static constexpr std::size_t kMostCharacters = std::size_t{256} * 1024 * 1024;

    /// Goes to the key, or to the place where it belongs. Tells whether it is there.
    bool moveTo(std::string_view key) {
        note(key.size());
        for (int steps = 0; steps < kNear && place_ != map_.end(); ++steps, ++place_) {
            const int order = place_->first.compare(key);
            if (order == 0)
                return true;
            if (order > 0 && steps > 0)
                return false;
            if (order > 0)
                break; // it lies before, who knows how far
        }
        place_ = map_.lower_bound(key);
        return place_ != map_.end() && place_->first == key;
    }

    CgiMap& map_;
    CgiMap::iterator place_;
    std::size_t handled_ = 0;
};

} // namespace koine
