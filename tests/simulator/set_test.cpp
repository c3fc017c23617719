#include "raw_client.h"
#include "test_device.h"

#include <gtest/gtest.h>

namespace koine::test {
namespace {

using sim::SimulatedDevice;

constexpr const char* kTaken = "0\nOK\n";
constexpr const char* kRefused = "-11\nERROR: Unknown parameter.\n";
const std::string kEncoder1 = "Media.Profiles.Profile1.VideoEncoderConfiguration";
const std::string kEncoder3 = "Media.Profiles.Profile3.VideoEncoderConfiguration";

/// A device and a client that asks it for something and reads the answer text.
struct Asked {
    explicit Asked(const std::string& model) : device(optionsFor(model)), client(device.port()) {}

    std::string operator()(const std::string& line) {
        const RawAnswer answer = client.get("/" + line);
        return answer.status() == 200 ? answer.body : "HTTP " + std::to_string(answer.status());
    }
    std::string set(const std::string& items) { return (*this)("Config.cgi?action=set&" + items); }
    std::string get(const std::string& category) {
        return (*this)("Config.cgi?action=get&category=" + category);
    }

    SimulatedDevice device;
    RawClient client;
};

TEST(ConfigGet, PrintsTheKeysThatMatch) {
    Asked dome("dome");
    EXPECT_EQ(dome.get("Video.I0.Hue"), "0\nOK\nVideo.I0.Hue=50\n");
    EXPECT_EQ(dome.get("video.i0.hue*"),
              "0\nOK\nVideo.I0.Hue=50\nVideo.I0.HueMax=100\nVideo.I0.HueMin=0\nVideo.I0.HueDefault=50\n");
    EXPECT_EQ(dome.get("Video.I0.Hue,Camera.Sharpness"), "0\nOK\nVideo.I0.Hue=50\nCamera.Sharpness=4\n");
}

TEST(ConfigGet, AnEmptyCategoryIsASuccessAndAnUnknownKeyIsNot) {
    Asked dome("dome");
    EXPECT_EQ(dome.get("VideoAnalytics.*"), kTaken);
    EXPECT_EQ(dome.get("Video.I0.Huge"), kRefused);
    EXPECT_EQ(dome.get("Nonsense.*"), kRefused);
    EXPECT_EQ(dome.get(""), kRefused);
    EXPECT_EQ(dome("Config.cgi?action=forget"), kRefused);
}

TEST(ConfigGet, AStarIsEverything) {
    Asked minimal("minimal");
    const std::string all = minimal.get("*");
    for (const char* key : {"Media.Profiles.Count=2\n", "Video.I0.Hue=50\n", "Misc.LED.Power=ON\n"})
        EXPECT_NE(all.find(key), std::string::npos) << key;
}

TEST(ConfigSet, IsKeptAndSeenByLaterGets) {
    Asked dome("dome");
    EXPECT_EQ(dome.set("Video.I0.Hue=33&Camera.Name=a%26b%3D%25"), kTaken);
    EXPECT_EQ(dome.get("Video.I0.Hue,Camera.Name"), "0\nOK\nVideo.I0.Hue=33\nCamera.Name=a&b=%\n");
    EXPECT_EQ(dome.device.value("Camera.Name"), "a&b=%");
}

TEST(ConfigSet, AnItemWithoutAValueChangesNothing) {
    Asked dome("dome");
    EXPECT_EQ(dome.set("Video.I0.Hue"), kTaken);
    EXPECT_EQ(dome.device.value("Video.I0.Hue"), "50");
}

TEST(ConfigSet, ANewKeyOfACategoryIsKept) {
    Asked dome("dome");
    EXPECT_EQ(dome.set("Misc.Colour=red&StreamSetup.Event.Quality=BEST"), kTaken);
    EXPECT_EQ(dome.device.value("Misc.Colour"), "red");
}

TEST(ConfigSet, WhatBelongsToNoCategoryIsRefusedAndNothingIsKept) {
    Asked dome("dome");
    EXPECT_EQ(dome.set("Video.I0.Hue=33&Colour=red"), kRefused);
    EXPECT_EQ(dome.set("Video.I0.Hue=33&Login.Name=x"), kRefused);
    EXPECT_EQ(dome.device.value("Video.I0.Hue"), "50");
}

TEST(ConfigSet, ASizeMustBeInTheListOfTheEncodingInUse) {
    Asked dome("dome");
    const std::string width = kEncoder1 + ".Resolution.Width=";
    const std::string height = "&" + kEncoder1 + ".Resolution.Height=";
    EXPECT_EQ(dome.set(width + "1280" + height + "720"), kTaken);
    EXPECT_EQ(dome.device.value(kEncoder1 + ".Resolution.Height"), "720");
    EXPECT_EQ(dome.set(width + "1281" + height + "720"), kRefused);
    EXPECT_EQ(dome.set(width + "800"), kRefused) << "800x720 is not offered";
    EXPECT_EQ(dome.set(width + "1280" + height + "720&Video.I0.Hue=1"), kTaken);
    EXPECT_EQ(dome.device.value(kEncoder1 + ".Resolution.Width"), "1280");
}

TEST(ConfigSet, ASizeIsCheckedAgainstTheEncodingThatComesWithIt) {
    Asked dome("dome");
    const std::string size = kEncoder3 + ".Resolution.Width=640&" + kEncoder3 + ".Resolution.Height=480";
    EXPECT_EQ(dome.set(size), kRefused) << "MPEG4 of this profile ends at 352x240";
    EXPECT_EQ(dome.set(size + "&" + kEncoder3 + ".Encoding=H264"), kTaken);
    EXPECT_EQ(dome.set(kEncoder3 + ".Encoding=MPEG4"), kRefused) << "640x480 would stay behind";
    EXPECT_EQ(dome.device.value(kEncoder3 + ".Encoding"), "H264");
    EXPECT_EQ(dome.set(kEncoder1 + ".Encoding=H265"), kRefused) << "not in the encoding list";
}

TEST(ConfigSet, NumbersMustBeNumbers) {
    Asked dome("dome");
    EXPECT_EQ(dome.set(kEncoder1 + ".Resolution.Width=wide"), kRefused);
    EXPECT_EQ(dome.set(kEncoder1 + ".Quality=5.25"), kTaken);
    EXPECT_EQ(dome.set(kEncoder1 + ".Quality=-1"), kTaken);
    for (const char* quality : {"", "5.", ".5", "5.5.5", "0x10", "5%20", "--5", "nan", "best"})
        EXPECT_EQ(dome.set(kEncoder1 + ".Quality=" + quality), kRefused) << quality;
    EXPECT_EQ(dome.set(kEncoder1 + ".RateControl.BitrateLimit=lots"), kRefused);
    EXPECT_EQ(dome.set("Video.I0.Hue=blue"), kRefused);
    EXPECT_EQ(dome.set("Camera.Name=42"), kTaken);
    EXPECT_EQ(dome.set("Camera.Name=name again"), "HTTP 400") << "a blank ends the target";
    EXPECT_EQ(dome.device.value(kEncoder1 + ".Quality"), "-1");
}

TEST(ConfigSet, AFrameRateIsAtLeastOne) {
    Asked dome("dome");
    const std::string key = kEncoder1 + ".RateControl.FrameRateLimit=";
    EXPECT_EQ(dome.set(key + "0"), kRefused);
    EXPECT_EQ(dome.set(key + "-5"), kRefused);
    EXPECT_EQ(dome.set(key + "1"), kTaken);
    EXPECT_EQ(dome.device.value(kEncoder1 + ".RateControl.FrameRateLimit"), "1");
}

TEST(ConfigSet, AProfileMustExist) {
    Asked dome("dome");
    EXPECT_EQ(dome.set("Media.Profiles.Profile3.Name=x"), kTaken);
    for (const char* number : {"0", "4", "-1", "", "99999999999999999999"})
        EXPECT_EQ(dome.set("Media.Profiles.Profile" + std::string(number) + ".Name=x"), kRefused) << number;
}

TEST(ConfigSet, AValueMustFitOnALine) {
    Asked dome("dome");
    EXPECT_EQ(dome.set("Camera.Name=a%0ab=c"), kRefused);
    EXPECT_EQ(dome.set("Camera.Name=a%00"), kRefused);
    EXPECT_EQ(dome.set("Camera.Na%3Dme=a"), kRefused);
}

TEST(ConfigSet, TheOldVideoKeysTakeNamesOfTheCapabilities) {
    Asked pell("pell");
    EXPECT_EQ(pell.set("Video.I0.H264.Resolution=4CIF&Video.I0.H264.FrameRate=10"), kTaken);
    EXPECT_EQ(pell.set("Video.I0.H264.Resolution=704x480"), kTaken);
    EXPECT_EQ(pell.set("Video.I0.H264.Resolution=4K"), kRefused);
    EXPECT_EQ(pell.device.value("Video.I0.H264.FrameRate"), "10");
}

TEST(ConfigSet, ADeviceThatListsNoSizesTakesAny) {
    Asked minimal("minimal");
    EXPECT_EQ(minimal.set(kEncoder1 + ".Resolution.Width=1234"), kTaken);
}

TEST(Channels, EachHasProfilesOfItsOwn) {
    Asked recorder("recorder");
    const std::string token = "Media.Profiles.Profile1.token";
    EXPECT_EQ(recorder.get(token + "&ch=2"), "0\nOK\n" + token + "=CH02-MAIN\n");
    EXPECT_EQ(recorder.get(token), "0\nOK\n" + token + "=CH01-MAIN\n");
    EXPECT_EQ(recorder.get(token + "&ch=17"), kRefused);
    EXPECT_EQ(recorder.get(token + "&ch=0"), kRefused);
    EXPECT_EQ(recorder.set("ch=2&Media.Profiles.Profile1.Name=Gate"), kTaken);
    EXPECT_EQ(recorder.device.value("Media.Profiles.Profile1.Name", 2), "Gate");
    EXPECT_EQ(recorder.device.value("Media.Profiles.Profile1.Name", 1), "Channel 1 main");
}

TEST(Channels, AnotherDeviceDoesNotLookAtThem) {
    Asked dome("dome");
    EXPECT_EQ(dome.get("Media.Profiles.Count&ch=9"), "0\nOK\nMedia.Profiles.Count=3\n");
}

TEST(Cgis, OfEveryKindAreAnsweredAsTheModelSays) {
    Asked server("videoserver");
    EXPECT_NE(server("Capability.cgi?action=get").find("Device=VIDEO SERVER\n"), std::string::npos);
    EXPECT_NE(server("Capability.cgi?action=get&channel=1").find("Capability.Channel=1\n"),
              std::string::npos);
    EXPECT_EQ(server("Capability.cgi?action=put"), kRefused);
    EXPECT_EQ(server("Machine.cgi?action=get_capability"), "HTTP 404");
    EXPECT_EQ(server("PTZ.cgi?move=left"), kTaken);
    EXPECT_EQ(server("Nonsense.cgi"), "HTTP 404");
    EXPECT_EQ(server(""), "HTTP 404");

    Asked older("nocapability");
    EXPECT_EQ(older("Capability.cgi?action=get"), "HTTP 404");
    EXPECT_NE(older("Machine.cgi?action=get_capability").find("Product.Type=IP CAMERA\n"), std::string::npos);
    EXPECT_EQ(older("Machine.cgi?action=stop"), kRefused);

    Asked noProfiles("noprofiles");
    EXPECT_EQ(noProfiles.get("Media.*&ch=1"), "HTTP 404");
    EXPECT_EQ(noProfiles.get("Video.I0.Hue"), "0\nOK\nVideo.I0.Hue=50\n");
}

TEST(Cgis, APostedFormCountsLikeAQuery) {
    Asked dome("dome");
    const std::string form = "action=set&Video.I0.Hue=7";
    dome.client.send(
        "POST /Config.cgi HTTP/1.1\r\nHost: d\r\nContent-Type: application/x-www-form-urlencoded\r\n"
        "Content-Length: " +
        std::to_string(form.size()) + "\r\n\r\n" + form);
    EXPECT_EQ(dome.client.receive().body, kTaken);
    EXPECT_EQ(dome.device.value("Video.I0.Hue"), "7");
}

} // namespace
} // namespace koine::test
