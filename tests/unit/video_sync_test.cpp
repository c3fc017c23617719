// Profile settings of a set line, gathered per profile and sent on in the device's video keys.

#include "bench_request.h"
#include "observed.h"

#include <gtest/gtest.h>

#include <optional>

namespace koine::test {
namespace {

/// Shows the records instead of composing a line from them.
class RecordedRequest : public BenchRequest {
public:
    char* getConfigVideoStr(std::map<int, _tagProfileMap*>& profiles) override {
        ++composed;
        for (const auto& [number, one] : profiles) {
            numbers.push_back(number);
            records[number] = *one;
        }
        return text ? mallocedText(*text) : nullptr;
    }

    int composed = 0;
    std::vector<int> numbers;
    std::map<int, _tagProfileMap> records;
    std::optional<std::string> text = "http://camera:80/Config.cgi?action=set&Video.I0.X=1";
};

class VideoSync : public ::testing::Test {
protected:
    VideoSync() {
        request.setVendor("TOVLIN");
        request.dispatch = [](const BenchRequest::Line&, char**) { return 1; };
        forgetTraces();
    }

    int sync(std::string line) { return request.syncVideoConfigByMediaConfig(kUid, line.data()); }

    /// Synchronises one setting of profile 1 and gives the record of that profile.
    _tagProfileMap recordOf(const std::string& setting) {
        request.records.clear();
        EXPECT_EQ(sync("http://camera/Config.cgi?action=set&" + key(1, setting)), 1);
        EXPECT_EQ(request.records.size(), 1U) << setting;
        return request.records[1];
    }
    std::string encodingOf(const std::string& value) {
        const _tagProfileMap record = recordOf("Encoding=" + value);
        return record.encoding == nullptr ? "(null)" : record.encoding;
    }

    static std::string key(int profile, const std::string& setting) {
        return "Media.Profiles.Profile" + std::to_string(profile) + ".VideoEncoderConfiguration." + setting;
    }

