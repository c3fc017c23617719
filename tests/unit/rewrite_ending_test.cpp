// How rewritten lines end: profile numbers, digital PTZ, sizes of every kind, memory that runs out.

#include "camera.h"
#include "tests/support/failing_allocations.h"

namespace koine::test {
namespace {

class RewriteEnding : public CameraTest {
protected:
    RewriteEnding() { camera.client().set_profile_id(2); }

    std::string whole(std::string line) {
        Answer rewritten;
        EXPECT_EQ(camera.recoveryUrl(kUser, line.data(), rewritten.out()), 1);
        return rewritten.text();
    }
};

// ---- Profile numbers

TEST_F(RewriteEnding, PtzLinesEndWithTheProfileInOneSpelling) {
    EXPECT_EQ(whole("PTZ.cgi?Pan=1&Tilt=2"), "PTZ.cgi?Pan=1&Tilt=2&Profile=2");
    EXPECT_EQ(whole("PTZ.cgi"), "PTZ.cgi&Profile=2");
}

TEST_F(RewriteEnding, SerialLinesEndWithTheProfileInTheOther) {
    EXPECT_EQ(whole("Serial.cgi?Data=ff"), "Serial.cgi?Data=ff&profile=2");
}

TEST_F(RewriteEnding, SerialComesBeforePtz) {
    EXPECT_EQ(whole("PTZ.cgi?x=Serial.cgi"), "PTZ.cgi?x=Serial.cgi&profile=2");
}

TEST_F(RewriteEnding, TheProfileIsThatOfTheStreamUser) {
    camera.client(55).set_profile_id(9);
    std::string line = "PTZ.cgi?Pan=1";
    Answer rewritten;
    EXPECT_EQ(camera.recoveryUrl(55, line.data(), rewritten.out()), 1);
    EXPECT_EQ(rewritten.text(), "PTZ.cgi?Pan=1&Profile=9");
    EXPECT_EQ(camera.recoveryUrl(56, line.data(), rewritten.out()), 1);
    EXPECT_EQ(rewritten.text(), "PTZ.cgi?Pan=1&Profile=0") << "a new stream user has none";
}

TEST_F(RewriteEnding, OtherLinesEndWithoutAProfile) {
    EXPECT_EQ(whole("Config.cgi?Camera.Detection.X=1"), "Config.cgi?Camera.Detection.X=1");
    EXPECT_EQ(whole("ptz.cgi?Camera.Detection.X=1"), "ptz.cgi?Camera.Detection.X=1");
}

// ---- Digital PTZ

TEST_F(RewriteEnding, DigitalPtzGoesToTheEnd) {
    EXPECT_EQ(whole("Config.cgi?action=set&Camera.DPTZ=ON&A=1"), "Config.cgi?action=set&A=1&Camera.DPTZ=ON");
}

TEST_F(RewriteEnding, DigitalPtzBelongsToTheProfileOnSomeDevices) {
    for (const int flag : {1, 2, -1}) {
        camera.setIsIDPTZ(flag);
        EXPECT_EQ(whole("Config.cgi?action=set&Camera.DPTZ=ON&A=1"),
                  "Config.cgi?action=set&A=1&Media.Profiles.Profile2.DPTZ=ON");
    }
}

TEST_F(RewriteEnding, TheLastDigitalPtzCounts) {
    EXPECT_EQ(whole("X&Camera.DPTZ=1&Camera.DPTZ=22&Camera.DPTZ=3 4"), "X&Camera.DPTZ=3");
}

TEST_F(RewriteEnding, ADigitalPtzWithoutAValueIsKeptWhereItIs) {
    EXPECT_EQ(whole("X&Camera.DPTZ=&A"), "X&Camera.DPTZ=&A");
    EXPECT_EQ(whole("X&Camera.DPTZ&A"), "X&Camera.DPTZ&A");
}

TEST_F(RewriteEnding, TheProfileKeyOfDigitalPtzIsKeptWhereItIs) {
    EXPECT_EQ(whole("X&Media.Profiles.Profile3.DPTZ=ON&A"), "X&Media.Profiles.Profile3.DPTZ=ON&A");
}

TEST_F(RewriteEnding, DigitalPtzComesAfterTheProfile) {
    EXPECT_EQ(whole("PTZ.cgi?a&Camera.DPTZ=1&b"), "PTZ.cgi?a&b&Profile=2&Camera.DPTZ=1");
}

// ---- Texts of every size

TEST_F(RewriteEnding, ALineThatLosesEverythingIsEmpty) {
    EXPECT_EQ(whole("Misc.External.DI.Port1.Active=OPEN"), "");
    EXPECT_EQ(whole("StreamSetup.Event.Quality=5"), "");
    EXPECT_EQ(whole("&StreamSetup.Event.Quality=5&\n&"), "");
}

TEST_F(RewriteEnding, ALineOfSeparatorsOnlyLosesThem) {
    EXPECT_EQ(whole("&&Camera.Detection.&\n"), "Camera.Detection.");
}

TEST_F(RewriteEnding, ALineMayGrowFarBeyondItsLength) {
    camera.setIsPellDevice(1);
    std::string line = "X";
    std::string expected = "X";
    for (int i = 0; i < 1000; ++i) {
        line += "&Misc.External.DI.Port1.Active=v";
        expected += "&Notification.Trigger.Alarm=v&Misc.External.DI.Port1.Active=v";
    }
    EXPECT_EQ(whole(line), expected);
}

TEST_F(RewriteEnding, LongValuesArriveWhole) {
    const std::string value(1U << 20U, 'v');
    EXPECT_EQ(whole("X&Camera.DPTZ=" + value), "X&Camera.DPTZ=" + value);
    EXPECT_EQ(whole("X&Misc.External.DI.Port1.Active=N.O." + value),
              "X&Notification.Trigger.Alarm=ENABLE&Misc.External.DI.Port1.Active=N.O." + value);
    const std::string key = "Media.Profiles.Profile1.VideoEncoderConfiguration.Encoding=";
    EXPECT_EQ(whole("X&" + key + value), "X&" + key + value);
}

TEST_F(RewriteEnding, HugeNumbersAreSafe) {
    camera.setIsPellDevice(1);
    const std::string line = whole("X&Camera.Detection.Sensitivity=99999999999999999999");
    EXPECT_EQ(line.rfind("X&Camera.Detection.LS=", 0), 0U);
    const std::string quality = whole("Media.Profiles.Profile1.VideoEncoderConfiguration.Quality=3e38");
    EXPECT_EQ(quality.rfind("Media.Profiles.Profile1.VideoEncoderConfiguration.Quality=3", 0), 0U);
    EXPECT_EQ(quality.substr(quality.size() - 3), ".00");
}

// ---- Memory

TEST_F(RewriteEnding, WithoutMemoryItSaysWhereAndStoresNothing) {
    std::string line = "PTZ.cgi?Pan=1";
    const int sourceLines[] = {3061, 3068, 3075};
    for (unsigned int n = 1; n <= 3; ++n) {
        forgetTraces();
        char* rewritten = nullptr;
        FailAllocations once(n);
        const int result = camera.recoveryUrl(kUser, line.data(), &rewritten);
        EXPECT_TRUE(once.stop()) << n;
        EXPECT_EQ(result, -8) << n;
        EXPECT_EQ(rewritten, nullptr) << n;
        EXPECT_TRUE(tracesAre({"???#" + std::to_string(sourceLines[n - 1]) + " recoveryUrl: err-8. \n"}));
    }
}

TEST_F(RewriteEnding, MemoryThatRunsOutAnywhereGivesMinusEight) {
    camera.setIsPellDevice(1);
    const std::string key = "&Misc.External.DI.Port1.Active=" + std::string(100, 'v');
    std::string line = "PTZ.cgi?a" + key + key + key + "&Camera.DPTZ=" + std::string(100, 'd');
    const unsigned int last = failEachAllocation([&](unsigned int n) {
        char* rewritten = nullptr;
        FailAllocations once(n);
        const int result = camera.recoveryUrl(kUser, line.data(), &rewritten);
        const bool failed = once.stop();
        EXPECT_EQ(result, failed ? -8 : 1) << n;
        EXPECT_EQ(rewritten == nullptr, failed) << n;
        std::free(rewritten);
        return failed;
    });
    EXPECT_GT(last, 3U);
    EXPECT_LT(last, 10000U);
}

} // namespace
} // namespace koine::test
