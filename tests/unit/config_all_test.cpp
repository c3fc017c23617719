// The whole configuration in one text: which parts, how they are joined, how much room is taken.

#include "camera.h"
#include "tests/support/failing_allocations.h"

#include <malloc.h>

namespace koine::test {
namespace {

constexpr std::size_t kFirstRoom = 4096;
constexpr std::size_t kRoomPerPart = 32;
// The allocator rounds up to its own unit.
constexpr std::size_t kUnit = 32;

class ConfigAll : public CameraTest {
protected:
    struct Part {
        int result = 1;
        bool hasText = false;
        std::string text;
    };

    ConfigAll() {
        camera.steps.getCacheConfigMedia = step("media");
        camera.steps.getCacheConfigVideo = step("video");
        camera.steps.getCacheConfigCamera = step("camera");
        camera.steps.getCacheConfigNotification = step("notification");
        camera.steps.getCacheConfigMisc = step("misc");
        camera.steps.getCacheConfigVideoAnalytics = step("analytics");
    }

    Steps::CategoryCache step(const std::string& name) {
        return [this, name](unsigned int uid, int refresh, const char* extra, const char* key, char** to) {
            const SpareAllocations spare;
            EXPECT_EQ(uid, kUser);
            EXPECT_EQ(refresh, 0);
            EXPECT_EQ(extra, nullptr);
            EXPECT_EQ(key, nullptr);
            EXPECT_NE(to, nullptr);
            EXPECT_EQ(*to, nullptr);
            calls.push_back(name);
            const Part& part = parts[name];
            if (part.hasText)
                *to = text(part.text);
            return part.result;
        };
    }
    static char* text(const std::string& from) {
        char* copy = static_cast<char*>(std::calloc(1, from.size() + 1));
        if (copy != nullptr)
            from.copy(copy, from.size());
        return copy;
    }

    void has(const std::string& name, const std::string& partText) { parts[name] = {1, true, partText}; }
    std::string all(int mode = 0) {
        EXPECT_EQ(camera.getCacheConfigAll(kUser, mode, answer.out()), 1);
        return answer.text();
    }
    std::size_t room() { return ::malloc_usable_size(answer.raw()); }

