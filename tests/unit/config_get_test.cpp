// "Config.cgi?action=get": which categories a line names, how their answers are joined, how it fails.

#include "camera.h"
#include "tests/support/failing_allocations.h"

#include <malloc.h>

namespace koine::test {
namespace {

/// Each category is a step that says how it was called and gives what the test wrote for it.
class ConfigGet : public CameraTest {
protected:
    struct Part {
        int result = 1;
        bool hasText = true;
        std::string text;
    };

    ConfigGet() {
        camera.steps.getCacheConfigAll = [this](unsigned int uid, int mode, char** to) {
            const SpareAllocations spare;
            EXPECT_EQ(mode, 0);
            return give("*", uid, "", to);
        };
        camera.steps.getCacheConfigMedia = step("Media");
        camera.steps.getCacheConfigVideo = step("Video");
        camera.steps.getCacheConfigCamera = step("Camera");
        camera.steps.getCacheConfigNotification = step("Notification");
        camera.steps.getCacheConfigMisc = step("Misc");
        camera.steps.getCacheConfigVideoAnalytics = step("VideoAnalytics");
    }

    Steps::CategoryCache step(const std::string& name) {
        return [this, name](unsigned int uid, int refresh, const char* extra, const char* key, char** to) {
            const SpareAllocations spare;
            EXPECT_EQ(refresh, 0);
            EXPECT_EQ(extra, line.data()) << "the request line itself is handed on";
            return give(name, uid, key, to);
        };
    }
    int give(const std::string& name, unsigned int uid, const char* key, char** to) {
        EXPECT_EQ(uid, kUser);
        EXPECT_EQ(*to, nullptr);
        calls.push_back(name + " " + key);
        if (parts.count(name) == 0)
            parts[name] = {1, true, "<" + name + ">"};
        if (parts[name].hasText) {
            *to = static_cast<char*>(std::calloc(1, parts[name].text.size() + 1));
            parts[name].text.copy(*to, parts[name].text.size());
        }
        return parts[name].result;
    }

    int ask(const std::string& text) {
        line = text;
        calls.clear();
        const int result = camera.handleConfigGet(kUser, line.data(), answer.out());
        EXPECT_EQ(line, text) << "the host's line stays as it is";
        return result;
    }
    /// The answer to a line that names these categories.
    std::string get(const std::string& categories) {
        EXPECT_EQ(ask("Config.cgi?action=get&category=" + categories), 1);
        return answer.text();
    }

