// What a filled capability cache says about the device: kind, flags, quality step, model name.

#include "camera.h"

namespace koine::test {
namespace {

class CapabilityFlags : public CameraTest {
protected:
    /// Fills a camera's cache with these pairs; a key may take the place of the usual ones.
    void learn(const std::string& pairs) {
        camera.has(kCapabilityLine, pairs);
        EXPECT_EQ(camera.getCacheCapability(kUser, 0, nullptr, nullptr), 1);
    }
    CgiMap pairs() {
        Answer answer;
        EXPECT_EQ(camera.getCacheCapability(kUser, 0, nullptr, answer.out()), 1);
        return pairsOf(answer.text());
    }
};

TEST_F(CapabilityFlags, TheKindOfSlaveComesFromTheDeviceWord) {
    camera.set_which_slave("NVR");
    learn("Device=dvr-16\n");
    EXPECT_EQ(camera.get_which_slave(), 2);
}

TEST_F(CapabilityFlags, AnUnknownDeviceWordLeavesTheKindOfSlave) {
    camera.set_which_slave("NVR");
    learn("Device=DOORBELL\n");
    EXPECT_EQ(camera.get_which_slave(), 1);
}

TEST_F(CapabilityFlags, FunctionsAndPtzSetTheirFlags) {
    learn("Capability.Function=AudioVolume,ResoIndep,Profile\nCapability.PTZ=IDPTZ\n");
    EXPECT_NE(camera.getIsResoIndep(), 0);
    EXPECT_NE(camera.getIsTlProfile(), 0);
    EXPECT_NE(camera.getIsIDPTZ(), 0);
}

TEST_F(CapabilityFlags, EachFlagReadsItsOwnKey) {
    learn("Capability.Function=IDPTZ\nCapability.PTZ=ResoIndep,Profile\n");
    EXPECT_EQ(camera.getIsResoIndep(), 0);
    EXPECT_EQ(camera.getIsTlProfile(), 0);
    EXPECT_EQ(camera.getIsIDPTZ(), 0);
}

TEST_F(CapabilityFlags, AFillClearsTheThreeClassifiedFlags) {
    camera.setIsResoIndep(1);
    camera.setIsTlProfile(1);
    camera.setIsIDPTZ(1);
    learn("Device=IPCAM\n");
    EXPECT_EQ(camera.getIsResoIndep(), 0);
    EXPECT_EQ(camera.getIsTlProfile(), 0);
    EXPECT_EQ(camera.getIsIDPTZ(), 0);
}

TEST_F(CapabilityFlags, ClassifiedKeysExistAfterwardsAndTestedKeysDoNot) {
    learn("Some.Key=1\n");
    CgiMap found = pairs();
    for (const char* key : {"Device", "Capability.Function", "Capability.PTZ"})
        EXPECT_EQ(found.count(key), 1U) << key;
    EXPECT_EQ(found["Device"], "");
    EXPECT_EQ(found.count("Capability.Remote.Event.Trigger.Enabled"), 0U);
}

// ---- Video analytics

TEST_F(CapabilityFlags, VideoAnalyticsIsAFunctionThatBeginsWithItsTwoLetters) {
    struct Row {
        const char* functions;
        int expected;
    };
    const Row rows[] = {{"AudioVolume,VA", 1}, {"VA", 1},   {"va", 1},  {"Vault,X", 1}, {"X=VA", 1},
                        {"AudioVolume", 0},    {"", 0},     {"V", 0},   {"AVA", 0},     {"X, VA", 0},
                        {"X;VA", 0},           {",,VA", 1}, {"V,A", 0}, {"Vision", 0},  {"x,vA,y", 1}};
    for (const Row& row : rows) {
        Camera one;
        one.has(kCapabilityLine, std::string("Capability.Function=") + row.functions + "\n");
        EXPECT_EQ(one.getCacheCapability(kUser, 0, nullptr, nullptr), 1);
        EXPECT_EQ(one.getHasVA(), row.expected) << row.functions;
    }
}

TEST_F(CapabilityFlags, VideoAnalyticsIsNeverTakenBack) {
    camera.setHasVA(1);
    learn("Capability.Function=\n");
    EXPECT_EQ(camera.getHasVA(), 1);
}

TEST_F(CapabilityFlags, VideoAnalyticsCanBeReadAgainByItself) {
    learn("Capability.Function=VA\n");
    camera.setHasVA(0);
    camera.paserCapabilitySupport();
    EXPECT_EQ(camera.getHasVA(), 1);
}

TEST_F(CapabilityFlags, ReadingVideoAnalyticsOfAnEmptyCacheNamesTheFunctionKey) {
    camera.paserCapabilitySupport();
    EXPECT_EQ(camera.getHasVA(), 0);
    EXPECT_EQ(camera.asked(), std::vector<std::string>{});
}

// ---- Remote event trigger

TEST_F(CapabilityFlags, ARemoteEventTriggerIsAnyWordThatBeginsWithYes) {
    struct Row {
        const char* value;
        int expected;
    };
    const Row rows[] = {{"YES", 1}, {"yes", 1}, {"Yes, please", 1}, {"NO", 0},
                        {"", 0},    {"YE", 0},  {" YES", 0}};
    for (const Row& row : rows) {
        Camera one;
        one.has(kCapabilityLine, std::string("Capability.Remote.Event.Trigger.Enabled=") + row.value + "\n");
        EXPECT_EQ(one.getCacheCapability(kUser, 0, nullptr, nullptr), 1);
        EXPECT_EQ(one.getIsRemoteEventTrigger(), row.expected) << row.value;
    }
}

TEST_F(CapabilityFlags, ARemoteEventTriggerIsNeverTakenBack) {
    camera.setIsIsRemoteEventTrigger(1);
    learn("Capability.Remote.Event.Trigger.Enabled=NO\n");
    EXPECT_EQ(camera.getIsRemoteEventTrigger(), 1);
}

// ---- Quality step and model name

TEST_F(CapabilityFlags, TheQualityStepOfTheDeviceIsReadAsANumber) {
    camera.converts = false; // the conversion writes a step of its own
    learn("Capability.Video.Quality.Value.Step=2.5rest\n");
    EXPECT_FLOAT_EQ(camera.getQualityStep(), 2.5F);
    EXPECT_EQ(pairs()["Capability.Video.Quality.Value.Step"], "2.5");
}

TEST_F(CapabilityFlags, WithoutAStepInTheMapTheStepStays) {
    camera.converts = false;
    learn("Device=IPCAM\nCapability.Video.Quality.Value.Steps=9\n");
    EXPECT_FLOAT_EQ(camera.getQualityStep(), 0.1F);
    EXPECT_EQ(pairs().count("Capability.Video.Quality.Value.Step"), 0U);
}

TEST_F(CapabilityFlags, TheBoundsOfTheConversionDecideTheStepEvenAgainstTheDevice) {
    learn("Capability.Video.Quality.Value.Step=2.5\n");
    EXPECT_FLOAT_EQ(camera.getQualityStep(), 1.0F);
    EXPECT_EQ(pairs()["Capability.Video.Quality.Value.Step"], "1");
}

TEST_F(CapabilityFlags, ATenthOfTheRangeIsTheStep) {
    learn("Capability.Video.Quality.Src.Max=100\nCapability.Video.Quality.Src.Min=20\n");
    EXPECT_FLOAT_EQ(camera.getQualityStep(), 8.0F);
    EXPECT_FLOAT_EQ(camera.getSettingQualitySrcMax(), 100.0F);
    EXPECT_FLOAT_EQ(camera.getSettingQualitySrcMin(), 20.0F);
}

TEST_F(CapabilityFlags, TheModelNameIsTheIdentifier) {
    learn("ID=TL-9000\n");
    EXPECT_EQ(camera.get_model_name(), "TL-9000");
}

TEST_F(CapabilityFlags, AMachineWithoutIdentifierKeepsTheModelName) {
    camera.set_model_name("known");
    camera.has(kLoginLine, "Product-ID-Minor=NOCAP\n");
    camera.has(kMachineLine, "Product.Type=IPCAM\n");
    EXPECT_EQ(camera.getCacheCapability(kUser, 0, nullptr, nullptr), 1);
    EXPECT_EQ(camera.get_model_name(), "known");
}

/// Notes the order in which what was learned is stored.
class LearnedOrder : public Camera {
public:
    std::vector<std::string> order;
    void set_which_slave(const char* kind) override { order.push_back(std::string("slave ") + kind); }
    void setIsResoIndep(int) override { order.push_back("independent"); }
    void setIsTlProfile(int) override { order.push_back("profile"); }
    void setIsIDPTZ(int) override { order.push_back("ptz"); }
    void setHasVA(int has) override { order.push_back("analytics " + std::to_string(has)); }
    void setIsIsRemoteEventTrigger(int is) override { order.push_back("trigger " + std::to_string(is)); }
    void setQualityStep(float) override { order.push_back("step"); }
    void set_model_name(const char* name) override { order.push_back(std::string("model ") + name); }
};

TEST(LearnedCapabilities, AreStoredThroughTheSettersInOrder) {
    LearnedOrder one;
    one.conversionResults["capability"] = 1;
    one.converts = false;
    one.has(kCapabilityLine,
            "Device=NVR\nID=N1\nCapability.Function=VA\nCapability.Video.Quality.Value.Step=1\n"
            "Capability.Remote.Event.Trigger.Enabled=YES\n");
    EXPECT_EQ(one.getCacheCapability(kUser, 0, nullptr, nullptr), 1);
    EXPECT_EQ(one.order, (std::vector<std::string>{"slave NVR", "independent", "profile", "ptz",
                                                   "analytics 1", "trigger 1", "step", "model N1"}));
}

} // namespace
} // namespace koine::test
