// Look-ups of keys that stand close together find what a search of the whole map finds.

#include "random_texts.h"
#include "text/nearby_search.h"

#include <gtest/gtest.h>

namespace koine::test {
namespace {

/// Does the search tell of the key what the map tells?
bool agrees(NearbySearch<CgiMap>& search, CgiMap& map, const std::string& key) {
    const bool found = search.moveTo(key);
    return found == (map.count(key) == 1) && search.place() == map.lower_bound(key);
}

TEST(NearbySearch, FindsKeysInAnyOrderWhileEntriesAreAdded) {
    RandomTexts texts("ab.");
    for (int round = 0; round < 200; ++round) {
        CgiMap map;
        for (int i = 0; i < 40; ++i)
            map.emplace(texts.next(6), "");
        NearbySearch<CgiMap> search(map);
        for (int i = 0; i < 60; ++i) {
            const std::string key = texts.next(6);
            EXPECT_TRUE(agrees(search, map, key)) << key;
            if (i % 3 == 0)
                map.emplace_hint(search.place(), key, "added");
        }
    }
}

TEST(NearbySearch, FindsEveryKeyInOrderAndThePlacesBetweenThem) {
    CgiMap map;
    for (int i = 10; i < 90; i += 2)
        map.emplace("Key" + std::to_string(i), "");
    NearbySearch<CgiMap> search(map);
    for (int i = 9; i < 92; ++i)
        EXPECT_TRUE(agrees(search, map, "Key" + std::to_string(i))) << i;
    for (int i = 92; i > 8; --i)
        EXPECT_TRUE(agrees(search, map, "Key" + std::to_string(i))) << i;
}

TEST(NearbySearch, EmptyMapHasNoKey) {
    CgiMap map;
    NearbySearch<CgiMap> search(map);
    EXPECT_FALSE(search.moveTo(""));
    EXPECT_FALSE(search.moveTo("x"));
    EXPECT_EQ(search.place(), map.end());
}

} // namespace
} // namespace koine::test
