// The capabilities of machines: products that answer in product keys.

#include "camera.h"

namespace koine::test {
namespace {

const std::string kSizes = "Capability.Video.Resolution.NxN";

class MachineConversion : public CameraTest {
protected:
    void convert() { EXPECT_EQ(camera.BaseRequest::convertCgiCapability(&capability, &machine, &login), 1); }
    std::string at(const std::string& key) const {
        const auto found = capability.find(key);
        return found == capability.end() ? "(absent)" : found->second;
    }

    CgiMap capability{{"Device", "OLD"}};
    CgiMap machine{{"Other", "1"}};
    CgiMap login{{"Product-Name", "Camera"}};
};

TEST_F(MachineConversion, EveryKeyHasItsPlace) {
    const std::pair<const char*, const char*> rows[] = {
        {"Product.Type", "Device"},
        {"Product.ID", "ID"},
        {"Product.ID", "NetworkID"},
        {"Video.Input.Num", "Capability.Video.Input.Channel"},
        {"Video.Format", "Capability.Video.Format"},
        {"Video.Format.Default", "Capability.Video.MobileFormat"},
        {"Video.Resolution", "Capability.Video.Resolution"},
        {"Audio.Input.Num", "Capability.Audio.Input.Channel"},
        {"Audio.Output.Num", "Capability.Audio.Output.Channel"},
        {"Audio.Format", "Capability.Audio.Format"},
    };
    for (const auto& [from, to] : rows) {
        CgiMap target{{"Seed", "1"}, {to, "old"}};
        CgiMap source{{from, "new"}};
        CgiMap user = login;
        EXPECT_EQ(camera.BaseRequest::convertCgiCapability(&target, &source, &user), 1);
        EXPECT_EQ(target[to], "new") << from;
        CgiMap other{{"Other", "1"}};
        target[to] = "old";
        EXPECT_EQ(camera.BaseRequest::convertCgiCapability(&target, &other, &user), 1);
        EXPECT_EQ(target[to], "old") << "an absent key changes nothing: " << from;
    }
}

TEST_F(MachineConversion, NothingElseIsTakenOver) {
    machine = {{"Product.Type", "IPCAM"}, {"Video.Formats", "x"}, {"product.id", "x"}};
    convert();
    EXPECT_EQ(capability, (CgiMap{{"Device", "IPCAM"}, {"User-Level", "SUPERVISOR"}, {"Video-System", ""}}));
}

TEST_F(MachineConversion, AnEmptyValueIsTakenOver) {
    machine["Product.Type"] = "";
    convert();
    EXPECT_EQ(at("Device"), "");
}

TEST_F(MachineConversion, AnyEmptyMapLeavesAllThreeAlone) {
    for (CgiMap* empty : {&capability, &machine, &login}) {
        const CgiMap kept = *empty;
        machine["Product.Type"] = "NEW";
        empty->clear();
        const CgiMap before = capability;
        convert();
        EXPECT_EQ(capability, before);
        EXPECT_EQ(login.count("Video-System"), 0U);
        *empty = kept;
    }
}

TEST_F(MachineConversion, SizesAreSeparatedByACommaAndASpace) {
    machine["Video.Resolution"] = "CIF,D1,XX,VGA";
    convert();
    EXPECT_EQ(at(kSizes), "352x240, 720x480, 640x480");
    EXPECT_EQ(at("Capability.Video.Resolution"), "CIF,D1,XX,VGA");
}

TEST_F(MachineConversion, ALineEndSeparatesNamesToo) {
    capability["Capability.Video.Resolution"] = "CIF\nVGA";
    convert();
    EXPECT_EQ(at(kSizes), "352x240, 640x480");
}

TEST_F(MachineConversion, SizesFollowTheVideoSystem) {
    machine["Video.Resolution"] = "CIF,D1";
    login["Video-System"] = "PAL";
    convert();
    EXPECT_EQ(at(kSizes), "352x288, 720x576");
    EXPECT_EQ(at("Video-System"), "PAL");
}

TEST_F(MachineConversion, AListThatIsThereIsKept) {
    capability[kSizes] = "1x1";
    machine["Video.Resolution"] = "CIF";
    convert();
    EXPECT_EQ(at(kSizes), "1x1");
}

TEST_F(MachineConversion, NamesThatWereThereBeforeAreConverted) {
    capability["Capability.Video.Resolution"] = "QCIF";
    convert();
    EXPECT_EQ(at(kSizes), "176x120");
}

TEST_F(MachineConversion, UnknownNamesLeaveAnEmptyList) {
    machine["Video.Resolution"] = "XX";
    convert();
    EXPECT_EQ(at(kSizes), "");
}

TEST_F(MachineConversion, SizesInUseMeanNothing) {
    capability["Capability.Video.Resolution.Use"] = "a;b";
    convert();
    EXPECT_EQ(at(kSizes), "(absent)");
}

TEST_F(MachineConversion, BothMapsHaveAVideoSystemAfterwards) {
    convert();
    EXPECT_EQ(login.count("Video-System"), 1U) << "read with an inserting look-up";
    EXPECT_EQ(at("Video-System"), "");
}

TEST_F(MachineConversion, TheUserLevelIsThatOfTheLogin) {
    convert();
    EXPECT_EQ(at("User-Level"), "SUPERVISOR");
    login["User-Level"] = "OPERATOR";
    convert();
    EXPECT_EQ(at("User-Level"), "OPERATOR");
}

TEST_F(MachineConversion, SetsNoQualityAndNoListsOfEncodings) {
    machine["Video.Resolution"] = "CIF";
    convert();
    for (const auto& [key, value] : capability) {
        EXPECT_EQ(key.find("Quality"), std::string::npos) << key;
        EXPECT_EQ(key.find("H264"), std::string::npos) << key;
        EXPECT_EQ(key.find("MPEG4"), std::string::npos) << key;
        EXPECT_EQ(key.find("JPEG"), std::string::npos) << key;
    }
    EXPECT_FLOAT_EQ(camera.getSettingQualitySrcMax(), 1.0F);
    EXPECT_FLOAT_EQ(camera.getQualityStep(), 0.1F);
}

TEST_F(MachineConversion, AVideoServerKeepsItsDeviceId) {
    capability["DeviceID"] = "7";
    machine["Product.Type"] = "VIDEO SERVER";
    convert();
    EXPECT_EQ(at("DeviceID"), "7");
}

} // namespace
} // namespace koine::test
