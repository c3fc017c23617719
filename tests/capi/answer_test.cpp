// Reading answers in C.

#include "tests/capi/c_device.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace koine::test {
namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

int collect(const char* key, const char* value, void* context) {
    static_cast<Pairs*>(context)->emplace_back(key, value);
    return 0;
}

int takeOne(const char* key, const char* value, void* context) {
    collect(key, value, context);
    return 1;
}

TEST(CAnswer, AStatusIsRead) {
    EXPECT_EQ(koine_status("0\nOK\n"), 0);
    EXPECT_EQ(koine_status("-35\nERROR: Authentication error.\n"), -35);
    EXPECT_EQ(koine_status("<html>"), 0);
}

TEST(CAnswer, AValueIsFoundByItsKey) {
    const char* const answer = "0\nOK\nB=two words\nA=1\nC=\n";
    EXPECT_EQ(taken(koine_value(answer, "A")), "1");
    EXPECT_EQ(taken(koine_value(answer, "B")), "two words");
    EXPECT_EQ(taken(koine_value(answer, "C")), "");
    EXPECT_EQ(taken(koine_value(answer, "D")), "(null)");
    EXPECT_EQ(taken(koine_value("-11\nERROR: x\nA=1\n", "A")), "(null)");
}

TEST(CAnswer, ValuesAreVisitedInOrder) {
    Pairs pairs;
    EXPECT_EQ(koine_visit_values("0\nOK\nB=2\nA=1\n", collect, &pairs), KOINE_OK);
    EXPECT_EQ(pairs, (Pairs{{"A", "1"}, {"B", "2"}}));
}

TEST(CAnswer, AVisitorCanEndIt) {
    Pairs pairs;
    EXPECT_EQ(koine_visit_values("0\nOK\nB=2\nA=1\n", takeOne, &pairs), KOINE_OK);
    EXPECT_EQ(pairs, (Pairs{{"A", "1"}}));
}

TEST(CAnswer, EveryResultHasWordsOfItsOwn) {
    const int results[] = {KOINE_OK,      KOINE_NOT_BUILT,   KOINE_UNAUTHORIZED, KOINE_REFUSED,
                           KOINE_TIMEOUT, KOINE_BROKEN,      KOINE_HTTP_ERROR,   KOINE_CANNOT_CONNECT,
                           -99,           KOINE_NO_RESOURCE, KOINE_NO_FUNCTION};
    std::vector<std::string> texts;
    for (const int result : results) {
        const std::string text = koine_result_text(result);
        EXPECT_FALSE(text.empty());
        EXPECT_EQ(std::count(texts.begin(), texts.end(), text), 0) << text;
        texts.push_back(text);
    }
}

TEST(CAnswer, TheVersionIsANumberWithDots) {
    int dots = 0;
    for (const char* c = koine_version(); *c != '\0'; ++c)
        dots += *c == '.';
    EXPECT_EQ(dots, 2) << koine_version();
}

} // namespace
} // namespace koine::test
