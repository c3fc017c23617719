// Completing the media map: when it happens at all, the token, the quality scale, and the plain defaults.

#include "media_bench.h"

namespace koine::test {
namespace {

class MediaConversion : public MediaBench {};

TEST_F(MediaConversion, ChangesNothingWithoutACount) {
    media = {{v(1, ".Quality"), "60"}};
    const CgiMap before = media;
    convert();
    EXPECT_EQ(media, before);
}

TEST_F(MediaConversion, ChangesNothingForACountThatIsNotPositive) {
    for (const char* count : {"0", "-1", "", "many"}) {
        media = {{"Media.Profiles.Count", count}, {v(1, ".Quality"), "60"}};
        const CgiMap before = media;
        convert();
        EXPECT_EQ(media, before) << count;
    }
}

TEST_F(MediaConversion, ChangesNothingWithoutALoginAnswer) {
    profiles(1);
    const CgiMap before = media;
    login.clear();
    convert();
    EXPECT_EQ(media, before);
}

TEST_F(MediaConversion, LeavesAnEmptyMapEmpty) {
    convert();
    EXPECT_TRUE(media.empty());
}

TEST_F(MediaConversion, ReadsTheCountUpToTheFirstOtherCharacter) {
    profiles(2);
    media["Media.Profiles.Count"] = " 2x";
    convert();
    EXPECT_EQ(at(p(2, ".Available")), "1");
    EXPECT_EQ(at(p(3, ".Available")), "(absent)");
}

TEST_F(MediaConversion, SaysWhichProfilesHaveNoTokenAndGoesOn) {
    media = {{"Media.Profiles.Count", "3"}, {v(2, ".token"), ""}, {p(1, ".token"), "T1"}};
    StandardError said;
    convert();
    EXPECT_EQ(
        said.text(),
        "Warning : BaseRequest::convertCgiMedia-1520 with i 0, can't find VideoEncoderConfiguration.token\n"
        "Warning : BaseRequest::convertCgiMedia-1520 with i 2, can't find VideoEncoderConfiguration.token\n");
    EXPECT_EQ(at(p(1, ".Available")), "1");
    EXPECT_EQ(at(p(3, ".Available")), "1");
}

TEST_F(MediaConversion, SaysNothingWhenEveryProfileHasAToken) {
    profiles(2);
    StandardError said;
    forgetTraces();
    convert();
    EXPECT_EQ(said.text(), "");
    EXPECT_TRUE(tracesAre({}));
}

TEST_F(MediaConversion, ScalesTheQualityFromTheDevicesOwnValue) {
    profiles(1);
    client.setQualityStep(10.0F);
    media[v(1, ".Quality")] = "60";
    convert();
    EXPECT_EQ(at(v(1, ".Quality.Src")), "60");
    EXPECT_EQ(at(v(1, ".Quality")), "6");
}

TEST_F(MediaConversion, SubtractsTheSourceMinimumBeforeScaling) {
    profiles(1);
    client.setSettingQualitySrcMin(20.0F);
    client.setQualityStep(8.0F);
    media[v(1, ".Quality")] = "60";
    convert();
    EXPECT_EQ(at(v(1, ".Quality")), "5");
}

TEST_F(MediaConversion, WritesTheQualityWithSixSignificantDigits) {
    profiles(2);
    client.setQualityStep(10.0F);
    media[v(1, ".Quality")] = "35";
    media[v(2, ".Quality")] = "12.34567891";
    convert();
    EXPECT_EQ(at(v(1, ".Quality")), "3.5");
    EXPECT_EQ(at(v(2, ".Quality")), "1.23457");
}

TEST_F(MediaConversion, KeepsTheQualityBetweenZeroAndTen) {
    profiles(3);
    client.setSettingQualitySrcMin(5.0F);
    client.setQualityStep(10.0F);
    media[v(1, ".Quality")] = "150";
    media[v(2, ".Quality")] = "1";
    media[v(3, ".Quality")] = "0";
    convert();
    EXPECT_EQ(at(v(1, ".Quality")), "10");
    EXPECT_EQ(at(v(2, ".Quality")), "0");
    EXPECT_EQ(at(v(3, ".Quality")), "0");
}

TEST_F(MediaConversion, LeavesTheQualityWhenTheDevicesValueIsNegative) {
    profiles(2);
    client.setQualityStep(10.0F);
    media[v(1, ".Quality")] = "60";
    media[v(1, ".Quality.Src")] = "-1";
    media[v(2, ".Quality")] = "-3";
    convert();
    EXPECT_EQ(at(v(1, ".Quality")), "60");
    EXPECT_EQ(at(v(1, ".Quality.Src")), "-1");
    EXPECT_EQ(at(v(2, ".Quality")), "-3");
    EXPECT_EQ(at(v(2, ".Quality.Src")), "-3");
}

TEST_F(MediaConversion, ReadsTheDevicesValueAndNotTheScaledOne) {
    profiles(1);
    client.setQualityStep(10.0F);
    media[v(1, ".Quality")] = "3";
    media[v(1, ".Quality.Src")] = "80";
    convert();
    EXPECT_EQ(at(v(1, ".Quality")), "8");
    EXPECT_EQ(at(v(1, ".Quality.Src")), "80");
}

TEST_F(MediaConversion, ScalesAgainOnEveryCallWithTheStepOfTheMoment) {
    profiles(1);
    client.setQualityStep(10.0F);
    media[v(1, ".Quality")] = "60";
    convert();
    convert();
    EXPECT_EQ(at(v(1, ".Quality")), "6");
    client.setQualityStep(20.0F);
    convert();
    EXPECT_EQ(at(v(1, ".Quality")), "3");
    EXPECT_EQ(at(v(1, ".Quality.Src")), "60");
}

TEST_F(MediaConversion, AStepBelowZeroGivesTheLowestQuality) {
    profiles(1);
    client.setQualityStep(-10.0F);
    media[v(1, ".Quality")] = "60";
    convert();
    EXPECT_EQ(at(v(1, ".Quality")), "0");
}

TEST_F(MediaConversion, LeavesTheQualityAloneWithoutAStep) {
    profiles(1);
    client.setQualityStep(0.0F);
    media[v(1, ".Quality")] = "60";
    convert();
    EXPECT_EQ(at(v(1, ".Quality")), "60");
    EXPECT_EQ(at(v(1, ".Quality.Src")), "(absent)");
}

TEST_F(MediaConversion, AddsNoQualityToAProfileThatHasNone) {
    profiles(1);
    media[v(1, ".Quality.Src")] = "60";
    convert();
    EXPECT_EQ(at(v(1, ".Quality")), "(absent)");
}

TEST_F(MediaConversion, ReadsAQualityThatIsNoNumberAsZero) {
    profiles(1);
    client.setQualityStep(10.0F);
    media[v(1, ".Quality")] = "fine";
    convert();
    EXPECT_EQ(at(v(1, ".Quality")), "0");
    EXPECT_EQ(at(v(1, ".Quality.Src")), "fine");
}

TEST_F(MediaConversion, UsesTheSameScaleForEveryVendor) {
    for (const char* vendor : {"", "TOVLIN", "tovlin", "OTHER"}) {
        request.setVendor(vendor);
        media.clear();
        profiles(1);
        client.setQualityStep(10.0F);
        media[v(1, ".Quality")] = "60";
        convert();
        EXPECT_EQ(at(v(1, ".Quality")), "6") << vendor;
    }
}

TEST_F(MediaConversion, TakesTheScaleOfTheUserAndNotOfTheRequest) {
    profiles(1);
    request.setQualityStep(1.0F);
    client.setQualityStep(10.0F);
    media[v(1, ".Quality")] = "60";
    convert();
    EXPECT_EQ(at(v(1, ".Quality")), "6");
}

TEST_F(MediaConversion, CallsAProfileAvailableUnlessTheDeviceSpeaksOfIt) {
    profiles(3);
    media[p(2, ".Available")] = "0";
    media[p(3, ".Available")] = "";
    convert();
    EXPECT_EQ(at(p(1, ".Available")), "1");
    EXPECT_EQ(at(p(2, ".Available")), "0");
    EXPECT_EQ(at(p(3, ".Available")), "");
}

TEST_F(MediaConversion, GivesTheLastProfileToMobileViewersAndTheOthersToAll) {
    profiles(3);
    convert();
    EXPECT_EQ(at(p(1, ".Tovlin.AllowLive")), "ANY");
    EXPECT_EQ(at(p(2, ".Tovlin.AllowLive")), "ANY");
    EXPECT_EQ(at(p(3, ".Tovlin.AllowLive")), "MOBILE");
    EXPECT_EQ(request.getHaveMobile(), 1);
}

TEST_F(MediaConversion, GivesTheSecondProfileOfAPellDeviceToMobileViewers) {
    request.setIsPellDevice(1);
    profiles(3);
    convert();
    EXPECT_EQ(at(p(1, ".Tovlin.AllowLive")), "ANY");
    EXPECT_EQ(at(p(2, ".Tovlin.AllowLive")), "MOBILE");
    EXPECT_EQ(at(p(3, ".Tovlin.AllowLive")), "ANY");
    EXPECT_EQ(request.getHaveMobile(), 1);
}

TEST_F(MediaConversion, GivesTheOnlyProfileToMobileViewersExceptOnAPellDevice) {
    profiles(1);
    convert();
    EXPECT_EQ(at(p(1, ".Tovlin.AllowLive")), "MOBILE");
    EXPECT_EQ(request.getHaveMobile(), 1);

    request.setHaveMobile(0);
    request.setIsPellDevice(1);
    media.clear();
    profiles(1);
    convert();
    EXPECT_EQ(at(p(1, ".Tovlin.AllowLive")), "ANY");
    EXPECT_EQ(request.getHaveMobile(), 0);
}

TEST_F(MediaConversion, KeepsTheLiveClassesThatTheDeviceSends) {
    profiles(2);
    media[p(1, ".Tovlin.AllowLive")] = "MOBILE";
    media[p(2, ".Tovlin.AllowLive")] = "";
    convert();
    EXPECT_EQ(at(p(1, ".Tovlin.AllowLive")), "MOBILE");
    EXPECT_EQ(at(p(2, ".Tovlin.AllowLive")), "");
    EXPECT_EQ(request.getHaveMobile(), 1);
}

TEST_F(MediaConversion, CountsOnlyTheExactWordAsMobile) {
    profiles(1);
    media[p(1, ".Tovlin.AllowLive")] = "mobile";
    convert();
    EXPECT_EQ(request.getHaveMobile(), 0);
    media[p(1, ".Tovlin.AllowLive")] = "MOBILE,ANY";
    convert();
    EXPECT_EQ(request.getHaveMobile(), 0);
}

TEST_F(MediaConversion, NeverTakesTheMobileFlagBack) {
    profiles(1);
    media[p(1, ".Tovlin.AllowLive")] = "ANY";
    request.setHaveMobile(1);
    convert();
    EXPECT_EQ(request.getHaveMobile(), 1);
}

TEST_F(MediaConversion, CopiesTheQualityBoundsOfTheCapabilities) {
    request.capability() = {{"Capability.Video.Quality.Max", "9"}, {"Capability.Video.Quality.Min", "2"}};
    profiles(2);
    media[v(2, ".Quality.Max")] = "8";
    media[v(2, ".Quality.Min")] = "";
    convert();
    EXPECT_EQ(at(v(1, ".Quality.Max")), "9");
    EXPECT_EQ(at(v(1, ".Quality.Min")), "2");
    EXPECT_EQ(at(v(2, ".Quality.Max")), "8");
    EXPECT_EQ(at(v(2, ".Quality.Min")), "");
}

TEST_F(MediaConversion, CopiesOneQualityBoundWithoutTheOther) {
    request.capability() = {{"Capability.Video.Quality.Min", "2"}};
    profiles(1);
    convert();
    EXPECT_EQ(at(v(1, ".Quality.Max")), "(absent)");
    EXPECT_EQ(at(v(1, ".Quality.Min")), "2");
    EXPECT_EQ(request.capability().size(), 1U) << "the capabilities are only looked at";
}

TEST_F(MediaConversion, BoundsTheBitrateUnlessTheDeviceDoes) {
    profiles(2);
    media[v(2, ".RateControl.BitrateLimit.Max")] = "8000";
    media[v(2, ".RateControl.BitrateLimit.Min")] = "32";
    convert();
    EXPECT_EQ(at(v(1, ".RateControl.BitrateLimit.Max")), "20000");
    EXPECT_EQ(at(v(1, ".RateControl.BitrateLimit.Min")), "64");
    EXPECT_EQ(at(v(2, ".RateControl.BitrateLimit.Max")), "8000");
    EXPECT_EQ(at(v(2, ".RateControl.BitrateLimit.Min")), "32");
}

TEST_F(MediaConversion, LetsTheOtherKeysThroughUnchanged) {
    profiles(1);
    const CgiMap others = {{v(1, ".Encoding"), "h264"},
                           {v(1, ".Resolution.Width"), "0640"},
                           {v(1, ".Resolution.Height"), ""},
                           {v(1, ".RateControl.FrameRateLimit"), "99"},
                           {v(1, ".RateControl.BitrateLimit"), "5"},
                           {v(1, ".H264.H264Profile"), "Main"},
                           {v(1, ".MPEG4.Mpeg4Profile"), "SP"},
                           {v(1, ".H264.GovLength"), "30"},
                           {p(1, ".token"), "T1"},
                           {"Something.Else", "1"}};
    media.insert(others.begin(), others.end());
    convert();
    for (const auto& [key, value] : others)
        EXPECT_EQ(at(key), value) << key;
}

TEST_F(MediaConversion, TouchesNoProfileBeyondTheCount) {
    profiles(2);
    media["Media.Profiles.Count"] = "1";
    media[v(2, ".Quality")] = "60";
    convert();
    EXPECT_EQ(at(v(2, ".Quality")), "60");
    EXPECT_EQ(at(p(2, ".Available")), "(absent)");
}

TEST_F(MediaConversion, ChangesNothingTheSecondTime) {
    request.capability() = {{"Capability.Video.Format", "MJPEG,H.264"},
                            {"Capability.Video.Resolution.NxN", "640x480,1280x720"},
                            {"Capability.Video.Quality.Max", "10"},
                            {"Capability.Video.Quality.Min", "0"}};
    profiles(3);
    media[v(1, ".Quality")] = "0.5";
    convert();
    const CgiMap once = media;
    convert();
    EXPECT_EQ(media, once);
}

} // namespace
} // namespace koine::test
