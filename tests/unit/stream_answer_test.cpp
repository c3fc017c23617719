// The answer to "Stream.cgi?action=get": which lines it has, in which order, and when each is left out.

#include "bench_request.h"
#include "observed.h"

#include <gtest/gtest.h>

namespace koine::test {
namespace {

const std::string kUnknown = "-11\nERROR: Unknown parameter.\n";

class StreamAnswer : public ::testing::Test {
protected:
    StreamAnswer() { forgetTraces(); }

    std::string get() {
        AnswerText answer;
        EXPECT_EQ(request.buildCgiStreamGet(kUid, line.data(), answer.out()), 1);
        return answer.text();
    }

    /// What the answer says about profile 1 when the media map has this one entry for it.
    std::string with(const std::string& suffix, const std::string& value) {
        request.media().clear();
        request.useProfiles(1);
        client.set_profile_token("T1");
        request.encoder(1, suffix, value);
        const std::string text = get();
        const std::string head = "0\nOK\nProfileToken=T1\nStream.Profile.Id=1";
        EXPECT_EQ(text.substr(0, head.size()), head);
        return text.substr(head.size());
    }

    std::string line = "http://camera/Stream.cgi?action=get";
    BenchRequest request;
    StreamIDClient& client = request.client();
};

TEST_F(StreamAnswer, OfANewUserHasTheTokenOnly) {
    EXPECT_EQ(get(), "0\nOK\nProfileToken=PROFILE-1");
    EXPECT_TRUE(tracesAre({}));
}

TEST_F(StreamAnswer, OfADeviceWithoutProfilesHasTheLinesOfTheUser) {
    client.setProfileMode_1("AUTO");
    client.set_profile_id(2);
    client.setSettingStream("RTP-Unicast");
    client.setSettingTranPro("UDP");
    request.encoder(2, ".Encoding", "JPEG"); // there, but not driven through profiles
    EXPECT_EQ(get(), "0\nOK\nProfileToken=PROFILE-1\nProfileMode=AUTO\nStream.Profile.Id=2\n"
                     "Stream.Stream=RTP-Unicast\nStream.Transport.Protocol=UDP");
}

TEST_F(StreamAnswer, HasAllLinesInTheirOrder) {
    request.useProfiles(2);
    client.set_profile_token("T2");
    client.setProfileMode_1("AUTO");
    client.setSettingStream("RTP-Unicast");
    client.setSettingTranPro("TCP");
    request.encoder(2, ".Encoding", "H264");
    request.encoder(2, ".Resolution.Width", "1280");
    request.encoder(2, ".Resolution.Height", "720");
    request.encoder(2, ".Quality", "6.25");
    request.encoder(2, ".RateControl.FrameRateLimit", "25");
    request.encoder(2, ".RateControl.BitrateLimit", "4096");
    request.encoder(2, ".H264.Resolution.NxN.List", "640x480,1280x720");
    request.encoder(2, ".Quality.Max", "10");
    request.encoder(2, ".Quality.Min", "0");
    EXPECT_EQ(get(), "0\nOK"
                     "\nProfileToken=T2"
                     "\nProfileMode=AUTO"
                     "\nStream.Profile.Id=2"
                     "\nStream.Stream=RTP-Unicast"
                     "\nStream.Transport.Protocol=TCP"
                     "\nStream.Profile.Encoding=H264"
                     "\nStream.Profile.Resolution.Width=1280"
                     "\nStream.Profile.Resolution.Height=720"
                     "\nStream.Profile.Quality=6.2"
                     "\nStream.Profile.RateControl.FrameRateLimit=25"
                     "\nStream.Profile.RateControl.BitrateLimit=4096"
                     "\nStream.Video.Resolution.H264.NxN.List=640x480,1280x720"
                     "\nStream.Video.Quality.Max=10"
                     "\nStream.Video.Quality.Min=0");
}

TEST_F(StreamAnswer, EveryEntryHasItsLineAloneToo) {
    EXPECT_EQ(with(".Resolution.Width", "640"), "\nStream.Profile.Resolution.Width=640");
    EXPECT_EQ(with(".Resolution.Height", "480"), "\nStream.Profile.Resolution.Height=480");
    EXPECT_EQ(with(".Quality", "5"), "\nStream.Profile.Quality=5.0");
    EXPECT_EQ(with(".RateControl.FrameRateLimit", "25"), "\nStream.Profile.RateControl.FrameRateLimit=25");
    EXPECT_EQ(with(".RateControl.BitrateLimit", "64"), "\nStream.Profile.RateControl.BitrateLimit=64");
    EXPECT_EQ(with(".Quality.Max", "9"), "\nStream.Video.Quality.Max=9");
    EXPECT_EQ(with(".Quality.Min", "1"), "\nStream.Video.Quality.Min=1");
}

TEST_F(StreamAnswer, EntriesThatAreNoNumbersReadAsZero) {
    EXPECT_EQ(with(".Resolution.Width", ""), "\nStream.Profile.Resolution.Width=0");
    EXPECT_EQ(with(".Quality", "fine"), "\nStream.Profile.Quality=0.0");
    EXPECT_EQ(with(".Quality.Max", "9.9"), "\nStream.Video.Quality.Max=9");
    EXPECT_EQ(with(".Quality.Min", "-2x"), "\nStream.Video.Quality.Min=-2");
}

TEST_F(StreamAnswer, PrintsTheQualityWithOneDecimal) {
    EXPECT_EQ(with(".Quality", "3"), "\nStream.Profile.Quality=3.0");
    EXPECT_EQ(with(".Quality", "3.26"), "\nStream.Profile.Quality=3.3");
    EXPECT_EQ(with(".Quality", "-0.04"), "\nStream.Profile.Quality=-0.0");
}

TEST_F(StreamAnswer, NamesTheEncodingByTheBeginningOfItsEntry) {
    EXPECT_EQ(with(".Encoding", "jpeg"), "\nStream.Profile.Encoding=JPEG");
    EXPECT_EQ(with(".Encoding", "JPEG2000"), "\nStream.Profile.Encoding=JPEG");
    EXPECT_EQ(with(".Encoding", "Mpeg4-sp"), "\nStream.Profile.Encoding=MPEG4");
    EXPECT_EQ(with(".Encoding", "H264"), "\nStream.Profile.Encoding=H264");
    EXPECT_EQ(with(".Encoding", "H265"), "\nStream.Profile.Encoding=H264");
    EXPECT_EQ(with(".Encoding", "MJPEG"), "\nStream.Profile.Encoding=H264");
    EXPECT_EQ(with(".Encoding", ""), "\nStream.Profile.Encoding=H264");
}

TEST_F(StreamAnswer, ListsTheSizesOfThatEncoding) {
    request.useProfiles(1);
    client.set_profile_token("T1");
    request.encoder(1, ".Encoding", "jpeg");
    request.encoder(1, ".JPEG.Resolution.NxN.List", "320x240");
    request.encoder(1, ".H264.Resolution.NxN.List", "640x480");
    EXPECT_EQ(get(), "0\nOK\nProfileToken=T1\nStream.Profile.Id=1\nStream.Profile.Encoding=JPEG"
                     "\nStream.Video.Resolution.JPEG.NxN.List=320x240");
    request.encoder(1, ".Encoding", "H265");
    EXPECT_EQ(get(), "0\nOK\nProfileToken=T1\nStream.Profile.Id=1\nStream.Profile.Encoding=H264"
                     "\nStream.Video.Resolution.H264.NxN.List=640x480");
}

TEST_F(StreamAnswer, ListsTheSizesOfH264WithoutAnEncoding) {
    EXPECT_EQ(with(".H264.Resolution.NxN.List", "640x480"),
              "\nStream.Video.Resolution.H264.NxN.List=640x480");
    EXPECT_EQ(with(".JPEG.Resolution.NxN.List", "640x480"), "");
    EXPECT_EQ(with(".H264.Resolution.NxN.List", ""), "\nStream.Video.Resolution.H264.NxN.List=");
}

TEST_F(StreamAnswer, LooksWithoutCreating) {
    request.useProfiles(1);
    client.set_profile_token("T1");
    const CgiMap before = request.media();
    get();
    EXPECT_EQ(request.media(), before);
}

TEST_F(StreamAnswer, TheTokenOfTheUserDecidesTheProfile) {
    request.useProfiles(3);
    request.profile(3, ".token", "T2");
    client.set_profile_token("T2");
    client.set_profile_id(1);
    EXPECT_EQ(get(), "0\nOK\nProfileToken=T2\nStream.Profile.Id=2");
    EXPECT_EQ(client.profile_id(), 2);
}

TEST_F(StreamAnswer, AnUnknownTokenKeepsTheProfile) {
    request.useProfiles(3);
    client.set_profile_token("t2");
    client.set_profile_id(3);
    request.encoder(3, ".Quality.Max", "8");
    EXPECT_EQ(get(), "0\nOK\nProfileToken=t2\nStream.Profile.Id=3\nStream.Video.Quality.Max=8");
    EXPECT_EQ(client.profile_id(), 3);
}

TEST_F(StreamAnswer, AnUnknownTokenWithoutAProfileHasNoNumberLine) {
    request.useProfiles(0);
    EXPECT_EQ(get(), "0\nOK\nProfileToken=PROFILE-1");
    EXPECT_EQ(client.profile_id(), 0);
}

TEST_F(StreamAnswer, ANegativeProfileNumberIsShown) {
    client.set_profile_id(-1);
    EXPECT_EQ(get(), "0\nOK\nProfileToken=PROFILE-1\nStream.Profile.Id=-1");
}

TEST_F(StreamAnswer, ProfilesBeyondTheCountAreNotLookedAt) {
    request.useProfiles(2);
    request.profile(3, ".token", "T3");
    client.set_profile_token("T3");
    EXPECT_EQ(get(), "0\nOK\nProfileToken=T3");
}

TEST_F(StreamAnswer, WithoutAnAnswerPointerTheProfileIsSettledAllTheSame) {
    request.useProfiles(2);
    client.set_profile_token("T2");
    EXPECT_EQ(request.buildCgiStreamGet(kUid, line.data(), nullptr), 1);
    EXPECT_EQ(client.profile_id(), 2);
}

TEST_F(StreamAnswer, WithoutATokenThereIsNone) {
    request.set_strm_setting_channel(3);
    client.set_profile_token("");
    AnswerText answer;
    EXPECT_EQ(request.buildCgiStreamGet(kUid, line.data(), answer.out()), -2);
    EXPECT_EQ(answer.text(), kUnknown);
    EXPECT_TRUE(tracesAre({"???#* buildCgiStreamGet: uid=7:3, err-2. \n"}));
}

TEST_F(StreamAnswer, WithoutATokenAnEarlierAnswerStays) {
    client.set_profile_token("");
    AnswerText answer("earlier");
    EXPECT_EQ(request.buildCgiStreamGet(kUid, line.data(), answer.out()), -2);
    EXPECT_EQ(answer.text(), "earlier");
    EXPECT_EQ(request.buildCgiStreamGet(kUid, line.data(), nullptr), -2);
}

TEST_F(StreamAnswer, MayHave4095Characters) {
    const std::string head = "0\nOK\nProfileToken=";
    const std::string token(4095 - head.size(), 't');
    client.set_profile_token(token);
    EXPECT_EQ(get(), head + token);
}

TEST_F(StreamAnswer, OfOneCharacterMoreIsRefused) {
    request.set_strm_setting_channel(3);
    const std::string head = "0\nOK\nProfileToken=";
    client.set_profile_token(std::string(4096 - head.size(), 't'));
    AnswerText answer;
    EXPECT_EQ(request.buildCgiStreamGet(kUid, line.data(), answer.out()), -8);
    EXPECT_EQ(answer.text(), kUnknown);
    EXPECT_TRUE(tracesAre({"???#* buildCgiStreamGet: uid=7:3, err-8. \n"}));
}

TEST_F(StreamAnswer, IsRefusedAlsoWhenWhatFollowsThePartThatIsTooLongWouldFit) {
    client.set_profile_token(std::string(4096, 't'));
    client.setProfileMode_1("AUTO");
    AnswerText answer;
    EXPECT_EQ(request.buildCgiStreamGet(kUid, line.data(), answer.out()), -8);
    EXPECT_EQ(answer.text(), kUnknown);
}

TEST_F(StreamAnswer, OfAHugeListIsRefused) {
    request.useProfiles(1);
    client.set_profile_token("T1");
    request.encoder(1, ".H264.Resolution.NxN.List", std::string(1 << 20, '1'));
    AnswerText answer("earlier");
    EXPECT_EQ(request.buildCgiStreamGet(kUid, line.data(), answer.out()), -8);
    EXPECT_EQ(answer.text(), "earlier");
}

} // namespace
} // namespace koine::test
