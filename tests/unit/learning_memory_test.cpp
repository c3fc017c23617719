// Memory that runs out while the library learns about its device: no exception leaves a step, nothing stays
// half done that would stop the next attempt.

#include "camera.h"
#include "tests/support/failing_allocations.h"

#include <new>

namespace koine::test {
namespace {

using Prepare = std::function<void(Camera&)>;
using Call = std::function<int(Camera&, char**)>;

enum class Afterwards { complete, decided };

/// What the first and later calls say when nothing runs short: counting leaves a key behind.
struct WholeAnswers {
    std::string first;
    std::string later;

    bool contain(const std::string& text) const { return text == first || text == later; }
};

WholeAnswers wholeAnswers(const Prepare& prepare, const Call& call) {
    Camera camera;
    camera.client();
    prepare(camera);
    Answer first;
    Answer later;
    EXPECT_EQ(call(camera, first.out()), 1);
    EXPECT_EQ(call(camera, later.out()), 1);
    return {first.text(), later.text()};
}

/// Lets each allocation of a call fail in turn, on a new camera each time.
void failEverywhere(const Prepare& prepare, const Call& call, Afterwards afterwards) {
    StandardError quiet;
    const WholeAnswers whole = wholeAnswers(prepare, call);
    const unsigned int last = failEachAllocation([&](unsigned int n) {
        Camera camera;
        camera.client();
        prepare(camera);
        char* raw = nullptr;
        int result = 0;
        FailAllocations once(n);
        EXPECT_NO_THROW(result = call(camera, &raw)) << n;
        const bool failed = once.stop();
        EXPECT_TRUE(failed ? result != 1 || raw != nullptr : result == 1) << n;
        EXPECT_TRUE(raw != nullptr || afterwards == Afterwards::complete)
            << n << ": a category always answers";
        std::free(raw);
        Answer answer;
        const int again = call(camera, answer.out());
        EXPECT_TRUE(again == 1 || afterwards == Afterwards::decided) << n << ": the next call learns it all";
        EXPECT_TRUE(again == 1 ? whole.contain(answer.text())
                               : answer.text() == kEmptySuccess || answer.text() == kNoSuchKey)
            << n << ": half of an answer: " << answer.text();
        return failed;
    });
    EXPECT_GT(last, 3U);
    EXPECT_LT(last, 10000U);
}

TEST(LearningMemory, TheLoginIsLearnedAfterEveryShortage) {
    failEverywhere(
        [](Camera& camera) {
            camera.has(kLoginLine, "Product-Name=A name that is too long to fit into a small string\n");
        },
        [](Camera& camera, char** answer) { return camera.getCacheLogin(kUser, 0, nullptr, answer); },
        Afterwards::complete);
}

TEST(LearningMemory, TheCapabilitiesAreLearnedAfterEveryShortage) {
    failEverywhere(
        [](Camera& camera) {
            // No size of the second list is known: the one before it counts.
            camera.has(kCapabilityLine, "Device=VIDEO SERVER\nID=An identity that is not a small string\n"
                                        "Capability.Function=VA\nCapability.Video.Resolution=CIF,VGA\n"
                                        "Capability.Video.Mpeg4.Resolution=OTHER\n");
        },
        [](Camera& camera, char** answer) { return camera.getCacheCapability(kUser, 0, nullptr, answer); },
        Afterwards::complete);
}

TEST(LearningMemory, AConversionLeavesNoKeyWithoutItsValue) {
    const auto convert = [](Camera& camera, CgiMap& capability) {
        CgiMap login = {{"Video-System", "PAL"}};
        camera.convertCgiCapability(&capability, &login);
    };
    const CgiMap told = {{"ID", "An identity that is not a small string"},
                         {"Capability.Video.Resolution", "CIF,4CIF,720P"}};
    Camera camera;
    CgiMap whole = told;
    convert(camera, whole);
    const unsigned int last = failEachAllocation([&](unsigned int n) {
        CgiMap capability = told;
        bool failed = false;
        try {
            FailAllocations once(n);
            convert(camera, capability);
            failed = once.stop();
        } catch (const std::bad_alloc&) {
            failed = true;
        }
        convert(camera, capability);
        EXPECT_EQ(capability, whole) << n;
        return failed;
    });
    EXPECT_GT(last, 3U);
    EXPECT_LT(last, 10000U);
}

TEST(LearningMemory, MachinesAreLearnedAfterEveryShortage) {
    failEverywhere(
        [](Camera& camera) {
            camera.has(kLoginLine, "Product-ID-Minor=NOCAP\n");
            camera.has(kMachineLine, "Product.Type=IPCAM\nVideo.Resolution=CIF,VGA\n");
        },
        [](Camera& camera, char** answer) { return camera.getCacheCapability(kUser, 0, nullptr, answer); },
        Afterwards::complete);
}

TEST(LearningMemory, ProfilesAreLearnedAfterEveryShortage) {
    failEverywhere(
        [](Camera& camera) {
            camera.has(kCapabilityLine, "Capability.Video.Format=MJPEG,H.264\n"
                                        "Capability.Video.Resolution.Use=640x480,1280x720\n");
            camera.has(kMediaLine, "Media.Profiles.Count=2\n"
                                   "Media.Profiles.Profile1.VideoEncoderConfiguration.token=E1\n"
                                   "Media.Profiles.Profile1.VideoEncoderConfiguration.Quality=60\n"
                                   "Media.Profiles.Profile2.VideoEncoderConfiguration.token=E2\n");
        },
        [](Camera& camera, char** answer) {
            return camera.getCacheConfigMedia(kUser, 0, nullptr, "Media.*", answer);
        },
        Afterwards::complete);
}

TEST(LearningMemory, ProfilesAreCountedOnDevicesThatDoNot) {
    failEverywhere([](Camera& camera) { camera.has(kMediaLine, "Media.Kind=1\n"); },
                   [](Camera& camera, char** answer) {
                       return camera.getCacheConfigMedia(kUser, 0, nullptr, "Media.*", answer);
                   },
                   Afterwards::complete);
}

TEST(LearningMemory, CategoriesAreDecidedByEveryShortage) {
    const auto pell = [](Camera& camera) {
        camera.setVendor("TOVLIN");
        camera.has(kLoginLine, "Product-ID=PELL\n");
    };
    failEverywhere(
        pell,
        [](Camera& camera, char** answer) {
            return camera.getCacheConfigMisc(kUser, 0, nullptr, nullptr, answer);
        },
        Afterwards::decided);
    failEverywhere(
        pell,
        [](Camera& camera, char** answer) {
            return camera.getCacheConfigVideo(kUser, 0, nullptr, "Video.*", answer);
        },
        Afterwards::decided);
}

} // namespace
} // namespace koine::test
