// Fetching the media profiles once, printing them, and counting them.

#include "bench_request.h"
#include "observed.h"

#include <gtest/gtest.h>

#include <map>

namespace koine::test {
namespace {

const std::string kMediaLine = "Config.cgi?action=get&category=Media.*&ch=1";
const std::string kUnknown = "-11\nERROR: Unknown parameter.\n";

/// Hands a chosen result out of the conversion and sees how the capabilities are filled.
class FailingConversion : public BenchRequest {
public:
    using BenchRequest::BenchRequest;
    int convertCgiMedia(unsigned int uid, CgiMap* media, CgiMap* login) override {
        BenchRequest::convertCgiMedia(uid, media, login);
        ++conversions;
        conversionUid = uid;
        return result;
    }
    int getCacheCapability(unsigned int uid, int refresh, const char* url, char** answer) override {
        ++capabilityFills;
        fillsPlainly = fillsPlainly && refresh == 0 && url == nullptr && answer == nullptr;
        capabilityUid = uid;
        return BenchRequest::getCacheCapability(uid, refresh, url, answer);
    }
    int result = 1;
    int conversions = 0;
    unsigned int conversionUid = 0;
    int capabilityFills = 0;
    bool fillsPlainly = true;
    unsigned int capabilityUid = 0;
};

class MediaCache : public ::testing::Test {
protected:
    MediaCache() {
        request.device = [this](const std::string& line, char** answer) {
            const auto found = answers.find(line);
            if (found == answers.end())
                return -6;
            if (found->second.second != "(none)")
                *answer = mallocedText(found->second.second);
            return found->second.first;
        };
        answers["Login.cgi"] = {1, "0\nOK\nProduct-Name=Camera\n"};
        answers["Capability.cgi?action=get"] = {1, "0\nOK\nCapability.Video.Format=H.264\n"};
        answers[kMediaLine] = {1, "0\nOK\nMedia.Profiles.Count=2\nMedia.Profiles.Profile1.token=T1\n"};
        forgetTraces();
    }

    int get(char** answer = nullptr, int refresh = 0, const char* url = nullptr, const char* key = nullptr) {
        return request.getCacheConfigMedia(kUid, refresh, url, key, answer);
    }

