// A registry that gives no stream user: a step that needs one stops the process, a step that does not goes
// on.

#include "bench_request.h"
#include "death_test_style.h"

#include <boost/shared_ptr.hpp>
#include <gtest/gtest.h>

namespace koine::test {
namespace {

class NoClients : public BenchRequest {
public:
    using BenchRequest::BenchRequest;
    boost::shared_ptr<StreamIDClient>& get_streamid_client(unsigned int) override { return none_; }

private:
    boost::shared_ptr<StreamIDClient> none_;
};

class MissingClient : public ::testing::Test {
protected:
    MissingClient() { dieInAProcessOfItsOwn(); }

    int convert(const std::string& count) {
        CgiMap media = {{"Media.Profiles.Count", count},
                        {"Media.Profiles.Profile1.VideoEncoderConfiguration.token", "E1"}};
        CgiMap login = {{"Product-Name", "Camera"}};
        return request.BaseRequest::convertCgiMedia(kUid, &media, &login);
    }

    NoClients request;
};

TEST_F(MissingClient, IsNoticedByTheConversionOnlyWhenThereIsAProfile) {
    EXPECT_EQ(convert("0"), 1);
    EXPECT_EQ(convert(""), 1);
    EXPECT_DEATH(convert("1"), "no stream client");
}

TEST_F(MissingClient, DoesNotMatterToProfilesThatAreThere) {
    AnswerText answer;
    request.media()["Media.Profiles.Count"] = "2";
    EXPECT_EQ(request.getCacheConfigMedia(kUid, 0, nullptr, nullptr, answer.out()), 1);
    EXPECT_EQ(answer.text(), "0\nOK\nMedia.Profiles.Count=2\n");
    EXPECT_EQ(request.getProfileCount(), 2);
}

TEST_F(MissingClient, StopsTheChoiceAndTheStartOfAStream) {
    EXPECT_DEATH(request.searchAvailableProfileToken(kUid), "no stream client");
    EXPECT_DEATH(request.HandleInit(kUid), "no stream client");
}

TEST_F(MissingClient, IsNoticedWhenTheProfilesOfItsChannelAreAskedFor) {
    NoClients unfilled(Caches::unfilled);
    EXPECT_DEATH(unfilled.getCacheConfigMedia(kUid, 0, nullptr, nullptr, nullptr), "no stream client");
    EXPECT_EQ(unfilled.getCacheConfigMedia(kUid, 0, "http://camera/any", nullptr, nullptr), 1);
}

TEST_F(MissingClient, IsNoticedWhenALineNeedsTheUsersProfile) {
    const auto rewrite = [this](std::string line) {
        AnswerText rewritten;
        EXPECT_EQ(request.recoveryUrl(kUid, line.data(), rewritten.out()), 1);
    };
    EXPECT_DEATH(rewrite("PTZ.cgi?Pan=1"), "no stream client");
    EXPECT_DEATH(rewrite("Serial.cgi?Data=ff"), "no stream client");
    rewrite("Config.cgi?action=set&Camera.DPTZ=1");
    request.setIsIDPTZ(1);
    EXPECT_DEATH(rewrite("Config.cgi?action=set&Camera.DPTZ=1"), "no stream client");
}

TEST_F(MissingClient, IsNoticedWhenAQualityMustBeNoted) {
    const std::string encoder = "Media.Profiles.Profile1.VideoEncoderConfiguration";
    const auto check = [this](std::string line) { return request.checkCgiParameter(kUid, line.data()); };
    EXPECT_DEATH(check(encoder + ".Quality=5"), "no stream client");
    EXPECT_EQ(check(encoder + ".Quality=good"), 1);
    EXPECT_EQ(check(encoder + ".RateControl.FrameRateLimit=0"), -2);
}

TEST_F(MissingClient, IsNoticedWhenThereIsAnAnswerToParse) {
    struct Answering : NoClients {
        int requestHttpStr(unsigned int, char*, char*, char*, char**) override { return result; }
        int result = -3;
    };
    Answering answering;
    char line[] = "Other.cgi";
    EXPECT_EQ(answering.requestHttpData(kUid, line, nullptr, nullptr), -3);
    answering.result = 1;
    EXPECT_DEATH(answering.requestHttpData(kUid, line, nullptr, nullptr), "no stream client");
}

} // namespace
} // namespace koine::test
