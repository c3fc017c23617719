// Devices of the maker that keep their encoder settings as video keys while the host sets profiles; several
// categories in one line; the quality scale there and back; what a recorder is never asked.

#include "bench.h"

#include "text/owned_text.h"

namespace koine::test {
namespace {

constexpr const char* kMaker = "Tovlin";

/// "&Media.Profiles.Profile1.VideoEncoderConfiguration.BitrateLimit=900"
std::string item(int profile, const std::string& key, const std::string& value) {
    return "&Media.Profiles.Profile" + std::to_string(profile) + ".VideoEncoderConfiguration." + key + "=" +
           value;
}

std::string setLine(const std::string& items) { return kConfigSet + items; }

/// A bench whose caches are filled, so that the log holds the sets alone.
class Learned : public Bench {
public:
    explicit Learned(const std::string& model, const std::string& vendor = kMaker) : Bench(model, vendor) {
        EXPECT_TRUE(ask(getLine("*")).ok());
        takeLines();
    }
};

TEST(ProfileToVideo, aSetOfAProfileIsFollowedByOneOfTheVideoKeys) {
    Learned bench("minimal");
    const std::string size = item(1, "Resolution.Width", "640") + item(1, "Resolution.Height", "480");
    const std::string rates = item(1, "RateControl.FrameRateLimit", "15") +
                              item(1, "RateControl.BitrateLimit", "900") + item(1, "H264.GovLength", "30");
    const Answer answer =
        bench.ask(setLine(item(1, "Encoding", "H264") + size + item(1, "Quality", "7.5") + rates));
    EXPECT_EQ(answer.text, kDone);
    EXPECT_EQ(bench.takeLines(),
              (Lines{setLine(item(1, "Encoding", "H264") + size + item(1, "Quality", "7.50") + rates),
                     setLine("&Video.I0.H264.Resolution=VGA&Video.I0.H264.Quality=7.5"
                             "&Video.I0.H264.FrameRate=15&Video.I0.H264.BitRate=900"
                             "&Video.I0.H264.GovLength=30")}));
    EXPECT_EQ(bench.device().value("Video.I0.H264.Resolution"), "VGA");
    EXPECT_EQ(bench.device().value("Video.I0.H264.BitRate"), "900");
    EXPECT_EQ(bench.ask(getLine("Video.I0.H264.*")).text,
              "0\nOK\nVideo.I0.H264.BitRate=900\nVideo.I0.H264.FrameRate=15\nVideo.I0.H264.GovLength=30\n"
              "Video.I0.H264.Quality=7.5\nVideo.I0.H264.Resolution=VGA\n");
    EXPECT_EQ(bench.takeLines(), Lines());
}

TEST(ProfileToVideo, profilesFollowInTheOrderOfTheirNumbers) {
    Learned bench("minimal");
    const std::string line =
        setLine(item(2, "Encoding", "JPEG") + item(2, "RateControl.FrameRateLimit", "5") +
                item(1, "Encoding", "H264") + item(1, "RateControl.BitrateLimit", "800"));
    EXPECT_TRUE(bench.ask(line).ok());
    // What the line does not say of a size is what the profile has.
    EXPECT_EQ(bench.takeLines(),
              (Lines{line, setLine("&Video.I0.H264.Resolution=720P&Video.I0.H264.BitRate=800"
                                   "&Video.I0.JPEG.Resolution=CIF&Video.I0.JPEG.FrameRate=5")}));
}

TEST(ProfileToVideo, aGovLengthNamesTheEncoding) {
    Learned bench("minimal");
    const std::string line = setLine(item(1, "H264.GovLength", "40"));
    EXPECT_TRUE(bench.ask(line).ok());
    EXPECT_EQ(bench.takeLines(),
              (Lines{line, setLine("&Video.I0.H264.Resolution=720P&Video.I0.H264.GovLength=40")}));
}

TEST(ProfileToVideo, aPellDeviceTakesItsSizeFromTheLineOnly) {
    Learned bench("pell");
    const std::string line =
        setLine(item(1, "Encoding", "H264") + item(1, "RateControl.BitrateLimit", "700"));
    EXPECT_TRUE(bench.ask(line).ok());
    EXPECT_EQ(bench.takeLines(), (Lines{line, setLine("&Video.I0.H264.BitRate=700")}));
    const std::string sized = setLine(item(1, "Encoding", "MPEG4") + item(1, "Resolution.Width", "704") +
                                      item(1, "Resolution.Height", "480"));
    EXPECT_TRUE(bench.ask(sized).ok());
    EXPECT_EQ(bench.takeLines(), (Lines{sized, setLine("&Video.I0.MPEG4.Resolution=4CIF")}));
}

TEST(ProfileToVideo, aStreamStartSetsBoth) {
    Bench bench("minimal", kMaker);
    EXPECT_TRUE(bench
                    .ask("Stream.cgi?action=set&StreamSetup.Stream=RTP-Unicast&ProfileMode=AUTO"
                         "&StreamSetup.Transport.Protocol=TCP"
                         "&StreamSetup.VideoEncoderConfiguration.Resolution.NxN=700x500"
                         "&StreamSetup.VideoEncoderConfiguration.Quality=4")
                    .ok());
    Lines expected = learningLines("minimal");
    expected.push_back(setLine(item(1, "Encoding", "H264") + item(1, "Resolution.Width", "640") +
                               item(1, "Resolution.Height", "480") + item(1, "Quality", "4.00")));
    expected.push_back(setLine("&Video.I0.H264.Resolution=VGA&Video.I0.H264.Quality=4"));
    EXPECT_EQ(bench.takeLines(), expected);
}

TEST(ProfileToVideo, otherDevicesGetOneLine) {
    struct Other {
        const char* model;
        const char* vendor;
        int isRecorder;
    };
    for (const Other& other :
         {Other{"minimal", "", 0}, Other{"minimal", "Another", 0}, Other{"onvif", kMaker, 0},
          Other{"dome", kMaker, 0}, Other{"minimal", kMaker, 1}}) {
        Learned bench(other.model, other.vendor);
        bench.request().setIsTovlinNVRDevice(other.isRecorder);
        const std::string line = setLine(item(1, "Encoding", "H264") + item(1, "H264.GovLength", "20"));
        EXPECT_TRUE(bench.ask(line).ok());
        EXPECT_EQ(bench.takeLines(), Lines{line}) << other.model << " of " << other.vendor;
    }
}

TEST(ProfileToVideo, whatVideoKeysCannotExpressIsLeftAlone) {
    Learned bench("minimal");
    for (const std::string& items :
         {item(1, "RateControl.BitrateLimit", "900"), // no encoding: nobody knows whose bit rate it is
          item(1, "Encoding", "H264") + item(1, "Resolution.Width", "648")}) { // no name for 648x720
        EXPECT_TRUE(bench.ask(setLine(items)).ok());
        EXPECT_EQ(bench.takeLines(), Lines{setLine(items)});
    }
}

TEST(ProfileToVideo, aSetThatNamesNoProfileFails) {
    Learned bench("minimal");
    const Answer answer = bench.ask(setLine("&Media.Comment=none"));
    EXPECT_EQ(answer.result, kNotBuilt);
    EXPECT_EQ(answer.text, kUnknownParameter);
    EXPECT_EQ(bench.takeLines(), Lines{setLine("&Media.Comment=none")});
}

TEST(ProfileToVideo, refusedVideoKeysFailTheLineButTheProfileIsSet) {
    Learned bench("minimal");
    const CgiMap before = bench.ask(getLine("Video.*")).values();
    bench.device().setFault(sim::Fault(sim::FaultKind::answer, kUnknownParameter).onPath("&Video.I0."));
    const Answer answer =
        bench.ask(setLine(item(1, "Encoding", "H264") + item(1, "RateControl.BitrateLimit", "900")));
    EXPECT_EQ(answer.result, kNotBuilt);
    EXPECT_EQ(answer.text, kUnknownParameter);
    EXPECT_EQ(bench.takeLines().size(), 2U);
    const std::string key = "Media.Profiles.Profile1.VideoEncoderConfiguration.RateControl.BitrateLimit";
    EXPECT_EQ(bench.device().value(key), "900");
    EXPECT_EQ(bench.ask(getLine(key)).values().at(key), "900");
    EXPECT_EQ(bench.ask(getLine("Video.*")).values(), before);
}

// Several categories.

TEST(SeveralCategories, areJoinedInTheOrderOfTheLine) {
    Bench bench("minimal");
    const Answer answer =
        bench.ask(getLine("Misc.LED.Power,misc.led.*,Nothing.*,Video.I0.H264.B*,Camera.N*"));
    EXPECT_EQ(answer.text, "0\nOK\nMisc.LED.Power=ON\n\n0\nOK\nMisc.LED.Power=ON\n\n0\nOK\n"
                           "Video.I0.H264.BitRate=2000\n\n0\nOK\nCamera.Name=Cube\n");
    EXPECT_EQ(bench.takeLines(), (Lines{"Login.cgi", getLine("Notification.*"), getLine("Misc.*"),
                                        getLine("Video.*"), getLine("Camera.*")}));
}

TEST(SeveralCategories, allHoldsEveryPartButVideoAnalytics) {
    Bench bench("analytics");
    const Answer answer = bench.ask(getLine("*"));
    EXPECT_TRUE(answer.ok());
    std::string joined;
    for (const char* category : {"Media.*", "Video.*", "Camera.*", "Notification.*", "Misc.*"})
        joined.append(joined.empty() ? "" : "\n").append(bench.ask(getLine(category)).text);
    EXPECT_EQ(answer.text, joined);
}

TEST(SeveralCategories, aFailureEndsTheAnswer) {
    Bench bench("minimal");
    const Answer answer = bench.ask(getLine("Camera.Name,VideoAnalytics.*,Misc.LED.Power"));
    EXPECT_EQ(answer.result, kNoResource);
    EXPECT_EQ(answer.text, kUnknownParameter);
    EXPECT_EQ(bench.takeLines(), (Lines{"Login.cgi", getLine("Camera.*"), getLine("VideoAnalytics.*")}));
    // The step itself hands out what it has gathered.
    std::string line = getLine("Camera.Name,VideoAnalytics.*,Misc.LED.Power");
    OwnedText gathered;
    EXPECT_EQ(bench.request().handleConfigGet(1, line.data(), OutText(gathered)), kNoResource);
    EXPECT_EQ(viewOf(gathered.get()), "0\nOK\nCamera.Name=Cube\n");
}

// Quality.

/// The device's scale: a tenth of the host's quality, and 0, both in hundredths.
struct Scale {
    const char* model;
    int ofTenth;
    int ofZero;
};

std::string inHundredths(int value) {
    const std::string fraction = std::to_string(value % 100);
    return std::to_string(value / 100) + "." + (fraction.size() == 1 ? "0" : "") + fraction;
}

std::string inTenths(int value) {
    return std::to_string(value / 10) + (value % 10 == 0 ? "" : "." + std::to_string(value % 10));
}

TEST(Quality, goesThereAndBackForEveryTenth) {
    const std::string key = "Media.Profiles.Profile1.VideoEncoderConfiguration.Quality";
    for (const Scale& scale : {Scale{"analytics", 5, 0}, Scale{"dome", 100, 0}, Scale{"minimal", 10, 0},
                               Scale{"nocapability", 1, 0}, Scale{"onvif", 99, 100}, Scale{"pell", 4, 0},
                               Scale{"recorder", 10, 0}, Scale{"videoserver", 4, 100}}) {
        Bench bench(scale.model);
        ASSERT_TRUE(bench
                        .ask("Stream.cgi?action=set&StreamSetup.Stream=RTP-Unicast&ProfileMode=ONLY_STATUS"
                             "&StreamSetup.Transport.Protocol=TCP")
                        .ok());
        for (int tenths = 0; tenths <= 100; ++tenths) {
            ASSERT_TRUE(bench.ask(std::string(kConfigSet) + "&" + key + "=" + inTenths(tenths)).ok());
            EXPECT_EQ(bench.device().value(key), inHundredths(scale.ofTenth * tenths + scale.ofZero))
                << scale.model << " " << inTenths(tenths);
            const std::string back = bench.ask(getLine(key)).values().at(key);
            if (scale.ofZero == 0) {
                EXPECT_EQ(back, inTenths(tenths)) << scale.model;
            }
            // In single precision, taking a lowest quality off costs the last digit now and then.
            EXPECT_NEAR(std::stod(back), tenths / 10.0, 1e-6) << scale.model;
        }
    }
}

// Recorders.

TEST(Recorder, isNeverAskedForItsOwnConfiguration) {
    struct Fallback {
        const char* category;
        const char* text;
    };
    Bench bench("recorder");
    bench.request().setIsTovlinNVRDevice(1);
    for (const Fallback& fallback : {Fallback{"Video.*", kUnknownParameter}, Fallback{"Camera.*", kDone},
                                     Fallback{"Notification.*", kUnknownParameter}, Fallback{"Misc.*", kDone},
                                     Fallback{"VideoAnalytics.*", kUnknownParameter}}) {
        const Answer answer = bench.ask(getLine(fallback.category));
        EXPECT_EQ(answer.result, kOk);
        EXPECT_EQ(answer.text, fallback.text) << fallback.category;
        EXPECT_EQ(bench.takeLines(), Lines()) << fallback.category;
    }
    const Answer all = bench.ask(getLine("*"));
    EXPECT_EQ(bench.takeLines(),
              (Lines{"Login.cgi", "Capability.cgi?action=get", getLine("Media.*") + "&ch=1"}));
    EXPECT_EQ(all.text, bench.ask(getLine("Media.*")).text + "\n" + kUnknownParameter + "\n" + kDone + "\n" +
                            kUnknownParameter + "\n" + kDone);
    EXPECT_TRUE(bench
                    .ask("Stream.cgi?action=set&StreamSetup.Stream=RTP-Unicast&ProfileMode=AUTO"
                         "&StreamSetup.Transport.Protocol=TCP")
                    .ok());
    EXPECT_EQ(bench.takeLines(), Lines());
}

} // namespace
} // namespace koine::test