    std::string line;
    std::map<std::string, Part> parts;
    Lines calls;
    Answer answer;
};

TEST_F(ConfigGet, EveryCategoryHasItsStep) {
    for (const char* name : {"Media", "Video", "Camera", "Notification", "Misc", "VideoAnalytics"}) {
        EXPECT_EQ(get(std::string(name) + ".*"), std::string("<") + name + ">");
        EXPECT_EQ(calls, Lines{std::string(name) + " " + name + ".*"});
    }
}

TEST_F(ConfigGet, AStarIsAnsweredByEverything) {
    EXPECT_EQ(get("*"), "<*>");
    EXPECT_EQ(calls, Lines{"* "});
    EXPECT_EQ(get("*.Video.*"), "<*>") << "whatever follows it";
    EXPECT_EQ(calls, Lines{"* "});
}

TEST_F(ConfigGet, TheCategoryIsHandedOnAsItStandsInTheLine) {
    get("Video.I0.Brightness");
    EXPECT_EQ(calls, Lines{"Video Video.I0.Brightness"});
    get("mIsC.A.b*");
    EXPECT_EQ(calls, Lines{"Misc mIsC.A.b*"});
}

TEST_F(ConfigGet, CaseDoesNotMatter) {
    EXPECT_EQ(get("video.*"), "<Video>");
    EXPECT_EQ(get("VIDEOANALYTICS.*"), "<VideoAnalytics>");
    EXPECT_EQ(get("nOTIFICATION.x"), "<Notification>");
}

TEST_F(ConfigGet, SeveralCategoriesAreJoinedInTheOrderOfTheLine) {
    EXPECT_EQ(get("Video.*,Camera.*"), "<Video>\n<Camera>");
    EXPECT_EQ(get("Camera.*,Video.*,Camera.*"), "<Camera>\n<Video>\n<Camera>");
    EXPECT_EQ(get("*,Media.*"), "<*>\n<Media>");
}

TEST_F(ConfigGet, EqualSignsCommasAndLineEndsSeparate) {
    EXPECT_EQ(get("Video.A=Camera.B\nMisc.C,,=\n,Media.D"), "<Video>\n<Camera>\n<Misc>\n<Media>");
    EXPECT_EQ(calls, (Lines{"Video Video.A", "Camera Camera.B", "Misc Misc.C", "Media Media.D"}));
}

TEST_F(ConfigGet, AnAmpersandAndASemicolonDoNotSeparate) {
    EXPECT_EQ(get("Video.*&Camera.*"), "<Video>");
    EXPECT_EQ(calls, Lines{"Video Video.*&Camera.*"});
    EXPECT_EQ(get("Video.*;Camera.*"), "<Video>");
}

TEST_F(ConfigGet, OnlyAPrefixWithItsDotNamesACategory) {
    for (const char* name : {"Video", "XVideo.*", " Video.*", "Network.*", "Medias.*", "", "Videos.x"}) {
        EXPECT_EQ(ask(std::string("Config.cgi?action=get&category=") + name), 1) << name;
        EXPECT_TRUE(answer.isNull()) << name;
        EXPECT_EQ(calls, Lines{}) << name;
    }
}

TEST_F(ConfigGet, AnUnknownCategoryBesideAKnownOneIsPassedOver) {
    EXPECT_EQ(get("Network.*,Video.*,Nothing"), "<Video>");
}

TEST_F(ConfigGet, ACategoryWithoutATextAddsNothing) {
    parts["Video"] = {1, false, ""};
    EXPECT_EQ(ask("category=Video.*"), 1);
    EXPECT_TRUE(answer.isNull());
    EXPECT_EQ(get("Camera.*,Video.*,Misc.*"), "<Camera>\n<Misc>");
    EXPECT_EQ(get("Video.*,Misc.*"), "<Misc>");
}

TEST_F(ConfigGet, AnEmptyTextIsAPartAsWell) {
    parts["Video"] = {1, true, ""};
    EXPECT_EQ(get("Video.*"), "");
    EXPECT_FALSE(answer.isNull());
    EXPECT_EQ(get("Video.*,Camera.*"), "\n<Camera>");
    EXPECT_EQ(get("Camera.*,Video.*,Misc.*"), "<Camera>\n\n<Misc>");
}

TEST_F(ConfigGet, TheAnswerIsClearedFirst) {
    char before[] = "before";
    char* pointer = before;
    line = "category=Nothing";
    EXPECT_EQ(camera.handleConfigGet(kUser, line.data(), &pointer), 1);
    EXPECT_EQ(pointer, nullptr);
}

TEST_F(ConfigGet, WithoutAnAnswerPointerItIsRefused) {
    line = "category=Video.*";
    EXPECT_EQ(camera.handleConfigGet(kUser, line.data(), nullptr), -2);
    EXPECT_EQ(calls, Lines{});
    EXPECT_TRUE(tracesAre({"??#3288 handleConfigGet: err-2. \n"}));
}

// ---- Failures

TEST_F(ConfigGet, AFailingCategoryIsTracedAtItsLineAndGivesItsResult) {
    const std::pair<const char*, int> rows[] = {
        {"*", 3305},    {"Media", 3311},        {"Video", 3317},          {"Camera", 3323},
        {"Misc", 3335}, {"Notification", 3329}, {"VideoAnalytics", 3341},
    };
    for (const auto& [name, sourceLine] : rows) {
        parts[name] = {-17, true, "never handed out"};
        forgetTraces();
        const std::string text = std::string("Config.cgi?action=get&category=") + name + ".x";
        EXPECT_EQ(ask(text), -17) << name;
        EXPECT_TRUE(answer.isNull()) << name;
        ASSERT_EQ(platform().traces().size(), 1U);
        const Trace trace = platform().traces().front();
        EXPECT_EQ(trace.format, "??#%d BaseRequest.requestHttp: pchInputUrl=%s, error%d. \n");
        EXPECT_EQ(trace.line, sourceLine);
        EXPECT_EQ(trace.text, "??#" + std::to_string(sourceLine) +
                                  " BaseRequest.requestHttp: pchInputUrl=" + text + ", error-17. \n");
    }
}

TEST_F(ConfigGet, AFailureEndsItAndKeepsWhatWasGathered) {
    parts["Misc"] = {-1, true, "login page"};
    EXPECT_EQ(ask("category=Video.*,Camera.*,Misc.*,Media.*"), -1);
    EXPECT_EQ(answer.text(), "<Video>\n<Camera>");
    EXPECT_EQ(calls.size(), 3U);
}

TEST_F(ConfigGet, AnyResultButOneIsAFailure) {
    for (const int result : {0, 2, -8}) {
        parts["Video"] = {result, false, ""};
        EXPECT_EQ(ask("category=Camera.*,Video.*,Misc.*"), result);
        EXPECT_EQ(answer.text(), "<Camera>");
    }
}

// ---- Room and memory

TEST_F(ConfigGet, TheTextNeverHasLessThanFourKilobytes) {
    get("Video.*");
    EXPECT_GE(::malloc_usable_size(answer.raw()), 4096U);
    EXPECT_LT(::malloc_usable_size(answer.raw()), 4096U + 32U);
}

TEST_F(ConfigGet, TheTextGrowsToExactlyWhatItNeeds) {
    parts["Video"] = {1, true, std::string(4000, 'v')};
    parts["Camera"] = {1, true, std::string(200, 'c')};
    EXPECT_EQ(get("Video.*,Camera.*"), std::string(4000, 'v') + "\n" + std::string(200, 'c'));
    EXPECT_GE(::malloc_usable_size(answer.raw()), 4264U);
    EXPECT_LT(::malloc_usable_size(answer.raw()), 4264U + 32U);
}

TEST_F(ConfigGet, ALargeFirstTextHasRoomForTheNext) {
    const std::string large(5000, 'v');
    parts["Video"] = {1, true, large};
    EXPECT_EQ(get("Video.*"), large);
    EXPECT_GE(::malloc_usable_size(answer.raw()), 5032U);
    EXPECT_EQ(get("Video.*,Misc.*,Video.*"), large + "\n<Misc>\n" + large);
}

TEST_F(ConfigGet, ALargeTextArrivesWhole) {
    parts["Video"] = {1, true, std::string(1U << 20U, 'v')};
    EXPECT_EQ(get("Video.*,Misc.*,Video.*").size(), 2 * (1U << 20U) + 2 + 6);
}

/// The texts that are allocated: the copy of the line, the answer, its growth.
TEST_F(ConfigGet, WithoutMemoryForALargeFirstTextItStoresNothing) {
    camera.set_strm_setting_channel(5);
    parts["Video"] = {1, true, std::string(5000, 'v')};
    line = "category=Video.*";
    forgetTraces();
    char* text = nullptr;
    FailAllocations second(2, FailAllocations::Then::recover, FailAllocations::Which::texts);
    const int result = camera.handleConfigGet(kUser, line.data(), &text);
    EXPECT_TRUE(second.stop());
    EXPECT_EQ(result, -8);
    EXPECT_EQ(text, nullptr);
    EXPECT_TRUE(tracesAre({"???#3352 BaseRequest::handleConfigGet: uid=7:5, err-8. \n"}));
}

TEST_F(ConfigGet, WithoutMemoryItSaysWhereAndStoresNothing) {
    camera.set_strm_setting_channel(5);
    const int sourceLines[] = {3296, 3352, 3361};
    parts["Camera"] = {1, true, std::string(5000, 'c')};
    line = "category=Video.*,Camera.*";
    for (unsigned int n = 1; n <= 3; ++n) {
        forgetTraces();
        char* text = nullptr;
        FailAllocations once(n, FailAllocations::Then::recover, FailAllocations::Which::texts);
        const int result = camera.handleConfigGet(kUser, line.data(), &text);
        EXPECT_TRUE(once.stop()) << n;
        EXPECT_EQ(result, -8) << n;
        EXPECT_EQ(text, nullptr) << n;
        EXPECT_TRUE(tracesAre({"???#" + std::to_string(sourceLines[n - 1]) +
                               " BaseRequest::handleConfigGet: uid=7:5, err-8. \n"}));
    }
}

TEST_F(ConfigGet, ACategoryThatCannotBeNamedForLackOfMemoryFailsAsOne) {
    const std::string category = "Video." + std::string(100, 'x'); // too long for a small string
    line = "category=Camera.A," + category;
    char* text = nullptr;
    // Texts: the copy of the line, the answer. Then the name of the second category.
    FailAllocations third(3);
    int result = 0;
    EXPECT_NO_THROW(result = camera.handleConfigGet(kUser, line.data(), &text));
    EXPECT_TRUE(third.stop());
    EXPECT_EQ(result, -8);
    EXPECT_STREQ(text, "<Camera>");
    std::free(text);
    EXPECT_TRUE(tracesAre({"??#3317 BaseRequest.requestHttp: pchInputUrl=" + line + ", error-8. \n"}));
}

// ---- With the device behind it

TEST_F(CameraTest, AGetIsAnsweredFromTheCategories) {
    Answer answer;
    std::string line = "Config.cgi?action=get&category=Video.*,misc.*";
    EXPECT_EQ(camera.handleConfigGet(kUser, line.data(), answer.out()), 1);
    EXPECT_EQ(answer.text(), "0\nOK\nVideo.I0.Brightness=1\n\n0\nOK\nMisc.External.DI.Port1.Active=N.O.\n");
}

} // namespace
} // namespace koine::test
