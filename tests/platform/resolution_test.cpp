#include "platform/resolution.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <string>

namespace {

struct Named {
    const char* name;
    int width;
    int heightNtsc;
    int heightPal;
};

constexpr std::array kNamed = {
    Named{"QCIF", 176, 120, 144},    Named{"CIF", 352, 240, 288},     Named{"2CIF", 704, 240, 288},
    Named{"HD1", 352, 480, 576},     Named{"4CIF", 704, 480, 576},    Named{"D1", 720, 480, 576},
    Named{"QVGA", 320, 240, 240},    Named{"VGA", 640, 480, 480},     Named{"SVGA", 800, 600, 600},
    Named{"XGA", 1024, 768, 768},    Named{"SXGA", 1280, 1024, 1024}, Named{"UXGA", 1600, 1200, 1200},
    Named{"720P", 1280, 720, 720},   Named{"960P", 1280, 960, 960},   Named{"1080P", 1920, 1080, 1080},
    Named{"QXGA", 2048, 1536, 1536}, Named{"4K", 3840, 2160, 2160},
};

/// "WxH", or "unknown"; an unknown name must leave the outputs alone.
std::string sizeOf(const char* name, _VIDEO_SYSTEM_DEF system = VIDEO_SYSTEM_NTSC) {
    int width = -7;
    int height = -9;
    if (getResolutionByStr(name, system, &width, &height) == 0) {
        EXPECT_EQ(width, -7) << name;
        EXPECT_EQ(height, -9) << name;
        return "unknown";
    }
    return std::to_string(width) + "x" + std::to_string(height);
}

/// The entry found, or "(none)"; what was not found must leave an ended, empty text.
std::string entryFor(const char* list, int width, int height, unsigned int size = 32) {
    std::string name(size + 1, '#');
    const int found = getResolutionStrByValue2(list, width, height, name.data(), size);
    EXPECT_EQ(name[size], '#') << "written past the end";
    if (found == 0) {
        EXPECT_EQ(name[0], size == 0 ? '#' : '\0');
        return "(none)";
    }
    return name.c_str();
}

TEST(Resolution, EveryNameHasItsSizePerVideoSystem) {
    for (const Named& each : kNamed) {
        const std::string width = std::to_string(each.width) + "x";
        EXPECT_EQ(sizeOf(each.name, VIDEO_SYSTEM_NTSC), width + std::to_string(each.heightNtsc)) << each.name;
        EXPECT_EQ(sizeOf(each.name, VIDEO_SYSTEM_PAL), width + std::to_string(each.heightPal)) << each.name;
    }
}

TEST(Resolution, NamesAreKnownInAnyCaseWithBlanksAround) {
    EXPECT_EQ(sizeOf("4cif"), "704x480");
    EXPECT_EQ(sizeOf(" \tVga\r\n"), "640x480");
    EXPECT_EQ(sizeOf(" 720p "), "1280x720");
}

TEST(Resolution, SizesInDigitsStandForThemselves) {
    EXPECT_EQ(sizeOf("640x480"), "640x480");
    EXPECT_EQ(sizeOf("1X1", VIDEO_SYSTEM_PAL), "1x1");
    EXPECT_EQ(sizeOf(" 2592x1944 "), "2592x1944");
    EXPECT_EQ(sizeOf("0640x0480"), "640x480");
    EXPECT_EQ(sizeOf("999999999x999999999"), "999999999x999999999");
}

TEST(Resolution, AnythingElseIsUnknown) {
    for (const char* name : {"",
                             " ",
                             "CIFF",
                             "CI",
                             "C I F",
                             "720",
                             "8CIF",
                             "640",
                             "640x",
                             "x480",
                             "x",
                             "640x480x3",
                             "640 x 480",
                             "-640x480",
                             "+640x480",
                             "640x-480",
                             "0x480",
                             "640x0",
                             "640*480",
                             "640x480p",
                             "1000000000x1",
                             "1x4294967297",
                             "99999999999999999999x99999999999999999999",
                             "%n%s"})
        EXPECT_EQ(sizeOf(name), "unknown") << name;
    EXPECT_EQ(sizeOf(nullptr), "unknown");
    EXPECT_EQ(sizeOf(std::string(1 << 20, '9').append("x9").c_str()), "unknown");
}

TEST(Resolution, NullOutputsAreRefused) {
    int value = -7;
    EXPECT_EQ(getResolutionByStr("CIF", VIDEO_SYSTEM_PAL, nullptr, &value), 0);
    EXPECT_EQ(getResolutionByStr("CIF", VIDEO_SYSTEM_PAL, &value, nullptr), 0);
    EXPECT_EQ(value, -7);
}

TEST(ResolutionEntry, IsTheFirstOfTheSizeInEitherVideoSystem) {
    EXPECT_EQ(entryFor("CIF,4CIF,640x480", 352, 240), "CIF");
    EXPECT_EQ(entryFor("CIF,4CIF,640x480", 352, 288), "CIF");
    EXPECT_EQ(entryFor("CIF,4CIF,640x480", 704, 576), "4CIF");
    EXPECT_EQ(entryFor("CIF,4CIF,640x480", 640, 480), "640x480");
    EXPECT_EQ(entryFor("VGA,640x480", 640, 480), "VGA");
    EXPECT_EQ(entryFor("640x480,VGA", 640, 480), "640x480");
    EXPECT_EQ(entryFor("what,ever,vga", 640, 480), "vga") << "as the list writes it";
}

TEST(ResolutionEntry, EveryNameIsFoundByEachOfItsSizes) {
    std::string list;
    for (const Named& each : kNamed)
        list += std::string(each.name) + ",";
    for (const Named& each : kNamed) {
        EXPECT_EQ(entryFor(list.c_str(), each.width, each.heightNtsc), each.name);
        EXPECT_EQ(entryFor(list.c_str(), each.width, each.heightPal), each.name);
    }
}

TEST(ResolutionEntry, SeparatorsAreCommaSemicolonAndLineEnd) {
    EXPECT_EQ(entryFor("CIF; 4CIF ;\n 720P ,,VGA", 704, 480), "4CIF");
    EXPECT_EQ(entryFor("CIF; 4CIF ;\n 720P ,,VGA", 1280, 720), "720P");
    EXPECT_EQ(entryFor("CIF; 4CIF ;\n 720P ,,VGA\r", 640, 480), "VGA");
    EXPECT_EQ(entryFor("704x480, 352x240", 352, 240), "352x240");
}

TEST(ResolutionEntry, IsNotThereWhenNoEntryHasTheSize) {
    EXPECT_EQ(entryFor("CIF,4CIF", 353, 240), "(none)");
    EXPECT_EQ(entryFor("CIF,4CIF", 352, 480), "(none)");
    EXPECT_EQ(entryFor("", 352, 240), "(none)");
    EXPECT_EQ(entryFor(nullptr, 352, 240), "(none)");
    EXPECT_EQ(entryFor("CIF", 0, 0), "(none)");
    EXPECT_EQ(entryFor("bogus,,", 0, 0), "(none)");
    EXPECT_EQ(entryFor("-1x-1", -1, -1), "(none)");
    EXPECT_EQ(entryFor("1x1", INT_MAX, INT_MIN), "(none)");
}

TEST(ResolutionEntry, MustFitWithItsEnd) {
    EXPECT_EQ(entryFor("4CIF", 704, 480, 5), "4CIF");
    EXPECT_EQ(entryFor("4CIF", 704, 480, 4), "(none)");
    EXPECT_EQ(entryFor("4CIF", 704, 480, 1), "(none)");
    EXPECT_EQ(entryFor("4CIF", 704, 480, 0), "(none)");
    EXPECT_EQ(getResolutionStrByValue2("4CIF", 704, 480, nullptr, 99), 0);
}

TEST(ResolutionEntry, ListOfAHundredThousandSizesIsRead) {
    std::string list;
    for (int i = 1; i <= 100'000; ++i)
        list += std::to_string(i) + "x1,";
    EXPECT_EQ(entryFor(list.c_str(), 100'000, 1), "100000x1");
    EXPECT_EQ(entryFor(list.c_str(), 100'001, 1), "(none)");
}

} // namespace
