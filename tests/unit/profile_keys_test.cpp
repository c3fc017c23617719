// The keys of the media profiles: put together in place, whatever the profile and the encoding are called.

#include "media/profile_keys.h"

#include <gtest/gtest.h>

namespace koine::test {
namespace {

constexpr int kProfiles[] = {1, 9, 10, 128, 4096, INT_MAX, 0, INT_MIN};

std::string head(int profile) { return "Media.Profiles.Profile" + std::to_string(profile); }

TEST(ProfileKeys, AreThoseOfTheSelectedProfile) {
    ProfileKeys keys(ProfileNumber{7});
    EXPECT_EQ(keys.of(ProfileKey::token), "Media.Profiles.Profile7.token");
    for (const int profile : kProfiles) {
        keys.select(ProfileNumber{profile});
        const std::string encoder = head(profile) + ".VideoEncoderConfiguration";
        EXPECT_EQ(keys.of(EncoderKey::bitrateLimitMax), encoder + ".RateControl.BitrateLimit.Max");
        EXPECT_EQ(keys.of(ProfileKey::allowLive), head(profile) + ".Tovlin.AllowLive");
        EXPECT_EQ(keys.of(EncoderKey::encoding), encoder + ".Encoding");
        EXPECT_EQ(EncodingKeys(keys, "MPEG4").of(EncodingKey::frameRates),
                  encoder + ".MPEG4.ResolutionFrameRateRange.NxN.List");
        EXPECT_EQ(keys.of(ProfileKey::token), head(profile) + ".token");
    }
}

TEST(ProfileKeys, EncodingsMayHaveNamesOfAnyLength) {
    for (const int profile : kProfiles) {
        ProfileKeys keys(ProfileNumber{profile});
        const std::string encoder = head(profile) + ".VideoEncoderConfiguration.";
        for (std::size_t length = 0; length < 200; ++length) {
            const std::string encoding(length, 'E');
            EncodingKeys ofEncoding(keys, encoding);
            EXPECT_EQ(ofEncoding.of(EncodingKey::sizesSrc), encoder + encoding + ".Resolution.NxN.List.Src");
            EXPECT_EQ(ofEncoding.of(EncodingKey::sizes), encoder + encoding + ".Resolution.NxN.List");
            EXPECT_EQ(keys.of(ProfileKey::token), head(profile) + ".token");
            EXPECT_EQ(ofEncoding.of(EncodingKey::govLength), encoder + encoding + ".GovLength");
        }
    }
}

} // namespace
} // namespace koine::test