    std::map<std::string, std::pair<int, std::string>> answers;
    FailingConversion request{Caches::unfilled};
};

TEST_F(MediaCache, AsksTheDeviceAfterLoginAndCapabilities) {
    EXPECT_EQ(get(), 1);
    EXPECT_EQ(request.sentLines(),
              (std::vector<std::string>{"Login.cgi", "Capability.cgi?action=get", kMediaLine}));
    EXPECT_EQ(request.sent.back().url, "http://camera:80/" + kMediaLine);
    EXPECT_EQ(request.sent.back().uid, kUid);
    EXPECT_EQ(request.sent.back().method, 0);
    EXPECT_EQ(request.sent.back().connection, 0);
    EXPECT_EQ(request.conversions, 1);
    EXPECT_EQ(request.conversionUid, kUid);
}

TEST_F(MediaCache, AsksForTheSubChannelOfTheUser) {
    request.client().set_strm_nvr_subchannel(3);
    request.set_strm_nvr_subchannel(2);
    EXPECT_EQ(get(), -6);
    EXPECT_EQ(request.sentLines().back(), "Config.cgi?action=get&category=Media.*&ch=3");
}

TEST_F(MediaCache, AsksOnceAndConvertsEveryTime) {
    EXPECT_EQ(get(), 1);
    EXPECT_EQ(get(), 1);
    EXPECT_EQ(request.getCacheConfigMedia(8, 0, "http://x/y", nullptr, nullptr), 1);
    EXPECT_EQ(request.sent.size(), 3U);
    EXPECT_EQ(request.conversions, 3);
}

TEST_F(MediaCache, SendsAGivenUrlAsItStands) {
    answers["Config.cgi?action=get&category=Media.Profiles.*"] = {1, "0\nOK\nMedia.Profiles.Count=1\n"};
    EXPECT_EQ(get(nullptr, 0, "http://other:81/Config.cgi?action=get&category=Media.Profiles.*"), 1);
    EXPECT_EQ(request.sent.back().url, "http://other:81/Config.cgi?action=get&category=Media.Profiles.*");
    EXPECT_EQ(request.getProfileCount(), 1);
}

TEST_F(MediaCache, TheAnswerHoldsTheKeysAskedFor) {
    AnswerText answer;
    EXPECT_EQ(get(answer.out(), 0, nullptr, "Media.Profiles.Profile1.*"), 1);
    EXPECT_EQ(answer.text(), "0\nOK\nMedia.Profiles.Profile1.token=T1\n");
}

TEST_F(MediaCache, WithoutAKeyTheAnswerHoldsAll) {
    AnswerText answer;
    EXPECT_EQ(get(answer.out()), 1);
    EXPECT_EQ(answer.text(), "0\nOK\nMedia.Profiles.Count=2\nMedia.Profiles.Profile1.token=T1\n");
}

TEST_F(MediaCache, AMissingKeyIsUnknown) {
    request.set_strm_setting_channel(4);
    AnswerText answer;
    EXPECT_EQ(get(), 1);
    forgetTraces();
    EXPECT_EQ(get(answer.out(), 0, nullptr, "Media.Other"), -8);
    EXPECT_EQ(answer.text(), kUnknown);
    EXPECT_TRUE(tracesAre({"???#579 getCacheConfigMedia: uid=7, err-8. \n"}));
}

TEST_F(MediaCache, AMissingKeyLeavesTheProfilesUncounted) {
    AnswerText answer;
    EXPECT_EQ(get(answer.out(), 0, nullptr, "Media.Other"), -8);
    EXPECT_EQ(request.getProfileCount(), 0);
    EXPECT_EQ(request.getMediaProfile(), 0);
}

TEST_F(MediaCache, CountsTheProfiles) {
    EXPECT_EQ(get(), 1);
    EXPECT_EQ(request.getProfileCount(), 2);
    EXPECT_EQ(request.getMediaProfile(), 1);
}

TEST_F(MediaCache, WithoutACountThereAreNoProfiles) {
    for (const char* text : {"0\nOK\nMedia.X=1\n", "0\nOK\nMedia.Profiles.Count=0\n",
                             "0\nOK\nMedia.Profiles.Count=\n", "0\nOK\nMedia.Profiles.Count=none\n"}) {
        FailingConversion other(Caches::unfilled);
        other.device = request.device;
        other.setProfileCount(5);
        answers[kMediaLine] = {1, text};
        EXPECT_EQ(other.getCacheConfigMedia(kUid, 0, nullptr, nullptr, nullptr), 1);
        EXPECT_EQ(other.getProfileCount(), 0) << text;
        EXPECT_EQ(other.getMediaProfile(), 0) << text;
        EXPECT_EQ(other.media().count("Media.Profiles.Count"), 1U) << "looking for it creates it";
    }
}

TEST_F(MediaCache, ANegativeCountIsReportedButDrivesNothing) {
    answers[kMediaLine] = {1, "0\nOK\nMedia.Profiles.Count=-3\n"};
    EXPECT_EQ(get(), 1);
    EXPECT_EQ(request.getProfileCount(), -3);
    EXPECT_EQ(request.getMediaProfile(), 0);
}

TEST_F(MediaCache, NeverTakesTheMediaProfileFlagBack) {
    answers[kMediaLine] = {1, "0\nOK\nMedia.Profiles.Count=0\n"};
    request.setMediaProfile(1);
    EXPECT_EQ(get(), 1);
    EXPECT_EQ(request.getMediaProfile(), 1);
}

TEST_F(MediaCache, ARefreshEmptiesTheMapAndAsksNothing) {
    EXPECT_EQ(get(), 1);
    const std::size_t before = request.sent.size();
    EXPECT_EQ(get(nullptr, 1), 1);
    EXPECT_EQ(request.sent.size(), before);
    EXPECT_EQ(request.getProfileCount(), 0);
    EXPECT_EQ(request.getMediaProfile(), 1);
    EXPECT_EQ(request.media(), (CgiMap{{"Media.Profiles.Count", ""}}));
}

TEST_F(MediaCache, ARefreshWithAnAnswerHasNothingToPrint) {
    EXPECT_EQ(get(), 1);
    AnswerText answer;
    EXPECT_EQ(get(answer.out(), 1), -8);
    EXPECT_EQ(answer.text(), kUnknown);
    EXPECT_EQ(request.getProfileCount(), 2) << "the step that counts is not reached";
}

TEST_F(MediaCache, OnlyARefreshOfOneIsARefresh) {
    EXPECT_EQ(get(), 1);
    EXPECT_EQ(get(nullptr, 2), 1);
    EXPECT_EQ(get(nullptr, -1), 1);
    EXPECT_EQ(request.getProfileCount(), 2);
}

TEST_F(MediaCache, ARefreshBeforeTheFirstFetchStillFetches) {
    EXPECT_EQ(get(nullptr, 1), 1);
    EXPECT_EQ(request.getProfileCount(), 2);
}

TEST_F(MediaCache, FailsWithTheCapabilities) {
    answers["Capability.cgi?action=get"] = {-4, "(none)"};
    AnswerText answer;
    EXPECT_EQ(get(answer.out()), -4);
    EXPECT_EQ(answer.text(), kUnknown);
    EXPECT_TRUE(tracedOnce("??#519 getCacheConfigMedia: error, uid=7. \n"));
    EXPECT_EQ(request.conversions, 0);
    EXPECT_EQ(request.sentLines().back(), "Capability.cgi?action=get");
}

TEST_F(MediaCache, ChecksTheCapabilitiesOnEveryCall) {
    AnswerText answer;
    EXPECT_EQ(get(answer.out()), 1);
    EXPECT_EQ(get(nullptr, 1, "http://camera/unknown"), 1);
    EXPECT_EQ(request.capabilityFills, 2);
    EXPECT_EQ(request.capabilityUid, kUid);
    EXPECT_TRUE(request.fillsPlainly) << "neither the refresh nor the URL nor the answer is theirs";
    EXPECT_EQ(request.sent.size(), 3U) << "they are filled, so nobody asks";
}

TEST_F(MediaCache, FailsWhenTheDeviceRefuses) {
    StandardError said;
    answers[kMediaLine] = {-1, "(none)"};
    AnswerText answer;
    EXPECT_EQ(get(answer.out()), -1);
    EXPECT_EQ(said.text(), "Error : getCacheConfigMedia-544 call requestCgi() error -1, uid 7\n");
    EXPECT_EQ(answer.text(), kUnknown);
    EXPECT_TRUE(notTraced("??#533 getCacheConfigMedia: error, uid=7. \n"));
    EXPECT_EQ(request.conversions, 0);
}

TEST_F(MediaCache, HandsTheRawAnswerOfAFailedRequestOn) {
    StandardError said;
    answers[kMediaLine] = {-6, "raw text"};
    AnswerText answer;
    EXPECT_EQ(get(answer.out()), -6);
    EXPECT_EQ(answer.text(), "raw text");
}

TEST_F(MediaCache, FailsWhenTheDeviceRefusesAGivenUrl) {
    StandardError said;
    AnswerText answer;
    EXPECT_EQ(get(answer.out(), 0, "http://camera/unknown"), -6);
    EXPECT_EQ(said.text(), "");
    EXPECT_TRUE(tracedOnce("??#533 getCacheConfigMedia: error, uid=7. \n"));
    EXPECT_EQ(answer.text(), kUnknown);
}

TEST_F(MediaCache, FailsWhenTheAnswerCannotBeRead) {
    StandardError said;
    answers[kMediaLine] = {1, "no status"};
    AnswerText answer;
    EXPECT_EQ(get(answer.out()), -2);
    EXPECT_EQ(said.text(), "Error : getCacheConfigMedia-556 with createMapStr error -2, uid=7\n");
    EXPECT_EQ(answer.text(), "no status") << "the raw answer is handed on";
    EXPECT_EQ(request.conversions, 0);
}

TEST_F(MediaCache, TheDevicesOwnRefusalIsAFailureToo) {
    StandardError said;
    answers[kMediaLine] = {1, "-35\nERROR: Authentication error.\n"};
    EXPECT_EQ(get(), -1);
    EXPECT_EQ(said.text(), "Error : getCacheConfigMedia-556 with createMapStr error -1, uid=7\n");
}

TEST_F(MediaCache, AsksAgainAfterAFailure) {
    StandardError said;
    answers[kMediaLine] = {-6, "(none)"};
    EXPECT_EQ(get(), -6);
    answers[kMediaLine] = {1, "garbage"};
    EXPECT_EQ(get(), -2);
    answers[kMediaLine] = {1, "0\nOK\nMedia.Profiles.Count=1\n"};
    EXPECT_EQ(get(), 1);
    EXPECT_EQ(request.getProfileCount(), 1);
    EXPECT_EQ(request.sent.size(), 5U);
}

TEST_F(MediaCache, FailsWithTheConversionAndHandsTheRawAnswerOn) {
    request.result = -5;
    AnswerText answer;
    EXPECT_EQ(get(answer.out(), 0, nullptr, "Media.*"), -5);
    EXPECT_TRUE(tracedOnce("??#567 getCacheConfigMedia: uid=7, err-5. \n"));
    EXPECT_EQ(answer.text(), "0\nOK\nMedia.Profiles.Count=2\nMedia.Profiles.Profile1.token=T1\n");
    EXPECT_EQ(request.getProfileCount(), 0);
}

TEST_F(MediaCache, AFailedConversionIsRepeatedWithoutAskingAgain) {
    request.result = -5;
    EXPECT_EQ(get(), -5);
    const std::size_t before = request.sent.size();
    request.result = 1;
    EXPECT_EQ(get(), 1);
    EXPECT_EQ(request.sent.size(), before);
}

TEST_F(MediaCache, ADeviceWithoutTheFunctionHasNoProfilesAndThatIsFine) {
    StandardError said;
    answers[kMediaLine] = {-14, "(none)"};
    request.setProfileCount(9);
    AnswerText answer;
    EXPECT_EQ(get(answer.out()), 1);
    EXPECT_EQ(said.text(), "Error : getCacheConfigMedia-544 call requestCgi() error -14, uid 7\n");
    EXPECT_EQ(answer.text(), kUnknown);
    EXPECT_EQ(request.getProfileCount(), 0);
    EXPECT_EQ(request.conversions, 0);
    EXPECT_EQ(get(), 1);
    EXPECT_EQ(request.sent.size(), 4U) << "it was not fetched, so the next call asks again";
}

TEST_F(MediaCache, ADeviceWithoutProfilesAnswersTheCountThatLookingForItLeft) {
    StandardError said;
    answers[kMediaLine] = {-14, "(none)"};
    AnswerText unknown;
    EXPECT_EQ(get(unknown.out(), 0, nullptr, "Media.*"), 1);
    EXPECT_EQ(unknown.text(), kUnknown);

    answers[kMediaLine] = {1, "0\nOK\n"};
    for (int i = 0; i < 2; ++i) {
        AnswerText answer;
        EXPECT_EQ(get(answer.out(), 0, nullptr, "Media.*"), 1);
        EXPECT_EQ(answer.text(), "0\nOK\nMedia.Profiles.Count=\n");
    }
    EXPECT_EQ(request.getProfileCount(), 0);
    EXPECT_EQ(request.getMediaProfile(), 0);
    EXPECT_EQ(request.sent.size(), 4U) << "an empty answer counts as fetched";
}

TEST_F(MediaCache, CapabilitiesThatTheDeviceLacksAreFineToo) {
    answers["Capability.cgi?action=get"] = {-14, "(none)"};
    EXPECT_EQ(get(), 1);
    EXPECT_TRUE(tracedOnce("??#519 getCacheConfigMedia: error, uid=7. \n"));
    EXPECT_EQ(request.sentLines().back(), "Capability.cgi?action=get");
    EXPECT_EQ(request.getProfileCount(), 0);
}

TEST_F(MediaCache, TheSameCodeFromTheParserOrTheConversionIsFineToo) {
    StandardError said;
    answers[kMediaLine] = {1, "-14\nERROR: None.\n"};
    AnswerText raw;
    EXPECT_EQ(get(raw.out()), 1);
    EXPECT_EQ(raw.text(), "-14\nERROR: None.\n");

    answers[kMediaLine] = {1, "0\nOK\nMedia.Profiles.Count=2\n"};
    request.result = -14;
    EXPECT_EQ(get(), 1);
    EXPECT_EQ(request.getProfileCount(), 2);
}

TEST_F(MediaCache, TheGivenUrlThatTheDeviceLacksIsFineToo) {
    answers["none"] = {-14, "(none)"};
    EXPECT_EQ(get(nullptr, 0, "http://camera/none"), 1);
    EXPECT_TRUE(tracedOnce("??#533 getCacheConfigMedia: error, uid=7. \n"));
}

TEST_F(MediaCache, AWildcardSelectsKeys) {
    AnswerText answer;
    EXPECT_EQ(get(answer.out(), 0, nullptr, "*Count"), 1);
    EXPECT_EQ(answer.text(), "0\nOK\nMedia.Profiles.Count=2\n");
}

} // namespace
} // namespace koine::test
