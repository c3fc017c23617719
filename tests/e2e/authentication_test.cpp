// Every way in which a device asks who is there, and what it costs.

#include "tests/e2e/rig.h"

#include <gtest/gtest.h>

namespace koine {
namespace {

using sim::AuthKind;
using test::Rig;
using test::trafficText;

constexpr AuthKind kChallenging[] = {AuthKind::basic, AuthKind::digestMd5, AuthKind::digestSha256};

std::string nameOf(const testing::TestParamInfo<AuthKind>& info) {
    return std::array<const char*, 4>{"none", "basic", "digestMd5",
                                      "digestSha256"}[static_cast<std::size_t>(info.param)];
}

class Authentication : public testing::TestWithParam<AuthKind> {};

TEST_P(Authentication, TheChallengeIsMetOnceForAllRequestsOfOneConnection) {
    Rig rig(GetParam());
    EXPECT_EQ(rig.ask("Login.cgi").result, 1);
    EXPECT_EQ(rig.ask("Capability.cgi?action=get").result, 1);
    EXPECT_EQ(rig.ask(test::kVideo).result, 1);
    EXPECT_EQ(rig.ask("PTZ.cgi?stop=1").result, 1);
    EXPECT_EQ(rig.traffic(), trafficText(1, 5, 1));
    EXPECT_EQ(rig.device().requestsSent(), 4U);
}

TEST_P(Authentication, AnotherPasswordIsRefusedWithTheStatedAnswer) {
    Rig rig(GetParam());
    const auto stranger = rig.another(test::kUser, "wrong");
    const Answer answer = request(*stranger, 1, "Login.cgi");
    EXPECT_EQ(answer.result, -1);
    EXPECT_EQ(answer.text, test::kAuthenticationError);
    const sim::Counters counters = rig.peer().counters();
    EXPECT_EQ(counters.unauthorized, counters.requests);
    EXPECT_LE(counters.requests, 3U) << "a wrong password is not tried again and again";
}

TEST_P(Authentication, WithoutCredentialsItIsRefusedAfterOneRequest) {
    Rig rig(GetParam());
    const auto nobody = rig.another("", "");
    EXPECT_EQ(request(*nobody, 1, "Login.cgi").text, test::kAuthenticationError);
    EXPECT_EQ(rig.traffic(), trafficText(1, 1, 1));
}

TEST_P(Authentication, ARefusedLoginIsTriedAgainByTheNextLine) {
    Rig rig(GetParam());
    rig.peer().setCredentials(test::kUser, "changed");
    EXPECT_EQ(rig.ask("Login.cgi").result, -1);
    rig.peer().setCredentials(test::kUser, test::kPassword);
    EXPECT_EQ(rig.ask("Login.cgi").result, 1);
}

TEST_P(Authentication, TheKindMayChangeWhileTheDeviceIsInUse) {
    for (const AuthKind next :
         {AuthKind::none, AuthKind::basic, AuthKind::digestMd5, AuthKind::digestSha256}) {
        Rig rig(GetParam());
        EXPECT_EQ(rig.ask("Login.cgi").result, 1);
        rig.peer().setAuth(next);
        EXPECT_EQ(rig.ask(test::kVideo).result, 1);
        EXPECT_EQ(rig.ask("PTZ.cgi?stop=1").result, 1);
        EXPECT_LE(rig.peer().counters().requests, 6U);
    }
}

TEST_P(Authentication, StoredCredentialsWinOverThoseOfALaterLine) {
    Rig rig(GetParam());
    std::string line = "Login.cgi";
    std::string user = "somebody";
    std::string password = "else";
    char* text = nullptr;
    EXPECT_EQ(rig.device().requestHttpStr(1, line.data(), user.data(), password.data(), &text), 1);
    rig.device().freeData(text);
}

TEST_P(Authentication, CredentialsMayHoldAnyCharacter) {
    const std::string user = "a d\"m%n'\\ \xc3\xa4";
    const std::string password = "p:@/?#%00 \"\\\xe2\x82\xac,=";
    Rig rig(GetParam(), [&](sim::Options& options) {
        options.username = user;
        options.password = password;
    });
    const auto device = rig.another(user, password);
    EXPECT_EQ(request(*device, 1, "Login.cgi").result, 1);
}

INSTANTIATE_TEST_SUITE_P(Kinds, Authentication, testing::ValuesIn(kChallenging), nameOf);

TEST(NoAuthentication, CredentialsAreNotSentUnasked) {
    Rig rig;
    EXPECT_EQ(rig.ask("Login.cgi").result, 1);
    EXPECT_EQ(rig.traffic(), trafficText(1, 1, 0));
}

TEST(TextRefusal, AStatusOfMinus35MeansTheSameAsHttp401) {
    Rig rig(AuthKind::digestMd5, [](sim::Options& options) { options.textRefusal = true; });
    const auto stranger = rig.another(test::kUser, "wrong");
    const Answer login = request(*stranger, 1, "Login.cgi");
    EXPECT_EQ(login.result, -1);
    EXPECT_EQ(login.text, test::kAuthenticationError);
    const Answer set = request(*stranger, 1, "Config.cgi?action=set&Video.I0.Brightness=1");
    EXPECT_EQ(set.result, -1);
    EXPECT_EQ(set.text, test::kAuthenticationError);
}

class Nonces : public testing::TestWithParam<AuthKind> {};

TEST_P(Nonces, AnExpiredNonceCostsOneChallengeWhenTheDeviceSaysSo) {
    Rig rig(GetParam(), [](sim::Options& options) { options.nonceLifetimeRequests = 3; });
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(rig.ask("PTZ.cgi?stop=1").result, 1) << i;
    // One challenge at the start and one after every three requests.
    EXPECT_EQ(rig.traffic(), trafficText(1, 12, 3));
}

TEST_P(Nonces, AnExpiredNonceIsGotOverWhenTheDeviceKeepsTheReasonToItself) {
    Rig rig(GetParam(), [](sim::Options& options) {
        options.nonceLifetimeRequests = 3;
        options.staleHint = false;
    });
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(rig.ask("PTZ.cgi?stop=1").result, 1) << i;
    const sim::Counters counters = rig.peer().counters();
    EXPECT_EQ(counters.requests, 9U + counters.unauthorized);
    EXPECT_LE(counters.unauthorized, 1U + 2U * 2U) << "at most two per nonce that expired";
}

TEST_P(Nonces, ARestartedDeviceIsServedOn) {
    Rig rig(GetParam());
    EXPECT_EQ(rig.ask("PTZ.cgi?stop=1").result, 1);
    rig.peer().expireNonces();
    EXPECT_EQ(rig.ask("PTZ.cgi?stop=1").result, 1);
    EXPECT_EQ(rig.traffic(), trafficText(1, 4, 2));
}

INSTANTIATE_TEST_SUITE_P(Kinds, Nonces, testing::Values(AuthKind::digestMd5, AuthKind::digestSha256), nameOf);

} // namespace
} // namespace koine
