// Stream starts that go wrong: a failure of every step, and the recovery on the next request.

#include "observed.h"
#include "tests/support/test_request.h"
#include "three_profiles.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace koine::test {
namespace {

const std::string kUnknown = "-11\nERROR: Unknown parameter.\n";
const std::string kRefused = "-35\nERROR: Authentication error.\n";
constexpr std::size_t kRetried = 3; // login, capabilities and media ask again, the categories do not

class FirstStreamFailures : public ::testing::TestWithParam<std::size_t> {
protected:
    FirstStreamFailures() {
        scriptThreeProfiles();
        request.connect();
    }

    std::string line() const { return fillingLines()[GetParam()]; }

    static Lines from(std::size_t first) {
        Lines lines(fillingLines().begin() + static_cast<std::ptrdiff_t>(first), fillingLines().end());
        lines.push_back(autoSetLine());
        return lines;
    }

    void expectStopAtThisLine() {
        const Lines asked = platform().requestLines();
        EXPECT_EQ(asked, Lines(fillingLines().begin(),
                               fillingLines().begin() + static_cast<std::ptrdiff_t>(GetParam()) + 1));
        EXPECT_NE(request.client().getInitStream(), "");
    }

    /// The next request starts the stream after all.
    void expectRecovery() {
        StandardError said;
        platform().forget();
        EXPECT_EQ(request.ask("http://camera:80/Stream.cgi?action=get").result, 1);
        EXPECT_EQ(platform().requestLines(), from(GetParam() < kRetried ? GetParam() : GetParam() + 1));
        EXPECT_EQ(request.client().getInitStream(), "");
        EXPECT_STREQ(request.client().profile_token(), "main");
        EXPECT_EQ(request.client().getHaveSyncProfileToken(), 1);
    }

    TestRequest request;
};

TEST_P(FirstStreamFailures, ARefusedRequestEndsTheStartAndTheNextOneGoesOn) {
    StandardError said;
    device().once(line(), -6);
    EXPECT_EQ(request.ask(setUpLine(kAuto)), (Reply{-6, kUnknown}));
    said.text();
    expectStopAtThisLine();
    EXPECT_TRUE(tracedOnce("??#* HandleInit: cacheCgi, uid=7:0, pchUrl=" + setUpLine(kAuto) + ". \n"));
    EXPECT_TRUE(tracedOnce("??#3698 BaseRequest.requestHttpStr: uid=7:0, HandleInit error-6. \n"));
    expectRecovery();
}

TEST_P(FirstStreamFailures, RefusedCredentialsAreToldAndTheNextRequestGoesOn) {
    StandardError said;
    device().once(line(), -1);
    EXPECT_EQ(request.ask(setUpLine(kAuto)), (Reply{-1, kRefused}));
    said.text();
    expectStopAtThisLine();
    expectRecovery();
}

TEST_P(FirstStreamFailures, AnAnswerThatCannotBeReadEndsTheStartAndTheNextOneGoesOn) {
    StandardError said;
    device().once(line(), "<html>not found</html>");
    EXPECT_EQ(request.ask(setUpLine(kAuto)), (Reply{-2, kUnknown}));
    said.text();
    expectStopAtThisLine();
    expectRecovery();
}

INSTANTIATE_TEST_SUITE_P(OfEveryRequest, FirstStreamFailures,
                         ::testing::Range(std::size_t{0}, fillingLines().size()));

class LateFailures : public ::testing::Test {
protected:
    LateFailures() {
        scriptThreeProfiles();
        request.connect();
    }
    TestRequest request;
};

TEST_F(LateFailures, ARefusedSetLineDoesNotEndTheStart) {
    device().once(autoSetLine(), -6);
    EXPECT_EQ(request.ask(setUpLine(kAuto)), (Reply{1, "0\nOK\n"}));
    EXPECT_TRUE(tracedOnce("??#2260 BaseRequest.syncProfileToken_1: err1. \n"));
    EXPECT_EQ(request.client().getInitStream(), "");
}

TEST_F(LateFailures, ARefusedSetLineIsNotSentAgain) {
    device().once(autoSetLine(), -6);
    request.ask(setUpLine(kAuto));
    platform().forget();
    request.ask(setUpLine(kAuto));
    EXPECT_EQ(platform().requestLines(), Lines());
}

TEST_F(LateFailures, ARefusedSetLineLeavesTheCacheAsItWas) {
    device().once(autoSetLine(), -6);
    request.ask(setUpLine(kAuto));
    const std::string text = request.ask("http://camera:80/Stream.cgi?action=get").text;
    EXPECT_NE(text.find("Stream.Profile.Resolution.Width=640"), std::string::npos) << text;
}

TEST_F(LateFailures, AFailedSynchronisationOfTheDeviceClassDoesNotEndTheStart) {
    request.steps.syncProfileToken = [](unsigned int) { return -8; };
    EXPECT_EQ(request.ask(setUpLine(kAuto)).result, 1);
    EXPECT_TRUE(tracedOnce("??#* BaseRequest.HandleInit: uid=7:0, syncProfileToken error. \n"));
}

TEST_F(LateFailures, AFailedSearchEndsTheStartAndTheNextRequestGoesOn) {
    request.steps.searchAvailableProfileToken = [](unsigned int) { return -2; };
    EXPECT_EQ(request.ask(setUpLine(kAuto)), (Reply{-2, kUnknown}));
    EXPECT_TRUE(tracedOnce("???#* HandleInit: error, uid=7:0. \n"));
    EXPECT_TRUE(tracedOnce("??#3698 BaseRequest.requestHttpStr: uid=7:0, HandleInit error-2. \n"));

    request.steps.searchAvailableProfileToken = nullptr;
    platform().forget();
    EXPECT_EQ(request.ask("http://camera:80/Stream.cgi?action=get").result, 1);
    EXPECT_EQ(platform().requestLines(), Lines{autoSetLine()});
}

TEST_F(LateFailures, AFailureOfOneUserIsNoneOfAnother) {
    request.ask(setUpLine("&ProfileMode=ONLY_META"), 8);
    platform().forget();
    EXPECT_EQ(request.ask(setUpLine(kAuto)), (Reply{1, "0\nOK\n"}));
    EXPECT_EQ(platform().requestLines(), Lines{autoSetLine()});
}

TEST_F(LateFailures, AUriThatCannotBeBuiltIsUnknown) {
    request.ask(setUpLine(kAuto));
    request.steps.buildStreamUri = [](unsigned int, const char*, unsigned int, const char*, const char*, int,
                                      int, char**) { return -2; };
    EXPECT_EQ(request.ask("http://camera:80/Onvif.cgi?action=GetStreamUri"), (Reply{0, kUnknown}));
    request.steps.buildStreamUri = nullptr;
    EXPECT_EQ(request.ask("http://camera:80/Onvif.cgi?action=GetStreamUri").result, 1);
}

} // namespace
} // namespace koine::test
