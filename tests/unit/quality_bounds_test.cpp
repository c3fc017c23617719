// The request-wide bounds and step of the quality, and what they leave in the capability cache.

#include "camera.h"

namespace koine::test {
namespace {

class QualityBounds : public CameraTest {
protected:
    /// The entry of the capability cache; nothing is asked of the device for it.
    std::string entry(const std::string& suffix) {
        camera.converts = false;
        camera.has(kCapabilityLine, "Device=IPCAM\n");
        Answer answer;
        EXPECT_EQ(camera.getCacheCapability(kUser, 0, nullptr, answer.out()), 1);
        CgiMap pairs = pairsOf(answer.text());
        return pairs.count("Capability.Video.Quality." + suffix) == 0
                   ? "(absent)"
                   : pairs["Capability.Video.Quality." + suffix];
    }
};

TEST_F(QualityBounds, StartWithATenthBetweenZeroAndOne) {
    EXPECT_FLOAT_EQ(camera.getQualityStep(), 0.1F);
    EXPECT_FLOAT_EQ(camera.getSettingQualitySrcMin(), 0.0F);
    EXPECT_FLOAT_EQ(camera.getSettingQualitySrcMax(), 1.0F);
    EXPECT_EQ(entry("Value.Step"), "(absent)");
    EXPECT_EQ(entry("Src.Max"), "(absent)");
    EXPECT_EQ(entry("Src.Min"), "(absent)");
}

TEST_F(QualityBounds, TheStepIsStoredAndWrittenShort) {
    camera.setQualityStep(0.5F);
    EXPECT_FLOAT_EQ(camera.getQualityStep(), 0.5F);
    EXPECT_EQ(entry("Value.Step"), "0.5");
    EXPECT_EQ(entry("Src.Max"), "(absent)");
}

TEST_F(QualityBounds, NumbersAreWrittenWithSixSignificantDigits) {
    camera.setSettingQualitySrcMax(1234567.0F);
    EXPECT_EQ(entry("Src.Max"), "1.23457e+06");
    camera.setSettingQualitySrcMax(33.3333333F);
    EXPECT_EQ(entry("Src.Max"), "33.3333");
    camera.setSettingQualitySrcMin(-0.00001F);
    EXPECT_EQ(entry("Src.Min"), "-1e-05");
    camera.setSettingQualitySrcMin(100.0F);
    EXPECT_EQ(entry("Src.Min"), "100");
}

TEST_F(QualityBounds, TheMaximumSetsTheStepToATenthOfTheRange) {
    camera.setSettingQualitySrcMax(10.0F);
    EXPECT_FLOAT_EQ(camera.getQualityStep(), 1.0F);
    EXPECT_EQ(entry("Src.Max"), "10");
    EXPECT_EQ(entry("Src.Min"), "(absent)");
    EXPECT_EQ(entry("Value.Step"), "1");
}

TEST_F(QualityBounds, TheMinimumSetsTheStepToATenthOfTheRange) {
    camera.setSettingQualitySrcMax(10.0F);
    camera.setSettingQualitySrcMin(2.0F);
    EXPECT_FLOAT_EQ(camera.getQualityStep(), 0.8F);
    EXPECT_EQ(entry("Src.Min"), "2");
    EXPECT_EQ(entry("Value.Step"), "0.8");
}

TEST_F(QualityBounds, AStepThatWasSetGivesWayToTheNextBound) {
    camera.setQualityStep(7.0F);
    camera.setSettingQualitySrcMin(0.0F);
    EXPECT_FLOAT_EQ(camera.getQualityStep(), 0.1F);
}

TEST_F(QualityBounds, ARangeUpsideDownGivesANegativeStep) {
    camera.setSettingQualitySrcMin(11.0F);
    EXPECT_FLOAT_EQ(camera.getQualityStep(), -1.0F);
    EXPECT_EQ(entry("Value.Step"), "-1");
}

/// Replaces the getters that the setters must go through.
class OwnBounds : public Camera {
public:
    std::vector<float> steps;
    float getSettingQualitySrcMax() override { return 50.0F; }
    float getSettingQualitySrcMin() override { return 20.0F; }
    void setQualityStep(float step) override { steps.push_back(step); }
};

TEST(OverriddenQualityBounds, DecideTheStep) {
    OwnBounds one;
    one.setSettingQualitySrcMax(1.0F);
    one.setSettingQualitySrcMin(1.0F);
    ASSERT_EQ(one.steps.size(), 2U);
    EXPECT_FLOAT_EQ(one.steps[0], 3.0F);
    EXPECT_FLOAT_EQ(one.steps[1], 3.0F);
}

TEST_F(QualityBounds, AreApartFromThoseOfTheStreamUsers) {
    camera.setSettingQualitySrcMax(10.0F);
    EXPECT_FLOAT_EQ(camera.getQualityStep(kUser), 0.1F);
    camera.client().setSettingQualitySrcMax(100.0F);
    EXPECT_FLOAT_EQ(camera.getQualityStep(), 1.0F);
}

} // namespace
} // namespace koine::test
