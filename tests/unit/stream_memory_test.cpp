// Memory that runs out in the steps of streams and profiles: every allocation in turn. A step may let
// `std::bad_alloc` through (the dispatch turns it into -8) or fail with -8 itself; where a failure has a line
// of its own, that line must show up; nothing may be left behind.

#include "bench_request.h"
#include "observed.h"
#include "tests/support/failing_allocations.h"

#include <gtest/gtest.h>

#include <new>
#include <set>

namespace koine::test {
namespace {

constexpr int kThrown = 1000;

/// What a step came to each time one of its allocations failed: "<result> <answer> <last trace>".
class Shortage : public ::testing::Test {
protected:
    using SetUp = std::function<void(BenchRequest&)>;
    using Step = std::function<int(BenchRequest&, char**)>;

    /// Runs the step on a new object for every allocation that can fail, and once undisturbed.
    void runShort(const SetUp& prepare, const Step& step) {
        const unsigned int runs =
            failEachAllocation([&](unsigned int n) { return oneRun(n, prepare, step); });
        EXPECT_GT(runs, 1U) << "no allocation ever failed";
        EXPECT_LT(runs, 10000U);
    }

    bool oneRun(unsigned int n, const SetUp& prepare, const Step& step) {
        BenchRequest request;
        prepare(request);
        forgetTraces();
        AnswerText answer;
        int result = kThrown;
        bool failed = false;
        {
            FailAllocations shortage(n);
            try {
                result = step(request, answer.out());
            } catch (const std::bad_alloc&) {
                result = kThrown;
            }
            failed = shortage.stop();
        }
        const std::vector<std::string> said = traces();
        (failed ? outcomes : undisturbed)
            .insert(std::to_string(result) + " " + answer.text() + " " + (said.empty() ? "" : said.back()));
        results.insert(result);
        EXPECT_EQ(request.testOK(nullptr, 0, nullptr, nullptr), 1);
        return failed;
    }

