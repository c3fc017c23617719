// The adjustments of the maker's own devices in the configuration categories.

#include "camera.h"

#include <utility>

namespace koine::test {
namespace {

class CategoryConversion : public CameraTest {
protected:
    int video(CgiMap& map) { return camera.BaseRequest::convertCgiVideo(&map); }
    int cameraKeys(CgiMap& map) { return camera.BaseRequest::convertCgiCamera(&map); }
    int misc(CgiMap& map, CgiMap& notification) {
        return camera.BaseRequest::convertCgiMisc(&map, &notification);
    }
    /// Every situation in which nothing may be adjusted.
    template <typename Check>
    void inEveryOtherSituation(Check check) {
        const std::pair<const char*, int> situations[] = {{"TOVLIN", 0}, {"TOVLIN", 2}, {"TOVLIN", -1},
                                                          {"OTHER", 1},  {"", 1},       {"TOVLI", 1},
                                                          {"XTOVLIN", 1}};
        for (const auto& [vendor, flag] : situations) {
            SCOPED_TRACE(std::string(vendor) + " " + std::to_string(flag));
            camera.setVendor(vendor);
            camera.setIsPellDevice(flag);
            check();
        }
    }
};

const CgiMap kPellRanges = {
    {"Video.I0.BrightnessMax", "5"},   {"Video.I0.BrightnessMin", "-5"}, {"Video.I0.ContrastMax", "5"},
    {"Video.I0.ContrastMin", "-5"},    {"Video.I0.SaturationMax", "5"},  {"Video.I0.SaturationMin", "-5"},
    {"Video.I0.HueMax", "5"},          {"Video.I0.HueMin", "-5"},        {"Video.I0.BrightnessDefault", "0"},
    {"Video.I0.ContrastDefault", "0"}, {"Video.I0.HueDefault", "0"},     {"Video.I0.SaturationDefault", "0"},
};

TEST_F(CategoryConversion, VideoGetsTheRangesOfThatDevice) {
    camera.isPell();
    CgiMap map = {{"Video.I0.Brightness", "1"}};
    EXPECT_EQ(video(map), 1);
    CgiMap expected = kPellRanges;
    expected["Video.I0.Brightness"] = "1";
    EXPECT_EQ(map, expected);
}

TEST_F(CategoryConversion, VideoRangesReplaceThoseOfTheDevice) {
    camera.isPell();
    CgiMap map;
    for (const auto& [key, value] : kPellRanges)
        map[key] = "99";
    EXPECT_EQ(video(map), 1);
    EXPECT_EQ(map, kPellRanges);
}

TEST_F(CategoryConversion, VideoIsLeftAloneInEveryOtherSituation) {
    inEveryOtherSituation([&] {
        const CgiMap before = {{"Video.I0.HueMax", "99"}};
        CgiMap map = before;
        EXPECT_EQ(video(map), 1);
        EXPECT_EQ(map, before);
    });
}

TEST_F(CategoryConversion, EmptyMapsStayEmpty) {
    camera.isPell();
    CgiMap map;
    CgiMap other = {{"Notification.Trigger.Alarm", "DISABLE"}};
    EXPECT_EQ(video(map), 1);
    EXPECT_EQ(cameraKeys(map), 1);
    EXPECT_EQ(misc(map, other), 1);
    EXPECT_TRUE(map.empty());
    EXPECT_EQ(other.size(), 1U);
}

TEST_F(CategoryConversion, TheVendorCountsInAnyCaseAndWithWhateverFollows) {
    for (const char* vendor : {"tovlin", "Tovlin", "TOVLIN-NetworkBk", "toVLInx"}) {
        camera.isPell();
        camera.setVendor(vendor);
        CgiMap videoKeys = {{"A", "1"}};
        CgiMap ownKeys = {{"Camera.Detection.LS", "4"}};
        CgiMap miscKeys = {{"A", "1"}};
        CgiMap notificationKeys = {{"Notification.Trigger.Alarm", "X"}};
        EXPECT_EQ(video(videoKeys), 1);
        EXPECT_EQ(cameraKeys(ownKeys), 1);
        EXPECT_EQ(misc(miscKeys, notificationKeys), 1);
        EXPECT_EQ(videoKeys["Video.I0.HueMax"], "5") << vendor;
        EXPECT_EQ(ownKeys["Camera.Detection.Sensitivity"], "4") << vendor;
        EXPECT_EQ(miscKeys["Misc.External.DI.Port1.Active"], "X") << vendor;
    }
}

// ---- Camera

TEST_F(CategoryConversion, DetectionSensitivityHasAnotherNameThere) {
    camera.isPell();
    CgiMap map = {{"Camera.Detection.LS", "7"}, {"Camera.Detection.Sensitivity", "1"}};
    EXPECT_EQ(cameraKeys(map), 1);
    EXPECT_EQ(map, (CgiMap{{"Camera.Detection.LS", "7"}, {"Camera.Detection.Sensitivity", "7"}}));
}

TEST_F(CategoryConversion, WithoutTheOtherNameBothAreEmpty) {
    camera.isPell();
    CgiMap map = {{"Camera.Detection.Sensitivity", "1"}};
    EXPECT_EQ(cameraKeys(map), 1);
    EXPECT_EQ(map, (CgiMap{{"Camera.Detection.LS", ""}, {"Camera.Detection.Sensitivity", ""}}));
}

TEST_F(CategoryConversion, CameraIsLeftAloneInEveryOtherSituation) {
    inEveryOtherSituation([&] {
        const CgiMap before = {{"Camera.Detection.LS", "7"}};
        CgiMap map = before;
        EXPECT_EQ(cameraKeys(map), 1);
        EXPECT_EQ(map, before);
    });
}

// ---- Misc

TEST_F(CategoryConversion, TheAlarmInputFollowsTheTriggerThere) {
    camera.isPell();
    CgiMap map = {{"Misc.External.DI.Port1.Active", "N.O."}};
    CgiMap notification = {{"Notification.Trigger.Alarm", "anything"}};
    EXPECT_EQ(misc(map, notification), 1);
    EXPECT_EQ(map["Misc.External.DI.Port1.Active"], "anything");
    EXPECT_EQ(notification.size(), 1U);
}

TEST_F(CategoryConversion, AnAbsentTriggerEmptiesTheAlarmInputThere) {
    camera.isPell();
    CgiMap map = {{"Misc.External.DI.Port1.Active", "N.O."}};
    CgiMap notification = {{"Notification.Other", "1"}};
    EXPECT_EQ(misc(map, notification), 1);
    EXPECT_EQ(map["Misc.External.DI.Port1.Active"], "");
    EXPECT_EQ(notification.count("Notification.Trigger.Alarm"), 1U) << "read with an inserting look-up";
}

TEST_F(CategoryConversion, ElsewhereOnlyADisabledTriggerCounts) {
    for (const int flag : {0, 2, -1}) {
        camera.isPell(flag);
        CgiMap notification = {{"Notification.Trigger.Alarm", "DISABLE"}};
        CgiMap map = {{"Misc.External.DI.Port1.Active", "N.O."}};
        EXPECT_EQ(misc(map, notification), 1);
        EXPECT_EQ(map["Misc.External.DI.Port1.Active"], "DISABLE") << flag;
        for (const char* other : {"disable", "DISABLED", "ENABLE", "", " DISABLE"}) {
            notification["Notification.Trigger.Alarm"] = other;
            map["Misc.External.DI.Port1.Active"] = "N.O.";
            EXPECT_EQ(misc(map, notification), 1);
            EXPECT_EQ(map["Misc.External.DI.Port1.Active"], "N.O.") << other;
        }
    }
}

TEST_F(CategoryConversion, ADisabledTriggerCreatesTheAlarmInput) {
    camera.isPell(0);
    CgiMap map = {{"Other", "1"}};
    CgiMap notification = {{"Notification.Trigger.Alarm", "DISABLE"}};
    EXPECT_EQ(misc(map, notification), 1);
    EXPECT_EQ(map["Misc.External.DI.Port1.Active"], "DISABLE");
}

TEST_F(CategoryConversion, AnEmptyNotificationLeavesMiscAlone) {
    camera.isPell();
    CgiMap map = {{"Misc.External.DI.Port1.Active", "N.O."}};
    CgiMap notification;
    EXPECT_EQ(misc(map, notification), 1);
    EXPECT_EQ(map["Misc.External.DI.Port1.Active"], "N.O.");
    EXPECT_TRUE(notification.empty());
}

TEST_F(CategoryConversion, MiscOfOtherVendorsIsLeftAlone) {
    for (const char* vendor : {"", "OTHER", "TOVLI"}) {
        camera.isPell();
        camera.setVendor(vendor);
        CgiMap map = {{"Misc.External.DI.Port1.Active", "N.O."}};
        CgiMap notification = {{"Notification.Trigger.Alarm", "DISABLE"}};
        EXPECT_EQ(misc(map, notification), 1);
        EXPECT_EQ(map["Misc.External.DI.Port1.Active"], "N.O.") << vendor;
    }
}

// ---- Reached through the caches

TEST_F(CategoryConversion, TheCachesAnswerAdjusted) {
    camera.setVendor("tovlin");
    camera.has(kLoginLine, "Product-ID=PELL-3\n");
    camera.has(kCameraLine, "Camera.Detection.LS=6\n");
    camera.has(kNotificationLine, "Notification.Trigger.Alarm=ENABLE\n");
    Answer answer;
    EXPECT_EQ(camera.getCacheConfigVideo(kUser, 0, nullptr, "Video.I0.HueMin", answer.out()), 1);
    EXPECT_EQ(answer.text(), "0\nOK\nVideo.I0.HueMin=-5\n");
    EXPECT_EQ(camera.getCacheConfigCamera(kUser, 0, nullptr, "*.Sensitivity", answer.out()), 1);
    EXPECT_EQ(answer.text(), "0\nOK\nCamera.Detection.Sensitivity=6\n");
    EXPECT_EQ(camera.getCacheConfigMisc(kUser, 0, nullptr, nullptr, answer.out()), 1);
    EXPECT_EQ(answer.text(), "0\nOK\nMisc.External.DI.Port1.Active=ENABLE\n");
}

} // namespace
} // namespace koine::test
