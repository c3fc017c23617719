// The encoding to use on a profile, by the profile's own list or by the device's formats.

#include "bench_request.h"

#include <gtest/gtest.h>

namespace koine::test {
namespace {

class AutoEncoding : public ::testing::Test {
protected:
    std::string choose(const char* wanted, int profile = 1) {
        const char* chosen = request.getAutoStrmEnc(wanted, profile);
        return chosen == nullptr ? "(null)" : chosen;
    }
    std::string fromList(const char* wanted, const std::string& list) {
        request.encoder(1, ".EncodingList", list);
        return choose(wanted);
    }
    std::string fromFormats(const char* wanted, const std::string& formats) {
        request.capability()["Capability.Video.Format"] = formats;
        return choose(wanted);
    }

    BenchRequest request;
};

TEST_F(AutoEncoding, NothingWantedGivesNothing) {
    EXPECT_EQ(fromList(nullptr, "H264,JPEG"), "(null)");
    EXPECT_EQ(fromFormats(nullptr, "H264"), "(null)");
}

TEST_F(AutoEncoding, WhatIsWantedWinsWhenTheProfileHasIt) {
    EXPECT_EQ(fromList("H264", "H265,H264"), "H264");
    EXPECT_EQ(fromList("JPEG", "H265,H264,MPEG4,JPEG"), "JPEG");
    EXPECT_EQ(fromList("MPEG4", "H264,MPEG4"), "MPEG4");
}

TEST_F(AutoEncoding, GivesBackTheVeryTextThatWasWanted) {
    request.encoder(1, ".EncodingList", "H264");
    const std::string wanted = "H264";
    EXPECT_EQ(request.getAutoStrmEnc(wanted.c_str(), 1), wanted.c_str());
}

TEST_F(AutoEncoding, APartOfTheListIsEnough) {
    EXPECT_EQ(fromList("PEG", "MPEG4"), "PEG");
    EXPECT_EQ(fromList("", "JPEG"), "");
}

TEST_F(AutoEncoding, PrefersTheNewestEncodingOtherwise) {
    EXPECT_EQ(fromList("X", "JPEG,MPEG4,H264,H265"), "H265");
    EXPECT_EQ(fromList("X", "JPEG,MPEG4,H264"), "H264");
}

TEST_F(AutoEncoding, PrefersMpeg4ToJpeg) {
    EXPECT_EQ(fromList("H264", "JPEG,MPEG4"), "MPEG4");
    EXPECT_EQ(fromList("H264", "JPEG"), "JPEG");
    EXPECT_EQ(fromList("H264", "MPEG4"), "MPEG4");
}

TEST_F(AutoEncoding, KnowsNoOtherEncoding) {
    EXPECT_EQ(fromList("H264", "VP9,h264"), "(null)");
    EXPECT_EQ(fromList("H264", ""), "(null)");
}

TEST_F(AutoEncoding, AListThatHasNothingIsNotMadeUpForByTheFormats) {
    request.capability()["Capability.Video.Format"] = "H264";
    EXPECT_EQ(fromList("H264", "VP9"), "(null)");
}

TEST_F(AutoEncoding, ReadsTheListOfTheProfileAskedFor) {
    request.encoder(1, ".EncodingList", "H264");
    request.encoder(2, ".EncodingList", "JPEG");
    EXPECT_EQ(choose("H264", 2), "JPEG");
    EXPECT_EQ(choose("H264", 1), "H264");
}

TEST_F(AutoEncoding, FallsBackToTheFormatsOfTheDevice) {
    EXPECT_EQ(fromFormats("MPEG4", "JPEG,MPEG4,H264"), "MPEG4");
    EXPECT_EQ(fromFormats("X", "JPEG,MPEG4,H264"), "H264");
    EXPECT_EQ(fromFormats("H264", "JPEG,MPEG4"), "MPEG4");
    EXPECT_EQ(fromFormats("H264", "JPEG"), "JPEG");
    EXPECT_EQ(fromFormats("H264", "MJPEG"), "JPEG");
    EXPECT_EQ(fromFormats("H264", "H.264"), "(null)");
}

TEST_F(AutoEncoding, TheFormatsKnowH265OnlyWhenItIsWanted) {
    EXPECT_EQ(fromFormats("X", "H265"), "(null)");
    EXPECT_EQ(fromFormats("X", "H265,JPEG"), "JPEG");
    EXPECT_EQ(fromFormats("H265", "H265,JPEG"), "H265");
}

TEST_F(AutoEncoding, WithoutListAndFormatsThereIsNothing) { EXPECT_EQ(choose("H264"), "(null)"); }

TEST_F(AutoEncoding, OnlyLooksAndInsertsNothing) {
    EXPECT_EQ(choose("H264"), "(null)");
    EXPECT_TRUE(request.media().empty());
    EXPECT_TRUE(request.capability().empty());
}

} // namespace
} // namespace koine::test
