// Both capability dialects brought into one map: the device's own, and that of machines.

#include "camera.h"

namespace koine::test {
namespace {

const std::string kSizes = "Capability.Video.Resolution.NxN";

class CapabilityConversion : public CameraTest {
protected:
    void convert() { EXPECT_EQ(camera.BaseRequest::convertCgiCapability(&capability, &login), 1); }
    std::string at(const std::string& key) const {
        const auto found = capability.find(key);
        return found == capability.end() ? "(absent)" : found->second;
    }
    std::string codec(const std::string& name) const {
        return at("Capability.Video." + name + ".Resolution.NxN");
    }

    CgiMap capability{{"Device", "IPCAM"}};
    CgiMap login{{"Product-Name", "Camera"}};
};

// ---- The device's own dialect

TEST_F(CapabilityConversion, AnEmptyMapStaysEmpty) {
    capability.clear();
    convert();
    EXPECT_TRUE(capability.empty());
    EXPECT_FLOAT_EQ(camera.getSettingQualitySrcMax(), 1.0F);
}

TEST_F(CapabilityConversion, WithoutALoginNothingChanges) {
    login.clear();
    const CgiMap before = capability;
    convert();
    EXPECT_EQ(capability, before);
    EXPECT_TRUE(login.empty());
    EXPECT_FLOAT_EQ(camera.getSettingQualitySrcMax(), 1.0F);
}

TEST_F(CapabilityConversion, TheNetworkIdIsTheIdUnlessTheDeviceHasOne) {
    capability["ID"] = "C1";
    convert();
    EXPECT_EQ(at("NetworkID"), "C1");
    capability["NetworkID"] = "N1";
    convert();
    EXPECT_EQ(at("NetworkID"), "N1");
}

TEST_F(CapabilityConversion, WithoutAnIdBothIdentifiersAreEmpty) {
    convert();
    EXPECT_EQ(at("NetworkID"), "");
    EXPECT_EQ(at("ID"), "");
}

TEST_F(CapabilityConversion, AnIdIsNotCreatedForADeviceWithANetworkId) {
    capability["NetworkID"] = "N1";
    convert();
    EXPECT_EQ(at("ID"), "(absent)");
}

TEST_F(CapabilityConversion, TheSizesInUseAreTakenAsTheyStand) {
    capability["Capability.Video.Resolution.Use"] = "a;b,c";
    convert();
    EXPECT_EQ(at(kSizes), "a,b,c");
}

TEST_F(CapabilityConversion, TheSizesInUseReplaceAList) {
    capability["Capability.Video.Resolution.Use"] = ";;640x480;,CIF,";
    capability["Capability.Video.Resolution"] = "QCIF";
    capability[kSizes] = "1x1";
    convert();
    EXPECT_EQ(at(kSizes), "640x480,CIF");
}

TEST_F(CapabilityConversion, NamesBecomeSizes) {
    capability["Capability.Video.Resolution"] = "CIF,D1,640x480";
    convert();
    EXPECT_EQ(at(kSizes), "352x240,720x480,640x480");
}

TEST_F(CapabilityConversion, SizesFollowTheVideoSystemOfTheLogin) {
    login["Video-System"] = "PAL";
    capability["Capability.Video.Resolution"] = "CIF,D1";
    convert();
    EXPECT_EQ(at(kSizes), "352x288,720x576");
}

TEST_F(CapabilityConversion, OnlyTheExactWordIsPal) {
    for (const char* system : {"pal", "PAL ", "NTSC", "PAL-B", ""}) {
        CgiMap one{{"Capability.Video.Resolution", "CIF"}};
        login["Video-System"] = system;
        EXPECT_EQ(camera.BaseRequest::convertCgiCapability(&one, &login), 1);
        EXPECT_EQ(one[kSizes], "352x240") << system;
    }
}

TEST_F(CapabilityConversion, NamesThatAreNotKnownAreSkipped) {
    capability["Capability.Video.Resolution"] = "XX,CIF,YY,QCIF";
    convert();
    EXPECT_EQ(at(kSizes), "352x240,176x120");
}

TEST_F(CapabilityConversion, ALineEndSeparatesToo) {
    capability["Capability.Video.Jpeg.Resolution"] = "CIF\nQVGA";
    capability["Capability.Video.Resolution.Use"] = "a\nb";
    convert();
    EXPECT_EQ(codec("JPEG"), "352x240,320x240");
    EXPECT_EQ(at(kSizes), "a,b");
}

TEST_F(CapabilityConversion, ASemicolonDoesNotSeparateNames) {
    capability["Capability.Video.Resolution"] = "CIF;D1,QVGA";
    convert();
    EXPECT_EQ(at(kSizes), "320x240");
}

TEST_F(CapabilityConversion, AListOfTheDeviceIsKept) {
    capability[kSizes] = "1x1";
    capability["Capability.Video.Resolution"] = "CIF";
    convert();
    EXPECT_EQ(at(kSizes), "1x1");
}

TEST_F(CapabilityConversion, AnEmptyListOfTheDeviceIsAListAsWell) {
    capability[kSizes] = "";
    capability["Capability.Video.Resolution"] = "CIF";
    convert();
    EXPECT_EQ(at(kSizes), "");
    EXPECT_EQ(codec("H264"), "");
}

TEST_F(CapabilityConversion, WithoutSizesThereAreNoLists) {
    convert();
    EXPECT_EQ(at(kSizes), "(absent)");
    for (const char* name : {"H264", "MPEG4", "JPEG"})
        EXPECT_EQ(codec(name), "(absent)");
}

TEST_F(CapabilityConversion, EachEncodingWithoutAListGetsTheCommonOne) {
    capability[kSizes] = "1x1,2x2";
    convert();
    for (const char* name : {"H264", "MPEG4", "JPEG"})
        EXPECT_EQ(codec(name), "1x1,2x2") << name;
}

TEST_F(CapabilityConversion, ListsOfEncodingsSurvive) {
    capability[kSizes] = "1x1";
    for (const char* name : {"H264", "MPEG4", "JPEG"})
        capability[std::string("Capability.Video.") + name + ".Resolution.NxN"] = name;
    convert();
    for (const char* name : {"H264", "MPEG4", "JPEG"})
        EXPECT_EQ(codec(name), name);
}

TEST_F(CapabilityConversion, NamesOfAnEncodingReplaceItsList) {
    capability[kSizes] = "1x1";
    capability["Capability.Video.MPEG4.Resolution.NxN"] = "2x2";
    capability["Capability.Video.Mpeg4.Resolution"] = "CIF";
    capability["Capability.Video.Jpeg.Resolution"] = "VGA,QVGA";
    convert();
    EXPECT_EQ(codec("H264"), "1x1");
    EXPECT_EQ(codec("MPEG4"), "352x240");
    EXPECT_EQ(codec("JPEG"), "640x480,320x240");
}

TEST_F(CapabilityConversion, NamesOfAnEncodingNeedNoCommonList) {
    capability["Capability.Video.Jpeg.Resolution"] = "VGA";
    convert();
    EXPECT_EQ(codec("JPEG"), "640x480");
    EXPECT_EQ(codec("MPEG4"), "(absent)");
}

// ---- The carry-over of the last list

TEST_F(CapabilityConversion, AListOfUnknownNamesCarriesTheListBeforeIt) {
    capability["Capability.Video.Resolution"] = "CIF,D1";
    capability["Capability.Video.Mpeg4.Resolution"] = "XX,YY";
    convert();
    EXPECT_EQ(codec("MPEG4"), "352x240,720x480");
}

TEST_F(CapabilityConversion, TheCarryOverCanPassThroughTwoLists) {
    capability["Capability.Video.Resolution"] = "CIF";
    capability["Capability.Video.Mpeg4.Resolution"] = "XX";
    capability["Capability.Video.Jpeg.Resolution"] = "YY";
    convert();
    EXPECT_EQ(codec("JPEG"), "352x240");
}

TEST_F(CapabilityConversion, TheCarryOverIsThatOfTheLastList) {
    capability["Capability.Video.Resolution"] = "CIF";
    capability["Capability.Video.Mpeg4.Resolution"] = "VGA";
    capability["Capability.Video.Jpeg.Resolution"] = "YY";
    convert();
    EXPECT_EQ(codec("JPEG"), "640x480");
}

TEST_F(CapabilityConversion, TheSizesInUseAreCarriedToo) {
    capability["Capability.Video.Resolution.Use"] = "a;b";
    capability["Capability.Video.Jpeg.Resolution"] = "XX";
    convert();
    EXPECT_EQ(codec("JPEG"), "a,b");
}

TEST_F(CapabilityConversion, AListOfTheDeviceIsNotCarried) {
    capability[kSizes] = "1x1";
    capability["Capability.Video.Jpeg.Resolution"] = "XX";
    convert();
    EXPECT_EQ(codec("JPEG"), "");
}

TEST_F(CapabilityConversion, NothingIsCarriedFromOneCallToTheNext) {
    capability["Capability.Video.Resolution"] = "CIF";
    convert();
    CgiMap other{{"Capability.Video.Resolution", "XX"}};
    EXPECT_EQ(camera.BaseRequest::convertCgiCapability(&other, &login), 1);
    EXPECT_EQ(other[kSizes], "");
}

// ---- Quality, user, video system

TEST_F(CapabilityConversion, QualityBoundsHaveDefaults) {
    convert();
    EXPECT_EQ(at("Capability.Video.Quality.Max"), "10");
    EXPECT_EQ(at("Capability.Video.Quality.Min"), "0");
    EXPECT_EQ(at("Capability.Video.Quality.Src.Max"), "10");
    EXPECT_EQ(at("Capability.Video.Quality.Src.Min"), "0");
    EXPECT_FLOAT_EQ(camera.getSettingQualitySrcMax(), 10.0F);
    EXPECT_FLOAT_EQ(camera.getSettingQualitySrcMin(), 0.0F);
}

TEST_F(CapabilityConversion, BoundsOfTheSourceFollowTheBoundsOfTheDevice) {
    capability["Capability.Video.Quality.Max"] = "100";
    capability["Capability.Video.Quality.Min"] = "1.5";
    convert();
    EXPECT_EQ(at("Capability.Video.Quality.Src.Max"), "100");
    EXPECT_EQ(at("Capability.Video.Quality.Src.Min"), "1.5");
    EXPECT_FLOAT_EQ(camera.getSettingQualitySrcMax(), 100.0F);
    EXPECT_FLOAT_EQ(camera.getSettingQualitySrcMin(), 1.5F);
}

TEST_F(CapabilityConversion, BoundsOfTheSourceThatAreGivenAreKept) {
    capability["Capability.Video.Quality.Max"] = "10";
    capability["Capability.Video.Quality.Src.Max"] = "31";
    capability["Capability.Video.Quality.Src.Min"] = "-1";
    convert();
    EXPECT_EQ(at("Capability.Video.Quality.Max"), "10");
    EXPECT_EQ(at("Capability.Video.Quality.Src.Max"), "31");
    EXPECT_FLOAT_EQ(camera.getSettingQualitySrcMax(), 31.0F);
    EXPECT_FLOAT_EQ(camera.getSettingQualitySrcMin(), -1.0F);
}

TEST_F(CapabilityConversion, ABoundThatIsNoNumberIsZero) {
    capability["Capability.Video.Quality.Src.Max"] = "best";
    convert();
    EXPECT_EQ(at("Capability.Video.Quality.Src.Max"), "best");
    EXPECT_FLOAT_EQ(camera.getSettingQualitySrcMax(), 0.0F);
}

TEST_F(CapabilityConversion, TheUserLevelIsThatOfTheLogin) {
    login["User-Level"] = "VIEWER";
    capability["User-Level"] = "ROOT";
    convert();
    EXPECT_EQ(at("User-Level"), "VIEWER");
    login["User-Level"] = "";
    convert();
    EXPECT_EQ(at("User-Level"), "");
}

TEST_F(CapabilityConversion, ALoginWithoutUserLevelIsASupervisor) {
    capability["User-Level"] = "ROOT";
    convert();
    EXPECT_EQ(at("User-Level"), "SUPERVISOR");
}

TEST_F(CapabilityConversion, TheVideoSystemIsCopiedWhenTheLoginHasOne) {
    convert();
    EXPECT_EQ(at("Video-System"), "(absent)");
    EXPECT_EQ(login.count("Video-System"), 0U) << "looked up without inserting";
    login["Video-System"] = "SECAM";
    convert();
    EXPECT_EQ(at("Video-System"), "SECAM");
}

TEST_F(CapabilityConversion, TheDeviceIdOfOtherDevicesIsKept) {
    capability["DeviceID"] = "7";
    convert();
    EXPECT_EQ(at("DeviceID"), "7");
}

} // namespace
} // namespace koine::test
