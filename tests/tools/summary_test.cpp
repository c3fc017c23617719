// koine info, profiles and stream.

#include "tests/tools/run_tool.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace koine::test {
namespace {

TEST(InfoCommand, WorksOnEveryModelWithAndWithoutAuthentication) {
    for (const std::string& model : sim::modelNames())
        for (const sim::AuthKind auth : {sim::AuthKind::none, sim::AuthKind::digestSha256}) {
            sim::Options options(sim::builtinModel(model));
            options.auth = auth;
            options.username = kUser;
            options.password = kPassword;
            sim::SimulatedDevice device(options);
            const TemporaryFile password(kPassword);
            const Outcome outcome =
                runTool({"info", "-u", kUser, "--password-file", password.path(), device.url()});
            EXPECT_EQ(outcome.exitCode, 0) << model;
            EXPECT_EQ(outcome.err, "") << model;
            EXPECT_TRUE(contains(outcome.out, "Product ")) << model << outcome.out;
        }
}

TEST(InfoCommand, ShowsWhatThePersonWantsToKnow) {
    GuardedDome dome;
    const std::string out = runTool({"info", dome.url()}).out;
    for (const char* line : {"Product         TL-4410 Dome\n", "Video channels  1\n",
                             "Encodings       MJPEG,M.PEG4,H.264\n", "Profiles        3\n",
                             "1  PROFILE-MAIN    ANY     H264      1920x1080   25        6     4000   25  "
                             "JPEG,MPEG4,H264\n"})
        EXPECT_TRUE(contains(out, line)) << line << out;
}

TEST(InfoCommand, JsonHasTheSame) {
    GuardedDome dome;
    const std::string json = runTool({"info", "--json", dome.url()}).out;
    EXPECT_EQ(jsonAt(json, "/product"), "TL-4410 Dome");
    EXPECT_EQ(jsonAt(json, "/kinds/media_profiles"), "true");
    EXPECT_EQ(jsonAt(json, "/kinds/pell"), "false");
    ASSERT_EQ(jsonSize(json, "/profiles"), 3U);
    EXPECT_EQ(jsonAt(json, "/profiles/2/token"), "PROFILE-MOBILE");
    EXPECT_EQ(jsonAt(json, "/profiles/2/live"), "MOBILE");
}

TEST(InfoCommand, ATextOfTheDeviceCannotSteerWhatIsShown) {
    sim::SimulatedDevice device{sim::Options(sim::builtinModel("dome"))};
    device.setFault(sim::parseFault("answer=0\\nOK\\nProduct-Name=\x1b]0;owned\x07\\n;path=Login"));
    const std::string out = runTool({"info", device.url()}).out;
    EXPECT_EQ(out.find('\x1b'), std::string::npos) << out;
    EXPECT_TRUE(contains(out, "?]0;owned?")) << out;
}

TEST(ProfilesCommand, ListsTheProfilesAlone) {
    GuardedDome dome;
    const Outcome outcome = runTool({"profiles", dome.url()});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out.rfind("#  TOKEN", 0), 0U) << outcome.out;
    EXPECT_EQ(jsonAt(runTool({"profiles", "--json", dome.url()}).out, "/0/size"), "1920x1080");
}

TEST(ProfilesCommand, ADeviceWithoutProfilesIsNoFailure) {
    sim::SimulatedDevice device{sim::Options(sim::builtinModel("noprofiles"))};
    const Outcome outcome = runTool({"profiles", device.url()});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.out, "The device has no media profiles.\n");
    EXPECT_EQ(runTool({"profiles", "--json", device.url()}).out, "[]\n");
}

TEST(StreamCommand, TheEncoderIsSetUpAndTheUriNamesIt) {
    GuardedDome dome;
    const Outcome outcome = runTool({"stream", "--json", "--mode", "AUTO", "--size", "1300x750", "--fps",
                                     "12", "--quality", "7", "--bitrate", "900", "--gov", "24", dome.url()});
    ASSERT_EQ(outcome.exitCode, 0) << outcome.err;
    EXPECT_EQ(jsonAt(outcome.out, "/uri"), "rtsp://127.0.0.1:554/PROFILE-MAIN?encoding=H264&size=1280x720");
    EXPECT_EQ(jsonAt(outcome.out, "/stream/Stream.Profile.Resolution.Width"), "1280");
    EXPECT_EQ(jsonAt(outcome.out, "/stream/Stream.Transport.Protocol"), "TCP");
    const std::string key = "Media.Profiles.Profile1.VideoEncoderConfiguration.";
    EXPECT_EQ(dome.device().value(key + "Resolution.Height"), "720");
    EXPECT_EQ(dome.device().value(key + "RateControl.FrameRateLimit"), "12");
    EXPECT_EQ(dome.device().value(key + "RateControl.BitrateLimit"), "900");
    EXPECT_EQ(dome.device().value(key + "Quality"), "70.00");
    EXPECT_EQ(dome.device().value(key + "H264.GovLength"), "24");
}