    std::set<std::string> outcomes;
    std::set<std::string> undisturbed;
    std::set<int> results;
};

std::string withAnyLine(const std::string& outcome) {
    // "#123 " -> "#* "
    const std::size_t mark = outcome.find('#');
    if (mark == std::string::npos)
        return outcome;
    const std::size_t blank = outcome.find(' ', mark);
    return outcome.substr(0, mark + 1) + "*" + outcome.substr(blank);
}

bool hasOutcome(const std::set<std::string>& outcomes, const std::string& expected) {
    for (const std::string& one : outcomes)
        if (withAnyLine(one) == expected)
            return true;
    return false;
}

TEST_F(Shortage, TheSynchronisationSaysWhichTextFoundNoRoom) {
    runShort(
        [](BenchRequest& request) {
            request.useProfiles(1);
            request.client().set_profile_id(1);
            request.client().setSettingH(480);
            request.client().setSettingW(640);
            request.encoder(1, ".H264.Resolution.NxN.List", "640x480");
            request.dispatch = [](const BenchRequest::Line&, char**) { return 1; };
        },
        [](BenchRequest& request, char**) { return request.syncProfileToken_1(kUid); });
    EXPECT_EQ(outcomes.count("-8 (null) ???#2204 BaseRequest.syncProfileToken_1: err-8. \n"), 1U);
    EXPECT_EQ(outcomes.count("-8 (null) ??#2252 BaseRequest.syncProfileToken_1: err-8. \n"), 1U);
    for (const int result : results)
        EXPECT_TRUE(result == 1 || result == -8 || result == kThrown) << result;
    EXPECT_EQ(undisturbed.size(), 1U);
    EXPECT_EQ(undisturbed.begin()->substr(0, 2), "1 ");
}

TEST_F(Shortage, TheReconnectDecisionStillAnswersWhenItsCopyFails) {
    const std::string line = "Media.Profiles.Profile1.VideoEncoderConfiguration.Resolution.Width=1280";
    runShort([](BenchRequest& request) { request.set_strm_setting_channel(3); },
             [&](BenchRequest& request, char** answer) {
                 char text[128] = "";
                 line.copy(text, line.size());
                 return request.handleParameter_1(text, answer);
             });
    EXPECT_TRUE(hasOutcome(outcomes, "-8 0\nOK\n ???#* BaseRequest::handleParameter_1: uid=0:3, err-8. \n"))
        << "the copy";
    EXPECT_TRUE(hasOutcome(outcomes, "-8 (null) ???#* BaseRequest::handleParameter_1: uid=0:3, err-8. \n"))
        << "the answer";
    EXPECT_EQ(undisturbed.begin()->substr(0, 10), "1 0\nOK\n;St");
}

TEST_F(Shortage, AFailedReconnectDecisionFreesTheEarlierAnswer) {
    BenchRequest request;
    char line[] = "Config.cgi?action=set";
    AnswerText answer("earlier");
    FailAllocations shortage(1, FailAllocations::Then::stayOut);
    const int result = request.handleParameter_1(line, answer.out());
    shortage.stop();
    EXPECT_EQ(result, -8);
    EXPECT_TRUE(answer.isNull());
}

TEST_F(Shortage, TheStreamAnswerFallsBackToTheErrorText) {
    runShort(
        [](BenchRequest& request) {
            request.set_strm_setting_channel(3);
            request.useProfiles(2);
            request.client().set_profile_token("T2");
            request.encoder(2, ".Encoding", "H264");
            request.encoder(2, ".Quality", "6");
            request.encoder(2, ".H264.Resolution.NxN.List", "640x480,1280x720");
        },
        [](BenchRequest& request, char** answer) {
            char line[] = "Stream.cgi?action=get";
            return request.buildCgiStreamGet(kUid, line, answer);
        });
    EXPECT_TRUE(hasOutcome(outcomes, "-8 -11\nERROR: Unknown parameter.\n ???#* buildCgiStreamGet: uid=7:3, "
                                     "err-8. \n"));
    for (const std::string& one : outcomes)
        EXPECT_TRUE(one.compare(0, 3, "-8 ") == 0 || one.compare(0, 4, "1000") == 0) << one;
}

void expectUriOutcomes(const std::set<std::string>& outcomes, const std::string& line) {
    EXPECT_TRUE(hasOutcome(outcomes, "-8 (null) ???#* buildCgiGetStreamUri: uid=7:3, err-8. \n"));
    if (!line.empty()) {
        EXPECT_TRUE(hasOutcome(
            outcomes, "-8 (null) ???#* buildCgiOnvifGetStreamUri: uid=7:3, pchUrl=" + line + ", err-8. \n"));
    }
    for (const std::string& one : outcomes)
        EXPECT_TRUE(one.compare(0, 10, "-8 (null) ") == 0 || one.compare(0, 11, "1000 (null)") == 0) << one;
}

TEST_F(Shortage, TheUriAnswerOfADeviceWithoutProfilesStaysNull) {
    runShort([](BenchRequest& request) { request.set_strm_setting_channel(3); },
             [](BenchRequest& request, char** answer) {
                 char line[] = "Onvif.cgi?action=GetStreamUri&And=more";
                 return request.buildCgiGetStreamUri(kUid, line, answer);
             });
    expectUriOutcomes(outcomes, "");
}

TEST_F(Shortage, TheUriAnswerOfADeviceWithProfilesStaysNull) {
    runShort(
        [](BenchRequest& request) {
            request.set_strm_setting_channel(3);
            request.useProfiles(2);
            request.encoder(2, ".Encoding", "H264");
        },
        [](BenchRequest& request, char** answer) {
            char line[] = "Onvif.cgi?action=GetStreamUri&ProfileToken=T2";
            return request.buildCgiGetStreamUri(kUid, line, answer);
        });
    expectUriOutcomes(outcomes, "Onvif.cgi?action=GetStreamUri&ProfileToken=T2");
}

TEST_F(Shortage, VideoKeysAreSentWholeOrNotAtAll) {
    std::set<std::string> sent;
    platform().hooks.getConfigVideoStr_TovlinNVR = [](const char*, int, char*, int, int, float, int, int,
                                                      int) {
        const SpareAllocations spared;
        return mallocedText("&Video.I0.X=" + std::string(1500, '1'));
    };
    runShort(
        [&](BenchRequest& request) {
            request.setVendor("TOVLIN");
            request.dispatch = [&](const BenchRequest::Line& line, char**) {
                const SpareAllocations spared;
                sent.insert(line.url);
                return 1;
            };
        },
        [](BenchRequest& request, char**) {
            char line[] = "Config.cgi?action=set&Media.Profiles.Profile1.VideoEncoderConfiguration.Quality=1";
            return request.syncVideoConfigByMediaConfig(kUid, line);
        });
    EXPECT_EQ(sent.size(), 1U) << "the same line every time, when one was sent at all";
    for (const int result : results)
        EXPECT_TRUE(result == 1 || result == 0 || result == -8 || result == kThrown) << result;
}

TEST_F(Shortage, TheSearchEitherChoosesOrLeavesTheUserUsable) {
    runShort(
        [](BenchRequest& request) {
            request.useProfiles(3);
            request.profile(3, ".token", "a token that is too long for the small texts of the C++ library");
            request.profile(3, ".Tovlin.AllowLive", "MOBILE");
            request.client().setProfileMode_1("MOBILE");
        },
        [](BenchRequest& request, char**) { return request.searchAvailableProfileToken(kUid); });
    for (const int result : results)
        EXPECT_TRUE(result == 1 || result == kThrown) << result;
}

TEST_F(Shortage, ASetUpTextIsReadOnTheNextCall) {
    for (unsigned int n = 1; n < 1000; ++n) {
        StreamIDClient client;
        client.setInitStream(
            "StreamSetup.Stream=TOVLIN-NetworkBk&ProfileToken=a-token-longer-than-small-texts"
            "&StreamSetup.Stream.Param=\"a value that is longer than small texts are\"");
        FailAllocations shortage(n);
        try {
            client.ParseStreamInit();
        } catch (const std::bad_alloc&) {
        }
        const bool failed = shortage.stop();
        EXPECT_EQ(client.ParseStreamInit(), 1);
        EXPECT_STREQ(client.profile_token(), "a-token-longer-than-small-texts");
        if (!failed)
            return;
    }
    FAIL() << "it never got by";
}

TEST_F(Shortage, TheConversionGoesOnWhereItStopped) {
    for (unsigned int n = 1; n < 10000; ++n) {
        BenchRequest request;
        request.capability() = {{"Capability.Video.Format", "MJPEG,H.264"},
                                {"Capability.Video.Resolution.NxN", "640x480,1280x720"}};
        request.client().setQualityStep(10.0F);
        CgiMap login = {{"Product-Name", "Camera"}};
        CgiMap media = {{"Media.Profiles.Count", "2"},
                        {"Media.Profiles.Profile1.VideoEncoderConfiguration.token", "E1"},
                        {"Media.Profiles.Profile1.VideoEncoderConfiguration.Quality", "60"},
                        {"Media.Profiles.Profile2.VideoEncoderConfiguration.token", "E2"}};
        CgiMap whole = media;
        request.BaseRequest::convertCgiMedia(kUid, &whole, &login);
        FailAllocations shortage(n);
        try {
            request.BaseRequest::convertCgiMedia(kUid, &media, &login);
        } catch (const std::bad_alloc&) {
        }
        const bool failed = shortage.stop();
        request.BaseRequest::convertCgiMedia(kUid, &media, &login);
        ASSERT_EQ(media, whole) << "after the failure of allocation " << n;
        if (!failed)
            return;
    }
    FAIL() << "it never got by";
}

} // namespace
} // namespace koine::test
