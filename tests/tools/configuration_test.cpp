// koine get, set, dump and diff.

#include "tests/tools/run_tool.h"

#include <gtest/gtest.h>

namespace koine::test {
namespace {

constexpr const char* kQuality = "Media.Profiles.Profile1.VideoEncoderConfiguration.Quality";
constexpr const char* kWidth = "Media.Profiles.Profile1.VideoEncoderConfiguration.Resolution.Width";
constexpr const char* kHeight = "Media.Profiles.Profile1.VideoEncoderConfiguration.Resolution.Height";

TEST(GetCommand, ACategoryIsListedWithoutItsHead) {
    GuardedDome dome;
    const Outcome outcome = runTool({"get", dome.url(), "Video", "camera.*"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_TRUE(contains(outcome.out, "Video.I0.Brightness=50\n")) << outcome.out;
    EXPECT_TRUE(contains(outcome.out, "\nCamera.")) << outcome.out;
    EXPECT_EQ(outcome.out.rfind("Video.", 0), 0U) << outcome.out;
}

TEST(GetCommand, AKeyAndAPatternOfKeysWillDo) {
    GuardedDome dome;
    EXPECT_EQ(runTool({"get", dome.url(), "Video.I0.Brightness"}).out, "Video.I0.Brightness=50\n");
    EXPECT_EQ(runTool({"get", dome.url(), "Video.*Default"}).out.find("Video.I0.Brightness="),
              std::string::npos);
    EXPECT_EQ(runTool({"get", dome.url(), "login"}).exitCode, 0);
}

TEST(GetCommand, AKeyThatTheDeviceDoesNotHaveIsRefused) {
    GuardedDome dome;
    const Outcome outcome = runTool({"get", dome.url(), "Video.No.Such.Key"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(contains(outcome.err, "reading Video.No.Such.Key: something is missing")) << outcome.err;
}

TEST(GetCommand, JsonIsOneObject) {
    GuardedDome dome;
    EXPECT_EQ(jsonAt(runTool({"get", "--json", dome.url(), "Video"}).out, "/Video.I0.Brightness"), "50");
}

TEST(SetCommand, OldAndNewValuesAreShownAndTheDeviceHoldsTheNew) {
    GuardedDome dome;
    const Outcome outcome = runTool({"set", dome.url(), "Video.I0.Brightness=61", "Video.I0.Contrast=33"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_TRUE(contains(outcome.out, "Video.I0.Brightness  50   61\n")) << outcome.out;
    EXPECT_EQ(dome.device().value("Video.I0.Brightness"), "61");
    EXPECT_EQ(dome.device().value("Video.I0.Contrast"), "33");
}

TEST(SetCommand, AllSettingsGoInOneLine) {
    GuardedDome dome;
    runTool({"set", dome.url(), "Video.I0.Brightness=61", "Camera.BLC.Mode=ON"});
    EXPECT_EQ(dome.device().requestLog().back(),
              "200 Config.cgi?action=set&Video.I0.Brightness=61&Camera.BLC.Mode=ON");
}

TEST(SetCommand, WhatTheDeviceRefusesChangesNothingAndIsToldInOneLine) {
    GuardedDome dome;
    const Outcome outcome =
        runTool({"set", dome.url(), "Video.I0.Brightness=61", std::string(kWidth) + "=333"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_TRUE(contains(outcome.err, "nothing was changed): unknown parameter or value")) << outcome.err;
    EXPECT_EQ(dome.device().value("Video.I0.Brightness"), "50");
}

TEST(SetCommand, AFrameRateBelow1IsRefusedByTheLibrary) {
    GuardedDome dome;
    const Outcome outcome =
        runTool({"set", dome.url(),
                 "Media.Profiles.Profile1.VideoEncoderConfiguration.RateControl.FrameRateLimit=0"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(contains(outcome.err, "a value in the request is not allowed")) << outcome.err;
}

TEST(SetCommand, QualitiesAreOnTheHostsScale) {
    GuardedDome dome; // its own scale goes from 0 to 100
    const Outcome outcome = runTool({"set", "--json", dome.url(), std::string(kQuality) + "=3.5"});
    EXPECT_EQ(jsonSize(outcome.out, "/changes"), 1U);
    EXPECT_EQ(jsonAt(outcome.out, "/changes/0/key"), kQuality);
    EXPECT_EQ(jsonAt(outcome.out, "/changes/0/old"), "6");
    EXPECT_EQ(jsonAt(outcome.out, "/changes/0/new"), "3.5");
    EXPECT_EQ(jsonAt(outcome.out, "/reconnect"), "false");
    EXPECT_EQ(dome.device().value(kQuality), "35.00");
    EXPECT_EQ(runTool({"get", dome.url(), kQuality}).out, std::string(kQuality) + "=3.5\n");
}

TEST(SetCommand, AChangedPictureSizeIsPointedOut) {
    GuardedDome dome;
    const std::vector<std::string> set = {"set", dome.url(), std::string(kWidth) + "=1280",
                                          std::string(kHeight) + "=720"};
    EXPECT_TRUE(contains(runTool(set).out, "must be opened again"));
}

TEST(SetCommand, ValuesMayHoldAnyCharacter) {
    GuardedDome dome;
    const std::string value = "a b&c=d#e+f%20\xc3\xa4";
    EXPECT_EQ(runTool({"set", dome.url(), "Camera.Text.Name=" + value}).exitCode, 0);
    EXPECT_EQ(dome.device().value("Camera.Text.Name"), value);
}

TEST(DumpAndDiff, AnUnchangedDeviceIsEqualToItsDump) {
    GuardedDome dome;
    const Outcome dump = runTool({"dump", dome.url()});
    EXPECT_EQ(dump.exitCode, 0);
    EXPECT_EQ(dump.out.rfind("# configuration of http://127.0.0.1:", 0), 0U) << dump.out;
    EXPECT_EQ(dump.out, runTool({"dump", dome.url()}).out);
    const TemporaryFile file(dump.out);
    const Outcome diff = runTool({"diff", dome.url(), file.path()});
    EXPECT_EQ(diff.exitCode, 0);
    EXPECT_TRUE(contains(diff.out, "No difference")) << diff.out;
    EXPECT_EQ(runTool({"diff", dome.url(), "-"}, dump.out).exitCode, 0);
}

TEST(DumpAndDiff, EveryDifferenceIsShownFromBothSides) {
    GuardedDome dome;
    const TemporaryFile file(runTool({"dump", dome.url()}).out + "Video.Gone=1\n");
    runTool({"set", dome.url(), "Video.I0.Brightness=61", "Video.New=x"});
    const Outcome diff = runTool({"diff", dome.url(), file.path()});
    EXPECT_EQ(diff.exitCode, 1);
    EXPECT_TRUE(contains(diff.out, "- Video.Gone=1\n- Video.I0.Brightness=50\n+ Video.I0.Brightness=61\n"
                                   "+ Video.New=x\n3 keys differ.\n"))
        << diff.out;
    const std::string json = runTool({"diff", "--json", dome.url(), file.path()}).out;
    ASSERT_EQ(jsonSize(json), 3U);
    EXPECT_EQ(jsonAt(json, "/1/file"), "50");
    EXPECT_EQ(jsonAt(json, "/1/device"), "61");
    EXPECT_EQ(jsonAt(json, "/0/device"), "(absent)");
}

TEST(DumpAndDiff, ACategoryThatTheDeviceDoesNotHaveIsARemark) {
    sim::SimulatedDevice device{sim::Options(sim::builtinModel("noprofiles"))};
    const Outcome dump = runTool({"dump", device.url()});
    EXPECT_EQ(dump.exitCode, 0);
    EXPECT_TRUE(contains(dump.out, "# the device has no Media\n")) << dump.out;
    EXPECT_EQ(dump.err, "") << "a device without media profiles is nothing to complain about";
}

TEST(DumpAndDiff, AFailureIsNoDifference) {
    GuardedDome dome;
    const TemporaryFile file(runTool({"dump", dome.url()}).out);
    dome.device().setFault(sim::parseFault("status=500;path=category=Video"));
    EXPECT_EQ(runTool({"dump", dome.url()}).exitCode, 1);
    EXPECT_EQ(runTool({"diff", dome.url(), file.path()}).exitCode, 5);
    EXPECT_EQ(runTool({"diff", dome.urlFor("wrong"), file.path()}).exitCode, 3);
    dome.device().setFault(sim::parseFault("refuse"));
    EXPECT_EQ(runTool({"diff", dome.url(), file.path()}).exitCode, 4);
}

} // namespace
} // namespace koine::test
