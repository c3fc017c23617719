/// @file
/// The media map while its profiles are completed.
#pragma once

#include "text/nearby_search.h"

#include <string>
#include <string_view>

namespace koine {

/// Look-ups and changes. Ask for keys in their order.
///
/// It counts the characters that go through it. A device that claims thousands of profiles and gives lists of
/// megabytes multiplies the one with the other; the count tells when to leave it at that.
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

    explicit MediaMap(CgiMap& map) : map_(map), search_(map) {}

    Entry look(std::string_view key) {
        note(key.size());
        Entry entry;
        entry.isPresent_ = search_.moveTo(key);
        entry.place_ = search_.place();
        return entry;
    }

    /// Adds the entry, unless it came to be present after it was looked for.
    void add(Entry& entry, std::string_view key, std::string_view value) {
        entry.place_ = map_.emplace_hint(entry.place_, key, value);
        entry.isPresent_ = true;
        note(key.size() + value.size());
    }

    void assign(const Entry& entry, std::string_view value) {
        note(value.size());
        if (entry.text() != value) // mostly it is what the last conversion wrote
            entry.text() = value;
    }

    /// Work that the map does not see: so many characters were read.
    void note(std::size_t characters) { handled_ += characters; }

    /// More than any device needs was handled: sixteen profiles with three encodings of a dozen sizes are
    /// some 100,000 characters. What is kept of them takes about twice as many bytes.
    bool isExhausted() const { return handled_ > kMostCharacters; }

private:
    static constexpr std::size_t kMostCharacters = std::size_t{8} * 1024 * 1024;

    CgiMap& map_;
    NearbySearch<CgiMap> search_;
    std::size_t handled_ = 0;
};

} // namespace koine
