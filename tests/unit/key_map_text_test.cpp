// The helpers that read texts and maps, held against the C library's own functions.

#include "cache/key_map.h"
#include "tests/support/failing_allocations.h"
#include "text/numbers.h"
#include "text/owned_text.h"
#include "text/scan.h"
#include "text/tokens.h"
#include "text/words.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <sstream>
#include <strings.h>

namespace koine::test {
namespace {

// Held by a pointer: these are what the helpers replace, nothing else here may call them.
const auto kReferenceScan = &std::sscanf;
const auto kReferenceTokens = &::strtok_r;

constexpr int kRounds = 20000;

/// Random texts of a few characters that numbers and items are made of, the same in every run.
class RandomTexts {
public:
    explicit RandomTexts(std::string alphabet) : alphabet_(std::move(alphabet)) {}

    std::string next(std::size_t longest) {
        std::string text(random_() % (longest + 1), ' ');
        for (char& c : text)
            c = alphabet_[random_() % alphabet_.size()];
        return text;
    }

private:
    std::string alphabet_;
    std::mt19937 random_{20240229};
};

/// The same number, or no number both.
bool same(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

// ---- Numbers

const char* const kWholeNumbers[] = {"",
                                     "0",
                                     "7",
                                     "-7",
                                     "+7",
                                     " 12",
                                     "\t\n\v\f\r12",
                                     "12abc",
                                     "abc",
                                     "-",
                                     "+",
                                     "--1",
                                     "+-1",
                                     "0x10",
                                     "010",
                                     "1 2",
                                     "12.9",
                                     "2147483647",
                                     "2147483648",
                                     "-2147483648",
                                     "-2147483649",
                                     "4294967296",
                                     "9223372036854775807",
                                     "9223372036854775808",
                                     "-9223372036854775808",
                                     "-9223372036854775809",
                                     "99999999999999999999999",
                                     "-99999999999999999999999",
                                     "00000000000000000000000000012",
                                     "9223372036854775806",
                                     "-9223372036854775807",
                                     "9223372036854775800",
                                     "9000000000000000000",
                                     "-9000000000000000001",
                                     "-8500000000000000009"};

TEST(Numbers, WholeOnesAreReadAsStrtolDoes) {
    for (const char* text : kWholeNumbers)
        EXPECT_EQ(readLong(text), std::strtol(text, nullptr, 10)) << text;
    RandomTexts texts(" \t+-0123456789.x");
    for (int i = 0; i < kRounds; ++i) {
        const std::string text = texts.next(24);
        char* end = nullptr;
        const long expected = std::strtol(text.c_str(), &end, 10);
        EXPECT_EQ(readLong(text), expected) << text;
        EXPECT_EQ(leadingLong(text).length, static_cast<std::size_t>(end - text.c_str())) << text;
    }
}

TEST(Numbers, IntsAreSaturated) {
    EXPECT_EQ(readInt("2147483647"), 2147483647);
    EXPECT_EQ(readInt("2147483648"), 2147483647);
    EXPECT_EQ(readInt("99999999999999999999"), 2147483647);
    EXPECT_EQ(readInt("-2147483648"), -2147483647 - 1);
    EXPECT_EQ(readInt("-2147483649"), -2147483647 - 1);
    EXPECT_EQ(readInt("12 apples"), 12);
}

TEST(Numbers, ReadNothingBeyondTheView) {
    const std::string text = "12345";
    EXPECT_EQ(readLong(std::string_view(text).substr(0, 2)), 12);
    EXPECT_EQ(readDouble(std::string_view("1.25").substr(0, 3)), 1.2);
}

TEST(Numbers, FractionsAreReadAsStrtodDoes) {
    for (const char* text : {"",         "0",
                             "1",        "-1.5",
                             "+.5",      ".5",
                             "5.",       ".",
                             "-",        "1e3",
                             "1e",       "1e+",
                             "1e-2x",    "1E5",
                             "0x1p3",    "0x",
                             "inf",      "-inf",
                             "infinity", "infinit",
                             "nan",      "1e400",
                             "-1e400",   "1e-400",
                             " 2.5",     "\n3",
                             "x",        "1,5",
                             "0.1",      "1.7976931348623157e308",
                             "5e-324",   "123456789012345678901234567890"})
        EXPECT_TRUE(same(readDouble(text), std::strtod(text, nullptr))) << text;
    RandomTexts texts(" +-.0123456789eExXpPinfatyINFA");
    for (int i = 0; i < kRounds; ++i) {
        const std::string text = texts.next(10);
        EXPECT_TRUE(same(readDouble(text), std::strtod(text.c_str(), nullptr))) << text;
    }
}

TEST(Numbers, FloatsAreNarrowedDoubles) {
    EXPECT_EQ(readFloat("0.1"), static_cast<float>(0.1));
    EXPECT_EQ(readFloat("16777217"), 16777216.0F);
}

TEST(Numbers, TheHostsLocaleDoesNotMatter) {
    const std::string before = std::setlocale(LC_NUMERIC, nullptr);
    const char* found = nullptr;
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "fr_FR.utf8"})
        if (found == nullptr)
            found = std::setlocale(LC_NUMERIC, name);
    if (found == nullptr)
        GTEST_SKIP() << "no locale with a decimal comma is installed";
    EXPECT_EQ(readDouble("1.5"), 1.5);
    EXPECT_EQ(generalText(1.5F), "1.5");
    EXPECT_EQ(fixedText(1.5, 2), "1.50");
    std::setlocale(LC_NUMERIC, before.c_str());
}

TEST(Numbers, ArePrintedAsATextStreamDoes) {
    std::vector<float> numbers = {0.0F, -0.0F, 1.0F,  0.1F,  0.8F,     0.5F,   100.0F,     1e6F,
                                  1e5F, 1e-4F, 1e-5F, 3e38F, 1.0F / 3, -2.25F, 1234567.0F, 999999.5F};
    std::mt19937 random(7);
    for (int i = 0; i < kRounds; ++i) {
        const auto bits = static_cast<std::uint32_t>(random());
        float number = 0;
        std::memcpy(&number, &bits, sizeof number);
        if (!std::isnan(number))
            numbers.push_back(number);
    }
    for (const float number : numbers) {
        std::ostringstream stream;
        stream << number;
        EXPECT_EQ(generalText(number), stream.str());
    }
}

TEST(Numbers, ArePrintedWithFixedDecimals) {
    EXPECT_EQ(fixedText(0.5, 2), "0.50");
    EXPECT_EQ(fixedText(-1.005, 2), "-1.00");
    EXPECT_EQ(fixedText(2.5, 0), "2");
    EXPECT_EQ(fixedText(1e308, 2).size(), 309U + 3U);
    EXPECT_EQ(numberAsText(0), "0");
    EXPECT_EQ(numberAsText(-9223372036854775807L - 1), "-9223372036854775808");
}

// ---- The scanner

TEST(Scanner, ReadsWholeNumbersAsSscanfDoes) {
    RandomTexts texts(" \t\n+-0123456789=x.");
    for (int i = 0; i < kRounds; ++i) {
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
    for (int i = 0; i < kRounds; ++i) {
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
    for (int i = 0; i < kRounds * 2; ++i) {
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
    for (int i = 0; i < kRounds; ++i) {
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
    for (int i = 0; i < kRounds; ++i) {
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

// ---- The tokeniser

std::vector<std::string> referenceTokens(std::string text, const char* separators) {
    std::vector<std::string> tokens;
    char* rest = nullptr;
    for (char* token = kReferenceTokens(text.data(), separators, &rest); token != nullptr;
         token = kReferenceTokens(nullptr, separators, &rest))
        tokens.emplace_back(token);
    return tokens;
}

std::vector<std::string> tokensOf(const std::string& text, const char* separators) {
    std::vector<std::string> tokens;
    for (const std::string_view token : Tokens(text, separators))
        tokens.emplace_back(token);
    return tokens;
}

TEST(Tokeniser, SplitsAsStrtokDoes) {
    for (const char* separators : {"&", "&\n", "=,\n", "", "ab&"}) {
        RandomTexts texts("ab&\n=,");
        for (int i = 0; i < kRounds / 4; ++i) {
            const std::string text = texts.next(12);
            EXPECT_EQ(tokensOf(text, separators), referenceTokens(text, separators)) << text;
        }
    }
}

TEST(Tokeniser, ChangesItsSeparatorsAsStrtokDoes) {
    RandomTexts texts("ab&=,");
    const char* const turns[] = {"=", "&", ",", "&="};
    for (int i = 0; i < kRounds; ++i) {
        const std::string text = texts.next(12);
        std::string copy = text;
        Tokens tokens(text);
        char* rest = nullptr;
        char* first = copy.data();
        for (const char* separators : turns) {
            const char* expected = kReferenceTokens(first, separators, &rest);
            first = nullptr;
            const auto token = tokens.next(separators);
            ASSERT_EQ(token.has_value(), expected != nullptr) << text;
            if (expected == nullptr)
                break;
            ASSERT_EQ(*token, expected) << text;
        }
    }
}

TEST(Tokeniser, FindsNothingInNothing) {
    EXPECT_TRUE(tokensOf("", "&").empty());
    EXPECT_TRUE(tokensOf("&&\n&", "&\n").empty());
    Tokens tokens("a");
    EXPECT_TRUE(tokens.next("&"));
    EXPECT_FALSE(tokens.next("&"));
    EXPECT_FALSE(tokens.next("&"));
}

// ---- Words

TEST(Words, BeginningsAreComparedAsStrncasecmpDoes) {
    RandomTexts texts("aAzZ.[{@`");
    for (int i = 0; i < kRounds; ++i) {
        const std::string text = texts.next(4);
        const std::string word = texts.next(3);
        EXPECT_EQ(startsWithIgnoreCase(text, word),
                  ::strncasecmp(text.c_str(), word.c_str(), word.size()) == 0)
            << text << " / " << word;
    }
}

TEST(Words, BeginningsEndWithTheView) {
    const std::string_view text = std::string_view("TOVLIN").substr(0, 5);
    EXPECT_FALSE(startsWithIgnoreCase(text, "tovlin"));
    EXPECT_TRUE(startsWithIgnoreCase(text, "tovli"));
    EXPECT_TRUE(startsWithIgnoreCase(text, ""));
}

TEST(Words, AreContainedAndBeginWithTheirCase) {
    EXPECT_TRUE(contains("xLogin.cgi", "Login.cgi"));
    EXPECT_FALSE(contains("login.cgi", "Login.cgi"));
    EXPECT_TRUE(contains("", ""));
    EXPECT_TRUE(startsWith("Video.I0", "Video."));
    EXPECT_FALSE(startsWith("video.I0", "Video."));
    EXPECT_FALSE(startsWith("Vid", "Video."));
}

// ---- Maps

TEST(KeyMap, LooksUpWithoutLeavingAnything) {
    CgiMap map{{"A", "1"}, {"Empty", ""}};
    EXPECT_EQ(*findValue(map, "A"), "1");
    EXPECT_EQ(*findValue(map, "Empty"), "");
    EXPECT_EQ(findValue(map, "B"), nullptr);
    EXPECT_TRUE(hasKey(map, "Empty"));
    EXPECT_FALSE(hasKey(map, "a"));
    EXPECT_EQ(valueOr(map, "A", "x"), "1");
    EXPECT_EQ(valueOr(map, "Empty", "x"), "");
    EXPECT_EQ(valueOr(map, "B", "x"), "x");
    EXPECT_EQ(valueOr(map, "B"), "");
    EXPECT_EQ(map.size(), 2U);
}

TEST(KeyMap, TheInsertingLookUpLeavesAnEmptyEntry) {
    CgiMap map{{"B", "1"}};
    EXPECT_EQ(entry(map, "B"), "1");
    EXPECT_EQ(entry(map, "A"), "");
    EXPECT_EQ(entry(map, "C"), "");
    EXPECT_EQ(map, (CgiMap{{"A", ""}, {"B", "1"}, {"C", ""}}));
    entry(map, "A") = "2";
    EXPECT_EQ(map.at("A"), "2");
}

TEST(KeyMap, ADefaultNeverReplaces) {
    CgiMap map{{"Empty", ""}};
    setIfAbsent(map, "Empty", "x");
    setIfAbsent(map, "New", "y");
    setIfAbsent(map, "New", "z");
    EXPECT_EQ(map, (CgiMap{{"Empty", ""}, {"New", "y"}}));
}

TEST(KeyMap, IsOrderedByBytes) {
    const CgiMap map{{"a", ""}, {"B", ""}, {"A.10", ""}, {"A.2", ""}, {"\xff", ""}};
    std::string order;
    for (const auto& [key, value] : map)
        order += key + " ";
    EXPECT_EQ(order, "A.10 A.2 B a \xff ");
}

// ---- Texts

TEST(OwnedTexts, AreCopiedWithTheirEnd) {
    EXPECT_STREQ(copyText("text").get(), "text");
    EXPECT_STREQ(copyText("").get(), "");
    EXPECT_STREQ(copyText(std::string_view("text").substr(1, 2)).get(), "ex");
    EXPECT_STREQ(copyText(std::string_view()).get(), "");
}

TEST(OwnedTexts, AreNullWhenMemoryRunsOut) {
    FailAllocations fail(1);
    const OwnedText copy = copyText("text");
    EXPECT_TRUE(fail.stop());
    EXPECT_EQ(copy, nullptr);
}

TEST(OwnedTexts, AreLentAndTakenBack) {
    OwnedText owner = copyText("before");
    const auto replace = [](char** text) {
        EXPECT_STREQ(*text, "before");
        std::free(*text);
        *text = copyText("after").release();
    };
    replace(OutText(owner));
    EXPECT_STREQ(owner.get(), "after");
    const auto take = [](char** text) {
        std::free(*text);
        *text = nullptr;
    };
    take(OutText(owner));
    EXPECT_EQ(owner, nullptr);
}

TEST(OwnedTexts, ANullTextIsEmpty) {
    EXPECT_EQ(viewOf(nullptr), "");
    EXPECT_EQ(viewOf("x"), "x");
    EXPECT_STREQ(orEmpty(nullptr), "");
    EXPECT_STREQ(orEmpty("x"), "x");
}

} // namespace
} // namespace koine::test
