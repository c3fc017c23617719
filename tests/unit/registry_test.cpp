// The registry of stream users, and what a request object tells of each.

#include "death_test_style.h"
#include "observed.h"
#include "tests/support/failing_allocations.h"
#include "tests/support/test_request.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <type_traits>

namespace koine::test {
namespace {

Lines created(unsigned int uid) {
    return {"######* StreamIDCenter::get_streamid_client, uid=" + std::to_string(uid) +
            ", new StreamIDClient. \n"};
}

TEST(Registry, MakesAClientOnceAndSaysSo) {
    StreamIDCenter center;
    boost::shared_ptr<StreamIDClient>& first = center.get_streamid_client(5);
    ASSERT_TRUE(first);
    EXPECT_TRUE(tracesAre(created(5)));
    EXPECT_EQ(&center.get_streamid_client(5), &first);
    EXPECT_TRUE(tracesAre(created(5)));
    EXPECT_EQ(first.use_count(), 1);
    EXPECT_GT(platform().traces().front().line, 0);
}

TEST(Registry, KeepsUsersApart) {
    StreamIDCenter center;
    center.get_streamid_client(1)->set_profile_id(11);
    center.get_streamid_client(2)->set_profile_id(22);
    EXPECT_EQ(center.get_streamid_client(1)->profile_id(), 11);
    EXPECT_EQ(center.get_streamid_client(2)->profile_id(), 22);
}

TEST(Registry, DoesNotWriteTheUidIntoTheClient) {
    StreamIDCenter center;
    EXPECT_EQ(center.get_streamid_client(5)->uid(), 0U);
}

TEST(Registry, FindsTheClientWithTheSmallestUid) {
    StreamIDCenter center;
    center.get_streamid_client(30);
    const auto smallest = center.get_streamid_client(4);
    center.get_streamid_client(4000000000U);
    EXPECT_EQ(center.get_first_streamid_client(), smallest);
    const auto zero = center.get_streamid_client(0);
    EXPECT_EQ(center.get_first_streamid_client(), zero);
}

TEST(Registry, ReleasesItsClientsWhenItDiesButNotTheOnesOfOthers) {
    boost::weak_ptr<StreamIDClient> released;
    boost::shared_ptr<StreamIDClient> kept;
    {
        StreamIDCenter center;
        released = center.get_streamid_client(1);
        kept = center.get_streamid_client(2);
    }
    EXPECT_TRUE(released.expired());
    EXPECT_EQ(kept.use_count(), 1);
    EXPECT_STREQ(kept->profile_token(), "PROFILE-1");
}

TEST(Registry, IsUnchangedAndUnlockedWhenAClientDoesNotFitIntoMemory) {
    StreamIDCenter center;
    center.get_streamid_client(9);
    const unsigned int attempts = failEachAllocation([&](unsigned int n) {
        FailAllocations fail(n);
        bool thrown = false;
        try {
            center.get_streamid_client(5);
        } catch (const std::bad_alloc&) {
            thrown = true;
        }
        const bool failed = fail.stop();
        EXPECT_EQ(thrown, failed);
        const bool onlyTheOldOne = center.get_first_streamid_client() == center.get_streamid_client(9);
        EXPECT_EQ(onlyTheOldOne, failed) << "something half-made was left";
        return failed;
    });
    EXPECT_GT(attempts, 1U);
    EXPECT_TRUE(center.get_streamid_client(5));
}

TEST(Registry, CannotBeCopied) {
    EXPECT_FALSE(std::is_copy_constructible<StreamIDCenter>::value);
    EXPECT_FALSE(std::is_copy_assignable<StreamIDCenter>::value);
    EXPECT_FALSE(std::is_copy_constructible<StreamIDClient>::value);
    EXPECT_FALSE(std::is_copy_assignable<StreamIDClient>::value);
    EXPECT_FALSE(std::is_copy_constructible<BaseRequest>::value);
}

// ---- Per-user reads of a request object

class UserReads : public ::testing::Test {
protected:
    TestRequest request;
};

TEST_F(UserReads, AnUnknownUserHasTheInitialValues) {
    EXPECT_EQ(request.getIBaseStream(1), nullptr);
    EXPECT_EQ(request.audio_in_live(2), 1);
    EXPECT_STREQ(request.profile_token(3), "PROFILE-1");
    EXPECT_EQ(request.profile_id(4), 0);
    EXPECT_EQ(request.BaseRequest::getQualityStep(5), 0.1F);
    EXPECT_EQ(request.getNowQuality(6), -1.0F);
    EXPECT_EQ(request.getSettingMaxW(7), 30000);
    EXPECT_EQ(request.getSettingMaxH(8), 30000);
    EXPECT_EQ(request.strm_setting_no(9), 0);
    EXPECT_EQ(request.BaseRequest::strm_setting_channel(10), 0);
    EXPECT_EQ(request.checkStreamSupport(11), 1);
    EXPECT_EQ(request.GetStreamMapStr(12, "StreamSetup.Stream"), nullptr);
    EXPECT_STREQ(request.GetStreamMapStr(13, "StreamSetup.VideoEncoderConfiguration.Quality"), "5");
}

TEST_F(UserReads, AskingCreatesTheUserOnce) {
    const std::vector<std::function<void(unsigned int)>> questions = {
        [&](unsigned int uid) { request.getIBaseStream(uid); },
        [&](unsigned int uid) { request.setIBaseStream(uid, nullptr); },
        [&](unsigned int uid) { request.audio_in_live(uid); },
        [&](unsigned int uid) { request.profile_token(uid); },
        [&](unsigned int uid) { request.profile_id(uid); },
        [&](unsigned int uid) { request.BaseRequest::getQualityStep(uid); },
        [&](unsigned int uid) { request.getNowQuality(uid); },
        [&](unsigned int uid) { request.getSettingMaxW(uid); },
        [&](unsigned int uid) { request.getSettingMaxH(uid); },
        [&](unsigned int uid) { request.strm_setting_no(uid); },
        [&](unsigned int uid) { request.BaseRequest::strm_setting_channel(uid); },
        [&](unsigned int uid) { request.checkStreamSupport(uid); },
        [&](unsigned int uid) { request.GetStreamMapStr(uid, "x"); },
        [&](unsigned int uid) { request.GetCgiMapStr(uid, "x"); },
        [&](unsigned int uid) { request.init(uid, ""); },
    };
    for (unsigned int uid = 100; uid < 100 + questions.size(); ++uid) {
        forgetTraces();
        questions[uid - 100](uid);
        questions[uid - 100](uid);
        EXPECT_TRUE(tracesAre(created(uid)));
    }
}

TEST_F(UserReads, TellWhatTheClientSays) {
    struct Odd : StreamIDClient {
        int audio_in_live() const override { return 2; }
        const char* profile_token() const override { return "odd"; }
        int profile_id() const override { return 3; }
        float getQualityStep() override { return 4; }
        float getNowQuality() override { return 5; }
        int getSettingMaxW() override { return 6; }
        int getSettingMaxH() override { return 7; }
        int strm_setting_no() override { return 8; }
        int strm_setting_channel() override { return 9; }
    };
    request.get_streamid_client(1) = boost::make_shared<Odd>();
    EXPECT_EQ(request.audio_in_live(1), 2);
    EXPECT_STREQ(request.profile_token(1), "odd");
    EXPECT_EQ(request.profile_id(1), 3);
    EXPECT_EQ(request.BaseRequest::getQualityStep(1), 4.0F);
    EXPECT_EQ(request.getNowQuality(1), 5.0F);
    EXPECT_EQ(request.getSettingMaxW(1), 6);
    EXPECT_EQ(request.getSettingMaxH(1), 7);
    EXPECT_EQ(request.strm_setting_no(1), 8);
    EXPECT_EQ(request.BaseRequest::strm_setting_channel(1), 9);
}

TEST_F(UserReads, TheStreamObjectIsNotKeptAlive) {
    boost::shared_ptr<IBase> stream = boost::make_shared<IBase>();
    request.setIBaseStream(1, stream);
    EXPECT_EQ(stream.use_count(), 1);
    EXPECT_EQ(request.getIBaseStream(1), stream);
    EXPECT_EQ(request.getIBaseStream(2), nullptr);
    stream.reset();
    EXPECT_EQ(request.getIBaseStream(1), nullptr);
}

TEST_F(UserReads, TheStreamObjectGoesThroughTheClient) {
    struct Watched : StreamIDClient {
        void set_ibase_stream(boost::shared_ptr<IBase> stream) override { seen = stream; }
        boost::shared_ptr<IBase> get_ibase_stream() override { return other; }
        boost::shared_ptr<IBase> seen;
        boost::shared_ptr<IBase> other = boost::make_shared<IBase>();
    };
    const auto client = boost::make_shared<Watched>();
    request.get_streamid_client(1) = client;
    const auto stream = boost::make_shared<IBase>();
    request.setIBaseStream(1, stream);
    EXPECT_EQ(client->seen, stream);
    EXPECT_EQ(request.getIBaseStream(1), client->other);
}

TEST_F(UserReads, TheSetupMapIsReadWithoutACopyAndWithoutLeavingAnything) {
    request.client(1).setSettingStream("H264-1");
    const char* value = request.GetStreamMapStr(1, "StreamSetup.Stream");
    EXPECT_STREQ(value, "H264-1");
    EXPECT_EQ(value, request.GetStreamMapStr(1, "StreamSetup.Stream"));
    request.client(1).setSettingStream("");
    EXPECT_EQ(request.GetStreamMapStr(1, "StreamSetup.Stream"), nullptr);
    EXPECT_EQ(request.GetStreamMapStr(1, nullptr), nullptr);
    EXPECT_EQ(request.GetStreamMapStr(1, "streamsetup.stream"), nullptr);
    const std::size_t size = request.client(1).stream_setup_map().size();
    request.GetStreamMapStr(1, "StreamSetup.Absent");
    EXPECT_EQ(request.client(1).stream_setup_map().size(), size);
}

TEST(UserReadsDeath, StopTheProcessWithoutAClient) {
    struct NoClients : TestRequest {
        boost::shared_ptr<StreamIDClient> none;
        boost::shared_ptr<StreamIDClient>& get_streamid_client(unsigned int) override { return none; }
    };
    dieInAProcessOfItsOwn();
    EXPECT_DEATH(NoClients().profile_id(1), "");
    EXPECT_DEATH(NoClients().init(1, "x"), "");
    EXPECT_DEATH(NoClients().GetCgiMapStr(1, "x"), "");
}

} // namespace
} // namespace koine::test
