// The helpers that split and compare texts, own them, and look into key maps.

#include "cache/key_map.h"
#include "random_texts.h"
#include "tests/support/failing_allocations.h"
#include "text/owned_text.h"
#include "text/tokens.h"
#include "text/words.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <strings.h>

namespace koine::test {
namespace {

// Held by a pointer: this is what the tokeniser replaces.
const auto kReferenceTokens = &::strtok_r;

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
        for (int i = 0; i < kRandomRounds / 4; ++i) {
            const std::string text = texts.next(12);
            EXPECT_EQ(tokensOf(text, separators), referenceTokens(text, separators)) << text;
        }
    }
}

TEST(Tokeniser, ChangesItsSeparatorsAsStrtokDoes) {
    RandomTexts texts("ab&=,");
    const char* const turns[] = {"=", "&", ",", "&="};
    for (int i = 0; i < kRandomRounds; ++i) {
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
    for (int i = 0; i < kRandomRounds; ++i) {
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

TEST(KeyMap, APresentKeyCostsNoMemory) {
    CgiMap map{{"B", "1"}};
    FailAllocations fail(1);
    const bool found = hasKey(map, "B") && entry(map, "B") == "1" && !valueOr(map, "B").empty();
    setIfAbsent(map, "B", "2");
    EXPECT_FALSE(fail.stop());
    EXPECT_TRUE(found);
    EXPECT_EQ(map.at("B"), "1");
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
