// Starting a stream: caches, limits, support, transport, profile, quality, synchronisation.

#include "bench_request.h"
#include "observed.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

namespace koine::test {
namespace {

/// Shows the order of the steps and lets a test decide their results.
class SteppedRequest : public BenchRequest {
public:
    int cacheCgi(unsigned int uid) override {
        calls += "cache " + std::to_string(uid) + ";";
        return cacheResult;
    }
    int searchAvailableProfileToken(unsigned int uid) override {
        calls += "search;";
        return search ? search(uid) : BenchRequest::searchAvailableProfileToken(uid);
    }
    int checkStreamSupport(unsigned int uid) override {
        calls += "support;";
        return supported ? BenchRequest::checkStreamSupport(uid) : 0;
    }
    int syncProfileToken(unsigned int uid) override {
        calls += "sync " + std::to_string(uid) + ";";
        return syncResult;
    }
    void set_strm_setting_channel(int channel) override {
        calls += "channel;";
        if (takesChannel)
            BenchRequest::set_strm_setting_channel(channel);
    }
    void set_strm_nvr_subchannel(int channel) override {
        calls += "subchannel;";
        BenchRequest::set_strm_nvr_subchannel(channel);
    }

    std::string calls;
    int cacheResult = 1;
    bool supported = true;
    bool takesChannel = true;
    int syncResult = 1;
    std::function<int(unsigned int)> search;
};

/// Shows what the start does to a stream user, and says that another profile serves it.
class WatchedClient : public StreamIDClient {
public:
    void setSettingQualitySrcMax(float) override { calls += "max;"; }
    void setSettingQualitySrcMin(float) override { calls += "min;"; }
    void setQualityStep(float) override { calls += "step;"; }
    void setSettingFramerateSrcMax(int) override { calls += "rate max;"; }
    void setSettingFramerateSrcMin(int) override { calls += "rate min;"; }
    void setNowQuality(float) override { calls += "quality;"; }
    int profile_id() const override { return servedBy; }

    std::string calls;
    int servedBy = 0;
};

class StreamInit : public ::testing::Test {
protected:
    StreamInit() {
        client.setSettingStream("RTP-Unicast");
        client.set_strm_setting_channel(2);
        forgetTraces();
    }

    int start() { return request.HandleInit(kUid); }

    void threeProfiles() {
        request.useProfiles(3);
        for (int n = 1; n <= 3; ++n)
            request.profile(n, ".Tovlin.AllowLive", "ANY");
    }

    static std::string chosen(const std::string& token, int id, int count) {
        return "#* BaseRequest.HandleInit, uid=7:2, pchProfileToken=" + token +
               ", ProfileId=" + std::to_string(id) + ", count=" + std::to_string(count) + ". \n";
    }

