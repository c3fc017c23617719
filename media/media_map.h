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
/// level. Ask for keys in their order.
///
/// It also counts the characters that go through it. A device that claims thousands of profiles and gives
/// lists of megabytes multiplies the one with the other; the count tells when to leave it at that.
class MediaMap {
public:
    /// Where a key is or belongs. Stays good while entries are added: they never move and none is erased.
    class Entry {
    public:
        bool isPresent() const { return isPresent_; }
        std::string& text() const { return place_->second; }

    private:
        friend class MediaMap;
        CgiMap::iterator place_;
        bool isPresent_ = false;
    };

    explicit MediaMap(CgiMap& map) : map_(map), place_(map.begin()) {}

    Entry look(std::string_view key) {
        Entry entry;
        entry.isPresent_ = moveTo(key);
        entry.place_ = place_;
        return entry;
    }

    /// Adds the entry, unless it came to be present after it was looked for.
    void add(Entry& entry, std::string_view key, std::string_view value) {
        entry.place_ = map_.emplace_hint(entry.place_, key, value);
        entry.isPresent_ = true;
        note(key.size() + value.size());
    }

    void assign(const Entry& entry, std::string_view value) {
        entry.text() = value;
        note(value.size());
    }

    /// Work that the map does not see: so many characters were read.
    void note(std::size_t characters) { handled_ += characters; }

    /// Far more than any device needs was handled: sixteen profiles with three encodings of a dozen sizes
    /// are some 100,000 characters.
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
