#include "platform/resolution.h"

#include "text/owned_text.h"
#include "text/tokens.h"

#include <gtest/gtest.h>

#include <climits>
#include <fstream>
#include <iterator>
#include <limits>
#include <string>

namespace {

/// One record, with nothing given but the encoding.
struct Record {
    const char* list = "CIF,4CIF,720P";
    int resoIndep = 0;
    const char* encoding = "H264";
    int width = 0;
    int height = 0;
    float quality = -1;
    int frameRate = 0;
    int bitrate = 0;
    int govLength = 0;
};

/// The video keys, or "(null)".
std::string keys(const Record& record) {
    std::string encoding = record.encoding == nullptr ? "" : record.encoding;
    const koine::OwnedText text(getConfigVideoStr_TovlinNVR(
        record.list, record.resoIndep, record.encoding == nullptr ? nullptr : encoding.data(), record.width,
        record.height, record.quality, record.frameRate, record.bitrate, record.govLength));
    return text ? text.get() : "(null)";
}

/// Every setting is given.
Record whole() {
    Record record;
    record.width = 704;
    record.height = 480;
    record.quality = 5;
    record.frameRate = 25;
    record.bitrate = 2000;
    record.govLength = 30;
    return record;
}

TEST(VideoKeys, CarryEveryGivenSettingOfTheEncoder) {
    Record record = whole();
    EXPECT_EQ(keys(record),
              "&Video.I0.H264.Resolution=4CIF&Video.I0.H264.Quality=5&Video.I0.H264.FrameRate=25"
              "&Video.I0.H264.BitRate=2000&Video.I0.H264.GovLength=30");
    record.encoding = "MPEG4";
    EXPECT_EQ(keys(record),
              "&Video.I0.MPEG4.Resolution=4CIF&Video.I0.MPEG4.Quality=5&Video.I0.MPEG4.FrameRate=25"
              "&Video.I0.MPEG4.BitRate=2000&Video.I0.MPEG4.GovLength=30");
    record.encoding = "JPEG";
    EXPECT_EQ(keys(record),
              "&Video.I0.JPEG.Resolution=4CIF&Video.I0.JPEG.Quality=5&Video.I0.JPEG.FrameRate=25")
        << "single pictures have neither a bit rate nor groups";
}

TEST(VideoKeys, AreThoseThatTheDevicesKeep) {
    for (const char* model : {"pell", "videoserver", "noprofiles"}) {
        std::ifstream file(std::string(KOINE_MODELS "/") + model + "/video.txt");
        const std::string video{std::istreambuf_iterator<char>(file), {}};
        ASSERT_NE(video, "") << model;
        for (const char* encoding : {"H264", "MPEG4", "JPEG"}) {
            Record record;
            record.encoding = encoding;
            record.width = 352;
            record.height = 240;
            record.quality = 1;
            record.frameRate = record.bitrate = record.govLength = 1;
            const std::string text = keys(record);
            for (const std::string_view item : koine::Tokens(text, "&"))
                EXPECT_NE(video.find("\n" + std::string(item.substr(0, item.find('=') + 1))),
                          std::string::npos)
                    << model << ": " << item;
        }
    }
}

TEST(VideoKeys, LeaveOutWhatIsNotGiven) {
    Record record;
    record.frameRate = 10;
    EXPECT_EQ(keys(record), "&Video.I0.H264.FrameRate=10");
    record = Record();
    record.bitrate = 512;
    EXPECT_EQ(keys(record), "&Video.I0.H264.BitRate=512");
    record = Record();
    record.govLength = 1;
    EXPECT_EQ(keys(record), "&Video.I0.H264.GovLength=1");
    record = Record();
    record.quality = 0;
    EXPECT_EQ(keys(record), "&Video.I0.H264.Quality=0");
    record.quality = 0.5F;
    EXPECT_EQ(keys(record), "&Video.I0.H264.Quality=0.5");
}

TEST(VideoKeys, NothingGivenIsNull) {
    EXPECT_EQ(keys(Record()), "(null)");
    Record record;
    record.encoding = "JPEG";
    record.bitrate = 512;
    record.govLength = 10;
    EXPECT_EQ(keys(record), "(null)");
}

TEST(VideoKeys, EncodingMustBeOneOfTheDevices) {
    for (const char* encoding :
         {static_cast<const char*>(nullptr), "", "H265", "H26", "H2644", "MJPEG", "%s"}) {
        Record record;
        record.encoding = encoding;
        record.frameRate = 10;
        EXPECT_EQ(keys(record), "(null)") << (encoding == nullptr ? "null" : encoding);
    }
    Record record;
    record.encoding = "h264";
    record.frameRate = 10;
    EXPECT_EQ(keys(record), "&Video.I0.H264.FrameRate=10");
}

TEST(VideoKeys, SizeIsNamedAsTheListNamesIt) {
    Record record;
    record.list = "640x480; 720p ,cif";
    record.width = 1280;
    record.height = 720;
    EXPECT_EQ(keys(record), "&Video.I0.H264.Resolution=720p");
    record.width = 352;
    record.height = 288;
    EXPECT_EQ(keys(record), "&Video.I0.H264.Resolution=cif");
    record.width = 640;
    record.height = 480;
    record.resoIndep = 1;
    EXPECT_EQ(keys(record), "&Video.I0.H264.Resolution=640x480");
}

TEST(VideoKeys, SizeOutsideTheListNeedsADeviceThatTakesAnySize) {
    Record record;
    record.width = 800;
    record.height = 600;
    record.frameRate = 10;
    EXPECT_EQ(keys(record), "(null)") << "half a setting would be worse than none";
    record.resoIndep = 1;
    EXPECT_EQ(keys(record), "&Video.I0.H264.Resolution=800x600&Video.I0.H264.FrameRate=10");
    record.list = nullptr;
    EXPECT_EQ(keys(record), "&Video.I0.H264.Resolution=800x600&Video.I0.H264.FrameRate=10");
    record.resoIndep = 0;
    EXPECT_EQ(keys(record), "(null)");
}

TEST(VideoKeys, AValueBehindOneThatCannotBeUsedDoesNotMakeTheRecordUsable) {
    ASSERT_NE(keys(whole()), "(null)");
    const auto refused = [](auto member, auto value) {
        Record record = whole();
        record.*member = value;
        EXPECT_EQ(keys(record), "(null)") << value;
    };
    refused(&Record::width, 705);
    refused(&Record::quality, 1e6F);
    refused(&Record::frameRate, -1);
    refused(&Record::bitrate, -2);
    refused(&Record::govLength, -3);
}

TEST(VideoKeys, HalfASizeIsNoSize) {
    for (const int resoIndep : {0, 1})
        for (const auto& [width, height] : {std::pair(704, 0), std::pair(0, 480), std::pair(-704, -480)}) {
            Record record;
            record.resoIndep = resoIndep;
            record.width = width;
            record.height = height;
            EXPECT_EQ(keys(record), "(null)") << width << "x" << height;
        }
}

TEST(VideoKeys, NumbersThatNoDeviceTakesAreNotSent) {
    for (const int value : {-1, INT_MIN}) {
        Record record;
        record.frameRate = value;
        EXPECT_EQ(keys(record), "(null)");
        record = Record();
        record.bitrate = value;
        record.frameRate = 25;
        EXPECT_EQ(keys(record), "(null)");
        record = Record();
        record.govLength = value;
        EXPECT_EQ(keys(record), "(null)");
    }
    Record record;
    record.quality = std::numeric_limits<float>::infinity();
    EXPECT_EQ(keys(record), "(null)");
    record.quality = 1e6F;
    EXPECT_EQ(keys(record), "(null)");
    record.quality = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(keys(record), "(null)");
    record.quality = -0.5F;
    EXPECT_EQ(keys(record), "(null)");
    record = Record();
    record.frameRate = INT_MAX;
    EXPECT_EQ(keys(record), "&Video.I0.H264.FrameRate=2147483647");
}

} // namespace
