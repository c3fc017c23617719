// What the device can do: how its capabilities are fetched, kept and answered.

#include "camera.h"

namespace koine::test {
namespace {

class CapabilityCache : public CameraTest {
protected:
    int fill() { return camera.getCacheCapability(kUser, 0, nullptr, nullptr); }
    CgiMap pairs() {
        Answer answer;
        EXPECT_EQ(camera.getCacheCapability(kUser, 0, nullptr, answer.out()), 1);
        return pairsOf(answer.text());
    }
    void isNoCapabilityProduct() { camera.has(kLoginLine, "Product-Name=M\nProduct-ID-Minor=NOCAP-1\n"); }
};

TEST_F(CapabilityCache, LearnsTheLoginFirstAndAsksEachOnce) {
    EXPECT_EQ(fill(), 1);
    EXPECT_EQ(fill(), 1);
    pairs();
    EXPECT_EQ(camera.asked(), (Lines{"Login.cgi", "Capability.cgi?action=get"}));
    EXPECT_EQ(camera.conversions, Lines{"capability"});
    EXPECT_TRUE(tracesAre({}));
}

TEST_F(CapabilityCache, AsksWithPlainMethodAndConnectionForTheStreamUser) {
    EXPECT_EQ(camera.getCacheCapability(11, 0, nullptr, nullptr), 1);
    ASSERT_EQ(camera.sent.size(), 2U);
    EXPECT_EQ(camera.sent[1].url, "http://camera:80/Capability.cgi?action=get");
    EXPECT_EQ(camera.sent[1].uid, 11U);
    EXPECT_EQ(camera.sent[1].method, 0);
    EXPECT_EQ(camera.sent[1].connection, 0);
}

TEST_F(CapabilityCache, RequestsAGivenUrlAsItStands) {
    const char* const url = "http://camera:80/Capability.cgi?action=get&x=1";
    camera.has("Capability.cgi?action=get&x=1", "Device=NVR\n");
    EXPECT_EQ(camera.getCacheCapability(kUser, 0, url, nullptr), 1);
    EXPECT_EQ(camera.sent.at(1).url, url);
    EXPECT_EQ(pairs()["Device"], "NVR");
}

TEST_F(CapabilityCache, AGivenUrlDoesNotMakeItAskAgain) {
    EXPECT_EQ(fill(), 1);
    camera.asked();
    EXPECT_EQ(camera.getCacheCapability(kUser, 0, "http://camera:80/Other.cgi", nullptr), 1);
    EXPECT_EQ(camera.asked(), Lines{});
}

// ---- Video servers

TEST_F(CapabilityCache, AVideoServerIsAskedTwiceAndTheSecondAnswerWins) {
    camera.has(kCapabilityLine, "Device=VIDEO SERVER\nID=V1\nA=first\nB=first\n");
    camera.has(kSecondCapabilityLine, "A=second\nC=second\n");
    CgiMap found = pairs();
    EXPECT_EQ(camera.asked(), (Lines{"Login.cgi", kCapabilityLine, kSecondCapabilityLine}));
    EXPECT_EQ(found["A"], "second");
    EXPECT_EQ(found["B"], "first");
    EXPECT_EQ(found["C"], "second");
    EXPECT_TRUE(tracesAre({}));
}

TEST_F(CapabilityCache, OnlyTheExactWordMakesAVideoServer) {
    for (const char* device :
         {"video server", "VIDEO SERVER ", " VIDEO SERVER", "VIDEO SERVER2", "VIDEO", ""}) {
        Camera one;
        one.has(kCapabilityLine, std::string("Device=") + device + "\n");
        EXPECT_EQ(one.getCacheCapability(kUser, 0, nullptr, nullptr), 1);
        EXPECT_EQ(one.asked().size(), 2U) << '"' << device << '"';
    }
}

TEST_F(CapabilityCache, AVideoServerIsAskedItsSecondLineAlsoAfterAGivenUrl) {
    camera.has("Other.cgi", "Device=VIDEO SERVER\n");
    EXPECT_EQ(camera.getCacheCapability(kUser, 0, "http://camera:80/Other.cgi", nullptr), 1);
    EXPECT_EQ(camera.asked(), (Lines{"Login.cgi", "Other.cgi", kSecondCapabilityLine}));
}

TEST_F(CapabilityCache, AVideoServerLosesItsDeviceId) {
    camera.has(kCapabilityLine, "Device=VIDEO SERVER\nDeviceID=7\n");
    EXPECT_EQ(pairs().count("DeviceID"), 0U);
}

// ---- Products without the capability request

TEST_F(CapabilityCache, AProductWithoutTheRequestIsAskedAsAMachine) {
    isNoCapabilityProduct();
    camera.has(kMachineLine, "Product.Type=IPCAM\nProduct.ID=M1\nAudio.Format=ULAW\nOther=1\n");
    CgiMap found = pairs();
    EXPECT_EQ(camera.asked(), (Lines{"Login.cgi", kMachineLine}));
    EXPECT_EQ(camera.conversions, Lines{"machine"});
    EXPECT_EQ(found["Device"], "IPCAM");
    EXPECT_EQ(found["ID"], "M1");
    EXPECT_EQ(found["NetworkID"], "M1");
    EXPECT_EQ(found["Capability.Audio.Format"], "ULAW");
    EXPECT_EQ(found.count("Other"), 0U);
    EXPECT_EQ(found.count("Product.Type"), 0U);
}

TEST_F(CapabilityCache, AMachineNeedsNoOtherRequestEvenIfItCallsItselfAVideoServer) {
    isNoCapabilityProduct();
    camera.has(kMachineLine, "Product.Type=VIDEO SERVER\n");
    CgiMap found = pairs();
    EXPECT_EQ(camera.asked(), (Lines{"Login.cgi", kMachineLine}));
    EXPECT_EQ(found["Device"], "VIDEO SERVER");
}

TEST_F(CapabilityCache, AMachineIsAskedItsOwnLineEvenWhenAUrlIsGiven) {
    isNoCapabilityProduct();
    EXPECT_EQ(camera.getCacheCapability(kUser, 0, "http://camera:80/Other.cgi", nullptr), 1);
    EXPECT_EQ(camera.asked(), (Lines{"Login.cgi", kMachineLine}));
}

// ---- Refresh

TEST_F(CapabilityCache, ARefreshOfAFilledCacheEmptiesItWithoutAskingAgain) {
    EXPECT_EQ(fill(), 1);
    camera.asked();
    Answer answer;
    EXPECT_EQ(camera.getCacheCapability(kUser, 1, nullptr, answer.out()), -8);
    EXPECT_TRUE(answer.isNull());
    EXPECT_EQ(camera.asked(), Lines{});
    EXPECT_TRUE(tracesAre({"???#* getCacheCapability, uid=7:0, err-8. \n"}));
}

TEST_F(CapabilityCache, OnlyOneMeansRefresh) {
    const CgiMap before = pairs();
    Answer answer;
    EXPECT_EQ(camera.getCacheCapability(kUser, 2, nullptr, answer.out()), 1);
    EXPECT_EQ(pairsOf(answer.text()), before);
}

TEST_F(CapabilityCache, ARefreshLeavesTheLoginAlone) {
    EXPECT_EQ(fill(), 1);
    EXPECT_EQ(camera.getCacheCapability(kUser, 1, nullptr, nullptr), 1);
    Answer login;
    EXPECT_EQ(camera.getCacheLogin(kUser, 0, nullptr, login.out()), 1);
}

// ---- Failures: code, trace and what the caller gets

TEST_F(CapabilityCache, ALoginFailureIsTracedTwiceAndGivesItsCode) {
    camera.fails(kLoginLine, -1, "secret page");
    camera.set_strm_setting_channel(2);
    Answer answer;
    EXPECT_EQ(camera.getCacheCapability(kUser, 0, nullptr, answer.out()), -1);
    EXPECT_EQ(camera.asked(), Lines{"Login.cgi"});
    EXPECT_TRUE(answer.isNull()) << "what the login said is not a capability answer";
    EXPECT_TRUE(
        tracesAre({"??#* getCacheLogin: error, uid=7:2. \n", "??#* getCacheLogin: error, uid=7:2. \n"}));
}

TEST_F(CapabilityCache, ALoginFailureMattersOnlyUntilBothAreFilled) {
    EXPECT_EQ(fill(), 1);
    camera.fails(kLoginLine, -1);
    EXPECT_EQ(fill(), 1);
}

struct FailureRow {
    const char* name;
    void (*arrange)(Camera& camera);
    int result;
    const char* answer; ///< null when none
    const char* trace;
};

const FailureRow kFailures[] = {
    {"the request", [](Camera& c) { c.fails(kCapabilityLine, -4); }, -4, nullptr,
     "??#* getCacheCapability: error, uid=7:0. \n"},
    {"the request, with a text", [](Camera& c) { c.fails(kCapabilityLine, -6, "busy"); }, -6, "busy",
     "??#* getCacheCapability: error, uid=7:0. \n"},
    {"the parse", [](Camera& c) { c.answers(kCapabilityLine, "<html>"); }, -2, "<html>",
     "??#* ParsingCGIData: uid=7:0, err-2. \n"},
    {"an answer without body", [](Camera& c) { c.answersNothing(kCapabilityLine); }, -2, nullptr,
     "??#* ParsingCGIData: uid=7:0, err-2. \n"},
    {"the second request",
     [](Camera& c) {
         c.has(kCapabilityLine, "Device=VIDEO SERVER\n");
         c.fails(kSecondCapabilityLine, -5, "broken");
     },
     -5, "broken", "??#* getCacheCapability: error, uid=7:0. \n"},
    {"the second parse",
     [](Camera& c) {
         c.has(kCapabilityLine, "Device=VIDEO SERVER\n");
         c.answers(kSecondCapabilityLine, "-12\nERROR: Channel.\n");
     },
     -12, "-12\nERROR: Channel.\n", "??#* getCacheCapability: uid=7:0, err-12. \n"},
    {"the second parse, of no answer at all",
     [](Camera& c) {
         c.has(kCapabilityLine, "Device=VIDEO SERVER\n");
         c.answers(kSecondCapabilityLine, "<html>");
     },
     -2, "<html>", "??#* getCacheCapability: uid=7:0, err-2. \n"},
    {"the conversion", [](Camera& c) { c.conversionResults["capability"] = -9; }, -9,
     "0\nOK\nDevice=IPCAM\nID=C100\n", "??#* getCacheCapability: uid=7:0, err-9. \n"},
    {"the machine request",
     [](Camera& c) {
         c.has(kLoginLine, "Product-ID-Minor=NOCAP\n");
         c.fails(kMachineLine, -14);
     },
     -14, nullptr, "??#* cacheCapability: error, uid=7:0. \n"},
    {"the machine parse",
     [](Camera& c) {
         c.has(kLoginLine, "Product-ID-Minor=NOCAP\n");
         c.answers(kMachineLine, "-35\nERROR: Authentication error.\n");
     },
     -1, "-35\nERROR: Authentication error.\n", "??#* getCacheCapability: uid=7:0, err-1. \n"},
    {"the machine conversion",
     [](Camera& c) {
         c.has(kLoginLine, "Product-ID-Minor=NOCAP\n");
         c.conversionResults["machine"] = 0;
     },
     0, "0\nOK\nProduct.Type=IPCAM\nProduct.ID=M100\n", "??#* getCacheCapability: uid=7:0, err0. \n"},
};

TEST(CapabilityFailures, GiveTheirCodeTheirTraceAndTheLastDeviceText) {
    for (const FailureRow& row : kFailures) {
        SCOPED_TRACE(row.name);
        Camera one;
        row.arrange(one);
        forgetTraces();
        Answer answer;
        EXPECT_EQ(one.getCacheCapability(kUser, 0, nullptr, answer.out()), row.result);
        EXPECT_EQ(answer.text(), row.answer == nullptr ? "(null)" : row.answer);
        EXPECT_TRUE(tracesAre({row.trace}));
    }
}

TEST(CapabilityFailures, AreTriedAgainOnTheNextCallWithoutAskingForTheLoginAgain) {
    for (const FailureRow& row : kFailures) {
        SCOPED_TRACE(row.name);
        Camera one;
        row.arrange(one);
        EXPECT_EQ(one.getCacheCapability(kUser, 0, nullptr, nullptr), row.result);
        for (const char* line : {kCapabilityLine, kSecondCapabilityLine, kMachineLine})
            one.recovers(line);
        one.conversionResults.clear();
        one.asked();
        Answer answer;
        EXPECT_EQ(one.getCacheCapability(kUser, 0, nullptr, answer.out()), 1);
        const Lines again = one.asked();
        ASSERT_FALSE(again.empty());
        EXPECT_NE(again.front(), "Login.cgi");
        EXPECT_EQ(pairsOf(answer.text())["Device"], "IPCAM");
    }
}

TEST(CapabilityFailures, LeaveTheFlagsAndTheModelNameAlone) {
    for (const FailureRow& row : kFailures) {
        SCOPED_TRACE(row.name);
        Camera one;
        row.arrange(one);
        one.setIsResoIndep(5);
        one.setIsTlProfile(6);
        one.setIsIDPTZ(7);
        one.set_model_name("before");
        EXPECT_EQ(one.getCacheCapability(kUser, 0, nullptr, nullptr), row.result);
        EXPECT_EQ(one.getIsResoIndep(), 5);
        EXPECT_EQ(one.getIsTlProfile(), 6);
        EXPECT_EQ(one.getIsIDPTZ(), 7);
        EXPECT_EQ(one.get_model_name(), "before");
    }
}

TEST(CapabilityFailures, OverwriteWhatTheAnswerPointedTo) {
    Camera one;
    one.fails(kCapabilityLine, -3);
    char before[] = "before";
    char* answer = before;
    EXPECT_EQ(one.getCacheCapability(kUser, 0, nullptr, &answer), -3);
    EXPECT_EQ(answer, nullptr);
}

} // namespace
} // namespace koine::test
