// Devices that mean harm, or are broken beyond it: every answer ends in a stated time and memory.

#include "bounds.h"
#include "camera.h"

namespace koine::test {
namespace {

constexpr std::size_t kMebi = std::size_t{1} << 20U;

std::string profile(int number, const std::string& suffix) {
    return "Media.Profiles.Profile" + std::to_string(number) + suffix;
}
std::string encoder(int number, const std::string& suffix) {
    return profile(number, ".VideoEncoderConfiguration" + suffix);
}

/// The same item again and again.
std::string repeated(const std::string& item, int times) {
    std::string text;
    text.reserve(item.size() * static_cast<std::size_t>(times));
    for (int i = 0; i < times; ++i)
        text += item;
    return text;
}

class HostileDevice : public CameraTest {
protected:
    CgiMap media() {
        Answer answer;
        EXPECT_EQ(camera.getCacheConfigMedia(kUser, 0, nullptr, nullptr, answer.out()), 1);
        return pairsOf(answer.text());
    }
    CgiMap capabilities() {
        Answer answer;
        EXPECT_EQ(camera.getCacheCapability(kUser, 0, nullptr, answer.out()), 1);
        return pairsOf(answer.text());
    }

    StandardError quiet; // profiles without a token are told there, one by one
};

// ---- Profiles

TEST_F(HostileDevice, TenThousandProfilesTakeSecondsNotMinutes) {
    camera.has(kCapabilityLine, "Device=IPCAM\nCapability.Video.Format=H264,MPEG4,MJPEG\n"
                                "Capability.Video.Resolution=CIF,VGA,720P\n");
    std::string pairs = "Media.Profiles.Count=10000\n";
    for (int n = 1; n <= 10000; ++n)
        pairs += encoder(n, ".token=T\n") + encoder(n, ".Quality=5\n");
    camera.has(kMediaLine, pairs);
    within(10.0, 256.0, [&] { EXPECT_EQ(camera.cacheCgi(kUser), 1); });
    EXPECT_EQ(camera.getProfileCount(), 10000);
    EXPECT_EQ(camera.getMediaProfile(), 1);
    CgiMap map = media();
    EXPECT_EQ(map[profile(1, ".Available")], "1");
    EXPECT_EQ(map[encoder(1000, ".H264.Resolution.NxN.Max")], "1280x720");
    EXPECT_EQ(map[encoder(10000, ".token")], "T") << "what was not looked at is kept as it came";
}

TEST_F(HostileDevice, ACountThatNoDeviceHasDoesNotHangTheHost) {
    camera.has(kMediaLine, "Media.Profiles.Count=2000000000\n");
    within(10.0, 64.0, [&] { EXPECT_EQ(camera.cacheCgi(kUser), 1); });
    EXPECT_EQ(camera.getProfileCount(), 2000000000) << "what the device claims is still told";
    EXPECT_LT(media().size(), 100000U);
}

TEST_F(HostileDevice, AStreamStartsAndAnswersInSpiteOfSuchACount) {
    camera.has(kMediaLine, "Media.Profiles.Count=2000000000\n" + profile(2, ".token=TWO\n"));
    const std::string set = "Stream.cgi?action=set&StreamSetup.Setting.Channel=1&StreamSetup.Stream=2";
    for (const std::string& line :
         {set, std::string("Stream.cgi?action=get"), std::string("Onvif.cgi?action=GetStreamUri")})
        within(10.0, 64.0, [&] { EXPECT_NE(camera.ask(line).text, "(null)") << line; });
}

TEST_F(HostileDevice, AsManyProfilesAsARealDeviceHasAreAllCompleted) {
    std::string pairs = "Media.Profiles.Count=1024\n";
    for (int n = 1; n <= 1024; ++n)
        pairs += encoder(n, ".token=T\n");
    camera.has(kMediaLine, pairs);
    CgiMap map = media();
    for (int n = 1; n <= 1024; ++n)
        ASSERT_EQ(map[profile(n, ".Available")], "1") << n;
    EXPECT_EQ(map[profile(1024, ".Tovlin.AllowLive")], "MOBILE");
}

TEST_F(HostileDevice, CountsBelowOneChangeNothing) {
    for (const char* count : {"0", "-1", "-2147483648", "-99999999999999999999", "", "many"}) {
        Camera one;
        one.has(kMediaLine, std::string("Media.Profiles.Count=") + count + "\n" + encoder(1, ".token=T\n"));
        within(1.0, 16.0, [&] { EXPECT_EQ(one.cacheCgi(kUser), 1); });
        EXPECT_LE(one.getProfileCount(), 0) << count;
        EXPECT_EQ(one.getMediaProfile(), 0) << count;
        Answer answer;
        EXPECT_EQ(one.getCacheConfigMedia(kUser, 0, nullptr, nullptr, answer.out()), 1);
        EXPECT_EQ(pairsOf(answer.text()).size(), 2U) << count;
    }
}

TEST_F(HostileDevice, ACountBeyondEveryNumberIsSurvived) {
    camera.has(kMediaLine, "Media.Profiles.Count=" + std::string(kMebi, '9') + "\n");
    within(10.0, 64.0, [&] { EXPECT_EQ(camera.cacheCgi(kUser), 1); });
    EXPECT_LT(media().size(), 100000U);
}

// ---- Lists

TEST_F(HostileDevice, AListOfAHundredThousandNamesIsConverted) {
    camera.has(kCapabilityLine,
               "Device=IPCAM\nCapability.Video.Resolution=" + repeated("CIF,", 100000) + "\n");
    within(5.0, 64.0, [&] { EXPECT_EQ(camera.getCacheCapability(kUser, 0, nullptr, nullptr), 1); });
    const std::string sizes = capabilities()["Capability.Video.Resolution.NxN"];
    EXPECT_EQ(sizes.size(), 100000 * std::string("352x240,").size() - 1);
    EXPECT_EQ(sizes.substr(sizes.size() - 16), ",352x240,352x240");
}

TEST_F(HostileDevice, AMachineWithAHundredThousandNamesIsConverted) {
    camera.has(kLoginLine, "Product-ID-Minor=NOCAP\n");
    camera.has(kMachineLine, "Video.Resolution=" + repeated("XX,CIF,", 50000) + "\n");
    within(5.0, 64.0, [&] { EXPECT_EQ(camera.getCacheCapability(kUser, 0, nullptr, nullptr), 1); });
    EXPECT_EQ(capabilities()["Capability.Video.Resolution.NxN"].size(),
              50000 * std::string("352x240, ").size() - 2);
}

TEST_F(HostileDevice, AProfileWithAHundredThousandSizesIsCompleted) {
    camera.has(kCapabilityLine, "Device=IPCAM\nCapability.Video.Format=H264,MPEG4\n");
    camera.has(kMediaLine, "Media.Profiles.Count=1\n" + encoder(1, ".token=T\n") +
                               encoder(1, ".H264.Resolution.NxN.List=") + "1920x1080," +
                               repeated("640x480,", 100000) + "320x240\n");
    within(10.0, 128.0, [&] { EXPECT_EQ(camera.cacheCgi(kUser), 1); });
    CgiMap map = media();
    EXPECT_EQ(map[encoder(1, ".H264.Resolution.NxN.Max")], "1920x1080");
    EXPECT_EQ(map[encoder(1, ".H264.Resolution.NxN.Min")], "320x240");
    EXPECT_EQ(map[encoder(1, ".H264.Resolution.NxN.List")].size(), 9 + 1 + 100000 * 8 + 7U);
}

TEST_F(HostileDevice, AnEncodingListOfAHundredThousandIsSurvived) {
    camera.has(kMediaLine, "Media.Profiles.Count=1\n" + encoder(1, ".token=T\n") +
                               encoder(1, ".EncodingList=") + repeated("H264,", 100000) + "\n");
    within(10.0, 128.0, [&] { EXPECT_EQ(camera.cacheCgi(kUser), 1); });
}

TEST_F(HostileDevice, FunctionsOfAMebibyteAreLookedThrough) {
    camera.has(kCapabilityLine, "Device=IPCAM\nCapability.Function=" + std::string(kMebi, ',') +
                                    repeated("A,", 100000) + "VA\n");
    within(5.0, 64.0, [&] { EXPECT_EQ(camera.getCacheCapability(kUser, 0, nullptr, nullptr), 1); });
    EXPECT_EQ(camera.getHasVA(), 1);
}

// ---- Texts

TEST_F(HostileDevice, KeysAndValuesOfAMebibyteArriveWhole) {
    const std::string key(kMebi, 'k');
    const std::string value(kMebi, 'v');
    camera.has(kLoginLine, key + "=" + value + "\n");
    camera.has(kVideoLine, "Video." + key + "=" + value + "\n");
    Answer answer;
    within(5.0, 128.0, [&] {
        EXPECT_EQ(camera.getCacheLogin(kUser, 0, nullptr, answer.out()), 1);
        EXPECT_EQ(pairsOf(answer.text())[key], value);
        EXPECT_EQ(camera.getCacheConfigVideo(kUser, 0, nullptr, "Video.*", answer.out()), 1);
        EXPECT_EQ(pairsOf(answer.text())["Video." + key], value);
        std::string line = "Config.cgi?action=get&category=Video." + key;
        EXPECT_EQ(camera.handleConfigGet(kUser, line.data(), answer.out()), 1);
        EXPECT_EQ(answer.text().size(), 5 + 6 + 2 * kMebi + 2);
    });
}

TEST_F(HostileDevice, OfDuplicateKeysTheLastCounts) {
    camera.has(kVideoLine, repeated("Video.A=old\n", 100000) + "Video.A=new\n");
    Answer answer;
    within(5.0, 64.0,
           [&] { EXPECT_EQ(camera.getCacheConfigVideo(kUser, 0, nullptr, nullptr, answer.out()), 1); });
    EXPECT_EQ(answer.text(), "0\nOK\nVideo.A=new\n");
}

TEST_F(HostileDevice, LinesThatAreNoPairsCostNothing) {
    camera.has(kCameraLine, repeated("nonsense\n", 500000) + "Camera.A=1\n");
    Answer answer;
    within(5.0, 64.0,
           [&] { EXPECT_EQ(camera.getCacheConfigCamera(kUser, 0, nullptr, nullptr, answer.out()), 1); });
    EXPECT_EQ(answer.text(), "0\nOK\nCamera.A=1\n");
}

TEST_F(HostileDevice, BytesThatAreNoTextAreKept) {
    std::string bytes;
    for (int byte = 1; byte < 256; ++byte)
        if (byte != '\n' && byte != '\r')
            bytes += static_cast<char>(byte);
    camera.has(kMiscLine, "Misc.A=" + bytes + "\n");
    Answer answer;
    EXPECT_EQ(camera.getCacheConfigMisc(kUser, 0, nullptr, "Misc.A", answer.out()), 1);
    EXPECT_EQ(answer.text(), "0\nOK\nMisc.A=" + bytes + "\n");
}

// ---- Numbers

TEST_F(HostileDevice, SizesBeyondEveryNumberAreSurvived) {
    const std::string sizes = "99999999999999999999x99999999999999999999,4294967296x4294967296,-5x-5,0x0,x,"
                              "640x,x480,-9223372036854775808x-9223372036854775808," +
                              std::string(100000, '9') + "x2,640x480";
    camera.has(kCapabilityLine,
               "Device=IPCAM\nCapability.Video.Format=H264\nCapability.Video.Resolution=" + sizes + "\n");
    camera.has(kMediaLine, "Media.Profiles.Count=1\n" + encoder(1, ".token=T\n") +
                               encoder(1, ".H264.Resolution.NxN.List=") + sizes + "\n");
    within(5.0, 64.0, [&] { EXPECT_EQ(camera.cacheCgi(kUser), 1); });
    const std::string kept = media()[encoder(1, ".H264.Resolution.NxN.List")];
    EXPECT_NE(kept.find("640x480"), std::string::npos) << "the one real size is kept";
}

TEST_F(HostileDevice, QualityBoundsBeyondEveryNumberAreSurvived) {
    for (const std::string& bound :
         {std::string("1e999"), std::string("-1e999"), std::string("nan"), std::string("inf"),
          std::string(kMebi, '9'), "0." + std::string(kMebi, '1')}) {
        Camera one;
        one.has(kCapabilityLine, "Device=IPCAM\nCapability.Video.Quality.Src.Max=" + bound +
                                     "\nCapability.Video.Quality.Src.Min=" + bound +
                                     "\nCapability.Video.Quality.Value.Step=" + bound + "\n");
        one.has(kMediaLine, "Media.Profiles.Count=1\n" + encoder(1, ".token=T\n") + encoder(1, ".Quality=") +
                                bound + "\n");
        within(5.0, 64.0, [&] { EXPECT_EQ(one.cacheCgi(kUser), 1); });
        std::string line = "Config.cgi?action=set&" + encoder(1, ".Quality=5");
        Answer rewritten;
        within(1.0, 16.0, [&] { EXPECT_EQ(one.recoveryUrl(kUser, line.data(), rewritten.out()), 1); });
        EXPECT_EQ(rewritten.text().rfind("Config.cgi?action=set&" + encoder(1, ".Quality="), 0), 0U);
        line = rewritten.text();
        within(1.0, 16.0, [&] { EXPECT_EQ(one.handleConfigSet(kUser, line.data()), 1); });
    }
}

// ---- Request lines as large as a host can make them

TEST_F(HostileDevice, ASetLineOfAHundredThousandItemsIsCarriedThrough) {
    EXPECT_EQ(camera.cacheCgi(kUser), 1);
    std::string line = "Config.cgi?action=set";
    for (int i = 0; i < 100000; ++i)
        line += "&Video.I" + std::to_string(i) + ".A=" + std::to_string(i);
    line += "&Camera.Detection.Sensitivity=1";
    Answer rewritten;
    within(5.0, 128.0, [&] {
        EXPECT_EQ(camera.checkCgiParameter(kUser, line.data()), 1);
        EXPECT_EQ(camera.recoveryUrl(kUser, line.data(), rewritten.out()), 1);
        EXPECT_EQ(rewritten.text(), line);
        EXPECT_EQ(camera.handleConfigSet(kUser, line.data()), 1);
    });
    Answer answer;
    EXPECT_EQ(camera.getCacheConfigVideo(kUser, 0, nullptr, "Video.I99999.A", answer.out()), 1);
    EXPECT_EQ(answer.text(), "0\nOK\nVideo.I99999.A=99999\n");
}

} // namespace
} // namespace koine::test
