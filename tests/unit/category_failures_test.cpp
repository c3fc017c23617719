// What the configuration categories do when the device, or something they need first, fails.

#include "category_rows.h"

namespace koine::test {
namespace {

using CategoryFailure = CategoryTest;
INSTANTIATE_TEST_SUITE_P(Every, CategoryFailure, ::testing::ValuesIn(categoryRows()), categoryName);

TEST_P(CategoryFailure, ARefusedRequestGivesItsCodeAndTheFallback) {
    camera.fails(row().line, -1);
    camera.set_strm_setting_channel(4);
    Answer answer;
    EXPECT_EQ(get(answer.out(), row().key), -1);
    EXPECT_EQ(answer.text(), row().fallback);
    EXPECT_TRUE(tracesAre({failedTrace(4)}));
    EXPECT_EQ(camera.conversions, Lines{});
}

TEST_P(CategoryFailure, WhatAFailedRequestLeftIsHandedOver) {
    camera.fails(row().line, -6, "500 no");
    Answer answer;
    EXPECT_EQ(get(answer.out()), -6);
    EXPECT_EQ(answer.text(), "500 no");
}

TEST_P(CategoryFailure, GarbageIsHandedOverWithTheCodeOfTheParser) {
    camera.answers(row().line, "-12\nERROR: No.\n");
    Answer answer;
    EXPECT_EQ(get(answer.out()), -12);
    EXPECT_EQ(answer.text(), "-12\nERROR: No.\n");
    EXPECT_TRUE(tracesAre({notConvertedTrace(-12)}));
    EXPECT_EQ(camera.conversions, Lines{});
}

TEST_P(CategoryFailure, AnAnswerWithoutBodyGivesTheFallback) {
    camera.answersNothing(row().line);
    Answer answer;
    EXPECT_EQ(get(answer.out()), -2);
    EXPECT_EQ(answer.text(), row().fallback);
    EXPECT_TRUE(tracesAre({notConvertedTrace(-2)}));
}

TEST_P(CategoryFailure, AFailedConversionHandsOverTheRawAnswer) {
    for (const char* conversion : {"video", "camera", "misc"})
        camera.conversionResults[conversion] = -9;
    Answer answer;
    if (*row().conversion == '\0') {
        EXPECT_EQ(get(answer.out(), row().key), 1) << "it has none that could fail";
        return;
    }
    EXPECT_EQ(get(answer.out(), "No.Such.Key"), -9);
    EXPECT_EQ(answer.text(), row().printed) << "as the device sent it, whatever the key";
    EXPECT_TRUE(tracesAre({notConvertedTrace(-9)}));
}

TEST_P(CategoryFailure, WithoutAnAnswerOnlyTheCodeIsGiven) {
    camera.answers(row().line, "<html>");
    EXPECT_EQ(fill(), -2);
    EXPECT_TRUE(tracesAre({notConvertedTrace(-2)}));
}

TEST_P(CategoryFailure, OneAttemptDecides) {
    const std::function<void(Camera&)> failures[] = {
        [&](Camera& one) { one.fails(row().line, -3); },
        [&](Camera& one) { one.answers(row().line, "<html>"); },
        [&](Camera& one) { one.answersNothing(row().line); },
    };
    for (const auto& failure : failures) {
        Camera one;
        failure(one);
        EXPECT_NE((one.*row().get)(kUser, 0, nullptr, nullptr, nullptr), 1);
        one.recovers(row().line);
        one.asked();
        Answer answer;
        EXPECT_EQ((one.*row().get)(kUser, 0, nullptr, row().key, answer.out()), -8);
        EXPECT_EQ(answer.text(), row().fallback);
        EXPECT_EQ((one.*row().get)(kUser, 0, nullptr, nullptr, nullptr), 1);
        EXPECT_EQ(one.asked(), Lines{});
    }
}

TEST_P(CategoryFailure, ARefreshAfterAFailureHelpsOnlyTheCamera) {
    camera.fails(row().line, -3);
    EXPECT_EQ(fill(), -3);
    camera.recovers(row().line);
    Answer answer;
    EXPECT_EQ(get(answer.out(), row().key, 1), row().refreshAsksAgain ? 1 : -8);
    EXPECT_EQ(answer.text(), row().refreshAsksAgain ? row().printed : row().fallback);
}

// ---- What is needed first

TEST_P(CategoryFailure, ALoginFailureComesFirstWhereALoginIsNeeded) {
    camera.fails(kLoginLine, -1, "login page");
    Answer answer;
    if (row().firstLines.empty()) {
        EXPECT_EQ(get(answer.out(), row().key), 1);
        EXPECT_EQ(answer.text(), row().printed);
        return;
    }
    EXPECT_EQ(get(answer.out(), row().key), -1);
    EXPECT_EQ(answer.text(), row().fallback);
    EXPECT_EQ(camera.asked(), Lines{kLoginLine});
    EXPECT_TRUE(tracesAre({"??#* getCacheLogin: error, uid=7:0. \n", failedTrace()}));
}

TEST_P(CategoryFailure, ALoginFailureCountsAsTheOneAttempt) {
    const bool needsLogin = !row().firstLines.empty();
    camera.fails(kLoginLine, -1);
    EXPECT_EQ(fill(), needsLogin ? -1 : 1);
    camera.recovers(kLoginLine);
    camera.asked();
    Answer answer;
    EXPECT_EQ(get(answer.out(), row().key), needsLogin ? -8 : 1);
    EXPECT_EQ(answer.text(), needsLogin ? row().fallback : row().printed);
    EXPECT_EQ(camera.asked(), row().firstLines);
}

TEST_P(CategoryFailure, TheLoginIsLookedAtOnEveryCall) {
    const bool needsLogin = !row().firstLines.empty();
    EXPECT_EQ(fill(), 1);
    std::vector<int> refreshes;
    camera.steps.getCacheLogin = [&](unsigned int uid, int refresh, const char* key, char** answer) {
        EXPECT_EQ(uid, kUser);
        EXPECT_EQ(key, nullptr);
        EXPECT_EQ(answer, nullptr);
        refreshes.push_back(refresh);
        return -33;
    };
    Answer answer;
    EXPECT_EQ(get(answer.out(), row().key, 0), needsLogin ? -33 : 1);
    EXPECT_EQ(answer.text(), needsLogin ? row().fallback : row().printed) << "the cache has the key";
    EXPECT_EQ(get(nullptr, nullptr, 1), needsLogin ? -33 : 1);
    EXPECT_EQ(refreshes, needsLogin ? std::vector<int>(2, 0) : std::vector<int>());
    EXPECT_TRUE(tracesAre(needsLogin ? Lines(2, failedTrace()) : Lines()));
}

class MiscFailure : public CameraTest {};

TEST_F(MiscFailure, ANotificationFailureIsTracedAndGivesItsCode) {
    camera.fails(kNotificationLine, -4, "page");
    Answer answer;
    EXPECT_EQ(camera.getCacheConfigMisc(kUser, 0, nullptr, nullptr, answer.out()), -4);
    EXPECT_EQ(answer.text(), kEmptySuccess);
    EXPECT_EQ(camera.asked(), (Lines{kLoginLine, kNotificationLine}));
    EXPECT_TRUE(tracesAre({"??#* getCacheConfigNotification: error, uid=7:0. \n",
                           "??#* getCacheConfigMisc: error, uid=7:0. \n"}));
}

TEST_F(MiscFailure, NotificationIsLookedAtOnEveryCall) {
    EXPECT_EQ(camera.getCacheConfigMisc(kUser, 0, nullptr, nullptr, nullptr), 1);
    int calls = 0;
    camera.steps.getCacheConfigNotification = [&](unsigned int uid, int refresh, const char* extra,
                                                  const char* key, char** answer) {
        EXPECT_EQ(uid, kUser);
        EXPECT_EQ(refresh, 0);
        EXPECT_EQ(extra, nullptr);
        EXPECT_EQ(key, nullptr);
        EXPECT_EQ(answer, nullptr);
        ++calls;
        return -5;
    };
    EXPECT_EQ(camera.getCacheConfigMisc(kUser, 1, nullptr, nullptr, nullptr), -5);
    EXPECT_EQ(calls, 1);
}

TEST_F(MiscFailure, ARefreshOfMiscLeavesNotification) {
    EXPECT_EQ(camera.getCacheConfigMisc(kUser, 1, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(camera.getCacheConfigMisc(kUser, 1, nullptr, nullptr, nullptr), 1);
    Answer answer;
    EXPECT_EQ(camera.getCacheConfigNotification(kUser, 0, nullptr, nullptr, answer.out()), 1);
    EXPECT_EQ(answer.text(), "0\nOK\nNotification.Trigger.Alarm=ENABLE\n");
}

} // namespace
} // namespace koine::test
