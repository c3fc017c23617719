/// @file
/// The encoder settings that a set line gives, gathered by media profile.
#pragma once

#include "koine/BaseRequest.h"

#include <map>
#include <string_view>

namespace koine {

/// Owns the records; `byProfile` lends them.
class ProfileRecords {
public:
    /// @param media the media map, which tells a profile's present size; null when it does not count
    explicit ProfileRecords(CgiMap* media) : media_(media) {}
    ProfileRecords(const ProfileRecords&) = delete;
    ProfileRecords& operator=(const ProfileRecords&) = delete;

    /// Takes one item of the line. Items that name no profile are passed over.
    void take(std::string_view item);

    bool isEmpty() const { return records_.empty(); }

    /// Valid as long as this object and until the next `take`.
    std::map<int, _tagProfileMap*> byProfile();

private:
    _tagProfileMap& recordOf(int profile);

    CgiMap* media_;
    std::map<int, _tagProfileMap> records_;
};

} // namespace koine
