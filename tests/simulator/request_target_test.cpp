#include "simulator/request_target.h"

#include <gtest/gtest.h>

namespace koine::sim {
namespace {

TEST(RequestTarget, IsTakenApart) {
    const RequestTarget target = parseTarget("/Config.cgi?action=set&Video.I0.Hue=3&Video.Foo&&x==");
    EXPECT_EQ(target.line, "Config.cgi?action=set&Video.I0.Hue=3&Video.Foo&&x==");
    EXPECT_EQ(target.cgi, "Config.cgi");
    ASSERT_EQ(target.items.size(), 4U);
    EXPECT_EQ(target.items[1].key, "Video.I0.Hue");
    EXPECT_EQ(target.items[1].value, "3");
    EXPECT_FALSE(target.items[2].hasValue);
    EXPECT_EQ(target.items[3].value, "=");
}

TEST(RequestTarget, DecodesKeysAndValuesAfterSplitting) {
    const RequestTarget target = parseTarget("/Config.cgi?Camera%2ename=a%26b%3Dc%20d+e");
    ASSERT_EQ(target.items.size(), 1U);
    EXPECT_EQ(target.items[0].key, "Camera.name");
    EXPECT_EQ(target.items[0].value, "a&b=c d+e");
}

TEST(RequestTarget, LeavesBrokenEscapesAsTheyAre) {
    EXPECT_EQ(parseTarget("/a?k=100%").valueOf("k"), "100%");
    EXPECT_EQ(parseTarget("/a?k=%4").valueOf("k"), "%4");
    EXPECT_EQ(parseTarget("/a?k=%zz%4g").valueOf("k"), "%zz%4g");
}

TEST(RequestTarget, KnowsTheAbsoluteForm) {
    EXPECT_EQ(parseTarget("http://device:80/Login.cgi").line, "Login.cgi");
    EXPECT_EQ(parseTarget("http://device").line, "");
    EXPECT_EQ(parseTarget("//Login.cgi").line, "Login.cgi");
    EXPECT_EQ(parseTarget("/Login.cgi?u=http://x/y").line, "Login.cgi?u=http://x/y");
}

TEST(RequestTarget, FindsItemsInAnyCase) {
    const RequestTarget target = parseTarget("/a?Action=get&action=set", "more=1");
    EXPECT_EQ(target.valueOf("action"), "get");
    EXPECT_EQ(target.valueOf("more"), "1");
    EXPECT_EQ(target.valueOf("act"), "");
}

} // namespace
} // namespace koine::sim
