// Completing the media map: encodings, their sizes, the largest and the smallest, what the user may choose,
// and the frame rates per size.

#include "media_bench.h"

namespace koine::test {
namespace {

class MediaSizeLists : public MediaBench {
protected:
    static std::string sizes(const std::string& encoding = "H264", int number = 1) {
        return v(number, "." + encoding + ".Resolution.NxN.List");
    }
    static std::string largest(const std::string& encoding = "H264") {
        return v(1, "." + encoding + ".Resolution.NxN.Max");
    }
    static std::string smallest(const std::string& encoding = "H264") {
        return v(1, "." + encoding + ".Resolution.NxN.Min");
    }
    static std::string rates(const std::string& encoding = "H264") {
        return v(1, "." + encoding + ".ResolutionFrameRateRange.NxN.List");
    }

    /// One profile with H264 and this size list.
    void h264(const std::string& list) {
        profiles(1);
        media[v(1, ".EncodingList")] = "H264";
        media[sizes()] = list;
    }

    std::string encodingsOf(const std::string& format) {
        media.clear();
        profiles(1);
        request.capability()["Capability.Video.Format"] = format;
        convert();
        return at(v(1, ".EncodingList"));
    }

    void bounds(int minWidth, int minHeight, int maxWidth, int maxHeight) {
        client.setSettingMinW_Ui(minWidth);
        client.setSettingMinH_Ui(minHeight);
        client.setSettingMaxW_Ui(maxWidth);
        client.setSettingMaxH_Ui(maxHeight);
    }
};

TEST_F(MediaSizeLists, TranslatesTheFormatsOfTheCapabilities) {
    EXPECT_EQ(encodingsOf("MJPEG,H.264,MPEG4"), "JPEG,H264,MPEG4");
    EXPECT_EQ(encodingsOf("M.PEG4"), "MPEG4");
    EXPECT_EQ(encodingsOf("H265"), "H265");
}

TEST_F(MediaSizeLists, TranslatesFormatsInAnyCaseAndByTheirBeginning) {
    EXPECT_EQ(encodingsOf("mjpeg-2,m.Peg4part2,h.264/avc,Other"), "JPEG,MPEG4,H264,Other");
    EXPECT_EQ(encodingsOf("xMJPEG"), "xMJPEG");
}

TEST_F(MediaSizeLists, DropsTheDottedWordWhenTheFormatsHoldThePlainOne) {
    EXPECT_EQ(encodingsOf("H.264,H264"), "H264");
    EXPECT_EQ(encodingsOf("H264,H.264,MJPEG"), "H264,JPEG");
    EXPECT_EQ(encodingsOf("H.264,xH264x"), "xH264x");
}

TEST_F(MediaSizeLists, OnlyTheExactPlainWordDropsTheDottedOne) {
    EXPECT_EQ(encodingsOf("H.264,h264"), "H264,h264");
}

TEST_F(MediaSizeLists, SplitsFormatsAtCommasSemicolonsAndLineEnds) {
    EXPECT_EQ(encodingsOf("MJPEG;H.264\nMPEG4,,;X"), "JPEG,H264,MPEG4,X");
}

TEST_F(MediaSizeLists, KeepsTheEncodingsThatTheDeviceSends) {
    request.capability()["Capability.Video.Format"] = "MJPEG";
    profiles(2);
    media[v(1, ".EncodingList")] = "H.264,MPEG4";
    media[v(2, ".EncodingList")] = "";
    convert();
    EXPECT_EQ(at(v(1, ".EncodingList")), "H.264,MPEG4");
    EXPECT_EQ(at(v(2, ".EncodingList")), "");
}

TEST_F(MediaSizeLists, WithoutFormatsAProfileGetsNeitherEncodingsNorSizes) {
    request.capability()["Capability.Video.Resolution.NxN"] = "640x480";
    profiles(1);
    media[sizes()] = "320x240,640x480";
    convert();
    EXPECT_EQ(at(v(1, ".EncodingList")), "(absent)");
    EXPECT_EQ(at(largest()), "(absent)");
    EXPECT_EQ(at(sizes() + ".Src"), "(absent)");
    EXPECT_EQ(at(rates()), "(absent)");
    EXPECT_EQ(at(v(1, ".RateControl.BitrateLimit.Max")), "20000") << "the rest is still completed";
}

TEST_F(MediaSizeLists, TakesMissingSizesFromTheCommonCapability) {
    request.capability()["Capability.Video.Resolution.NxN"] = "640x480,1280x720";
    request.capability()["Capability.Video.JPEG.Resolution.NxN"] = "320x240";
    profiles(1);
    media[v(1, ".EncodingList")] = "JPEG,H264";
    convert();
    EXPECT_EQ(at(sizes("JPEG")), "640x480,1280x720");
    EXPECT_EQ(at(sizes("H264")), "640x480,1280x720");
    EXPECT_EQ(at(largest("JPEG")), "1280x720");
}

TEST_F(MediaSizeLists, WithoutTheCommonCapabilityTakesThemFromTheEncodingsOwn) {
    request.capability()["Capability.Video.JPEG.Resolution.NxN"] = "320x240,640x480";
    profiles(1);
    media[v(1, ".EncodingList")] = "JPEG";
    convert();
    EXPECT_EQ(at(sizes("JPEG")), "320x240,640x480");
    EXPECT_EQ(at(sizes("JPEG") + ".Src"), "320x240,640x480");
    EXPECT_EQ(at(largest("JPEG")), "(absent)") << "bounds were looked for before the list was there";
    EXPECT_EQ(at(rates("JPEG")), "320x240:1-30,640x480:1-30");
    convert();
    EXPECT_EQ(at(largest("JPEG")), "640x480");
}

TEST_F(MediaSizeLists, AnEncodingWithoutSizesEndsTheSearchForBoundsOfTheProfile) {
    profiles(1);
    media[v(1, ".EncodingList")] = "JPEG,H264";
    media[sizes("H264")] = "640x480";
    convert();
    EXPECT_EQ(at(largest("H264")), "(absent)");
    EXPECT_EQ(at(sizes("JPEG")), "(absent)");
}

TEST_F(MediaSizeLists, AnEncodingWithoutSizesEndsTheFilterOfTheProfileButNotTheRates) {
    profiles(1);
    media[v(1, ".EncodingList")] = "JPEG,H264";
    media[sizes("H264")] = "640x480";
    convert();
    EXPECT_EQ(at(sizes("H264") + ".Src"), "(absent)");
    EXPECT_EQ(at(rates("H264")), "640x480:1-30");
    EXPECT_EQ(at(rates("JPEG")), "(absent)");
}

TEST_F(MediaSizeLists, TheNextProfileIsLookedAtAllTheSame) {
    profiles(2);
    media[v(1, ".EncodingList")] = "JPEG";
    media[v(2, ".EncodingList")] = "H264";
    media[sizes("H264", 2)] = "640x480";
    convert();
    EXPECT_EQ(at(v(2, ".H264.Resolution.NxN.Max")), "640x480");
}

TEST_F(MediaSizeLists, FindsTheLargestAndTheSmallestSize) {
    h264("640x480,1920x1080,1280x720");
    convert();
    EXPECT_EQ(at(largest()), "1920x1080");
    EXPECT_EQ(at(smallest()), "640x480");
}

TEST_F(MediaSizeLists, TheFirstOfEqualAreasWinsBoth) {
    h264("400x300,300x400,200x600");
    convert();
    EXPECT_EQ(at(largest()), "400x300");
    EXPECT_EQ(at(smallest()), "400x300");
}

TEST_F(MediaSizeLists, WritesTheBoundsAsTheTokensStand) {
    h264(" 640x480 ; 01920x1080p\n1280x720");
    convert();
    EXPECT_EQ(at(largest()), " 01920x1080p");
    EXPECT_EQ(at(smallest()), " 640x480 ");
}

TEST_F(MediaSizeLists, ReplacesTheBoundsThatTheDeviceSends) {
    h264("640x480,1280x720");
    media[largest()] = "9x9";
    media[smallest()] = "9x9";
    convert();
    EXPECT_EQ(at(largest()), "1280x720");
    EXPECT_EQ(at(smallest()), "640x480");
}

TEST_F(MediaSizeLists, IgnoresTokensThatAreNoSize) {
    h264("big,640x480,1920");
    convert();
    EXPECT_EQ(at(largest()), "640x480");
    EXPECT_EQ(at(smallest()), "640x480");
}

TEST_F(MediaSizeLists, WithoutAnyUsableSizeTheBoundsStayAsTheyWere) {
    h264("big,huge");
    media[largest()] = "9x9";
    convert();
    EXPECT_EQ(at(largest()), "9x9");
    EXPECT_EQ(at(smallest()), "(absent)");

    h264("0x0"); // smallest, but never larger than nothing
    convert();
    EXPECT_EQ(at(largest()), "9x9");
    EXPECT_EQ(at(smallest()), "(absent)");

    h264("30000x30000"); // as large as where the smallest starts, so never smaller
    convert();
    EXPECT_EQ(at(largest()), "9x9");
    EXPECT_EQ(at(smallest()), "(absent)");
}

TEST_F(MediaSizeLists, AnEmptySizeListIsPresentAndPassedOver) {
    request.capability()["Capability.Video.Resolution.NxN"] = "640x480";
    h264("");
    convert();
    EXPECT_EQ(at(sizes()), "");
    EXPECT_EQ(at(largest()), "(absent)");
}

TEST_F(MediaSizeLists, NarrowsTheSizesToTheBoundsOfTheUser) {
    h264("640x480,1920x1080,1280x720");
    bounds(320, 240, 1280, 720);
    convert();
    EXPECT_EQ(at(sizes()), "640x480,1280x720");
    EXPECT_EQ(at(sizes() + ".Ui"), "640x480,1280x720");
    EXPECT_EQ(at(sizes() + ".Src"), "640x480,1920x1080,1280x720");
}

TEST_F(MediaSizeLists, TheLargestSizeIsFoundBeforeTheSizesAreNarrowed) {
    h264("640x480,1920x1080,1280x720");
    bounds(320, 240, 1280, 720);
    convert();
    EXPECT_EQ(at(largest()), "1920x1080");
    convert();
    EXPECT_EQ(at(largest()), "1280x720") << "the next conversion sees the narrowed list";
}

TEST_F(MediaSizeLists, BothBoundsBelongToTheRange) {
    h264("320x240,640x480,800x600");
    bounds(320, 240, 640, 480);
    convert();
    EXPECT_EQ(at(sizes()), "320x240,640x480");
}

TEST_F(MediaSizeLists, TheAreaDecidesAndNotTheSides) {
    h264("1000x100,200x500,100x100");
    bounds(400, 250, 400, 250);
    convert();
    EXPECT_EQ(at(sizes()), "1000x100,200x500");
}

TEST_F(MediaSizeLists, BoundsThatKeepNothingChangeNothing) {
    h264("640x480,1920x1080");
    bounds(1, 1, 2, 2);
    convert();
    EXPECT_EQ(at(sizes()), "640x480,1920x1080");
    EXPECT_EQ(at(sizes() + ".Ui"), "(absent)");
    EXPECT_EQ(at(sizes() + ".Src"), "640x480,1920x1080");
}

TEST_F(MediaSizeLists, WidensAgainFromTheDevicesListWhenTheUserAllowsMore) {
    h264("640x480,1920x1080,1280x720");
    bounds(0, 0, 640, 480);
    convert();
    EXPECT_EQ(at(sizes()), "640x480");
    bounds(0, 0, 1280, 720);
    convert();
    EXPECT_EQ(at(sizes()), "640x480,1280x720");
    EXPECT_EQ(at(sizes() + ".Ui"), "640x480,1280x720");
}

TEST_F(MediaSizeLists, FiltersTheDevicesOwnListWhenItSendsOne) {
    h264("640x480");
    media[sizes() + ".Src"] = "800x600;1024x768";
    convert();
    EXPECT_EQ(at(sizes()), "800x600,1024x768");
    EXPECT_EQ(at(sizes() + ".Src"), "800x600;1024x768");
}

TEST_F(MediaSizeLists, EveryEncodingIsFilteredOnItsOwn) {
    profiles(1);
    media[v(1, ".EncodingList")] = "JPEG;H264\nMPEG4";
    media[sizes("JPEG")] = "640x480,1280x720";
    media[sizes("H264")] = "1280x720,1920x1080";
    media[sizes("MPEG4")] = "352x288";
    bounds(0, 0, 1280, 720);
    convert();
    EXPECT_EQ(at(sizes("JPEG")), "640x480,1280x720");
    EXPECT_EQ(at(sizes("H264")), "1280x720");
    EXPECT_EQ(at(sizes("MPEG4")), "352x288");
}

TEST_F(MediaSizeLists, GivesEverySizeTheFrameRatesOfTheUser) {
    h264("640x480,1280x720");
    client.setSettingFramerateSrcMin(2);
    client.setSettingFramerateSrcMax(25);
    convert();
    EXPECT_EQ(at(rates()), "640x480:2-25,1280x720:2-25");
}

TEST_F(MediaSizeLists, TheFrameRatesFollowTheNarrowedList) {
    h264("640x480,1280x720");
    bounds(0, 0, 640, 480);
    convert();
    EXPECT_EQ(at(rates()), "640x480:1-30");
}

TEST_F(MediaSizeLists, KeepsTheFrameRatesOnceTheyAreThere) {
    h264("640x480");
    media[rates()] = "640x480:5-10";
    convert();
    EXPECT_EQ(at(rates()), "640x480:5-10");

    media.erase(rates());
    convert();
    client.setSettingFramerateSrcMax(60);
    convert();
    EXPECT_EQ(at(rates()), "640x480:1-30");
}

TEST_F(MediaSizeLists, GivesNoFrameRatesWhereTheListHasNoSizes) {
    for (const char* list : {"", ",", "\n,\n"}) {
        media.clear();
        h264(list);
        convert();
        EXPECT_EQ(media.count(rates()), 0U) << list;
    }
}

TEST_F(MediaSizeLists, SplitsForFrameRatesAtCommasAndLineEndsOnly) {
    h264("640x480;800x600\n1024x768");
    bounds(1, 1, 2, 2); // keeps nothing, so that the list stays as written
    convert();
    EXPECT_EQ(at(rates()), "640x480;800x600:1-30,1024x768:1-30");
}

} // namespace
} // namespace koine::test
