// The helpers that read and print numbers, held against the C library's own functions.

#include "random_texts.h"
#include "text/numbers.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>

namespace koine::test {
namespace {

TEST(Numbers, WholeOnesAreReadAsStrtolDoes) {
    for (const char* text : kWholeNumbers)
        EXPECT_EQ(readLong(text), std::strtol(text, nullptr, 10)) << text;
    RandomTexts texts(" \t+-0123456789.x");
    for (int i = 0; i < kRandomRounds; ++i) {
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
    for (int i = 0; i < kRandomRounds; ++i) {
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
    for (int i = 0; i < kRandomRounds; ++i) {
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
    EXPECT_EQ(numberAsText(std::numeric_limits<long>::min()),
              std::to_string(std::numeric_limits<long>::min()));
}

TEST(Numbers, ArePrintedWithFixedDecimalsAsTheCLibraryDoes) {
    std::vector<double> numbers = {0.0,     -0.0, 1.0,  5.0,   10.0,  -3.0,  0.5,    999999999.0, 1e9,
                                   1e9 + 1, 1e15, -1e9, 0.004, 0.005, 0.125, 99.995, 123456.789};
    std::mt19937 random(11);
    for (int i = 0; i < kRandomRounds; ++i) {
        const auto steps = static_cast<double>(static_cast<std::int32_t>(random()));
        numbers.push_back(i % 2 == 0 ? steps : steps / 1000);
    }
    for (const double number : numbers)
        for (const int decimals : {0, 1, 2, 6}) {
            char expected[64];
            std::snprintf(expected, sizeof expected, "%.*f", decimals, number);
            EXPECT_EQ(fixedText(number, decimals), expected);
        }
}

} // namespace
} // namespace koine::test
