#include "devices/uri_pattern.h"

#include <gtest/gtest.h>

namespace koine {
namespace {

UriValues everything() {
    UriValues values;
    values[UriField::credentials] = "user:pw";
    values[UriField::address] = "10.0.0.5";
    values[UriField::rtspPort] = "554";
    values[UriField::token] = "T1";
    values[UriField::encoding] = "H264";
    values[UriField::audio] = "ULAW";
    values[UriField::width] = "1280";
    values[UriField::height] = "720";
    return values;
}

std::string patternErrorOf(const std::string& pattern) {
    try {
        UriPattern{pattern};
    } catch (const UriPatternError& error) {
        return error.what();
    }
    return "no error";
}

TEST(UriPatternTest, EveryPlaceholderStandsForItsValue) {
    const UriPattern pattern(
        "{credentials} {address} {rtsp_port} {token} {encoding} {audio} {width} {height}");
    EXPECT_EQ(pattern.expand(everything()), "user:pw 10.0.0.5 554 T1 H264 ULAW 1280 720");
}

TEST(UriPatternTest, TheDefaultNamesWhatIsKnown) {
    UriValues values = everything();
    const UriPattern pattern;
    EXPECT_EQ(pattern.expand(values), "rtsp://user:pw@10.0.0.5:554/T1?encoding=H264&size=1280x720");
    values[UriField::credentials].clear();
    values[UriField::height].clear();
    EXPECT_EQ(pattern.expand(values), "rtsp://10.0.0.5:554/T1?encoding=H264");
    values[UriField::encoding].clear();
    EXPECT_EQ(pattern.expand(values), "rtsp://10.0.0.5:554/T1");
}

TEST(UriPatternTest, AGroupIsLeftOutWhenOneOfItsPlaceholdersHasNoValue) {
    UriValues values;
    values[UriField::width] = "640";
    EXPECT_EQ(UriPattern("a[b{width}x{height}]c").expand(values), "ac");
    EXPECT_EQ(UriPattern("a[b{width}]c").expand(values), "ab640c");
    EXPECT_EQ(UriPattern("a[plain]c").expand(values), "aplainc");
    EXPECT_EQ(UriPattern("a{height}c").expand(values), "ac");
}

TEST(UriPatternTest, AnInnerGroupThatIsLeftOutKeepsTheOuterOne) {
    UriValues values;
    values[UriField::width] = "640";
    EXPECT_EQ(UriPattern("[{width}[x{height}]!]").expand(values), "640!");
    EXPECT_EQ(UriPattern("[{height}[x{width}]!]").expand(values), "");
}

TEST(UriPatternTest, ABackslashTakesTheNextCharacterAsItIs) {
    EXPECT_EQ(UriPattern(R"(\[\]\{\}\\)").expand(UriValues()), R"([]{}\)");
}

TEST(UriPatternTest, WhatIsWrongIsToldWithItsPlace) {
    EXPECT_NE(patternErrorOf("rtsp://{host}").find("unknown placeholder {host} at character 8"),
              std::string::npos)
        << patternErrorOf("rtsp://{host}");
    EXPECT_NE(patternErrorOf("{host}").find("rtsp_port"), std::string::npos); // the known ones are listed
    EXPECT_NE(patternErrorOf("ab{token").find("'{' without its '}' at character 3"), std::string::npos);
    EXPECT_NE(patternErrorOf("ab[c").find("'[' without its ']' at character 3"), std::string::npos);
    EXPECT_NE(patternErrorOf("ab]").find("']' without its beginning at character 3"), std::string::npos);
    EXPECT_NE(patternErrorOf("}").find("'}' without its beginning at character 1"), std::string::npos);
    EXPECT_NE(patternErrorOf("a\\").find("backslash with nothing after it at character 2"),
              std::string::npos);
    EXPECT_NE(patternErrorOf(std::string(20000, '[')).find("nested too deeply"), std::string::npos);
    EXPECT_EQ(patternErrorOf(""), "no error");
}

} // namespace
} // namespace koine
