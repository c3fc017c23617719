// After a set line the caches hold what was set, and what is derived from them follows.

#include "camera.h"
#include "tests/support/failing_allocations.h"

#include <cstdio>

namespace koine::test {
namespace {

const std::string kQuality = "Media.Profiles.Profile1.VideoEncoderConfiguration.Quality";

class ConfigSet : public CameraTest {
protected:
    ConfigSet() {
        camera.steps.syncVideoConfigByMediaConfig = [this](unsigned int uid, char* url) {
            EXPECT_EQ(uid, kUser);
            EXPECT_EQ(url, line.data()) << "the line itself is handed on";
            camera.conversions.push_back("sync");
            return syncResult;
        };
    }

    /// Fills all caches, so that the entries can be seen.
    void fill() {
        EXPECT_EQ(camera.cacheCgi(kUser), 1);
        camera.conversions.clear();
        camera.asked();
        forgetTraces();
    }

    int set(const std::string& items) {
        line = "Config.cgi?action=set&" + items;
        const std::string before = line;
        camera.conversions.clear();
        const int result = camera.handleConfigSet(kUser, line.data());
        EXPECT_EQ(line, before);
        return result;
    }

    /// One key as its category answers it, "(absent)" when it does not.
    std::string cached(const std::string& category, const std::string& key) {
        using Get = int (BaseRequest::*)(unsigned int, int, const char*, const char*, char**);
        const std::map<std::string, Get> gets = {
            {"Media", &BaseRequest::getCacheConfigMedia},
            {"Video", &BaseRequest::getCacheConfigVideo},
            {"Camera", &BaseRequest::getCacheConfigCamera},
            {"Notification", &BaseRequest::getCacheConfigNotification},
            {"Misc", &BaseRequest::getCacheConfigMisc},
            {"VideoAnalytics", &BaseRequest::getCacheConfigVideoAnalytics},
        };
        Answer answer;
        const int result = (camera.*gets.at(category))(kUser, 0, nullptr, key.c_str(), answer.out());
        return result == 1 ? pairsOf(answer.text())[key] : "(absent)";
    }

