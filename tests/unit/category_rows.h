/// @file
/// The five configuration categories and how they differ.
#pragma once

#include "camera.h"

#include <ostream>

namespace koine::test {

struct CategoryRow {
    using Get = int (BaseRequest::*)(unsigned int uid, int refresh, const char* extra, const char* key,
                                     char** answer);

    const char* name; ///< as the traces say it
    Get get;
    const char* line;
    std::vector<std::string>
        firstLines;         ///< what is asked before an unfilled device is asked for the category
    const char* conversion; ///< empty for none
    const char* fallback;
    bool refreshAsksAgain;
    const char* pattern; ///< of all its keys
    const char* key;     ///< one that the camera has
    const char* printed; ///< the answer for that key
};

inline std::ostream& operator<<(std::ostream& out, const CategoryRow& row) { return out << row.name; }

inline const std::vector<CategoryRow>& categoryRows() {
    static const std::vector<CategoryRow> rows = {
        {"Video",
         &BaseRequest::getCacheConfigVideo,
         kVideoLine,
         {kLoginLine},
         "video",
         kNoSuchKey,
         false,
         "Video.*",
         "Video.I0.Brightness",
         "0\nOK\nVideo.I0.Brightness=1\n"},
        {"Camera",
         &BaseRequest::getCacheConfigCamera,
         kCameraLine,
         {kLoginLine},
         "camera",
         kEmptySuccess,
         true,
         "Camera.*",
         "Camera.Title",
         "0\nOK\nCamera.Title=Gate\n"},
        {"Notification",
         &BaseRequest::getCacheConfigNotification,
         kNotificationLine,
         {kLoginLine},
         "",
         kNoSuchKey,
         false,
         "Notification.*",
         "Notification.Trigger.Alarm",
         "0\nOK\nNotification.Trigger.Alarm=ENABLE\n"},
        {"Misc",
         &BaseRequest::getCacheConfigMisc,
         kMiscLine,
         {kLoginLine, kNotificationLine},
         "misc",
         kEmptySuccess,
         false,
         "Misc.*",
         "Misc.External.DI.Port1.Active",
         "0\nOK\nMisc.External.DI.Port1.Active=N.O.\n"},
        {"VideoAnalytics",
         &BaseRequest::getCacheConfigVideoAnalytics,
         kAnalyticsLine,
         {},
         "",
         kNoSuchKey,
         false,
         "VideoAnalytics.*",
         "VideoAnalytics.Rule",
         "0\nOK\nVideoAnalytics.Rule=1\n"},
    };
    return rows;
}

/// Each test runs once for each category.
class CategoryTest : public ::testing::TestWithParam<CategoryRow> {
protected:
    CategoryTest() { forgetTraces(); }

    const CategoryRow& row() const { return GetParam(); }

    int get(char** answer, const char* key = nullptr, int refresh = 0) {
        return (camera.*row().get)(kUser, refresh, nullptr, key, answer);
    }
    int fill() { return get(nullptr); }

    /// Everything that an unfilled device is asked.
    std::vector<std::string> allLines() const {
        std::vector<std::string> lines = row().firstLines;
        lines.push_back(row().line);
        return lines;
    }

    std::string failedTrace(int channel = 0) const {
        return "??#* getCacheConfig" + std::string(row().name) + ": error, uid=7:" + std::to_string(channel) +
               ". \n";
    }
    std::string notConvertedTrace(int code) const {
        return "??#* getCacheConfig" + std::string(row().name) + ": uid=7:0, err" + std::to_string(code) +
               ". \n";
    }
    std::string notFoundTrace() const {
        return "???#* getCacheConfig" + std::string(row().name) + ", uid=7:0, err-8. \n";
    }

    Camera camera;
};

inline std::string categoryName(const ::testing::TestParamInfo<CategoryRow>& info) { return info.param.name; }

} // namespace koine::test
