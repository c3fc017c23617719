// Texts that are put together in place, up to a bound.

#include "text/bounded_text.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace koine::test {
namespace {

TEST(BoundedText, HoldsTextsAndNumbers) {
    BoundedText<64> text;
    EXPECT_EQ(text.view(), "");
    text.append("a=").append(INT_MIN).append("").append("\nb=").append(LONG_MAX).append("\nc=").append(0);
    EXPECT_TRUE(text.isWhole());
    EXPECT_EQ(text.view(), "a=-2147483648\nb=" + std::to_string(LONG_MAX) + "\nc=0");
}

TEST(BoundedText, HasRoomForOneCharacterLessThanItsBytes) {
    for (std::size_t length = 0; length < 20; ++length) {
        BoundedText<10> text;
        text.append(std::string(length, 'x'));
        EXPECT_EQ(text.isWhole(), length < 10) << length;
    }
}

TEST(BoundedText, StaysUselessOnceSomethingDidNotFit) {
    BoundedText<10> text;
    text.append("12345678").append("9ab").append("9").append("");
    EXPECT_FALSE(text.isWhole());
    EXPECT_EQ(text.view(), "12345678");
}

} // namespace
} // namespace koine::test
