// The five configuration categories: asked once, printed by key, answered somehow in every case.

#include "category_rows.h"

namespace koine::test {
namespace {

using Category = CategoryTest;
INSTANTIATE_TEST_SUITE_P(Every, Category, ::testing::ValuesIn(categoryRows()), categoryName);

TEST_P(Category, AsksWhatItNeedsOnceAndInOrder) {
    EXPECT_EQ(fill(), 1);
    EXPECT_EQ(camera.asked(), allLines());
    EXPECT_EQ(fill(), 1);
    Answer answer;
    EXPECT_EQ(get(answer.out()), 1);
    EXPECT_EQ(camera.asked(), Lines{});
    EXPECT_TRUE(tracesAre({}));
}

TEST_P(Category, AsksWithPlainMethodAndConnectionForTheStreamUser) {
    camera.set_server_port(8000);
    EXPECT_EQ((camera.*row().get)(21, 0, nullptr, nullptr, nullptr), 1);
    const Sent& last = camera.sent.back();
    EXPECT_EQ(last.url, std::string("http://camera:8000/") + row().line);
    EXPECT_EQ(last.uid, 21U);
    EXPECT_EQ(last.method, 0);
    EXPECT_EQ(last.connection, 0);
}

TEST_P(Category, PrintsTheKeyThatIsAskedFor) {
    camera.has(row().line, std::string("Other.Key=9\n") + row().key + "=5\n");
    Answer answer;
    EXPECT_EQ(get(answer.out(), row().key), 1);
    EXPECT_EQ(answer.text(), std::string("0\nOK\n") + row().key + "=5\n");
    EXPECT_EQ(get(answer.out(), row().pattern), 1);
    EXPECT_EQ(answer.text(), std::string("0\nOK\n") + row().key + "=5\n");
    EXPECT_EQ(get(answer.out(), "Other.Key"), 1);
    EXPECT_EQ(answer.text(), "0\nOK\nOther.Key=9\n");
}

TEST_P(Category, PrintsEverythingWithoutAKey) {
    camera.has(row().line, "Z=1\nA=2\n");
    Answer answer;
    EXPECT_EQ(get(answer.out()), 1);
    EXPECT_EQ(answer.text(), "0\nOK\nA=2\nZ=1\n");
}

TEST_P(Category, IgnoresTheExtraText) {
    Answer answer;
    EXPECT_EQ((camera.*row().get)(kUser, 0, "http://other/Line.cgi", row().key, answer.out()), 1);
    EXPECT_EQ(answer.text(), row().printed);
    EXPECT_EQ(camera.asked(), allLines());
}

TEST_P(Category, WithoutAnAnswerNothingIsPrinted) {
    EXPECT_EQ(fill(), 1);
    EXPECT_EQ(platform().countOf("getCgiStr"), 0);
}

TEST_P(Category, ConvertsOncePerFill) {
    EXPECT_EQ(fill(), 1);
    EXPECT_EQ(fill(), 1);
    EXPECT_EQ(camera.conversions, *row().conversion == '\0' ? Lines{} : Lines{row().conversion});
}

TEST_P(Category, AMissingKeyGivesTheFallbackAndMinusEight) {
    Answer answer;
    EXPECT_EQ(get(answer.out(), "No.Such.Key"), -8);
    EXPECT_EQ(answer.text(), row().fallback);
    EXPECT_TRUE(tracesAre({notFoundTrace()}));
}

TEST_P(Category, AnEmptyCategoryGivesTheFallbackAndMinusEight) {
    camera.answers(row().line, kEmptySuccess);
    Answer answer;
    EXPECT_EQ(get(answer.out()), -8);
    EXPECT_EQ(answer.text(), row().fallback);
    EXPECT_TRUE(tracesAre({notFoundTrace()}));
    EXPECT_EQ(fill(), 1);
}

// ---- Recorders

TEST_P(Category, ARecorderIsNeverAsked) {
    for (const int flag : {1, 2, -1}) {
        Camera recorder;
        recorder.setIsTovlinNVRDevice(flag);
        Answer answer;
        EXPECT_EQ((recorder.*row().get)(kUser, 0, nullptr, row().key, answer.out()), 1);
        EXPECT_EQ(answer.text(), row().fallback);
        EXPECT_EQ((recorder.*row().get)(kUser, 1, nullptr, nullptr, nullptr), 1);
        EXPECT_EQ(recorder.asked(), Lines{});
        EXPECT_EQ(recorder.conversions, Lines{});
    }
    EXPECT_TRUE(tracesAre({}));
}

TEST_P(Category, ARecorderCountsAsAsked) {
    camera.setIsTovlinNVRDevice(1);
    EXPECT_EQ(fill(), 1);
    camera.setIsTovlinNVRDevice(0);
    Answer answer;
    EXPECT_EQ(get(answer.out()), -8);
    EXPECT_EQ(answer.text(), row().fallback);
    EXPECT_EQ(camera.asked(), row().firstLines);
}

TEST_P(Category, ARefreshOfARecorderLeavesWhatIsThere) {
    EXPECT_EQ(fill(), 1);
    camera.setIsTovlinNVRDevice(1);
    EXPECT_EQ(get(nullptr, nullptr, 1), 1);
    camera.setIsTovlinNVRDevice(0);
    camera.asked();
    Answer answer;
    EXPECT_EQ(get(answer.out(), row().key), 1);
    EXPECT_EQ(answer.text(), row().printed);
    EXPECT_EQ(camera.asked(), Lines{});
}

// ---- Refresh

TEST_P(Category, ARefreshEmptiesAndOnlyTheCameraIsAskedAgain) {
    EXPECT_EQ(fill(), 1);
    camera.asked();
    camera.has(row().line, std::string(row().key) + "=new\n");
    Answer answer;
    const int result = get(answer.out(), row().key, 1);
    EXPECT_EQ(camera.asked(), row().refreshAsksAgain ? Lines{row().line} : Lines{});
    EXPECT_EQ(result, row().refreshAsksAgain ? 1 : -8);
    EXPECT_EQ(answer.text(),
              row().refreshAsksAgain ? std::string("0\nOK\n") + row().key + "=new\n" : row().fallback);
}

TEST_P(Category, ARefreshWithoutAnAnswerSucceeds) {
    EXPECT_EQ(fill(), 1);
    EXPECT_EQ(get(nullptr, nullptr, 1), 1);
    EXPECT_TRUE(tracesAre({}));
}

TEST_P(Category, ARefreshOfAnUnfilledCacheAsksOnce) {
    EXPECT_EQ(get(nullptr, nullptr, 1), 1);
    EXPECT_EQ(camera.asked(), allLines());
}

TEST_P(Category, OnlyOneMeansRefresh) {
    EXPECT_EQ(fill(), 1);
    camera.asked();
    for (const int refresh : {2, -1, 100}) {
        Answer answer;
        EXPECT_EQ(get(answer.out(), row().key, refresh), 1);
        EXPECT_EQ(answer.text(), row().printed);
    }
    EXPECT_EQ(camera.asked(), Lines{});
}

} // namespace
} // namespace koine::test
