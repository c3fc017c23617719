#include "simulator/pair_list.h"

#include <gtest/gtest.h>

namespace koine::sim {
namespace {

TEST(PairList, KeepsTheOrderInWhichKeysCame) {
    PairList pairs;
    pairs.set("b", "1");
    pairs.set("a", "2");
    pairs.set("b", "3");
    EXPECT_EQ(printed(pairs), "b=3\na=2\n");
}

TEST(PairList, TellsAnEmptyValueFromNone) {
    PairList pairs;
    pairs.set("empty", "");
    ASSERT_NE(pairs.find("empty"), nullptr);
    EXPECT_EQ(pairs.find("none"), nullptr);
    EXPECT_EQ(pairs.valueOf("none"), "");
}

TEST(Pattern, MatchesWithoutRegardToCase) {
    EXPECT_TRUE(matches("video.i0.HUE", "Video.I0.Hue"));
    EXPECT_FALSE(matches("Video.I0.Hue", "Video.I0.HueMax"));
    EXPECT_FALSE(matches("Video.I0.HueMax", "Video.I0.Hue"));
}

TEST(Pattern, AStarStandsForAnyRun) {
    EXPECT_TRUE(matches("Video.*", "Video.I0.Hue"));
    EXPECT_TRUE(matches("Video.*", "Video."));
    EXPECT_FALSE(matches("Video.*", "VideoAnalytics.Enabled"));
    EXPECT_TRUE(matches("*Hue*", "Video.I0.HueMax"));
    EXPECT_TRUE(matches("V*I0*Max", "Video.I0.HueMax"));
    EXPECT_FALSE(matches("V*I1*Max", "Video.I0.HueMax"));
    EXPECT_TRUE(matches("**", ""));
    EXPECT_FALSE(matches("", "Video"));
}

TEST(Pattern, ManyStarsCostNoTime) {
    std::string pattern;
    for (int i = 0; i < 2000; ++i)
        pattern += "a*";
    EXPECT_FALSE(matches(pattern + "b", std::string(4000, 'a')));
}

} // namespace
} // namespace koine::sim