TEST(StreamCommand, OneConnectionIsEnoughForADeviceThatHasNoMore) {
    GuardedDome dome;
    EXPECT_EQ(runTool({"stream", "--connections", "1", dome.url()}).exitCode, 0);
    EXPECT_EQ(dome.device().counters().connections, 1U);
}

TEST(StreamCommand, ATokenChoosesItsProfile) {
    GuardedDome dome;
    EXPECT_EQ(
        runTool({"stream", "--uri-only", "--token", "PROFILE-SECOND", "--rtsp-port", "8554", dome.url()})
            .out.rfind("rtsp://127.0.0.1:8554/PROFILE-SECOND?", 0),
        0U);
}

TEST(StreamCommand, AnUnknownTokenChangesNothingAndTheKnownOnesAreNamed) {
    GuardedDome dome;
    const Outcome outcome = runTool({"stream", "--token", "XX", "--encoding", "JPEG", dome.url()});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_TRUE(contains(outcome.err, "no profile has the token XX; there are: PROFILE-MAIN, PROFILE-SECOND, "
                                      "PROFILE-MOBILE\n"))
        << outcome.err;
    const std::string encoding = "Media.Profiles.Profile1.VideoEncoderConfiguration.Encoding";
    EXPECT_EQ(dome.device().value(encoding), "H264");
}

TEST(StreamCommand, LookingForATokenChangesNeitherTheStreamNorItsCost) {
    for (const auto& [model, token] : {std::pair("dome", "PROFILE-MAIN"), std::pair("recorder", "CH01-MAIN"),
                                       std::pair("videoserver", "PROFILE-1")}) {
        sim::SimulatedDevice without{sim::Options(sim::builtinModel(model))};
        sim::SimulatedDevice with{sim::Options(sim::builtinModel(model))};
        EXPECT_EQ(runTool({"stream", "--quality", "7", "--token", token, with.url()}).out,
                  runTool({"stream", "--quality", "7", without.url()}).out)
            << model;
        EXPECT_EQ(with.counters().requests, without.counters().requests) << model;
        const std::string quality = "Media.Profiles.Profile1.VideoEncoderConfiguration.Quality";
        EXPECT_EQ(with.value(quality), without.value(quality)) << model;
    }
}

TEST(StreamCommand, ATokenIsLookedForOnItsChannel) {
    sim::SimulatedDevice device{sim::Options(sim::builtinModel("recorder"))};
    EXPECT_TRUE(
        contains(runTool({"stream", "--uri-only", "--channel", "3", "--token", "CH03-SUB", device.url()}).out,
                 "/CH03-SUB?"));
    EXPECT_TRUE(contains(runTool({"stream", "--channel", "3", "--token", "CH01-SUB", device.url()}).err,
                         "there are: CH03-MAIN, CH03-SUB\n"));
}

TEST(StreamCommand, ADeviceWithoutProfilesTakesAnyToken) {
    sim::SimulatedDevice device{sim::Options(sim::builtinModel("noprofiles"))};
    EXPECT_TRUE(contains(runTool({"stream", "--token", "XX", device.url()}).out, " XX\n"));
}

TEST(StreamCommand, AnotherEncodingThanAskedForIsTold) {
    GuardedDome dome;
    const Outcome can = runTool({"stream", "--encoding", "JPEG", dome.url()});
    EXPECT_EQ(can.exitCode, 0);
    EXPECT_EQ(can.err, "");
    const Outcome cannot = runTool({"stream", "--encoding", "H265", "--uri-only", dome.url()});
    EXPECT_EQ(cannot.exitCode, 0);
    EXPECT_TRUE(contains(cannot.err, ": the stream comes in JPEG, not in H265 (")) << cannot.err;
    EXPECT_EQ(std::count(cannot.err.begin(), cannot.err.end(), '\n'), 1);
}

TEST(StreamCommand, MobileTakesTheMobileProfile) {
    GuardedDome dome;
    EXPECT_TRUE(
        contains(runTool({"stream", "--uri-only", "--mode", "MOBILE", dome.url()}).out, "/PROFILE-MOBILE?"));
}

TEST(StreamCommand, AKindOfStreamThatTheDeviceDoesNotHaveIsRefused) {
    GuardedDome dome;
    const Outcome outcome = runTool({"stream", "--mode", "ONLY_META", dome.url()});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_TRUE(contains(outcome.err, "setting the stream up in mode ONLY_META: refused")) << outcome.err;
}

TEST(StreamCommand, AChannelOfARecorderIsAskedForByItsNumber) {
    sim::SimulatedDevice device{sim::Options(sim::builtinModel("recorder"))};
    EXPECT_TRUE(
        contains(runTool({"stream", "--uri-only", "--channel", "3", device.url()}).out, "/CH03-MAIN?"));
}

} // namespace
} // namespace koine::test
