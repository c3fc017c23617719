// Fills of several caches over more than one connection. Which connection asks what is settled by holding
// answers back, never by time.

#include "devices/open_device.h"
#include "tests/devices/scripted_client.h"
#include "text/owned_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <future>

namespace koine {
namespace {

using Lines = std::vector<std::string>;

constexpr const char* kHost = "http://10.0.0.5:8080/";
constexpr const char* kLogin = "Login.cgi";
constexpr const char* kCapability = "Capability.cgi?action=get";
constexpr const char* kMedia = "Config.cgi?action=get&category=Media.*&ch=1";
constexpr const char* kVideo = "Config.cgi?action=get&category=Video.*";
constexpr const char* kCamera = "Config.cgi?action=get&category=Camera.*";
constexpr const char* kNotification = "Config.cgi?action=get&category=Notification.*";
constexpr const char* kMisc = "Config.cgi?action=get&category=Misc.*";
constexpr const char* kAnalytics = "Config.cgi?action=get&category=VideoAnalytics.*";

const Lines kAll = {kLogin, kCapability, kMedia, kVideo, kCamera, kNotification, kMisc, kAnalytics};

Lines sorted(Lines lines) {
    std::sort(lines.begin(), lines.end());
    return lines;
}

std::size_t threads() {
    const std::filesystem::directory_iterator all("/proc/self/task");
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

class PrefetchTest : public ::testing::Test {
protected:
    PrefetchTest() {
        peer.answers(kLogin, "0\nOK\nProduct-Name=CAM\n");
        peer.answers(kCapability, "0\nOK\nDevice=IPCAM\n");
        peer.answers("category=Media.*", "0\nOK\nMedia.Profiles.Count=0\n");
        peer.answers("category=Video.*", "0\nOK\nVideo.I0.Brightness=1\n");
        peer.answers("category=Camera.*", "0\nOK\nCamera.Name=door\n");
        peer.answers("category=Notification.*", "0\nOK\nNotification.A=1\n");
        peer.answers("category=Misc.*", "0\nOK\nMisc.A=1\n");
        peer.answers("category=VideoAnalytics.*", "0\nOK\nVideoAnalytics.Count=0\n", "session=1");
    }

    std::future<int> fillMeanwhile() {
        return std::async(std::launch::async, [this] { return device->cacheCgi(1); });
    }

    /// What a client asked; 1 is the object's own, 0 means all of them.
    Lines linesOf(int client) const {
        Lines lines;
        for (const test::SentRequest& request : peer.sent())
            if (client == 0 || request.client == client)
                lines.push_back(request.url.substr(std::string(kHost).size()));
        return lines;
    }

    /// The helper has everything before the object gets an answer to its first line.
    int fillWithAllAhead() {
        peer.hold(kLogin);
        std::future<int> result = fillMeanwhile();
        EXPECT_TRUE(peer.awaits(7));
        peer.letGo(kLogin);
        return result.get();
    }

    test::ScriptedDevice peer;
    boost::shared_ptr<DialectRequest> device = openDevice("http://admin:pw@10.0.0.5:8080");
};

TEST_F(PrefetchTest, TheHelperBeginsAtTheEnd) {
    EXPECT_EQ(fillWithAllAhead(), 1);
    EXPECT_EQ(linesOf(1), (Lines{kLogin, kCapability}));
    EXPECT_EQ(linesOf(2), (Lines{kAnalytics, kMisc, kNotification, kCamera, kVideo, kMedia}));
    EXPECT_EQ(device->requestsSent(), 8U);
    EXPECT_EQ(device->requestsPrefetched(), 6U);
}

TEST_F(PrefetchTest, NothingIsAskedTwiceAndNothingElseIsAsked) {
    for (int i = 0; i < 20; ++i) {
        const auto fresh = openDevice("http://10.0.0.5:8080");
        EXPECT_EQ(fresh->cacheCgi(1), 1);
    }
    const Lines all = sorted(linesOf(0));
    for (const std::string& line : kAll)
        EXPECT_EQ(std::count(all.begin(), all.end(), line), 20) << line;
    EXPECT_EQ(all.size(), 20 * kAll.size());
}

TEST_F(PrefetchTest, TwoConnectionsTakeARoundTripForTwoRequests) {
    peer.answersInRounds(2);
    std::future<int> result = fillMeanwhile();
    EXPECT_EQ(result.get(), 1);
    EXPECT_EQ(peer.rounds(), 5) << "one for two challenges, four for eight answers";
    EXPECT_EQ(linesOf(1), (Lines{kLogin, kCapability, kMedia, kVideo}));
    EXPECT_EQ(linesOf(2), (Lines{kAnalytics, kMisc, kNotification, kCamera}));
}

TEST_F(PrefetchTest, OneConnectionTakesARoundTripForEachRequest) {
    device->setConnections(1);
    peer.answersInRounds(1);
    EXPECT_EQ(device->cacheCgi(1), 1);
    EXPECT_EQ(peer.rounds(), 9);
    EXPECT_EQ(linesOf(0), kAll) << "in the order in which the library asks";
    EXPECT_EQ(peer.clientsMade(), 1);
}

TEST_F(PrefetchTest, TheDeviceNeverSeesMoreConnectionsThanWereAllowed) {
    device->setConnections(4);
    for (const std::string& line : kAll)
        peer.hold(line);
    std::future<int> result = fillMeanwhile();
    EXPECT_TRUE(peer.awaits(4));
    for (const std::string& line : kAll)
        peer.letGo(line);
    EXPECT_EQ(result.get(), 1);
    EXPECT_EQ(peer.mostAtATime(), 4U);
    EXPECT_EQ(peer.clientsMade(), 4);
    EXPECT_EQ(sorted(linesOf(0)), sorted(kAll));
}

TEST_F(PrefetchTest, TheNumberOfConnectionsHasBounds) {
    EXPECT_EQ(device->connections(), 2U);
    device->setConnections(0);
    EXPECT_EQ(device->connections(), 1U);
    device->setConnections(1000);
    EXPECT_EQ(device->connections(), 8U);
    DeviceOptions options;
    options.connections = 3;
    EXPECT_EQ(openDevice("http://a", options)->connections(), 3U);
}

TEST_F(PrefetchTest, NothingIsLeftWhenTheFillIsOver) {
    const std::size_t before = threads();
    EXPECT_EQ(device->cacheCgi(1), 1);
    EXPECT_EQ(peer.clientsMade(), 2);
    EXPECT_EQ(peer.clientsAlive(), 1);
    EXPECT_EQ(threads(), before);
}

TEST_F(PrefetchTest, WarmCachesAskNothingAndMakeNoClient) {
    ASSERT_EQ(device->cacheCgi(1), 1);
    const std::size_t asked = peer.sent().size();
    EXPECT_EQ(device->cacheCgi(1), 1);
    EXPECT_EQ(peer.sent().size(), asked);
    EXPECT_EQ(peer.clientsMade(), 2);
}

TEST_F(PrefetchTest, HelpersWorkForNoUser) {
    ASSERT_EQ(fillWithAllAhead(), 1);
    for (const test::SentRequest& request : peer.sent())
        EXPECT_EQ(request.uid.has_value(), request.client == 1) << request.url;
}

TEST_F(PrefetchTest, AllConfigurationIsFilledTheSameWay) {
    peer.hold(kLogin);
    std::future<int> result =
        std::async(std::launch::async, [this] { return device->getCacheConfigAll(1, 0, nullptr); });
    EXPECT_TRUE(peer.awaits(6));
    peer.letGo(kLogin);
    EXPECT_EQ(result.get(), 1);
    EXPECT_EQ(linesOf(2), (Lines{kMisc, kNotification, kCamera, kVideo, kMedia})) << "it has no analytics";
}

TEST_F(PrefetchTest, OnlyWhatIsMissingIsAsked) {
    ASSERT_EQ(device->getCacheConfigMisc(1, 0, nullptr, nullptr, nullptr), 1);
    ASSERT_EQ(device->getCacheConfigMedia(1, 0, nullptr, nullptr, nullptr), 1);
    ASSERT_EQ(device->cacheCgi(1), 1);
    EXPECT_EQ(sorted(linesOf(0)), sorted(kAll));
}

TEST_F(PrefetchTest, ASingleMissingLineIsTheLibrarysOwn) {
    ASSERT_EQ(device->getCacheConfigAll(1, 0, nullptr), 1);
    const int made = peer.clientsMade();
    ASSERT_EQ(device->cacheCgi(1), 1);
    EXPECT_EQ(linesOf(0).back(), kAnalytics);
    EXPECT_EQ(peer.clientsMade(), made);
}

TEST_F(PrefetchTest, ARecorderIsAskedForItsProfilesOnly) {
    device->setIsTovlinNVRDevice(1);
    EXPECT_EQ(device->cacheCgi(1), 1);
    EXPECT_EQ(linesOf(0), (Lines{kLogin, kCapability, kMedia}));
    EXPECT_EQ(peer.clientsMade(), 1);
}

TEST_F(PrefetchTest, AStreamOnlySourceIsAskedNothing) {
    device->setVendor("only_stream");
    EXPECT_EQ(device->cacheCgi(1), 1);
    EXPECT_TRUE(peer.sent().empty());
    EXPECT_EQ(peer.clientsMade(), 1);
}

TEST_F(PrefetchTest, AnAddressThatMakesNoUrlAsksNothingAhead) {
    device->set_server_address("no host");
    EXPECT_EQ(device->cacheCgi(1), -2);
    EXPECT_TRUE(peer.sent().empty());
    EXPECT_EQ(peer.clientsMade(), 1);
}

TEST_F(PrefetchTest, WithoutASecondClientTheLibraryAsksItself) {
    peer.makesClients(1);
    EXPECT_EQ(device->cacheCgi(1), 1);
    EXPECT_EQ(linesOf(0), kAll);
}

TEST_F(PrefetchTest, WithoutAnyClientNothingIsAskedAtAll) {
    peer.makesClients(0);
    const auto none = openDevice("http://10.0.0.5:8080");
    EXPECT_EQ(none->cacheCgi(1), -8);
    EXPECT_EQ(none->requestsPrefetched(), 0U);
    EXPECT_TRUE(peer.sent().empty());
}

// ---- Failures

class PrefetchFailure : public PrefetchTest, public ::testing::WithParamInterface<int> {};

TEST_P(PrefetchFailure, ThatOnlyAHelperMeetsChangesNothing) {
    peer.failsOn(2, kNotification, GetParam());
    peer.hold(kLogin);
    std::future<int> result = fillMeanwhile();
    EXPECT_TRUE(peer.awaits(4));
    peer.letGo(kLogin);
    EXPECT_EQ(result.get(), 1);
    EXPECT_EQ(linesOf(1), (Lines{kLogin, kCapability, kMedia, kVideo, kCamera, kNotification}));
    EXPECT_EQ(linesOf(2), (Lines{kAnalytics, kMisc, kNotification})) << "the first failure ends it";
    EXPECT_EQ(device->requestsFailed(), 0U);
    EXPECT_EQ(device->requestsPrefetched(), 2U);
}

TEST_P(PrefetchFailure, OfTheDeviceIsTheResultOfTheLibrarysOwnRequest) {
    peer.fails(kNotification, GetParam());
    EXPECT_EQ(device->cacheCgi(1), GetParam());
    EXPECT_EQ(linesOf(1).back(), kNotification);
    EXPECT_EQ(device->requestsFailed(), 1U);
    EXPECT_EQ(peer.clientsAlive(), 1);
}

INSTANTIATE_TEST_SUITE_P(Results, PrefetchFailure, ::testing::Range(-8, 0),
                         [](const ::testing::TestParamInfo<int>& result) {
                             return "minus" + std::to_string(-result.param);
                         });

TEST_F(PrefetchTest, AMissingFunctionIsAnAnswerLikeAnyOther) {
    peer.fails(kAnalytics, -14);
    EXPECT_EQ(fillWithAllAhead(), -14);
    EXPECT_EQ(sorted(linesOf(0)), sorted(kAll));
}

TEST_F(PrefetchTest, ADeviceThatServesOneConnectionAtATimeCostsASecondOnce) {
    using std::chrono::steady_clock;
    peer.hold(kLogin);
    peer.hold(kAnalytics);
    const steady_clock::time_point start = steady_clock::now();
    std::future<int> result = fillMeanwhile();
    EXPECT_TRUE(peer.awaits(2));
    peer.letGo(kLogin);
    EXPECT_TRUE(peer.awaits(9)) << "the library asks itself in the end";
    EXPECT_LT(steady_clock::now() - start, std::chrono::seconds(5));
    EXPECT_EQ(linesOf(2), Lines{kAnalytics});
    peer.letGo(kAnalytics);
    EXPECT_EQ(result.get(), 1);
    EXPECT_EQ(linesOf(1), kAll);
    EXPECT_EQ(peer.aborted(), 1);
    EXPECT_EQ(peer.clientsAlive(), 1);
}

TEST_F(PrefetchTest, AFailedLoginEndsWhatIsUnderWay) {
    peer.fails(kLogin, -1);
    peer.hold(kLogin);
    peer.hold(kAnalytics);
    std::future<int> result = fillMeanwhile();
    EXPECT_TRUE(peer.awaits(2));
    peer.letGo(kLogin);
    EXPECT_EQ(result.get(), -1);
    EXPECT_EQ(peer.aborted(), 1);
    EXPECT_EQ(linesOf(2), Lines{kAnalytics});
    EXPECT_EQ(peer.clientsAlive(), 1);
}

TEST_F(PrefetchTest, WhatNobodyTookIsAskedAnewInTheNextFill) {
    peer.fails(kLogin, -5);
    peer.hold(kLogin);
    peer.hold(kNotification);
    std::future<int> result = fillMeanwhile();
    EXPECT_TRUE(peer.awaits(4));
    EXPECT_EQ(linesOf(2), (Lines{kAnalytics, kMisc, kNotification})) << "it has the first two by now";
    peer.letGo(kLogin);
    EXPECT_EQ(result.get(), -5);
    peer.letGo(kNotification);

    peer.answers(kLogin, "0\nOK\n");
    peer.answers("category=Misc.*", "0\nOK\nMisc.A=2\n");
    peer.answers("category=VideoAnalytics.*", "0\nOK\nVideoAnalytics.Count=2\n");
    EXPECT_EQ(device->cacheCgi(1), 1);
    OwnedText misc;
    OwnedText analytics;
    EXPECT_EQ(device->getCacheConfigMisc(1, 0, nullptr, nullptr, OutText(misc)), 1);
    EXPECT_EQ(device->getCacheConfigVideoAnalytics(1, 0, nullptr, nullptr, OutText(analytics)), 1);
    EXPECT_STREQ(misc.get(), "0\nOK\nMisc.A=2\n");
    EXPECT_STREQ(analytics.get(), "0\nOK\nVideoAnalytics.Count=2\n");
    const Lines all = linesOf(0);
    EXPECT_EQ(std::count(all.begin(), all.end(), kMisc), 2);
    EXPECT_EQ(std::count(all.begin(), all.end(), kAnalytics), 2);
}

TEST_F(PrefetchTest, AfterAFailureOnlyADeviceThatHasAnsweredIsAskedAhead) {
    peer.fails(kLogin, -1);
    EXPECT_EQ(device->cacheCgi(1), -1);
    const int made = peer.clientsMade();
    const std::size_t asked = peer.sent().size();

    EXPECT_EQ(device->cacheCgi(1), -1);
    EXPECT_EQ(peer.sent().size(), asked + 1) << "a wrong password is sent once more, not twice";
    EXPECT_EQ(peer.clientsMade(), made);

    peer.answers(kLogin, "0\nOK\n");
    peer.hold(kCapability);
    std::future<int> result = fillMeanwhile();
    EXPECT_TRUE(peer.awaits(asked + 9));
    peer.letGo(kCapability);
    EXPECT_EQ(result.get(), 1);
    EXPECT_EQ(peer.clientsMade(), made + 1);
    EXPECT_EQ(device->requestsPrefetched(), 6U);
}

TEST_F(PrefetchTest, TheCookieIsThatOfTheAnswerWhereverItCameFrom) {
    ASSERT_EQ(fillWithAllAhead(), 1);
    EXPECT_STREQ(device->getCookie(), "session=1");
    std::string line = "Login.cgi";
    device->requestCgi(1, line.data(), nullptr, REQCGI_METHOD_GET, REQCGI_CONNECTION_KEEP);
    EXPECT_EQ(device->getCookie(), nullptr);
}

} // namespace
} // namespace koine