    std::string line;
    int syncResult = 1;
};

struct CategorySetRow {
    const char* category;
    const char* conversion; ///< that follows; empty for none
};
const CategorySetRow kRows[] = {{"Video", "video"},
                                {"Camera", "camera"},
                                {"Notification", "misc"},
                                {"Misc", "misc"},
                                {"VideoAnalytics", ""}};

TEST_F(ConfigSet, WritesEachCategoryIntoItsOwnCacheAndConvertsIt) {
    fill();
    for (const CategorySetRow& row : kRows) {
        SCOPED_TRACE(row.category);
        const std::string key = std::string(row.category) + ".New.Key";
        EXPECT_EQ(cached(row.category, key), "(absent)");
        EXPECT_EQ(set(key + "=value 1"), 1);
        EXPECT_EQ(camera.conversions, *row.conversion == '\0' ? Lines{} : Lines{row.conversion});
        EXPECT_EQ(cached(row.category, key), "value 1");
        EXPECT_EQ(set(key + "=2"), 1);
        EXPECT_EQ(cached(row.category, key), "2");
        for (const CategorySetRow& other : kRows)
            EXPECT_EQ(cached(other.category, key), other.category == row.category ? "2" : "(absent)");
    }
    EXPECT_EQ(camera.asked(), Lines{});
}

TEST_F(ConfigSet, ConvertsTheCachesThemselves) {
    fill();
    CgiMap* const video = camera.videoMap;
    CgiMap* const own = camera.cameraMap;
    CgiMap* const misc = camera.miscMap;
    CgiMap* const notification = camera.notificationMap;
    camera.videoMap = camera.cameraMap = camera.miscMap = camera.notificationMap = nullptr;
    EXPECT_EQ(set("Video.A=1&Camera.A=1&Misc.A=1&Notification.A=1"), 1);
    EXPECT_EQ(camera.videoMap, video);
    EXPECT_EQ(camera.cameraMap, own);
    EXPECT_EQ(camera.miscMap, misc);
    EXPECT_EQ(camera.notificationMap, notification);
}

TEST_F(ConfigSet, ConvertsEachChangedCategoryOnceAndInOrder) {
    fill();
    camera.setMediaProfile(1);
    EXPECT_EQ(set("Misc.A=1&Camera.A=1&Notification.A=1&Video.A=1&Video.B=2&Media.A=1&VideoAnalytics.A=1"),
              1);
    EXPECT_EQ(camera.conversions, (Lines{"sync", "video", "camera", "misc"}));
}

TEST_F(ConfigSet, NothingKnownChangesNothing) {
    fill();
    EXPECT_EQ(set("Network.Port=80&video.a=1&Video=1&&\n"), 1);
    EXPECT_EQ(camera.conversions, Lines{});
    EXPECT_TRUE(tracesAre({}));
}

TEST_F(ConfigSet, ResultsOfConversionsDoNotMatter) {
    fill();
    camera.conversionResults = {{"video", -1}, {"camera", 0}, {"misc", -8}};
    EXPECT_EQ(set("Video.A=1&Camera.A=1&Misc.A=1"), 1);
    EXPECT_EQ(camera.conversions, (Lines{"video", "camera", "misc"}));
}

// ---- Items

TEST_F(ConfigSet, AnItemWithoutAValueOnlyMarksItsCategory) {
    fill();
    for (const char* category : {"Video", "Camera", "Notification", "Misc"}) {
        EXPECT_EQ(set(std::string(category) + ".Foo"), 1);
        EXPECT_EQ(camera.conversions.size(), 1U) << category;
        EXPECT_EQ(cached(category, std::string(category) + ".Foo"), "(absent)");
    }
    EXPECT_EQ(set("VideoAnalytics.Foo"), 1);
    EXPECT_EQ(camera.conversions, Lines{});
    EXPECT_EQ(cached("VideoAnalytics", "VideoAnalytics.Foo"), "(absent)");
}

TEST_F(ConfigSet, AMediaItemWithoutAValueOnlyStartsTheSynchronisation) {
    fill();
    camera.setMediaProfile(1);
    EXPECT_EQ(set("Media.Foo"), 1);
    EXPECT_EQ(camera.conversions, Lines{"sync"});
    EXPECT_EQ(cached("Media", "Media.Foo"), "(absent)");
}

TEST_F(ConfigSet, TheFirstEqualSignEndsTheKey) {
    fill();
    EXPECT_EQ(set("Video.A=b=c&Video.B="), 1);
    EXPECT_EQ(cached("Video", "Video.A"), "b=c");
    EXPECT_EQ(cached("Video", "Video.B"), "");
}

TEST_F(ConfigSet, AmpersandsAndLineEndsSeparateItems) {
    fill();
    EXPECT_EQ(set("Video.A=1\nVideo.B=2,Video.C=3;4"), 1);
    EXPECT_EQ(cached("Video", "Video.A"), "1");
    EXPECT_EQ(cached("Video", "Video.B"), "2,Video.C=3;4");
}

TEST_F(ConfigSet, TheNameOfACategoryCountsAnywhereInTheItem) {
    fill();
    EXPECT_EQ(set("Prefix.Video.A=1&X=Camera.B"), 1);
    EXPECT_EQ(cached("Video", "Prefix.Video.A"), "1");
    EXPECT_EQ(cached("Camera", "X"), "Camera.B");
    EXPECT_EQ(camera.conversions, (Lines{"video", "camera"}));
}

TEST_F(ConfigSet, TheFirstCategoryOfTheListDecides) {
    fill();
    camera.setMediaProfile(1);
    const std::pair<const char*, const char*> rows[] = {
        {"Camera.Misc.X", "Camera"},       {"Misc.Camera.X", "Camera"},
        {"Notification.Video.X", "Video"}, {"Misc.Notification.X", "Notification"},
        {"VideoAnalytics.Misc.X", "Misc"}, {"VideoAnalytics.Video.X", "Video"},
        {"Video.Media.X", "Media"},        {"VideoAnalytics.X", "VideoAnalytics"},
    };
    for (const auto& [key, category] : rows) {
        EXPECT_EQ(set(std::string(key) + "=1"), 1);
        EXPECT_EQ(cached(category, key), "1") << key;
    }
}

TEST_F(ConfigSet, CaseMatters) {
    fill();
    EXPECT_EQ(set("VIDEO.A=1&camera.B=2"), 1);
    EXPECT_EQ(camera.conversions, Lines{});
    EXPECT_EQ(cached("Video", "VIDEO.A"), "(absent)");
}

// ---- Media

TEST_F(ConfigSet, MediaIsWrittenOnDevicesThatAreDrivenThroughProfiles) {
    fill();
    camera.setMediaProfile(1);
    EXPECT_EQ(set("Media.Profiles.Profile1.VideoEncoderConfiguration.Encoding=H264"), 1);
    EXPECT_EQ(cached("Media", "Media.Profiles.Profile1.VideoEncoderConfiguration.Encoding"), "H264");
    EXPECT_EQ(camera.conversions, Lines{"sync"});
}

TEST_F(ConfigSet, MediaIsPassedOverOnOtherDevices) {
    fill();
    for (const int flag : {0, 2, -1}) {
        camera.setMediaProfile(flag);
        EXPECT_EQ(set(kQuality + "=0.5&Media.Video.A=1"), 1);
        EXPECT_EQ(camera.conversions, Lines{}) << "and it does not count as another category";
        EXPECT_EQ(cached("Media", kQuality), "(absent)");
        EXPECT_EQ(cached("Video", "Media.Video.A"), "(absent)");
    }
}

TEST_F(ConfigSet, AQualityIsKeptOnBothScales) {
    fill();
    camera.setMediaProfile(1);
    camera.setSettingQualitySrcMin(0.0F);
    camera.setSettingQualitySrcMax(1.0F);
    EXPECT_EQ(set(kQuality + "=0.5"), 1);
    EXPECT_EQ(cached("Media", kQuality), "5");
    EXPECT_EQ(cached("Media", kQuality + ".Src"), "0.5");
}

TEST_F(ConfigSet, AQualityIsCountedFromTheMinimumInSteps) {
    fill();
    camera.setMediaProfile(1);
    camera.setSettingQualitySrcMin(20.0F);
    camera.setSettingQualitySrcMax(100.0F);
    EXPECT_EQ(set(kQuality + "=60.00xyz"), 1);
    EXPECT_EQ(cached("Media", kQuality), "5");
    EXPECT_EQ(cached("Media", kQuality + ".Src"), "60");
    EXPECT_EQ(set(kQuality + "=1e2"), 1);
    EXPECT_EQ(cached("Media", kQuality), "10");
    EXPECT_EQ(set(kQuality + "=good"), 1);
    EXPECT_EQ(cached("Media", kQuality), "-2.5");
    EXPECT_EQ(cached("Media", kQuality + ".Src"), "0");
}

TEST_F(ConfigSet, EveryKeyThatContainsTheQualityIsOne) {
    fill();
    camera.setMediaProfile(1);
    camera.setSettingQualitySrcMin(0.0F);
    camera.setSettingQualitySrcMax(10.0F);
    EXPECT_EQ(set(kQuality + ".Max=0.5"), 1);
    EXPECT_EQ(cached("Media", kQuality + ".Max"), "0.5");
    EXPECT_EQ(cached("Media", kQuality + ".Max.Src"), "0.5");
    EXPECT_EQ(set("Media.Profiles.Profile1.Quality=0.50"), 1);
    EXPECT_EQ(cached("Media", "Media.Profiles.Profile1.Quality"), "0.50") << "not an encoder's quality";
}

/// A quality of the host, rewritten for the device and read back, is what the host had said.
TEST_F(ConfigSet, EveryTenthOfAQualityComesBack) {
    fill();
    camera.setMediaProfile(1);
    const std::pair<float, float> ranges[] = {{0.0F, 10.0F}, {0.0F, 100.0F}, {1.0F, 31.0F}, {-50.0F, 50.0F}};
    for (const auto& [lowest, highest] : ranges) {
        camera.setSettingQualitySrcMin(lowest);
        camera.setSettingQualitySrcMax(highest);
        for (int tenth = 0; tenth <= 100; ++tenth) {
            char host[16];
            std::snprintf(host, sizeof host, "%g", tenth / 10.0);
            line = "Config.cgi?action=set&" + kQuality + "=" + host;
            Answer rewritten;
            ASSERT_EQ(camera.recoveryUrl(kUser, line.data(), rewritten.out()), 1);
            line = rewritten.text();
            ASSERT_EQ(camera.handleConfigSet(kUser, line.data()), 1);
            EXPECT_NEAR(std::stod(cached("Media", kQuality)), tenth / 10.0, 1e-4) << lowest << " " << host;
        }
    }
}

/// Two decimals hold every tenth of the host's scale on a device whose scale ends at one.
TEST_F(ConfigSet, EveryTenthComesBackOnTheDefaultScale) {
    fill();
    camera.setMediaProfile(1);
    camera.setSettingQualitySrcMin(0.0F);
    camera.setSettingQualitySrcMax(1.0F);
    for (int tenth = 0; tenth <= 100; ++tenth) {
        char host[16];
        std::snprintf(host, sizeof host, "%g", tenth / 10.0);
        char onDevice[16];
        std::snprintf(onDevice, sizeof onDevice, "%.2f", tenth / 100.0);
        line = "Config.cgi?action=set&" + kQuality + "=" + host;
        Answer rewritten;
        ASSERT_EQ(camera.recoveryUrl(kUser, line.data(), rewritten.out()), 1);
        EXPECT_EQ(rewritten.text(), "Config.cgi?action=set&" + kQuality + "=" + onDevice);
        line = rewritten.text();
        ASSERT_EQ(camera.handleConfigSet(kUser, line.data()), 1);
        EXPECT_EQ(cached("Media", kQuality), host);
    }
}

// ---- Failures

TEST_F(ConfigSet, AFailedSynchronisationEndsIt) {
    fill();
    camera.setMediaProfile(1);
    for (const int result : {0, -1, 2}) {
        syncResult = result;
        forgetTraces();
        EXPECT_EQ(set("Media.A=" + std::to_string(result) + "&Video.A=5"), 0);
        EXPECT_EQ(camera.conversions, Lines{"sync"});
        EXPECT_TRUE(tracesAre({"??#3482 BaseRequest.handleConfigSet: pchUrl=" + line + ", ret0. \n"}));
        EXPECT_EQ(cached("Media", "Media.A"), std::to_string(result)) << "what was written stays";
        EXPECT_EQ(cached("Video", "Video.A"), "5");
    }
}

TEST_F(ConfigSet, WithoutMemoryItSaysWhereAndWritesNothing) {
    fill();
    line = "Config.cgi?action=set&Video.A=1";
    const int sourceLines[] = {3411, 3418};
    for (unsigned int n = 1; n <= 2; ++n) {
        forgetTraces();
        FailAllocations once(n);
        const int result = camera.handleConfigSet(kUser, line.data());
        EXPECT_TRUE(once.stop()) << n;
        EXPECT_EQ(result, -8) << n;
        EXPECT_TRUE(tracesAre(
            {"???#" + std::to_string(sourceLines[n - 1]) + " BaseRequest::handleConfigSet: err-8. \n"}));
        EXPECT_EQ(cached("Video", "Video.A"), "(absent)");
        EXPECT_EQ(camera.conversions, Lines{});
    }
}

TEST_F(ConfigSet, MemoryThatRunsOutAnywhereGivesMinusEight) {
    const std::string value(100, 'v'); // too long for a small string
    std::string text =
        "Config.cgi?action=set&Video." + value + "=" + value + "&" + kQuality + "=0.5&Misc.A=1";
    const unsigned int last = failEachAllocation([&](unsigned int n) {
        Camera one;
        one.setMediaProfile(1);
        one.steps.syncVideoConfigByMediaConfig = [](unsigned int, char*) { return 1; };
        int result = 0;
        FailAllocations once(n);
        EXPECT_NO_THROW(result = one.handleConfigSet(kUser, text.data())) << n;
        const bool failed = once.stop();
        EXPECT_EQ(result, failed ? -8 : 1) << n;
        return failed;
    });
    EXPECT_GT(last, 5U);
    EXPECT_LT(last, 10000U);
}

} // namespace
} // namespace koine::test
