// The scanner, held against the C library's own one.

#include "random_texts.h"
#include "text/scan.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace koine::test {
namespace {

// Held by a pointer: this is what the scanner replaces, nothing else may call it.
const auto kReferenceScan = &std::sscanf;

TEST(Scanner, ReadsWholeNumbersAsSscanfDoes) {
    RandomTexts texts(" \t\n+-0123456789=x.");
    for (int i = 0; i < kRandomRounds; ++i) {
        const std::string item = "Key" + texts.next(3) + "=" + texts.next(14);
        int expectedFirst = -77;
        int expectedSecond = -77;
        const int converted = kReferenceScan(item.c_str(), "Key%d=%d", &expectedFirst, &expectedSecond);
        int first = -77;
        int second = -77;
        const bool matched = scan(item, "Key", into(first), "=", into(second));
        EXPECT_EQ(matched, converted == 2) << item;
        EXPECT_EQ(first, expectedFirst) << item;
        EXPECT_EQ(second, expectedSecond) << item;
    }
}

TEST(Scanner, CutsNumbersThatAreTooLargeAsSscanfDoes) {
    for (const char* number : kWholeNumbers) {
        int expected = -77;
        int read = -77;
        const int converted = kReferenceScan(number, "%d", &expected);
        EXPECT_EQ(scan(number, into(read)), converted == 1) << number;
        EXPECT_EQ(read, expected) << number;
        unsigned int expectedWhole = 77;
        unsigned int readWhole = 77;
        const int convertedWhole = kReferenceScan(number, "%u", &expectedWhole);
        EXPECT_EQ(scan(number, into(readWhole)), convertedWhole == 1) << number;
        EXPECT_EQ(readWhole, expectedWhole) << number;
    }
}

TEST(Scanner, ReadsUnsignedNumbersAsSscanfDoes) {
    for (const char* number : {"18446744073709551615", "18446744073709551616", "-18446744073709551615",
                               "-18446744073709551616", "+18446744073709551615", "9223372036854775808",
                               "-9223372036854775809", "4294967295", "4294967296", "-1"}) {
        unsigned int expected = 77;
        unsigned int read = 77;
        ASSERT_EQ(kReferenceScan(number, "%u", &expected), 1);
        EXPECT_TRUE(scan(number, into(read)));
        EXPECT_EQ(read, expected) << number;
    }
}

TEST(Scanner, ReadsSizesAsSscanfDoes) {
    RandomTexts texts("0123456789x -X");
    for (int i = 0; i < kRandomRounds; ++i) {
        const std::string item = texts.next(12);
        int expectedWidth = -1;
        int expectedHeight = -1;
        const int converted = kReferenceScan(item.c_str(), "%dx%d", &expectedWidth, &expectedHeight);
        int width = -1;
        int height = -1;
        EXPECT_EQ(scan(item, into(width), "x", into(height)), converted == 2) << item;
        EXPECT_EQ(width, expectedWidth) << item;
        EXPECT_EQ(height, expectedHeight) << item;
    }
}

TEST(Scanner, ReadsFractionsAsSscanfDoes) {
    RandomTexts texts(" +-.0123456789eExXpPinfatyINFA");
    for (int i = 0; i < kRandomRounds * 2; ++i) {
        const std::string item = "Q=" + texts.next(9);
        float expected = -77;
        float read = -77;
        const int converted = kReferenceScan(item.c_str(), "Q=%f", &expected);
        EXPECT_EQ(scan(item, "Q=", into(read)), converted == 1) << item;
        EXPECT_TRUE(same(static_cast<double>(read), static_cast<double>(expected))) << item;
    }
}

TEST(Scanner, ReadsNamedFractionsAsSscanfDoes) {
    for (const char* item :
         {"inf",       "INF",  "Infx",  "infi",      "INFI", "iNfInit", "infinity", "INFINITY",
          "Infinityx", "-inf", "-infi", "+INFinity", "nan",  "NaN",     "-nan",     "nax",
          "in",        "0x",   "0X1",   "0x.8",      "0xg",  "-0x",     "1e",       "1e+",
          "1e+5",      "1.e5", ".e5",   "+.5",       "--1"}) {
        float expected = -77;
        float read = -77;
        const int converted = kReferenceScan(item, "%f", &expected);
        EXPECT_EQ(scan(item, into(read)), converted == 1) << item;
        EXPECT_TRUE(same(static_cast<double>(read), static_cast<double>(expected))) << item;
    }
}

TEST(Scanner, GoesOnBehindWhatItRead) {
    unsigned int whole = 0;
    int number = 0;
    float fraction = 0;
    std::string_view word;
    EXPECT_TRUE(scan("12,-3;1.5 w x", into(whole), ",", into(number), ";", into(fraction), into(word), " x"));
    EXPECT_EQ(whole, 12U);
    EXPECT_EQ(number, -3);
    EXPECT_EQ(fraction, 1.5F);
    EXPECT_EQ(word, "w");
}

TEST(Scanner, ReadsWordsAsSscanfDoes) {
    RandomTexts texts(" \t\nab=\"");
    for (int i = 0; i < kRandomRounds; ++i) {
        const std::string item = "V=" + texts.next(10);
        char expected[32] = "";
        const int converted = kReferenceScan(item.c_str(), "V=%31s", expected);
        std::string_view word;
        EXPECT_EQ(scan(item, "V=", into(word)), converted == 1) << item;
        EXPECT_EQ(word, expected) << item;
    }
}

TEST(Scanner, ReadsUpToACharacterAsSscanfDoes) {
    RandomTexts texts(" \t.ab=");
    for (int i = 0; i < kRandomRounds; ++i) {
        const std::string item = texts.next(10);
        char expected[32] = "";
        char expectedRest[32] = "";
        const int converted = kReferenceScan(item.c_str(), "%31[^.].%31s", expected, expectedRest);
        std::string_view word;
        std::string_view rest;
        EXPECT_EQ(scan(item, Until{'.', word}, ".", into(rest)), converted == 2) << item;
        EXPECT_EQ(word, expected) << item;
        EXPECT_EQ(rest, expectedRest) << item;
    }
}

TEST(Scanner, MatchesFromTheFirstCharacterAndIgnoresTheRest) {
    int number = 0;
    EXPECT_FALSE(scan("xKey=1", "Key=", into(number)));
    EXPECT_FALSE(scan("key=1", "Key=", into(number)));
    EXPECT_FALSE(scan(" Key=1", "Key=", into(number)));
    EXPECT_TRUE(scan("Key=12abc", "Key=", into(number)));
    EXPECT_EQ(number, 12);
    EXPECT_TRUE(scan("", ""));
    EXPECT_FALSE(scan("", "a"));
}

TEST(Scanner, ReadsNothingBeyondTheView) {
    const std::string text = "Key=123";
    int number = 0;
    EXPECT_TRUE(scan(std::string_view(text).substr(0, 5), "Key=", into(number)));
    EXPECT_EQ(number, 1);
    EXPECT_FALSE(scan(std::string_view(text).substr(0, 4), "Key=", into(number)));
}

} // namespace
} // namespace koine::test
