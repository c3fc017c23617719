// Filling every cache of a device: in which order, and where it stops.

#include "camera.h"

namespace koine::test {
namespace {

/// The eight caches, each a step that says that it was called and how.
class CacheAll : public CameraTest {
protected:
    CacheAll() {
        camera.steps.getCacheLogin = whole("login");
        camera.steps.getCacheCapability = whole("capability");
        camera.steps.getCacheConfigMedia = category("media");
        camera.steps.getCacheConfigVideo = category("video");
        camera.steps.getCacheConfigCamera = category("camera");
        camera.steps.getCacheConfigNotification = category("notification");
        camera.steps.getCacheConfigMisc = category("misc");
        camera.steps.getCacheConfigVideoAnalytics = category("analytics");
    }

    int called(const std::string& name, unsigned int uid, int refresh, bool bare) {
        EXPECT_EQ(uid, 31U) << name;
        EXPECT_EQ(refresh, 0) << name;
        EXPECT_TRUE(bare) << name << ": no key, no URL, no answer";
        calls.push_back(name);
        return results.count(name) == 0 ? 1 : results[name];
    }
    Steps::WholeCache whole(const std::string& name) {
        return [this, name](unsigned int uid, int refresh, const char* text, char** answer) {
            return called(name, uid, refresh, text == nullptr && answer == nullptr);
        };
    }
    Steps::CategoryCache category(const std::string& name) {
        return
            [this, name](unsigned int uid, int refresh, const char* extra, const char* key, char** answer) {
                return called(name, uid, refresh, extra == nullptr && key == nullptr && answer == nullptr);
            };
    }

    const Lines order = {"login",  "capability",   "media", "video",
                         "camera", "notification", "misc",  "analytics"};
    Lines calls;
    std::map<std::string, int> results;
};

TEST_F(CacheAll, FillsTheEightInOrder) {
    EXPECT_EQ(camera.cacheCgi(31), 1);
    EXPECT_EQ(calls, order);
}

TEST_F(CacheAll, StopsAtTheFirstThatDoesNotGiveOne) {
    for (std::size_t failing = 0; failing < order.size(); ++failing)
        for (const int code : {-1, -8, 0, 2}) {
            calls.clear();
            results = {{order[failing], code}};
            EXPECT_EQ(camera.cacheCgi(31), code) << order[failing];
            EXPECT_EQ(calls, Lines(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(failing) + 1));
        }
}

TEST_F(CacheAll, AStreamOnlySourceIsNotAskedForAnything) {
    for (const char* vendor : {"ONLY_STREAM", "only_stream", "Only_Stream: rtsp"}) {
        camera.setVendor(vendor);
        EXPECT_EQ(camera.cacheCgi(31), 1) << vendor;
        EXPECT_EQ(calls, Lines{}) << vendor;
    }
    camera.setVendor("ONLY_STREA");
    EXPECT_EQ(camera.cacheCgi(31), 1);
    EXPECT_EQ(calls, order);
}

TEST_F(CameraTest, AWholeDeviceIsAskedEachLineOnce) {
    EXPECT_EQ(camera.cacheCgi(kUser), 1);
    EXPECT_EQ(camera.asked(), (Lines{kLoginLine, kCapabilityLine, kMediaLine, kVideoLine, kCameraLine,
                                     kNotificationLine, kMiscLine, kAnalyticsLine}));
    EXPECT_EQ(camera.cacheCgi(kUser), 1);
    EXPECT_EQ(camera.asked(), Lines{});
}

} // namespace
} // namespace koine::test
