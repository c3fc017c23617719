// The answer to "Onvif.cgi?action=GetStreamUri": which profile it is for, and what the URI is asked with.

#include "bench_request.h"
#include "observed.h"

#include <gtest/gtest.h>

namespace koine::test {
namespace {

std::string fullAnswer(const std::string& uri) {
    return "0\nOK\nGetStreamUriResponse.MediaUri.Uri=" + uri +
           "\nGetStreamUriResponse.MediaUri.InvalidAfterConnect=false"
           "\nGetStreamUriResponse.MediaUri.InvalidAfterReboot=true"
           "\nGetStreamUriResponse.MediaUri.Timeout=P1Y";
}

class UriAnswer : public ::testing::Test {
protected:
    UriAnswer() {
        request.set_strm_setting_channel(3);
        forgetTraces();
    }

    /// Asks and expects the given result; the answer must be there exactly on success.
    std::string ask(const std::string& query = "", int expected = 1) {
        line = kLine + query;
        char before[] = "never read";
        char* answer = before;
        EXPECT_EQ(request.buildCgiGetStreamUri(kUid, line.data(), &answer), expected);
        const std::string text = answer == nullptr ? "(null)" : answer;
        if (answer != before)
            request.freeData(answer);
        return text;
    }

    void profileWith(int number, const std::string& encoding, const std::string& width,
                     const std::string& height) {
        request.encoder(number, ".Encoding", encoding);
        request.encoder(number, ".Resolution.Width", width);
        request.encoder(number, ".Resolution.Height", height);
    }

