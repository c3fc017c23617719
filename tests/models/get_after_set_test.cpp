// Settings that are set over HTTP, read back through the library and held by the device; and settings that
// the device or the library refuses.

#include "bench.h"

#include "simulator/device_model.h"

#include <algorithm>
#include <array>

namespace koine::test {
namespace {

constexpr std::array<const char*, 6> kCategories = {"Media.*",        "Video.*", "Camera.*",
                                                    "Notification.*", "Misc.*",  "VideoAnalytics.*"};

// Keys with a meaning of their own, which tests below or elsewhere set: sizes go by lists, encodings by
// lists, quality by a scale, and some keys are rewritten on their way to the device.
constexpr std::array<const char*, 9> kSpecialKeys = {
    "Resolution",           "Encoding",       "Quality",
    "Media.Profiles.Count", "FrameRateRange", "Detection.Sensitivity",
    "Camera.DPTZ",          "Port1.Active",   "List"};

bool isSpecial(const std::string& key) {
    return std::any_of(kSpecialKeys.begin(), kSpecialKeys.end(),
                       [&key](const char* part) { return key.find(part) != std::string::npos; });
}

bool isNumber(const std::string& text) {
    return !text.empty() && text.find_first_not_of("0123456789.") == std::string::npos;
}

/// Another value of the same kind.
std::string otherThan(const std::string& value) {
    if (isNumber(value))
        return value == "7" ? "8" : "7";
    return value == "Other" ? "Another" : "Other";
}

std::string setLine(const std::string& key, const std::string& value) {
    return std::string(kConfigSet) + "&" + key + "=" + value;
}

/// Keys that the device itself holds, with their values; not those that the library adds.
CgiMap ownKeys(Bench& bench, const std::string& category) {
    CgiMap own;
    for (const auto& [key, value] : bench.ask(getLine(category)).values())
        if (!isSpecial(key) && bench.device().value(key) == value && !value.empty())
            own.emplace(key, value);
    return own;
}

/// Lines that set every key to another value, a handful of keys each.
Lines setLines(const CgiMap& keys) {
    constexpr int kKeysOfALine = 8;
    Lines lines;
    int count = 0;
    for (const auto& [key, value] : keys) {
        if (count++ % kKeysOfALine == 0)
            lines.emplace_back(kConfigSet);
        lines.back().append("&").append(key).append("=").append(otherThan(value));
    }
    return lines;
}

/// What the library tells of every category. The first conversion of the profiles may still leave blanks in
/// a size, so it is asked for twice.
std::string everything(Bench& bench) {
    bench.ask(getLine("Media.*"));
    std::string text;
    for (const char* category : kCategories)
        text += bench.ask(getLine(category)).text;
    return text;
}

using GetAfterSet = OnEveryModel;

TEST_P(GetAfterSet, everyKeyOfEveryCategory) {
    Bench bench(model());
    for (const char* category : kCategories) {
        const CgiMap keys = ownKeys(bench, category);
        bench.takeLines();
        const Lines lines = setLines(keys);
        for (const std::string& line : lines)
            ASSERT_TRUE(bench.ask(line).ok()) << line;
        EXPECT_EQ(bench.takeLines(), lines);
        const CgiMap cached = bench.ask(getLine(category)).values();
        for (const auto& [key, value] : keys) {
            EXPECT_EQ(cached.at(key), otherThan(value)) << key;
            EXPECT_EQ(bench.device().value(key), otherThan(value)) << key;
        }
    }
}

/// How many categories of each model can be set at all: nobody notices a loop over nothing.
TEST_P(GetAfterSet, findsKeysInEveryCategoryThatTheModelHas) {
    Bench bench(model());
    for (const char* category : {"Video.*", "Camera.*", "Notification.*", "Misc.*"})
        EXPECT_GE(ownKeys(bench, category).size(), 2U) << category;
    EXPECT_EQ(ownKeys(bench, "Media.*").empty(), model() == "noprofiles");
    EXPECT_EQ(ownKeys(bench, "VideoAnalytics.*").empty(), model() != "analytics");
}

TEST_P(GetAfterSet, aSecondObjectReadsTheSameFromTheDevice) {
    Bench bench(model());
    ASSERT_TRUE(bench.ask(getLine("Camera.*")).ok());
    ASSERT_TRUE(bench.ask(setLine("Camera.Name", "Gate%20north")).ok());
    EXPECT_EQ(bench.device().value("Camera.Name"), "Gate north");
    const boost::shared_ptr<DialectRequest> other = openDevice(bench.device().url());
    EXPECT_EQ(request(*other, 1, getLine("Camera.Name")).values().at("Camera.Name"), "Gate north");
}

TEST_P(GetAfterSet, severalCategoriesInOneSetLine) {
    Bench bench(model());
    for (const char* category : {"Video.*", "Camera.*", "Notification.*", "Misc.*"})
        ASSERT_TRUE(bench.ask(getLine(category)).ok());
    bench.takeLines();
    const std::string line = std::string(kConfigSet) +
                             "&Video.I0.Contrast=7&Camera.Name=Yard&Notification.Email.Enabled=YES&"
                             "Misc.LED.Power=OFF";
    ASSERT_TRUE(bench.ask(line).ok());
    EXPECT_EQ(bench.takeLines(), Lines{line});
    const Answer answer = bench.ask(getLine("Video.I0.Contrast,Camera.Name,Notification.Email.Enabled,"
                                            "Misc.LED.Power"));
    EXPECT_EQ(answer.text, "0\nOK\nVideo.I0.Contrast=7\n\n0\nOK\nCamera.Name=Yard\n\n0\nOK\n"
                           "Notification.Email.Enabled=YES\n\n0\nOK\nMisc.LED.Power=OFF\n");
    EXPECT_EQ(bench.takeLines(), Lines());
}

TEST_P(GetAfterSet, detectionAndAlarmInputGoInTheDevicesWords) {
    Bench bench(model());
    ASSERT_TRUE(bench.ask(getLine("Camera.*,Notification.*,Misc.*")).ok());
    bench.takeLines();
    const bool isPell = model() == "pell";
    EXPECT_TRUE(bench.ask(setLine("Camera.Detection.Sensitivity", "4")).ok());
    EXPECT_TRUE(bench.ask(setLine("Misc.External.DI.Port1.Active", "n.o.")).ok());
    const std::string alarm = "&Notification.Trigger.Alarm=" + std::string(isPell ? "n.o." : "ENABLE");
    EXPECT_EQ(bench.takeLines(),
              (Lines{setLine(isPell ? "Camera.Detection.LS" : "Camera.Detection.Sensitivity", "4"),
                     kConfigSet + alarm + "&Misc.External.DI.Port1.Active=n.o."}));
    EXPECT_EQ(bench.device().value(isPell ? "Camera.Detection.LS" : "Camera.Detection.Sensitivity"), "4");
    EXPECT_EQ(bench.ask(getLine("Misc.External.DI.Port1.Active")).text,
              "0\nOK\nMisc.External.DI.Port1.Active=n.o.\n");
    EXPECT_EQ(bench.ask(getLine("Notification.Trigger.Alarm")).text,
              isPell ? "0\nOK\nNotification.Trigger.Alarm=n.o.\n"
                     : "0\nOK\nNotification.Trigger.Alarm=ENABLE\n");
}

// Where a profile has a digital PTZ of its own, the profile is that of the user's stream.
TEST_P(GetAfterSet, digitalPtzAndProfileNumbersFollowTheStream) {
    Bench bench(model());
    ASSERT_TRUE(bench
                    .ask("Stream.cgi?action=set&StreamSetup.Stream=RTP-Unicast&ProfileMode=ONLY_STATUS"
                         "&StreamSetup.Transport.Protocol=TCP")
                    .ok());
    bench.takeLines();
    const std::string profile = model() == "noprofiles" ? "0" : "1";
    const bool isOfProfile = model() == "dome" || model() == "analytics";
    const std::string key = isOfProfile ? "Media.Profiles.Profile1.DPTZ" : "Camera.DPTZ";
    EXPECT_TRUE(bench.ask(setLine("Camera.DPTZ", "ENABLE")).ok());
    bench.ask("PTZ.cgi?action=set&Move=left");
    bench.ask("Serial.cgi?action=set&Data=00");
    Lines lines = bench.takeLines();
    for (std::string& line : lines) // some models have neither CGI
        line = line.substr(line.compare(0, 4, "404 ") == 0 ? 4 : 0);
    EXPECT_EQ(lines, (Lines{setLine(key, "ENABLE"), "PTZ.cgi?action=set&Move=left&Profile=" + profile,
                            "Serial.cgi?action=set&Data=00&profile=" + profile}));
    EXPECT_EQ(bench.device().value(key), "ENABLE");
    EXPECT_EQ(bench.ask(getLine(key)).text, "0\nOK\n" + key + "=ENABLE\n");
}

struct Refused {
    const char* what;
    const char* item;
};

// Devices without a size list of their own take what the capabilities say, or anything.
constexpr std::array<Refused, 6> kRefusedSettings = {{
    {"a bit rate that is no number", "Media.Profiles.Profile1.VideoEncoderConfiguration.RateControl."
                                     "BitrateLimit=fast"},
    {"a brightness that is no number", "Video.I0.Brightness=bright"},
    {"a size that is not in the list", "Video.I0.H264.Resolution=12x34"},
    {"a profile that does not exist", "Media.Profiles.Profile9.VideoEncoderConfiguration.Quality=5"},
    {"a key of no category", "Network.Address=192.0.2.9"},
    {"an empty number", "Video.I0.Brightness="},
}};

TEST_P(GetAfterSet, refusedSettingsChangeNothing) {
    Bench bench(model());
    const std::string before = everything(bench);
    for (const Refused& refused : kRefusedSettings) {
        bench.takeLines();
        const std::string line = std::string(kConfigSet) + "&Camera.Name=Refused&" + refused.item;
        const Answer answer = bench.ask(line);
        EXPECT_EQ(bench.takeLines().size(), 1U) << refused.what;
        EXPECT_EQ(answer.result, -11) << refused.what;
        EXPECT_EQ(answer.text, kUnknownParameter) << refused.what;
        EXPECT_NE(bench.device().value("Camera.Name"), "Refused") << refused.what;
    }
    EXPECT_EQ(changedLines(before, everything(bench)), "");
}

TEST_P(GetAfterSet, aSizeOutsideTheProfilesListIsRefused) {
    if (model() == "noprofiles" || model() == "minimal" || model() == "nocapability")
        return; // they tell no size list to hold a size against
    Bench bench(model());
    const std::string before = everything(bench);
    const std::string width = bench.device().value("Media.Profiles.Profile1.VideoEncoderConfiguration."
                                                   "Resolution.Width");
    const Answer answer =
        bench.ask(setLine("Media.Profiles.Profile1.VideoEncoderConfiguration.Resolution.Width", "333"));
    EXPECT_EQ(answer.result, -11);
    EXPECT_EQ(answer.text, kUnknownParameter);
    EXPECT_EQ(bench.device().value("Media.Profiles.Profile1.VideoEncoderConfiguration.Resolution.Width"),
              width);
    EXPECT_EQ(changedLines(before, everything(bench)), "");
}

// The library refuses this one itself.
TEST_P(GetAfterSet, aFrameRateBelowOneNeverReachesTheDevice) {
    Bench bench(model());
    const std::string before = everything(bench);
    bench.takeLines();
    const Answer answer = bench.ask(
        setLine("Media.Profiles.Profile1.VideoEncoderConfiguration.RateControl.FrameRateLimit", "0"));
    EXPECT_EQ(answer.result, kRefused);
    EXPECT_EQ(answer.text, kUnknownParameter);
    EXPECT_EQ(bench.takeLines(), Lines());
    EXPECT_EQ(changedLines(before, everything(bench)), "");
}

INSTANTIATE_TEST_SUITE_P(Models, GetAfterSet, testing::ValuesIn(sim::modelNames()), modelOf);

} // namespace
} // namespace koine::test
