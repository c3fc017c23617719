// Composing the set line that carries profile settings in the device's video keys.

#include "bench_request.h"
#include "observed.h"

#include <gtest/gtest.h>

#include <cstring>

namespace koine::test {
namespace {

const std::string kStart = "http://camera:80/Config.cgi?action=set";

/// One call of the support library.
struct Order {
    std::string sizes;
    int resoIndep;
    std::string encoding;
    int width, height;
    float quality;
    int frameRate, bitrate, govLength;
};

class VideoConfig : public ::testing::Test {
protected:
    VideoConfig() {
        platform().hooks.getConfigVideoStr_TovlinNVR =
            [this](const char* sizes, int resoIndep, char* encoding, int width, int height, float quality,
                   int frameRate, int bitrate, int govLength) -> char* {
            orders.push_back({sizes, resoIndep, encoding == nullptr ? "(null)" : encoding, width, height,
                              quality, frameRate, bitrate, govLength});
            if (orders.size() > results.size())
                return mallocedText("&V=" + std::to_string(width));
            const char* result = results[orders.size() - 1];
            return result == nullptr ? nullptr : mallocedText(result);
        };
        forgetTraces();
    }

    /// Composes a line for profiles of these widths, numbered from 1.
    std::string compose(const std::vector<int>& widths) {
        std::vector<_tagProfileMap> records(widths.size());
        std::map<int, _tagProfileMap*> profiles;
        for (std::size_t i = 0; i < widths.size(); ++i) {
            records[i] = {nullptr, widths[i], 0, -1.0F, 0, 0, 0};
            profiles[static_cast<int>(i) + 1] = &records[i];
        }
        return composed(profiles);
    }
    std::string composed(std::map<int, _tagProfileMap*>& profiles) {
        AnswerText text;
        *text.out() = request.getConfigVideoStr(profiles);
        return text.text();
    }