    const std::string kLine = "http://camera/Onvif.cgi?action=GetStreamUri";
    std::string line;
    BenchRequest request;
    StreamIDClient& client = request.client();
};

TEST_F(UriAnswer, NeedsAnAnswerPointer) {
    line = kLine;
    EXPECT_EQ(request.buildCgiGetStreamUri(kUid, line.data(), nullptr), -2);
    EXPECT_TRUE(tracesAre({"??#* buildCgiOnvifGetStreamUri: uid=7:3, pchUrl=" + kLine + ", err-2. \n"}));
    EXPECT_TRUE(request.uriOrders.empty());
}

TEST_F(UriAnswer, OfNoLineIsThatOfAnEmptyOne) {
    AnswerText answer;
    EXPECT_EQ(request.buildCgiGetStreamUri(kUid, nullptr, answer.out()), 1);
    EXPECT_EQ(answer.text(), fullAnswer("rtsp://camera/live"));
    EXPECT_EQ(request.buildCgiGetStreamUri(kUid, nullptr, nullptr), -2);
    EXPECT_TRUE(tracesAre({"?#* buildCgiOnvifGetStreamUri: uid=7:3, pchUrl=, no Media. \n",
                           "??#* buildCgiOnvifGetStreamUri: uid=7:3, pchUrl=, err-2. \n"}));
}

TEST_F(UriAnswer, OfADeviceWithoutProfilesIsForH264OfAnySize) {
    EXPECT_EQ(ask(), fullAnswer("rtsp://camera/live"));
    ASSERT_EQ(request.uriOrders.size(), 1U);
    const BenchRequest::UriOrder& order = request.uriOrders[0];
    EXPECT_EQ(order.address, "camera");
    EXPECT_EQ(order.port, 80U);
    EXPECT_EQ(order.videoEncoding, "H264");
    EXPECT_EQ(order.width, 0);
    EXPECT_EQ(order.height, 0);
    EXPECT_TRUE(tracesAre({"?#* buildCgiOnvifGetStreamUri: uid=7:3, pchUrl=" + kLine + ", no Media. \n"}));
}

TEST_F(UriAnswer, OfADeviceWithoutProfilesIsForMpeg4ForMobileViewers) {
    client.setProfileMode_1("MOBILE");
    ask();
    client.setProfileMode_1("MOBILE2");
    ask();
    ASSERT_EQ(request.uriOrders.size(), 2U);
    EXPECT_EQ(request.uriOrders[0].videoEncoding, "MPEG4");
    EXPECT_EQ(request.uriOrders[0].width, 0);
    EXPECT_EQ(request.uriOrders[1].videoEncoding, "H264");
}

TEST_F(UriAnswer, HasSoundUnlessTheDeviceHasNoAudioInput) {
    ask();
    EXPECT_EQ(request.capability().count("Capability.Audio.Input.Channel"), 1U) << "looked up by index";
    request.capability()["Capability.Audio.Input.Channel"] = "1";
    ask();
    request.capability()["Capability.Audio.Input.Channel"] = "0";
    ask();
    request.capability()["Capability.Audio.Input.Channel"] = "00";
    ask();
    ASSERT_EQ(request.uriOrders.size(), 4U);
    EXPECT_EQ(request.uriOrders[0].audioEncoding, "ULAW");
    EXPECT_EQ(request.uriOrders[1].audioEncoding, "ULAW");
    EXPECT_EQ(request.uriOrders[2].audioEncoding, "(null)");
    EXPECT_EQ(request.uriOrders[3].audioEncoding, "ULAW");
}

TEST_F(UriAnswer, IsRefusedWhenTheUriCannotBeBuilt) {
    for (const int result : {0, -2, 2}) {
        request.uri = [result](char**) { return result; };
        forgetTraces();
        EXPECT_EQ(ask("", -2), "(null)");
        EXPECT_TRUE(tracesAre({"?#* buildCgiOnvifGetStreamUri: uid=7:3, pchUrl=" + kLine + ", no Media. \n",
                               "??#* buildCgiOnvifGetStreamUri: uid=7:3, pchUrl=" + kLine + ", err-2. \n"}));
    }
}

TEST_F(UriAnswer, IsRefusedWhenTheStepSucceedsWithoutAUri) {
    request.uri = [](char** uri) {
        *uri = nullptr;
        return 1;
    };
    EXPECT_EQ(ask("", -2), "(null)");
    request.useProfiles(1);
    EXPECT_EQ(ask("&ProfileToken=T1", -2), "(null)");
    EXPECT_TRUE(tracesAre(
        {"?#* buildCgiOnvifGetStreamUri: uid=7:3, pchUrl=" + kLine + ", no Media. \n",
         "??#* buildCgiOnvifGetStreamUri: uid=7:3, pchUrl=" + kLine + ", err-2. \n",
         "???#* buildCgiOnvifGetStreamUri: uid=7:3, pchUrl=" + kLine + "&ProfileToken=T1, err-2. \n"}));
}

TEST_F(UriAnswer, AUriOfAFailedStepIsFreed) {
    request.uri = [](char** uri) {
        *uri = mallocedText("leaks if nobody frees it");
        return -1;
    };
    EXPECT_EQ(ask("", -2), "(null)");
}

TEST_F(UriAnswer, WithoutProfilesTheTextMayBeLong) {
    const std::string longUri(3000, 'u');
    request.uri = [&](char** uri) {
        *uri = mallocedText(longUri);
        return 1;
    };
    EXPECT_EQ(ask(), fullAnswer(longUri));
}

TEST_F(UriAnswer, TakesTheProfileOfTheTokenAskedFor) {
    request.useProfiles(3);
    profileWith(2, "JPEG", "640", "480p");
    client.set_profile_id(1);
    request.set_server_address("10.1.1.1");
    request.set_server_port(8080);
    EXPECT_EQ(ask("&ProfileToken=T2"), fullAnswer("rtsp://camera/live"));
    EXPECT_EQ(client.profile_id(), 2);
    EXPECT_STREQ(client.profile_token(), "T2");
    ASSERT_EQ(request.uriOrders.size(), 1U);
    EXPECT_EQ(request.uriOrders[0].address, "10.1.1.1");
    EXPECT_EQ(request.uriOrders[0].port, 8080U);
    EXPECT_EQ(request.uriOrders[0].videoEncoding, "JPEG");
    EXPECT_EQ(request.uriOrders[0].width, 640);
    EXPECT_EQ(request.uriOrders[0].height, 480);
    EXPECT_EQ(request.uriOrders[0].audioEncoding, "ULAW");
    EXPECT_TRUE(tracesAre({}));
}

TEST_F(UriAnswer, TheLastTokenOfTheLineCounts) {
    request.useProfiles(3);
    ask("&ProfileToken=T3&x=1\nProfileToken=T2");
    EXPECT_EQ(client.profile_id(), 2);
}

TEST_F(UriAnswer, ATokenItemIsReadFromItsFirstCharacterToTheFirstBlank) {
    request.useProfiles(3);
    client.set_profile_id(1);
    ask("&xProfileToken=T3&ProfileToken=T2 T3");
    EXPECT_EQ(client.profile_id(), 2);
}

TEST_F(UriAnswer, OnlyTheFirstItemEndsAtAQuestionMark) {
    request.useProfiles(3);
    request.profile(2, ".token", "T2?ProfileToken=T3");
    ask("&ProfileToken=T2?ProfileToken=T3");
    EXPECT_EQ(client.profile_id(), 2);
    line = "ProfileToken=T3?x";
    AnswerText answer;
    EXPECT_EQ(request.buildCgiGetStreamUri(kUid, line.data(), answer.out()), 1);
    EXPECT_EQ(client.profile_id(), 3);
}

TEST_F(UriAnswer, TheFirstProfileWithTheTokenCounts) {
    request.useProfiles(3);
    request.profile(3, ".token", "T2");
    ask("&ProfileToken=T2");
    EXPECT_EQ(client.profile_id(), 2);
}

TEST_F(UriAnswer, AnUnknownTokenKeepsTheProfileOfTheUser) {
    request.useProfiles(3);
    profileWith(1, "H264", "1", "2");
    profileWith(3, "MPEG4", "320", "240");
    client.set_profile_id(3);
    client.set_profile_token("old");
    EXPECT_EQ(ask("&ProfileToken=x"), fullAnswer("rtsp://camera/live"));
    EXPECT_EQ(client.profile_id(), 3);
    EXPECT_STREQ(client.profile_token(), "T3");
    EXPECT_EQ(request.uriOrders[0].videoEncoding, "MPEG4");
}

TEST_F(UriAnswer, AnUnknownTokenWithoutAProfileIsRefused) {
    request.useProfiles(3);
    profileWith(1, "H264", "1", "2");
    EXPECT_EQ(ask("&ProfileToken=x", -2), "(null)");
    EXPECT_TRUE(tracesAre(
        {"??#* buildCgiOnvifGetStreamUri: uid=7:3, pchUrl=" + kLine + "&ProfileToken=x, error. \n"}));
    EXPECT_TRUE(request.uriOrders.empty());
    EXPECT_EQ(client.profile_id(), 0);
}

TEST_F(UriAnswer, WithoutATokenTheFirstH264ProfileServes) {
    request.useProfiles(3);
    profileWith(1, "JPEG", "1", "1");
    profileWith(2, "H264", "1280", "720");
    profileWith(3, "H264", "3", "3");
    EXPECT_EQ(ask(), fullAnswer("rtsp://camera/live"));
    EXPECT_EQ(client.profile_id(), 2);
    EXPECT_STREQ(client.profile_token(), "T2");
    EXPECT_EQ(request.uriOrders[0].width, 1280);
    EXPECT_EQ(request.uriOrders[0].height, 720);
}

TEST_F(UriAnswer, OnlyTheExactWordIsH264) {
    request.useProfiles(4);
    profileWith(1, "h264", "1", "1");
    profileWith(2, "H264 ", "1", "1");
    profileWith(3, "H2640", "1", "1");
    EXPECT_EQ(ask("", -2), "(null)");
    client.set_profile_id(2);
    ask();
    EXPECT_EQ(client.profile_id(), 2);
    EXPECT_EQ(request.uriOrders[0].videoEncoding, "H264 ");
}

TEST_F(UriAnswer, AnEmptyTokenItemAsksForNoToken) {
    request.useProfiles(2);
    profileWith(2, "H264", "1", "1");
    ask("&ProfileToken=");
    EXPECT_EQ(client.profile_id(), 2);
}

TEST_F(UriAnswer, LooksUpByIndexAndSoCreatesWhatIsMissing) {
    request.setMediaProfile(1);
    EXPECT_EQ(ask("", -2), "(null)");
    EXPECT_EQ(request.media(), (CgiMap{{"Media.Profiles.Count", ""}}));

    request.media()["Media.Profiles.Count"] = "1";
    EXPECT_EQ(ask("&ProfileToken=x", -2), "(null)");
    EXPECT_EQ(request.media(),
              (CgiMap{{"Media.Profiles.Count", "1"}, {"Media.Profiles.Profile1.token", ""}}));
    EXPECT_EQ(ask("", -2), "(null)");
    EXPECT_EQ(request.encoderValue(1, ".Encoding"), "");

    client.set_profile_id(5);
    ask();
    EXPECT_EQ(request.media().count("Media.Profiles.Profile5.token"), 1U);
    EXPECT_EQ(request.encoderValue(5, ".Encoding"), "");
    EXPECT_EQ(request.encoderValue(5, ".Resolution.Width"), "");
    EXPECT_EQ(request.encoderValue(5, ".Resolution.Height"), "");
    EXPECT_STREQ(client.profile_token(), "");
    EXPECT_EQ(request.uriOrders[0].videoEncoding, "");
    EXPECT_EQ(request.uriOrders[0].width, 0);
}

TEST_F(UriAnswer, OfADeviceWithProfilesIsRefusedWhenTheUriCannotBeBuilt) {
    request.useProfiles(1);
    request.uri = [](char**) { return 0; };
    EXPECT_EQ(ask("&ProfileToken=T1", -2), "(null)");
    EXPECT_TRUE(tracesAre(
        {"???#* buildCgiOnvifGetStreamUri: uid=7:3, pchUrl=" + kLine + "&ProfileToken=T1, err-2. \n"}));
    EXPECT_EQ(client.profile_id(), 1) << "the choice stands";
}

TEST_F(UriAnswer, OfADeviceWithProfilesMayHave1023Characters) {
    request.useProfiles(1);
    const std::string uri(1023 - fullAnswer("").size(), 'u');
    request.uri = [&](char** text) {
        *text = mallocedText(uri);
        return 1;
    };
    EXPECT_EQ(ask("&ProfileToken=T1"), fullAnswer(uri));
}

TEST_F(UriAnswer, OfADeviceWithProfilesIsRefusedWithOneCharacterMore) {
    request.useProfiles(1);
    const std::string uri(1024 - fullAnswer("").size(), 'u');
    request.uri = [&](char** text) {
        *text = mallocedText(uri);
        return 1;
    };
    EXPECT_EQ(ask("&ProfileToken=T1", -8), "(null)");
    EXPECT_TRUE(tracesAre(
        {"???#* buildCgiOnvifGetStreamUri: uid=7:3, pchUrl=" + kLine + "&ProfileToken=T1, err-8. \n"}));
}

} // namespace
} // namespace koine::test