    SteppedRequest request;
    StreamIDClient& client = request.client();
};

TEST_F(StreamInit, TakesTheStepsInTheirOrder) {
    threeProfiles();
    EXPECT_EQ(start(), 1);
    EXPECT_EQ(request.calls, "channel;subchannel;cache 7;support;search;sync 7;");
}

TEST_F(StreamInit, CopiesTheChannelsOfTheUserIntoTheRequest) {
    client.set_strm_setting_channel(5);
    client.set_strm_nvr_subchannel(4);
    EXPECT_EQ(start(), 1);
    EXPECT_EQ(request.strm_setting_channel(), 5);
    EXPECT_EQ(request.strm_nvr_subchannel(), 4);
}

TEST_F(StreamInit, CopiesTheChannelsAlsoWhenTheCachesFail) {
    client.set_strm_setting_channel(5);
    request.cacheResult = -4;
    EXPECT_EQ(start(), -4);
    EXPECT_EQ(request.strm_setting_channel(), 5);
}

TEST_F(StreamInit, FailsWithTheCaches) {
    client.setInitStream("StreamSetup.Stream=RTP-Unicast");
    request.cacheResult = -1;
    EXPECT_EQ(start(), -1);
    EXPECT_TRUE(tracesAre({"??#* HandleInit: cacheCgi, uid=7:2, pchUrl=StreamSetup.Stream=RTP-Unicast. \n"}));
    EXPECT_EQ(request.calls, "channel;subchannel;cache 7;");
}

TEST_F(StreamInit, OnlyTheFailureOfTheCachesNamesTheChannelOfTheUser) {
    request.takesChannel = false;
    request.BaseRequest::set_strm_setting_channel(9);
    request.cacheResult = -1;
    EXPECT_EQ(start(), -1);
    request.cacheResult = 1;
    request.supported = false;
    EXPECT_EQ(start(), -2);
    EXPECT_TRUE(tracesAre({"??#* HandleInit: cacheCgi, uid=7:2, pchUrl=. \n",
                           "??#* HandleInit: uid=7:9, stream not support. \n"}));
}

TEST_F(StreamInit, CopiesTheLimitsOfTheRequestIntoTheUser) {
    request.setSettingQualitySrcMax(100.0F);
    request.setSettingQualitySrcMin(20.0F);
    request.setSettingFramerateSrcMax(60);
    request.setSettingFramerateSrcMin(5);
    EXPECT_EQ(start(), 1);
    EXPECT_EQ(client.getSettingQualitySrcMax(), 100.0F);
    EXPECT_EQ(client.getSettingQualitySrcMin(), 20.0F);
    EXPECT_FLOAT_EQ(client.getQualityStep(), 8.0F);
    EXPECT_EQ(client.getSettingFramerateSrcMax(), 60);
    EXPECT_EQ(client.getSettingFramerateSrcMin(), 5);
}

TEST_F(StreamInit, TheStepOfTheRequestWinsOverTheRecomputedOne) {
    request.setSettingQualitySrcMax(100.0F);
    request.setQualityStep(3.0F);
    EXPECT_EQ(start(), 1);
    EXPECT_EQ(client.getQualityStep(), 3.0F);
}

TEST_F(StreamInit, CopiesTheLimitsInTheirOrder) {
    const auto watched = boost::make_shared<WatchedClient>();
    request.get_streamid_client(8) = watched;
    EXPECT_EQ(request.HandleInit(8), 1);
    EXPECT_EQ(watched->calls, "max;min;step;rate max;rate min;");
}

TEST_F(StreamInit, TakesTheQualityOnlyOfAProfileThatIsCounted) {
    threeProfiles();
    const auto watched = boost::make_shared<WatchedClient>();
    watched->setSettingStream("RTP-Unicast");
    request.get_streamid_client(8) = watched;
    for (const int profile : {0, 3, 4}) {
        request.encoder(profile, ".Quality", "5");
        watched->servedBy = profile;
        watched->calls.clear();
        EXPECT_EQ(request.HandleInit(8), 1);
        EXPECT_EQ(watched->calls.find("quality;") != std::string::npos, profile == 3) << profile;
    }
}

TEST_F(StreamInit, CopiesNoLimitsWhenTheCachesFail) {
    request.setSettingFramerateSrcMax(60);
    request.cacheResult = -4;
    EXPECT_EQ(start(), -4);
    EXPECT_EQ(client.getSettingFramerateSrcMax(), 30);
}

TEST_F(StreamInit, EndsAfterTheLimitsForAUserThatNamesNoStream) {
    threeProfiles();
    client.setSettingStream("");
    client.setProfileMode_1("ONLY_META");
    request.setSettingFramerateSrcMax(60);
    EXPECT_EQ(start(), 1);
    EXPECT_EQ(request.calls, "channel;subchannel;cache 7;");
    EXPECT_EQ(client.getSettingFramerateSrcMax(), 60);
    EXPECT_STREQ(client.profile_token(), "PROFILE-1");
    EXPECT_EQ(client.profile_id(), 0);
    EXPECT_TRUE(tracesAre({}));
}

TEST_F(StreamInit, RefusesAKindOfStreamThatTheDeviceLacks) {
    threeProfiles();
    client.setProfileMode_1("ONLY_META");
    EXPECT_EQ(start(), -2);
    EXPECT_TRUE(tracesAre({"??#* HandleInit: uid=7:2, stream not support. \n"}));
    EXPECT_EQ(request.calls, "channel;subchannel;cache 7;support;");
}

TEST_F(StreamInit, AsksTheReplaceableStepForSupport) {
    request.supported = false;
    EXPECT_EQ(start(), -2);
}

TEST_F(StreamInit, SomeOnvifProductsAreServedOverTcpOnly) {
    for (const char* product : {"ONVIF_Probe", "xx ONVIF_Samsung 1", "ONVIF_Probe2"}) {
        client.setSettingTranPro("UDP");
        request.login()["Product-Name"] = product;
        EXPECT_EQ(start(), 1);
        EXPECT_EQ(client.transport_protocol(), "TCP") << product;
        EXPECT_EQ(client.stream_setup_map().find("StreamSetup.Transport.Protocol")->second, "TCP");
    }
}

TEST_F(StreamInit, OtherProductsKeepTheTransport) {
    client.setSettingTranPro("UDP");
    for (const char* product : {"Camera", "ONVIF", "onvif_probe", "Samsung"}) {
        request.login()["Product-Name"] = product;
        EXPECT_EQ(start(), 1);
        EXPECT_EQ(client.transport_protocol(), "UDP") << product;
    }
}

TEST_F(StreamInit, AUserThatNamesNoStreamKeepsTheTransport) {
    client.setSettingStream("");
    client.setSettingTranPro("UDP");
    request.login()["Product-Name"] = "ONVIF_Probe";
    EXPECT_EQ(start(), 1);
    EXPECT_EQ(client.transport_protocol(), "UDP");
}

TEST_F(StreamInit, WithoutMediaProfilesMobileViewersGetTheSecondStream) {
    client.setProfileMode_1("MOBILE");
    client.set_profile_token("mine");
    EXPECT_EQ(start(), 1);
    EXPECT_STREQ(client.profile_token(), "PROFILE-2");
    EXPECT_EQ(client.profile_id(), 2);
    EXPECT_TRUE(tracesAre({"?#* no Media. \n"}));
    EXPECT_EQ(request.calls, "channel;subchannel;cache 7;support;") << "nothing is searched or synchronised";
}

TEST_F(StreamInit, WithoutMediaProfilesTheOthersGetTheFirstStream) {
    for (const char* mode : {"", "AUTO", "ONLY_STATUS"}) {
        client.setProfileMode_1(mode);
        client.set_profile_token("");
        client.set_profile_id(9);
        EXPECT_EQ(start(), 1);
        EXPECT_STREQ(client.profile_token(), "PROFILE-1") << mode;
        EXPECT_EQ(client.profile_id(), 1) << mode;
    }
}

TEST_F(StreamInit, WithoutMediaProfilesATokenIsKeptAndTheNumberToo) {
    client.set_profile_token("mine");
    client.set_profile_id(9);
    EXPECT_EQ(start(), 1);
    EXPECT_STREQ(client.profile_token(), "mine");
    EXPECT_EQ(client.profile_id(), 9);
}

TEST_F(StreamInit, OnlyAFlagOfOneMeansMediaProfiles) {
    threeProfiles();
    request.setMediaProfile(2);
    EXPECT_EQ(start(), 1);
    EXPECT_TRUE(tracesAre({"?#* no Media. \n"}));
}

TEST_F(StreamInit, FailsWithTheSearch) {
    threeProfiles();
    request.search = [](unsigned int) { return -2; };
    EXPECT_EQ(start(), -2);
    EXPECT_TRUE(tracesAre({"???#* HandleInit: error, uid=7:2. \n"}));
    EXPECT_EQ(request.calls, "channel;subchannel;cache 7;support;search;");
}

TEST_F(StreamInit, SettlesOnTheProfileWithTheTokenThatTheSearchChose) {
    threeProfiles();
    client.set_profile_token("T2");
    EXPECT_EQ(start(), 1);
    EXPECT_EQ(client.profile_id(), 2);
    EXPECT_STREQ(client.profile_token(), "T2");
    EXPECT_TRUE(tracesAre({chosen("T2", 2, 3)}));
}

TEST_F(StreamInit, TheFirstProfileWithTheTokenCounts) {
    threeProfiles();
    request.profile(1, ".token", "same");
    request.profile(2, ".token", "same");
    request.search = [this](unsigned int) {
        client.set_profile_token("same");
        client.set_profile_id(2);
        return 1;
    };
    EXPECT_EQ(start(), 1);
    EXPECT_EQ(client.profile_id(), 1);
}

TEST_F(StreamInit, AnUnknownTokenEndsOnTheLastProfile) {
    threeProfiles();
    request.search = [this](unsigned int) {
        client.set_profile_token("unknown");
        return 1;
    };
    EXPECT_EQ(start(), 1);
    EXPECT_EQ(client.profile_id(), 3);
    EXPECT_STREQ(client.profile_token(), "T3");
    EXPECT_TRUE(tracesAre({chosen("T3", 3, 3)}));
}

TEST_F(StreamInit, WithoutACountNoProfileIsSettledButTheSynchronisationRuns) {
    for (const char* count : {"0", "", "-1"}) {
        threeProfiles();
        request.media()["Media.Profiles.Count"] = count;
        request.calls.clear();
        request.search = [this](unsigned int) {
            client.set_profile_token("unknown");
            client.set_profile_id(0);
            return 1;
        };
        forgetTraces();
        EXPECT_EQ(start(), 1);
        EXPECT_EQ(client.profile_id(), 0);
        EXPECT_STREQ(client.profile_token(), "unknown");
        EXPECT_EQ(request.calls, "channel;subchannel;cache 7;support;search;sync 7;") << count;
        EXPECT_TRUE(tracesAre({})) << count;
    }
}

TEST_F(StreamInit, LooksUpByIndexAndSoCreatesWhatIsMissing) {
    request.search = [](unsigned int) { return 1; };
    request.setMediaProfile(1);
    EXPECT_EQ(start(), 1);
    EXPECT_EQ(request.login(), (CgiMap{{"Product-Name", ""}}));
    EXPECT_EQ(request.media(), (CgiMap{{"Media.Profiles.Count", ""}}));

    request.media()["Media.Profiles.Count"] = "2";
    EXPECT_EQ(start(), 1);
    EXPECT_EQ(request.media(), (CgiMap{{"Media.Profiles.Count", "2"},
                                       {"Media.Profiles.Profile1.token", ""},
                                       {"Media.Profiles.Profile2.token", ""}}));
    EXPECT_EQ(client.profile_id(), 2);
    EXPECT_STREQ(client.profile_token(), "");
}

TEST_F(StreamInit, AUserThatNamesNoStreamLeavesTheLoginAlone) {
    client.setSettingStream("");
    EXPECT_EQ(start(), 1);
    EXPECT_TRUE(request.login().empty());
}

TEST_F(StreamInit, TheQualityOfTheProfileBecomesTheCurrentOne) {
    threeProfiles();
    client.set_profile_token("T2");
    client.setNowQuality(1.0F);
    request.encoder(1, ".Quality", "9");
    request.encoder(2, ".Quality", "3.5");
    EXPECT_EQ(start(), 1);
    EXPECT_EQ(client.getNowQuality(), 3.5F);
    EXPECT_EQ(client.getSettingQuality(), -1.0F);
}

TEST_F(StreamInit, AMissingQualityLeavesTheCurrentOneAndIsNotCreated) {
    threeProfiles();
    client.setNowQuality(1.5F);
    EXPECT_EQ(start(), 1);
    EXPECT_EQ(client.getNowQuality(), 1.5F);
    EXPECT_EQ(request.encoderValue(1, ".Quality"), "(absent)");
}

TEST_F(StreamInit, AnEmptyQualityIsZero) {
    threeProfiles();
    request.encoder(1, ".Quality", "");
    EXPECT_EQ(start(), 1);
    EXPECT_EQ(client.getNowQuality(), 0.0F);
}

TEST_F(StreamInit, MetadataAloneAreNotSynchronised) {
    threeProfiles();
    request.setHasVA(1);
    client.setProfileMode_1("ONLY_META");
    EXPECT_EQ(start(), 1);
    EXPECT_TRUE(tracesAre({chosen("T1", 1, 3), "#* HandleInit: uid=7:2, only meta stream. \n"}));
    EXPECT_EQ(request.calls, "channel;subchannel;cache 7;support;search;");
}

TEST_F(StreamInit, StatusAloneIsNotSynchronised) {
    threeProfiles();
    client.setProfileMode_1("ONLY_STATUS");
    EXPECT_EQ(start(), 1);
    EXPECT_TRUE(tracesAre({chosen("T1", 1, 3), "#* HandleInit: uid=7:2, only status stream. \n"}));
    EXPECT_EQ(request.calls, "channel;subchannel;cache 7;support;search;");
}

TEST_F(StreamInit, AFailedSynchronisationIsOnlyTraced) {
    threeProfiles();
    request.syncResult = -8;
    EXPECT_EQ(start(), 1);
    EXPECT_TRUE(
        tracesAre({chosen("T1", 1, 3), "??#* BaseRequest.HandleInit: uid=7:2, syncProfileToken error. \n"}));
}

TEST_F(StreamInit, MayBeDoneAgainWithOtherLimits) {
    threeProfiles();
    EXPECT_EQ(start(), 1);
    request.setSettingFramerateSrcMax(12);
    client.set_profile_token("T3");
    EXPECT_EQ(start(), 1);
    EXPECT_EQ(client.getSettingFramerateSrcMax(), 12);
    EXPECT_EQ(client.profile_id(), 3);
    EXPECT_EQ(request.calls, "channel;subchannel;cache 7;support;search;sync 7;"
                             "channel;subchannel;cache 7;support;search;sync 7;");
}

} // namespace
} // namespace koine::test