    std::vector<Order> orders;
    std::vector<const char*> results; ///< of the first calls; then "&V=<width>"
    BenchRequest request;
};

TEST_F(VideoConfig, WithoutProfilesTheLineIsBare) {
    EXPECT_EQ(compose({}), kStart);
    EXPECT_TRUE(orders.empty());
    EXPECT_EQ(request.capability().count("Capability.Video.Resolution"), 0U);
}

TEST_F(VideoConfig, AppendsWhatTheSupportLibrarySays) {
    results = {"&Video.I0.Codec=H264"};
    EXPECT_EQ(compose({640}), kStart + "&Video.I0.Codec=H264");
    EXPECT_TRUE(tracesAre({}));
}

TEST_F(VideoConfig, HandsAllFieldsOverInTheirOrder) {
    request.capability()["Capability.Video.Resolution"] = "CIF,D1";
    request.setIsResoIndep(5);
    _tagProfileMap record = {"MPEG4", 1, 2, 3.5F, 4, 5, 6};
    std::map<int, _tagProfileMap*> profiles = {{9, &record}};
    EXPECT_EQ(composed(profiles), kStart + "&V=1");
    ASSERT_EQ(orders.size(), 1U);
    EXPECT_EQ(orders[0].sizes, "CIF,D1");
    EXPECT_EQ(orders[0].resoIndep, 5);
    EXPECT_EQ(orders[0].encoding, "MPEG4");
    EXPECT_EQ(orders[0].width, 1);
    EXPECT_EQ(orders[0].height, 2);
    EXPECT_EQ(orders[0].quality, 3.5F);
    EXPECT_EQ(orders[0].frameRate, 4);
    EXPECT_EQ(orders[0].bitrate, 5);
    EXPECT_EQ(orders[0].govLength, 6);
}

TEST_F(VideoConfig, WhatWasNeverGivenArrivesAsSuch) {
    EXPECT_EQ(compose({0}), kStart + "&V=0");
    ASSERT_EQ(orders.size(), 1U);
    EXPECT_EQ(orders[0].quality, -1.0F);
    EXPECT_EQ(orders[0].encoding, "(null)");
}

TEST_F(VideoConfig, AMissingSizeListIsCreatedEmpty) {
    compose({640});
    ASSERT_EQ(orders.size(), 1U);
    EXPECT_EQ(orders[0].sizes, "");
    EXPECT_EQ(request.capability().count("Capability.Video.Resolution"), 1U);
}

TEST_F(VideoConfig, ProfilesComeInAscendingOrder) {
    _tagProfileMap one = {nullptr, 11, 0, -1.0F, 0, 0, 0};
    _tagProfileMap two = {nullptr, 22, 0, -1.0F, 0, 0, 0};
    std::map<int, _tagProfileMap*> profiles = {{2, &two}, {1, &one}};
    EXPECT_EQ(composed(profiles), kStart + "&V=11&V=22");
}

TEST_F(VideoConfig, AProfileThatCannotBeExpressedSpoilsTheLine) {
    results = {nullptr};
    EXPECT_EQ(compose({1}), "(null)");
    orders.clear();
    results = {""};
    EXPECT_EQ(compose({1}), "(null)");
}

TEST_F(VideoConfig, WhatComesAfterwardsDoesNotMendTheLine) {
    results = {"&A=1", nullptr, "&C=1"};
    EXPECT_EQ(compose({1, 2, 3}), "(null)");
    EXPECT_EQ(orders.size(), 3U) << "every profile is tried";
    orders.clear();
    results = {"", "&B=1"};
    EXPECT_EQ(compose({1, 2}), "(null)");
    orders.clear();
    results = {"&A=1", "&B=1", ""};
    EXPECT_EQ(compose({1, 2, 3}), "(null)");
    EXPECT_TRUE(tracesAre({})) << "that is no failure";
}

TEST_F(VideoConfig, WithoutAUrlThereIsNoLine) {
    platform().hooks.getTovlinCgiUrl = [](const char*, unsigned int, char*) -> char* { return nullptr; };
    EXPECT_EQ(compose({1}), "(null)");
    EXPECT_TRUE(tracesAre({"???#2376 getConfigVideoStr: error. \n"}));
    EXPECT_TRUE(orders.empty());
}

TEST_F(VideoConfig, WithoutAUrlTheSynchronisationHasNothingToDo) {
    platform().hooks.getTovlinCgiUrl = [](const char*, unsigned int, char*) -> char* { return nullptr; };
    request.setVendor("TOVLIN");
    std::string line = "Config.cgi?action=set&Media.Profiles.Profile1.VideoEncoderConfiguration.Quality=1";
    EXPECT_EQ(request.syncVideoConfigByMediaConfig(kUid, line.data()), 1);
    EXPECT_TRUE(request.lines.empty());
}

TEST_F(VideoConfig, AsksForTheUrlOfTheDevice) {
    request.set_server_address("10.0.0.9");
    request.set_server_port(81);
    std::string asked;
    platform().hooks.getTovlinCgiUrl = [&](const char* address, unsigned int port, char* line) {
        asked = std::string(address) + "|" + std::to_string(port) + "|" + line;
        return mallocedText("URL");
    };
    EXPECT_EQ(compose({7}), "URL&V=7");
    EXPECT_EQ(asked, "10.0.0.9|81|Config.cgi?action=set");
}

TEST_F(VideoConfig, TheLineGrowsAsLongAsItMustBe) {
    const std::string piece = "&" + std::string(700, 'k') + "=1";
    for (const std::size_t count : {1U, 2U, 50U}) {
        results.assign(count, piece.c_str());
        orders.clear();
        std::string expected = kStart;
        for (std::size_t i = 0; i < count; ++i)
            expected += piece;
        EXPECT_EQ(compose(std::vector<int>(count, 1)), expected);
    }
}

TEST_F(VideoConfig, TheBareUrlMayBeLongToo) {
    const std::string longUrl = "http://" + std::string(3000, 'h') + "/";
    platform().hooks.getTovlinCgiUrl = [&](const char*, unsigned int, char*) {
        return mallocedText(longUrl);
    };
    EXPECT_EQ(compose({}), longUrl);
    EXPECT_EQ(compose({5}), longUrl + "&V=5");
}

} // namespace
} // namespace koine::test
