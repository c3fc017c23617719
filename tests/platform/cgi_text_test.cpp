#include "platform/cgi_text.h"

#include "text/owned_text.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

namespace {

const CgiMap kBefore = {{"a", "old"}, {"kept", "1"}};

class Parser : public testing::TestWithParam<int (*)(const char*, CgiMap*)> {
protected:
    /// Parses into a map that already holds something, and insists that a failure adds nothing.
    int parse(const char* text) {
        map_ = kBefore;
        const int result = GetParam()(text, &map_);
        EXPECT_TRUE(result == 1 || map_ == kBefore) << text;
        return result;
    }
    CgiMap map_;
};

INSTANTIATE_TEST_SUITE_P(CgiText, Parser, testing::Values(&createMapStr, &createMapstrFromCgi));

TEST_P(Parser, AddsPairsAndOverwritesWhatIsThere) {
    EXPECT_EQ(parse("0\nOK\na=new\nb=2\n"), 1);
    EXPECT_EQ(map_, (CgiMap{{"a", "new"}, {"b", "2"}, {"kept", "1"}}));
}

TEST_P(Parser, FillsAnEmptyMap) {
    CgiMap map;
    EXPECT_EQ(GetParam()("0\nOK\nz=1\na=2\nm=3\n", &map), 1);
    EXPECT_EQ(map, (CgiMap{{"a", "2"}, {"m", "3"}, {"z", "1"}}));
}

TEST_P(Parser, SplitsAtTheFirstEqualsSignAndKeepsBlanks) {
    EXPECT_EQ(parse("0\nOK\n k y = v = w \n"), 1);
    EXPECT_EQ(map_.at(" k y "), " v = w ");
}

TEST_P(Parser, DropsOneCarriageReturn) {
    EXPECT_EQ(parse("0\r\nOK\r\nx=1\r\ny=2\r\r\n"), 1);
    EXPECT_EQ(map_.at("x"), "1");
    EXPECT_EQ(map_.at("y"), "2\r");
}

TEST_P(Parser, SkipsLinesWithoutAnEqualsSign) {
    EXPECT_EQ(parse("0\nOK\n\nnothing\nx=1\n\n"), 1);
    EXPECT_EQ(map_, (CgiMap{{"a", "old"}, {"kept", "1"}, {"x", "1"}}));
}

TEST_P(Parser, ReadsALastLineWithoutItsEnd) {
    EXPECT_EQ(parse("0\nOK\nx=1"), 1);
    EXPECT_EQ(map_.at("x"), "1");
}

TEST_P(Parser, KeepsEmptyValuesAndTheLastOfEqualKeys) {
    EXPECT_EQ(parse("0\nOK\nx=\ny=1\ny=2\n"), 1);
    EXPECT_EQ(map_.at("x"), "");
    EXPECT_EQ(map_.at("y"), "2");
}

TEST_P(Parser, NeverReadsTheMessageLineAsAPair) {
    EXPECT_EQ(parse("0\nx=1\ny=2\n"), 1);
    EXPECT_EQ(map_, (CgiMap{{"a", "old"}, {"kept", "1"}, {"y", "2"}}));
}

TEST_P(Parser, HeadAloneIsASuccess) {
    for (const char* text : {"0\nOK\n", "0\nOK", "0\n", "0", "+0", "-0", " 0 \r\nOK"}) {
        EXPECT_EQ(parse(text), 1) << text;
        EXPECT_EQ(map_, kBefore);
    }
}

TEST_P(Parser, RefusedCredentialsAreTold) {
    EXPECT_EQ(parse("-35\nERROR: Authentication error.\nx=1\n"), -1);
}

TEST_P(Parser, OtherFailingStatusComesAsItIs) {
    EXPECT_EQ(parse("-11\nERROR: Unknown parameter.\nx=1\n"), -11);
    EXPECT_EQ(parse("-8\n"), -8);
    EXPECT_EQ(parse("7"), 7);
    EXPECT_EQ(parse("99999999999999999999"), 2147483647);
    EXPECT_EQ(parse("-99999999999999999999"), -2147483647 - 1);
}

TEST_P(Parser, FailingStatusNeverReadsAsSuccess) { EXPECT_EQ(parse("1\nERROR: One.\nx=1\n"), -2); }

TEST_P(Parser, FirstLineThatIsNoNumberIsRefused) {
    for (const char* text : {"", "\n", "OK\n0\n", "0x\nOK\n", "0 OK\nx=1\n", "<html>\n", "-\n", "+", "--1",
                             "1.5", "%n", "\xff\xfe", " \t"})
        EXPECT_EQ(parse(text), -2) << text;
}

TEST_P(Parser, NullIsRefused) {
    EXPECT_EQ(parse(nullptr), -2);
    EXPECT_EQ(GetParam()("0\nOK\nx=1\n", nullptr), -2);
    EXPECT_EQ(GetParam()(nullptr, nullptr), -2);
}

TEST_P(Parser, AnswersAreMergedWhereverTheirKeysStand) {
    // Keys before, between and behind those of the map, near ones and far ones, new ones and known ones.
    CgiMap map;
    CgiMap expected;
    for (int round = 0; round < 20; ++round) {
        std::string text = "0\nOK\n";
        for (int i = 0; i < 30; ++i) {
            const std::string key = "Key" + std::to_string(i * i * (round + 1) % 97);
            const std::string value = std::to_string(round * 100 + i);
            text += key + "=" + value + "\n";
            expected[key] = value;
        }
        ASSERT_EQ(GetParam()(text.c_str(), &map), 1);
        ASSERT_EQ(map, expected) << round;
    }
}

TEST_P(Parser, KeyAndValueOfAMegabyteAreKept) {
    const std::string key(1 << 20, 'k');
    const std::string value(1 << 20, 'v');
    EXPECT_EQ(parse(("0\nOK\n" + key + "=" + value + "\n").c_str()), 1);
    EXPECT_EQ(map_.at(key), value);
}

TEST_P(Parser, BytesThatAreNoTextAreKept) {
    EXPECT_EQ(parse("0\nOK\n\xff\x01=\xfe\t%s%n\n"), 1);
    EXPECT_EQ(map_.at("\xff\x01"), "\xfe\t%s%n");
}

/// What `getCgiStr` prints, or "(null)".
std::string printed(CgiMap map, const char* key) {
    const koine::OwnedText text(getCgiStr(&map, key));
    return text ? text.get() : "(null)";
}

const CgiMap kVideo = {
    {"Camera.Name", "Yard"}, {"Video.I0.Hue", "1"}, {"Video.I0.HueMax", "5"}, {"Video.I1.Hue", ""}};

TEST(Printer, NullKeyPrintsTheWholeMapInOrder) {
    EXPECT_EQ(printed(kVideo, nullptr),
              "0\nOK\nCamera.Name=Yard\nVideo.I0.Hue=1\nVideo.I0.HueMax=5\nVideo.I1.Hue=\n");
}

struct Match {
    const char* key;
    const char* text;
};

class Pattern : public testing::TestWithParam<Match> {};

TEST_P(Pattern, PrintsWhatMatches) { EXPECT_EQ(printed(kVideo, GetParam().key), GetParam().text); }

INSTANTIATE_TEST_SUITE_P(
    Printer, Pattern,
    testing::Values(Match{"Camera.*", "0\nOK\nCamera.Name=Yard\n"},
                    Match{"camera.NAME", "0\nOK\nCamera.Name=Yard\n"},
                    Match{"*Hue", "0\nOK\nVideo.I0.Hue=1\nVideo.I1.Hue=\n"},
                    Match{"Video.*.Hue", "0\nOK\nVideo.I0.Hue=1\nVideo.I1.Hue=\n"},
                    Match{"*i0*", "0\nOK\nVideo.I0.Hue=1\nVideo.I0.HueMax=5\n"},
                    Match{"**Hue**Max**", "0\nOK\nVideo.I0.HueMax=5\n"},
                    Match{"V*o.I1.H*e", "0\nOK\nVideo.I1.Hue=\n"},
                    Match{"Video.I1.Hue*", "0\nOK\nVideo.I1.Hue=\n"},
                    Match{"*", "0\nOK\nCamera.Name=Yard\nVideo.I0.Hue=1\nVideo.I0.HueMax=5\nVideo.I1.Hue=\n"},
                    Match{"Video", "(null)"}, Match{"Video.I0.Hu", "(null)"},
                    Match{"Video.I0.HueMaxi", "(null)"}, Match{"", "(null)"}, Match{"Video.?0.Hue", "(null)"},
                    Match{"*q*", "(null)"}, Match{"*Hue*Hue", "(null)"}));

TEST(Printer, CategoryIsPrintedWhereverItStandsInTheMap) {
    // Upper case sorts before ".", "." before "X", and lower case last.
    const CgiMap mixed = {{"VIDEO.A", "1"}, {"Video.A", "2"}, {"VideoX", "3"}, {"video.a", "4"}};
    EXPECT_EQ(printed(mixed, "Video.*"), "0\nOK\nVIDEO.A=1\nVideo.A=2\nvideo.a=4\n");
    const CgiMap inside = {{"Video.A", "1"}, {"VideoX", "2"}, {"Video~", "3"}};
    EXPECT_EQ(printed(inside, "Video.*"), "0\nOK\nVideo.A=1\n");
    const CgiMap whole = {{"Video.", "1"}, {"Video.A", "2"}, {"Video.~", "3"}};
    EXPECT_EQ(printed(whole, "Video.*"), printed(whole, nullptr));
    EXPECT_EQ(printed(whole, "video.*"), printed(whole, nullptr));
    EXPECT_EQ(printed(whole, "Video.*A"), "0\nOK\nVideo.A=2\n");
    EXPECT_EQ(printed(whole, "Video."), "0\nOK\nVideo.=1\n");
}

TEST(Printer, NothingToPrintIsNull) {
    EXPECT_EQ(printed({}, nullptr), "(null)");
    EXPECT_EQ(printed({}, "*"), "(null)");
    EXPECT_EQ(getCgiStr(nullptr, nullptr), nullptr);
    EXPECT_EQ(getCgiStr(nullptr, "*"), nullptr);
}

TEST(Printer, EmptyKeyCanBeAskedFor) { EXPECT_EQ(printed({{"", "x"}, {"y", "z"}}, ""), "0\nOK\n=x\n"); }

TEST(Printer, WhatIsPrintedParsesBack) {
    CgiMap map;
    ASSERT_EQ(createMapStr(printed(kVideo, nullptr).c_str(), &map), 1);
    EXPECT_EQ(map, kVideo);
}

TEST(Printer, PatternMadeOfStarsEndsInTime) {
    // 40 stars against a key that almost matches: a matcher that tries every split would not end.
    std::string pattern;
    for (int i = 0; i < 40; ++i)
        pattern += "a*";
    pattern += "b";
    const CgiMap map = {{std::string(100'000, 'a'), "1"}};
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(printed(map, pattern.c_str()), "(null)");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
}

TEST(ParserLimits, MorePairsThanAnyDeviceHasAreRefusedAndNoneIsKept) {
    std::string text = "0\nOK\n";
    for (int i = 0; i < 65'536; ++i)
        text += std::to_string(i) + "=\n";
    CgiMap map;
    EXPECT_EQ(createMapStr(text.c_str(), &map), 1);
    EXPECT_EQ(map.size(), 65'536U);
    CgiMap none;
    EXPECT_EQ(createMapStr((text + "one more=\n").c_str(), &none), -2);
    EXPECT_TRUE(none.empty());
    EXPECT_EQ(createMapStr((text + "0=again\n").c_str(), &none), 1) << "keys count, not lines";
}

TEST(Printer, LargeMapIsPrintedWhole) {
    CgiMap map;
    std::string expected = "0\nOK\n";
    for (int i = 100'000; i < 200'000; ++i) {
        const std::string key = "Media.Profiles.Profile" + std::to_string(i);
        map.emplace_hint(map.end(), key, "x");
        expected += key + "=x\n";
    }
    EXPECT_EQ(printed(map, nullptr), expected);
    EXPECT_EQ(printed(map, "media.*"), expected);
}

} // namespace