    RecordedRequest request;
};

TEST_F(VideoSync, OnlyTheMakersOwnDevicesAreConcerned) {
    for (const char* vendor : {"", "OTHER", "TOVLI", "xTOVLIN"}) {
        request.setVendor(vendor);
        EXPECT_EQ(sync("X?" + key(1, "Quality=1")), 1) << vendor;
    }
    EXPECT_EQ(request.composed, 0);
    EXPECT_TRUE(request.lines.empty());
    request.setVendor("tovlin 2");
    EXPECT_EQ(sync("X?" + key(1, "Quality=1")), 1);
    EXPECT_EQ(request.composed, 1);
}

TEST_F(VideoSync, DevicesThatSpeakProfilesThemselvesAreNotConcerned) {
    using Set = void (BenchRequest::*)(int);
    const Set kSetters[] = {&BenchRequest::setIsONVIFProduct, &BenchRequest::setIsTovlinNVRDevice,
                            &BenchRequest::setIsTlProfile};
    request.setMediaProfile(1);
    for (const Set set : kSetters) {
        (request.*set)(2);
        EXPECT_EQ(sync("Config.cgi?action=set&nothing"), 1);
        (request.*set)(0);
    }
    EXPECT_EQ(request.composed, 0);
    EXPECT_TRUE(request.lines.empty());
    EXPECT_TRUE(tracesAre({}));
}

TEST_F(VideoSync, ANewRecordKnowsNothingButTheSizeOfTheCache) {
    request.encoder(1, ".Resolution.Width", "640");
    request.encoder(1, ".Resolution.Height", "480");
    const _tagProfileMap record = recordOf("Other=1");
    EXPECT_EQ(record.encoding, nullptr);
    EXPECT_EQ(record.width, 640);
    EXPECT_EQ(record.height, 480);
    EXPECT_EQ(record.quality, -1.0F);
    EXPECT_EQ(record.frameRateLimit, 0);
    EXPECT_EQ(record.bitrateLimit, 0);
    EXPECT_EQ(record.govLength, 0);
}

TEST_F(VideoSync, OnAPellDeviceTheSizeIsNotTakenFromTheCache) {
    request.setIsPellDevice(1);
    request.encoder(1, ".Resolution.Width", "640");
    request.encoder(1, ".Resolution.Height", "480");
    const _tagProfileMap record = recordOf("Quality=1");
    EXPECT_EQ(record.width, 0);
    EXPECT_EQ(record.height, 0);
    request.media().clear();
    recordOf("Quality=1");
    EXPECT_TRUE(request.media().empty()) << "nobody looked";
}

TEST_F(VideoSync, ASizeThatTheCacheLacksIsZeroAndCreated) {
    const _tagProfileMap record = recordOf("Quality=1");
    EXPECT_EQ(record.width, 0);
    EXPECT_EQ(record.height, 0);
    EXPECT_EQ(request.encoderValue(1, ".Resolution.Width"), "");
    EXPECT_EQ(request.encoderValue(1, ".Resolution.Height"), "");
}

TEST_F(VideoSync, TheLineWinsOverTheCache) {
    request.encoder(1, ".Resolution.Width", "640");
    request.encoder(1, ".Resolution.Height", "480");
    const _tagProfileMap record = recordOf("Resolution.Width=1280");
    EXPECT_EQ(record.width, 1280);
    EXPECT_EQ(record.height, 480);
    EXPECT_EQ(recordOf("Resolution.Height=720").height, 720);
}

TEST_F(VideoSync, EverySettingHasItsField) {
    EXPECT_EQ(recordOf("Quality=7.5").quality, 7.5F);
    EXPECT_EQ(recordOf("Quality=-3").quality, -3.0F);
    EXPECT_EQ(recordOf("RateControl.FrameRateLimit=25").frameRateLimit, 25);
    EXPECT_EQ(recordOf("RateControl.BitrateLimit=2048").bitrateLimit, 2048);
    EXPECT_EQ(recordOf("MPEG4.GovLength=12").govLength, 12);
}

TEST_F(VideoSync, EncodingsAreKnownByTheirBeginningInAnyCase) {
    EXPECT_EQ(encodingOf("JPEG"), "JPEG");
    EXPECT_EQ(encodingOf("jpeg2000"), "JPEG");
    EXPECT_EQ(encodingOf("Mpeg4"), "MPEG4");
    EXPECT_EQ(encodingOf("h264"), "H264");
    EXPECT_EQ(encodingOf("H264/High"), "H264");
}

TEST_F(VideoSync, OtherEncodingsLeaveTheField) {
    EXPECT_EQ(encodingOf("H265"), "(null)");
    EXPECT_EQ(encodingOf("MJPEG"), "(null)");
    EXPECT_EQ(encodingOf(""), "(null)");
    EXPECT_EQ(sync("X?" + key(1, "Encoding=JPEG") + "&" + key(1, "Encoding=H265")), 1);
    EXPECT_STREQ(request.records[1].encoding, "JPEG");
}

TEST_F(VideoSync, AGroupLengthAlsoTellsTheEncoding) {
    const _tagProfileMap record = recordOf("H264.GovLength=30");
    EXPECT_STREQ(record.encoding, "H264");
    EXPECT_EQ(record.govLength, 30);
    EXPECT_STREQ(recordOf("jpeg.GovLength=1").encoding, "JPEG");
    EXPECT_EQ(recordOf("H265.GovLength=5").encoding, nullptr);
    EXPECT_EQ(recordOf("H265.GovLength=5").govLength, 5);
}

TEST_F(VideoSync, AGroupLengthNeedsItsNumber) {
    EXPECT_EQ(recordOf("H264.GovLength=").encoding, nullptr);
    EXPECT_EQ(recordOf("H264.GovLength=x").govLength, 0);
    EXPECT_EQ(recordOf("H264.High.GovLength=3").govLength, 0) << "the codec word ends at the first point";
}

TEST_F(VideoSync, NumbersThatCannotBeReadLeaveTheField) {
    EXPECT_EQ(recordOf("Quality=good").quality, -1.0F);
    EXPECT_EQ(recordOf("RateControl.BitrateLimit=").bitrateLimit, 0);
}

TEST_F(VideoSync, SettingsOfOneProfileMeetInOneRecord) {
    EXPECT_EQ(sync("Config.cgi?action=set&" + key(1, "Encoding=MPEG4") + "&" + key(1, "Quality=3") + "&" +
                   key(1, "Resolution.Width=320") + "\n" + key(1, "Resolution.Height=240")),
              1);
    ASSERT_EQ(request.records.size(), 1U);
    EXPECT_STREQ(request.records[1].encoding, "MPEG4");
    EXPECT_EQ(request.records[1].quality, 3.0F);
    EXPECT_EQ(request.records[1].width, 320);
    EXPECT_EQ(request.records[1].height, 240);
}

TEST_F(VideoSync, ProfilesComeInAscendingOrder) {
    EXPECT_EQ(sync("Config.cgi?action=set&" + key(12, "Quality=1") + "&" + key(2, "Quality=2") + "&" +
                   key(1, "Quality=3")),
              1);
    EXPECT_EQ(request.numbers, (std::vector<int>{1, 2, 12}));
    EXPECT_EQ(request.records[12].quality, 1.0F);
    EXPECT_EQ(request.records[1].quality, 3.0F);
}

TEST_F(VideoSync, AnyProfileKeyMakesARecord) {
    EXPECT_EQ(sync("Config.cgi?action=set&Media.Profiles.Profile3.DPTZ=1"), 1);
    EXPECT_EQ(request.numbers, (std::vector<int>{3}));
}

TEST_F(VideoSync, TheFirstItemMayEndAtAQuestionMarkAndTheOthersMayNot) {
    EXPECT_EQ(sync(key(1, "Quality=1") + "?" + key(2, "Quality=2") + "?" + key(3, "Quality=3")), 1);
    EXPECT_EQ(request.numbers, (std::vector<int>{1, 2}));
}

TEST_F(VideoSync, ALineWithoutAProfileFailsOnADeviceWithProfiles) {
    request.setMediaProfile(1);
    request.set_strm_setting_channel(3);
    EXPECT_EQ(sync("Config.cgi?action=set&Media.Profiles.Count=1&xMedia.Profiles.Profile1.X=1"), 0);
    EXPECT_TRUE(tracesAre({"???#2514 handleCgiConfigSetMedia: error, uid=7. \n"}));
    EXPECT_EQ(request.composed, 0);
    EXPECT_TRUE(request.lines.empty());
}

TEST_F(VideoSync, ALineWithoutAProfileComposesAnEmptyOneOnOtherDevices) {
    EXPECT_EQ(sync("Config.cgi?action=set&Video.X=1"), 1);
    EXPECT_EQ(request.composed, 1);
    EXPECT_TRUE(request.numbers.empty());
    EXPECT_EQ(request.lines.size(), 1U);
}

TEST_F(VideoSync, SendsTheComposedLineThroughTheDispatchWithoutWantingAnAnswer) {
    request.setMediaProfile(1);
    EXPECT_EQ(sync("Config.cgi?action=set&" + key(1, "Quality=1")), 1);
    ASSERT_EQ(request.lines.size(), 1U);
    EXPECT_EQ(request.lines[0].uid, kUid);
    EXPECT_EQ(request.lines[0].url, "http://camera:80/Config.cgi?action=set&Video.I0.X=1");
    EXPECT_EQ(request.lines[0].username, "admin");
    EXPECT_EQ(request.lines[0].password, "secret");
    EXPECT_FALSE(request.lines[0].wantsAnswer);
    EXPECT_TRUE(tracesAre({}));
}

TEST_F(VideoSync, SendsNothingWhenNothingCanBeComposed) {
    request.text.reset();
    EXPECT_EQ(sync("Config.cgi?action=set&" + key(1, "Quality=1")), 1);
    EXPECT_TRUE(request.lines.empty());
    EXPECT_TRUE(tracesAre({}));
}

TEST_F(VideoSync, FailsWhenTheComposedLineIsRefused) {
    for (const int refusal : {0, -1, -2}) {
        request.dispatch = [refusal](const BenchRequest::Line&, char**) { return refusal; };
        forgetTraces();
        EXPECT_EQ(sync("Config.cgi?action=set&" + key(1, "Quality=1")), 0);
        EXPECT_TRUE(tracesAre({"??#2525 handleCgiConfigSetMedia: error, uid=7. \n"}));
    }
}

TEST_F(VideoSync, TheLineStaysAsItWas) {
    std::string line = "Config.cgi?action=set&" + key(1, "Quality=1") + "&" + key(2, "Quality=1");
    const std::string before = line;
    EXPECT_EQ(request.syncVideoConfigByMediaConfig(kUid, line.data()), 1);
    EXPECT_EQ(line, before);
}

TEST_F(VideoSync, ManyProfilesInOneLineAreAllGathered) {
    std::string line = "Config.cgi?action=set";
    for (int n = 2000; n >= 1; --n)
        line += "&" + key(n, "RateControl.BitrateLimit=") + std::to_string(n);
    EXPECT_EQ(sync(line), 1);
    ASSERT_EQ(request.numbers.size(), 2000U);
    EXPECT_EQ(request.numbers.front(), 1);
    EXPECT_EQ(request.records[1234].bitrateLimit, 1234);
}

} // namespace
} // namespace koine::test