    std::map<std::string, Part> parts;
    Lines calls;
    Answer answer;
};

TEST_F(ConfigAll, AsksTheFivePartsInOrderWithoutVideoAnalytics) {
    all();
    EXPECT_EQ(calls, (Lines{"media", "video", "camera", "notification", "misc"}));
}

TEST_F(ConfigAll, JoinsThePartsWithLineEnds) {
    has("media", "0\nOK\nM=1\n");
    has("video", "0\nOK\nV=1\n");
    has("camera", "C");
    has("notification", "N");
    has("misc", "X");
    EXPECT_EQ(all(), "0\nOK\nM=1\n\n0\nOK\nV=1\n\nC\nN\nX");
}

TEST_F(ConfigAll, TakesASinglePartAsItIs) {
    has("notification", "N");
    EXPECT_EQ(all(), "N");
}

TEST_F(ConfigAll, WithoutPartsTheTextIsEmpty) {
    EXPECT_EQ(all(), "");
    EXPECT_FALSE(answer.isNull());
    EXPECT_GE(room(), kFirstRoom);
}

TEST_F(ConfigAll, APartAfterNothingButEmptyPartsNeedsNoLineEnd) {
    has("media", "");
    has("video", "V");
    has("camera", "");
    has("misc", "X");
    EXPECT_EQ(all(), "V\n\nX") << "an empty part in the middle still gets its line end";
}

TEST_F(ConfigAll, ALargeFirstPartGetsRoomForTheNext) {
    const std::string large(kFirstRoom, 'm');
    has("media", large);
    has("video", "V");
    EXPECT_EQ(all(), large + "\nV");
    EXPECT_GE(room(), large.size() + 1 + 2 * 32);
}

TEST_F(ConfigAll, TheModeMeansNothing) {
    has("video", "V");
    EXPECT_EQ(all(0), "V");
    EXPECT_EQ(all(7), "V");
    EXPECT_EQ(all(-1), "V");
}

TEST_F(ConfigAll, WithoutAnAnswerThePartsAreAskedAllTheSame) {
    has("video", "V");
    EXPECT_EQ(camera.getCacheConfigAll(kUser, 0, nullptr), 1);
    EXPECT_EQ(calls.size(), 5U);
}

TEST_F(ConfigAll, OverwritesWhatTheAnswerPointedTo) {
    char before[] = "before";
    char* pointer = before;
    EXPECT_EQ(camera.getCacheConfigAll(kUser, 0, &pointer), 1);
    EXPECT_STREQ(pointer, "");
    std::free(pointer);
}

// ---- Room

TEST_F(ConfigAll, SmallPartsFitIntoTheFirstRoom) {
    has("video", "V");
    all();
    EXPECT_GE(room(), kFirstRoom);
    EXPECT_LT(room(), kFirstRoom + kUnit);
}

TEST_F(ConfigAll, EachPartTakesItsLengthAndThirtyTwoMore) {
    has("media", std::string(2000, 'm'));
    has("video", std::string(kFirstRoom - 2000 - 2 * kRoomPerPart, 'v'));
    all();
    EXPECT_LT(room(), kFirstRoom + kUnit) << "exactly full is not too full";
    has("video", std::string(kFirstRoom - 2000 - 2 * kRoomPerPart + kUnit, 'v'));
    all();
    EXPECT_GE(room(), kFirstRoom + kUnit);
    EXPECT_LT(room(), kFirstRoom + 2 * kUnit) << "resized to what is needed, not more";
}

TEST_F(ConfigAll, LargePartsArriveWhole) {
    std::string expected;
    std::size_t needed = 0;
    for (const char* name : {"media", "video", "camera", "notification", "misc"}) {
        const std::string part(100000, name[0]);
        has(name, part);
        expected += (expected.empty() ? "" : "\n") + part;
        needed += part.size() + kRoomPerPart;
    }
    EXPECT_EQ(all(), expected);
    EXPECT_GE(room(), needed);
}

// ---- Failures

TEST_F(ConfigAll, TheFirstFailureEndsItAndKeepsThePartsBefore) {
    const Lines order = {"media", "video", "camera", "notification", "misc"};
    for (std::size_t failing = 0; failing < order.size(); ++failing) {
        SCOPED_TRACE(order[failing]);
        std::string before;
        for (std::size_t i = 0; i < order.size(); ++i) {
            has(order[i], order[i]);
            if (i < failing)
                before += (i == 0 ? "" : "\n") + order[i];
        }
        parts[order[failing]] = {-14, true, "raw text of the failure"};
        calls.clear();
        forgetTraces();
        EXPECT_EQ(camera.getCacheConfigAll(kUser, 0, answer.out()), -14);
        EXPECT_EQ(answer.text(), before) << "nothing of the failing part is joined";
        EXPECT_GE(room(), kFirstRoom);
        EXPECT_EQ(calls.size(), failing + 1);
        EXPECT_TRUE(tracesAre({"??#* BaseRequest.getCacheConfigAll, error-14, uid=7. \n"}));
    }
}

TEST_F(ConfigAll, AnyResultButOneIsAFailure) {
    has("media", "M");
    for (const int result : {0, 2, -1}) {
        parts["video"] = {result, false, ""};
        EXPECT_EQ(camera.getCacheConfigAll(kUser, 0, answer.out()), result);
        EXPECT_EQ(answer.text(), "M");
        EXPECT_EQ(camera.getCacheConfigAll(kUser, 0, nullptr), result);
    }
}

TEST_F(ConfigAll, WithoutMemoryForTheTextNothingIsAsked) {
    FailAllocations none(1, FailAllocations::Then::recover, FailAllocations::Which::texts);
    char* nothing = nullptr;
    const int result = camera.getCacheConfigAll(kUser, 0, &nothing);
    EXPECT_TRUE(none.stop());
    EXPECT_EQ(result, -8);
    EXPECT_EQ(nothing, nullptr);
    EXPECT_EQ(calls, Lines{});
}

TEST_F(ConfigAll, WithoutMemoryForAPartThePartsBeforeAreKept) {
    has("media", "M");
    has("video", std::string(5000, 'v'));
    char* joined = nullptr;
    FailAllocations second(2, FailAllocations::Then::recover, FailAllocations::Which::texts);
    const int result = camera.getCacheConfigAll(kUser, 0, &joined);
    EXPECT_TRUE(second.stop());
    EXPECT_EQ(result, -8);
    EXPECT_STREQ(joined, "M");
    std::free(joined);
}

} // namespace
} // namespace koine::test
