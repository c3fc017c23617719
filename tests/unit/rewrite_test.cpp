// Request lines in the device's dialect: which lines are rewritten, and how each item is.

#include "camera.h"
#include "tests/support/failing_allocations.h"

namespace koine::test {
namespace {

const std::string kLead = "Config.cgi?action=set";

class Rewrite : public CameraTest {
protected:
    static std::string encoder(const std::string& profile, const std::string& suffix) {
        return "Media.Profiles.Profile" + profile + ".VideoEncoderConfiguration" + suffix;
    }

    /// The rewritten line, "(null)" when it stays as it is.
    std::string whole(const std::string& text) {
        std::string line = text;
        Answer rewritten;
        EXPECT_EQ(camera.recoveryUrl(kUser, line.data(), rewritten.out()), 1);
        EXPECT_EQ(line, text) << "the host's line stays as it is";
        return rewritten.text();
    }
    /// What becomes of the items after the leading token, which must be kept.
    std::string items(const std::string& text) {
        const std::string line = whole(kLead + "&" + text);
        if (line == kLead)
            return "";
        EXPECT_EQ(line.substr(0, kLead.size() + 1), kLead + "&");
        return line.substr(kLead.size() + 1);
    }

    StreamIDClient& client = camera.client();
};

// ---- Which lines

TEST_F(Rewrite, LinesWithoutATriggerStayAsTheyAre) {
    for (const char* line :
         {"Login.cgi", "", "Config.cgi?action=get&category=Video.*",
          "Config.cgi?action=set&Media.Profiles.Profile1.Name=x", "Config.cgi?action=set&X.DPTZ=1",
          "Config.cgi?action=set&Camera.Title=x", "ptz.cgi?Pan=1", "camera.detection.x=1"})
        EXPECT_EQ(whole(line), "(null)") << line;
}

TEST_F(Rewrite, EachTriggerMakesALineRewritten) {
    for (const std::string line :
         {"Camera.Detection.", "Misc.External.DI.Port1.Active", "VideoEncoderConfiguration",
          "StreamSetup.Event", "Camera.DPTZ", "Media.Profiles.X&.DPTZ", ".DPTZ&Media.Profiles."})
        EXPECT_EQ(whole(line), line);
}

TEST_F(Rewrite, AnAnswerPlaceIsLeftAloneWhenNothingApplies) {
    std::string line = "Login.cgi";
    char before[] = "before";
    char* rewritten = before;
    EXPECT_EQ(camera.recoveryUrl(kUser, line.data(), &rewritten), 1);
    EXPECT_EQ(rewritten, before);
}

TEST_F(Rewrite, ARecorderGetsEveryLineAsItIs) {
    camera.setIsTovlinNVRDevice(1);
    camera.setIsPellDevice(1);
    for (const char* line : {"Camera.Detection.Sensitivity=3", "PTZ.cgi?Pan=1", "Serial.cgi?x",
                             "Camera.DPTZ=1", "Misc.External.DI.Port1.Active=OPEN"})
        EXPECT_EQ(whole(line), "(null)") << line;
}

TEST_F(Rewrite, OnlyOneMeansRecorder) {
    for (const int flag : {0, 2, -1}) {
        camera.setIsTovlinNVRDevice(flag);
        EXPECT_EQ(items("Misc.External.DI.Port1.Active=OPEN"), "") << flag;
    }
}

TEST_F(Rewrite, OtherItemsAreKeptInOrder) {
    EXPECT_EQ(items("A=1&Camera.Detection.X=2&&B=3"), "A=1&Camera.Detection.X=2&B=3");
    EXPECT_EQ(items("A=1\nCamera.Detection.X=2\n"), "A=1&Camera.Detection.X=2") << "line ends separate too";
    EXPECT_EQ(items("A=a b,c;d&Camera.Detection.=%41"), "A=a b,c;d&Camera.Detection.=%41");
}

// ---- Detection

TEST_F(Rewrite, DetectionSensitivityHasAnotherNameOnOneKindOfDevice) {
    camera.setIsPellDevice(1);
    EXPECT_EQ(items("Camera.Detection.Sensitivity=3"), "Camera.Detection.LS=3");
    EXPECT_EQ(items("Camera.Detection.Sensitivity= -7rest"), "Camera.Detection.LS=-7");
    camera.setIsPellDevice(2);
    EXPECT_EQ(items("Camera.Detection.Sensitivity=3"), "Camera.Detection.LS=3") << "any non-zero flag";
}

TEST_F(Rewrite, DetectionSensitivityIsKeptOnOthers) {
    EXPECT_EQ(items("Camera.Detection.Sensitivity=3"), "Camera.Detection.Sensitivity=3");
    EXPECT_EQ(items("Camera.Detection.Sensitivity= 03rest"), "Camera.Detection.Sensitivity= 03rest");
}

TEST_F(Rewrite, ADetectionSensitivityThatIsNoNumberIsKept) {
    camera.setIsPellDevice(1);
    for (const char* item : {"Camera.Detection.Sensitivity=high", "Camera.Detection.Sensitivity=",
                             "Camera.Detection.Sensitivity", "XCamera.Detection.Sensitivity=3"})
        EXPECT_EQ(items(item), item);
}

// ---- Alarm input

TEST_F(Rewrite, TheAlarmInputOfOneKindOfDeviceIsSaidTwice) {
    camera.setIsPellDevice(1);
    for (const char* value : {"N.O.", "DISABLE", "OPEN", "x"})
        EXPECT_EQ(items(std::string("Misc.External.DI.Port1.Active=") + value),
                  std::string("Notification.Trigger.Alarm=") + value +
                      "&Misc.External.DI.Port1.Active=" + value);
}

TEST_F(Rewrite, TheAlarmInputOfOthersDependsOnItsValue) {
    const std::pair<const char*, const char*> rows[] = {
        {"DISABLE", "Notification.Trigger.Alarm=DISABLE"},
        {"Disable", "Notification.Trigger.Alarm=Disable"},
        {"DISABLEDxyz", "Notification.Trigger.Alarm=DISABLEDxyz"},
        {"N.O.", "Notification.Trigger.Alarm=ENABLE&Misc.External.DI.Port1.Active=N.O."},
        {"n.c.", "Notification.Trigger.Alarm=ENABLE&Misc.External.DI.Port1.Active=n.c."},
        {"N.C.now", "Notification.Trigger.Alarm=ENABLE&Misc.External.DI.Port1.Active=N.C.now"},
        {"OPEN", ""},
        {"DISABL", ""},
        {"N.O", ""},
        {"NxO.", ""},
    };
    for (const auto& [value, expected] : rows)
        EXPECT_EQ(items(std::string("Misc.External.DI.Port1.Active=") + value), expected) << value;
}

TEST_F(Rewrite, AnAlarmInputWithoutAValueIsKept) {
    EXPECT_EQ(items("Misc.External.DI.Port1.Active="), "Misc.External.DI.Port1.Active=");
    EXPECT_EQ(items("Misc.External.DI.Port1.Active"), "Misc.External.DI.Port1.Active");
}

TEST_F(Rewrite, AWordEndsAtABlank) {
    EXPECT_EQ(items("Misc.External.DI.Port1.Active= N.O. now"),
              "Notification.Trigger.Alarm=ENABLE&Misc.External.DI.Port1.Active=N.O.");
    EXPECT_EQ(items(encoder("1", ".Encoding=H264 high")), encoder("1", ".Encoding=H264"));
}

// ---- Encoder

TEST_F(Rewrite, AnEncodingIsBuiltAnew) {
    EXPECT_EQ(items(encoder("01", ".Encoding= JPEG")), encoder("1", ".Encoding=JPEG"));
    EXPECT_EQ(items(encoder("-3", ".Encoding=x")), encoder("-3", ".Encoding=x"));
}

TEST_F(Rewrite, AnEncodingIsNeverTakenForDigitalPtz) {
    camera.setIsIDPTZ(1);
    EXPECT_EQ(items(encoder("4", ".Encoding=H264")), encoder("4", ".Encoding=H264"));
}

TEST_F(Rewrite, AQualityIsConvertedToTheScaleOfTheDevice) {
    EXPECT_EQ(items(encoder("1", ".Quality=5")), encoder("1", ".Quality=0.50"));
    EXPECT_EQ(items(encoder("02", ".Quality=3.4rest")), encoder("2", ".Quality=0.34"));
    camera.setSettingQualitySrcMin(20.0F);
    camera.setSettingQualitySrcMax(100.0F);
    EXPECT_EQ(items(encoder("1", ".Quality=5")), encoder("1", ".Quality=60.00"));
    EXPECT_EQ(items(encoder("1", ".Quality=-1")), encoder("1", ".Quality=12.00"));
}

TEST_F(Rewrite, AQualityIsConvertedInSinglePrecision) {
    const std::pair<const char*, const char*> rows[] = {
        {"0.35", "0.04"}, {"0.95", "0.09"}, {"1.15", "0.12"}, {"3.05", "0.31"}};
    for (const auto& [host, onDevice] : rows)
        EXPECT_EQ(items(encoder("1", ".Quality=") + host), encoder("1", ".Quality=") + onDevice);
}

/// Rounded once after both operations, the last digit of each would be another.
TEST_F(Rewrite, AQualityIsRoundedAfterEachOperation) {
    struct Row {
        float lowest;
        const char* host;
        const char* onDevice;
    };
    const Row rows[] = {{0.5F, "3.15", "0.82"}, {1.0F, "1.85", "1.18"}, {2.0F, "2.45", "2.24"},
                        {4.0F, "3.65", "4.36"}, {8.0F, "6.05", "8.60"}, {10.0F, "6.05", "10.60"}};
    for (const Row& row : rows) {
        camera.setSettingQualitySrcMin(row.lowest);
        camera.setSettingQualitySrcMax(row.lowest + 1.0F);
        EXPECT_EQ(items(encoder("1", ".Quality=") + row.host), encoder("1", ".Quality=") + row.onDevice)
            << row.lowest;
    }
}

TEST_F(Rewrite, OtherEncoderItemsAreKept) {
    for (const std::string& item :
         {encoder("1", ".Quality=best"), encoder("1", ".Quality.Max=3"), encoder("x", ".Quality=3"),
          encoder("1", ".Encoding="), encoder("1", ".Resolution.Width=640"), encoder("", ".Encoding=H264"),
          encoder("1", ".RateControl.FrameRateLimit=0")})
        EXPECT_EQ(items(item), item);
}

// ---- Events

TEST_F(Rewrite, AnEventQualityIsAWordForTheMaker) {
    const std::pair<const char*, const char*> rows[] = {
        {"0", "BASIC"},  {"2", "BASIC"},  {"2.5", "NORMAL"}, {"5", "NORMAL"}, {"5.01", "HIGH"},
        {"7", "HIGH"},   {"7.5", "BEST"}, {"10", "BEST"},    {"-1", "BEST"},  {"1e9", "BEST"},
        {"nan", "BEST"}, {"-0", "BASIC"}, {"2x", "BASIC"},
    };
    for (const char* vendor : {"TOVLIN", "tovlin-x"}) {
        camera.setVendor(vendor);
        for (const auto& [value, word] : rows)
            EXPECT_EQ(items(std::string("StreamSetup.Event.Quality=") + value),
                      std::string("StreamSetup.Event.Quality=") + word)
                << value;
    }
}

TEST_F(Rewrite, AnEventQualityIsDroppedForOthers) {
    for (const char* vendor : {"", "OTHER", "TOVLI", "XTOVLIN"}) {
        camera.setVendor(vendor);
        EXPECT_EQ(items("StreamSetup.Event.Quality=5&A=1"), "A=1") << vendor;
        EXPECT_EQ(items("StreamSetup.Event.Quality=best&A=1"), "StreamSetup.Event.Quality=best&A=1")
            << "no number, no event quality";
    }
}

TEST_F(Rewrite, AnEventResolutionIsNamedWhenTheDeviceHasTheSize) {
    camera.has(kCapabilityLine, "Capability.Video.Resolution.NxN=CIF,640x480\n");
    EXPECT_EQ(camera.getCacheCapability(kUser, 0, nullptr, nullptr), 1);
    EXPECT_EQ(items("StreamSetup.Event.Resolution=640x480"),
              "StreamSetup.Event.Resolution=640x480&StreamSetup.Event.Resolution_NxN=640x480");
    EXPECT_EQ(items("StreamSetup.Event.Resolution=0800x0600rest"),
              "StreamSetup.Event.Resolution_NxN=800x600");
}

TEST_F(Rewrite, TheNameOfAnEventResolutionComesFromTheCapabilities) {
    camera.has(kCapabilityLine, "Capability.Video.Resolution.NxN=a,b\n");
    EXPECT_EQ(camera.getCacheCapability(kUser, 0, nullptr, nullptr), 1);
    int result = 1;
    platform().hooks.getResolutionStrByValue2 = [&](const char* list, int width, int height, char* name,
                                                    unsigned int size) {
        EXPECT_STREQ(list, "a,b");
        EXPECT_EQ(width, 4);
        EXPECT_EQ(height, 3);
        EXPECT_GE(size, 16U);
        std::string("NAME").copy(name, size);
        return result;
    };
    EXPECT_EQ(items("StreamSetup.Event.Resolution=4x3"),
              "StreamSetup.Event.Resolution=NAME&StreamSetup.Event.Resolution_NxN=4x3");
    for (const int other : {0, 2, -1}) {
        result = other;
        EXPECT_EQ(items("StreamSetup.Event.Resolution=4x3"), "StreamSetup.Event.Resolution_NxN=4x3") << other;
    }
}

TEST_F(Rewrite, WithoutCapabilitiesTheListIsEmptyAndStaysInTheCache) {
    std::string seen = "nothing";
    platform().hooks.getResolutionStrByValue2 = [&](const char* list, int, int, char*, unsigned int) {
        seen = list;
        return 0;
    };
    EXPECT_EQ(items("StreamSetup.Event.Resolution=4x3"), "StreamSetup.Event.Resolution_NxN=4x3");
    EXPECT_EQ(seen, "");
    EXPECT_EQ(camera.asked(), std::vector<std::string>{}) << "the device is not asked for it";
    camera.converts = false;
    Answer answer;
    EXPECT_EQ(camera.getCacheCapability(kUser, 0, nullptr, answer.out()), 1);
    EXPECT_EQ(pairsOf(answer.text()).count("Capability.Video.Resolution.NxN"), 1U);
}

TEST_F(Rewrite, AnEventResolutionNeedsBothNumbers) {
    for (const char* item : {"StreamSetup.Event.Resolution=640", "StreamSetup.Event.Resolution=640x",
                             "StreamSetup.Event.Resolution=x480", "StreamSetup.Event.Resolution=640X480",
                             "StreamSetup.Event.Resolution=640 x480"})
        EXPECT_EQ(items(item), item);
}

} // namespace
} // namespace koine::test
