#include "curl_client.h"
#include "raw_client.h"
#include "test_device.h"

#include <gtest/gtest.h>

namespace koine::test {
namespace {

using sim::AuthKind;
using sim::SimulatedDevice;

constexpr const char* kRefusedInText = "-35\nERROR: Authentication error.\n";
const std::string kPassword = "open:sesame";

CurlAnswer login(const SimulatedDevice& device, CurlClient& client) {
    return client.get(device.url() + "/Login.cgi");
}

/// A client with the right credentials, for Digest.
struct DigestClient : CurlClient {
    DigestClient() { setCredentials(CURLAUTH_DIGEST, "admin", kPassword); }
};

std::string authorizationLine(const std::string& value) { return "Authorization: " + value + "\r\n"; }

/// The text with its first `what` replaced.
std::string replaced(std::string text, const std::string& what, const std::string& by) {
    const std::size_t at = text.find(what);
    EXPECT_NE(at, std::string::npos) << what << " in " << text;
    return at == std::string::npos ? text : text.replace(at, what.size(), by);
}

TEST(Authentication, NoneLetsEverybodyIn) {
    const SimulatedDevice device(optionsFor("minimal"));
    EXPECT_EQ(getOnce(device.port(), "/Login.cgi").status(), 200);
    EXPECT_EQ(getOnce(device.port(), "/Login.cgi", authorizationLine("Basic eA==")).status(), 200);
}

TEST(Authentication, BasicIsChecked) {
    const SimulatedDevice device(optionsFor("minimal", AuthKind::basic));
    const RawAnswer refused = getOnce(device.port(), "/Login.cgi");
    EXPECT_EQ(refused.status(), 401);
    EXPECT_EQ(refused.header("WWW-Authenticate"), "Basic realm=\"device\"");
    CurlClient client;
    client.setCredentials(CURLAUTH_BASIC, "admin", kPassword);
    EXPECT_EQ(login(device, client).status, 200);
    client.setCredentials(CURLAUTH_BASIC, "admin", "wrong");
    EXPECT_EQ(login(device, client).status, 401);
    client.setCredentials(CURLAUTH_BASIC, "root", kPassword);
    EXPECT_EQ(login(device, client).status, 401);
}

TEST(Authentication, BasicThatCannotBeReadIsRefused) {
    const SimulatedDevice device(optionsFor("minimal", AuthKind::basic));
    for (const char* token : {"", "====", "!!!!", "YWRtaW4", "YWRtaW46", "AAAA"})
        EXPECT_EQ(
            getOnce(device.port(), "/Login.cgi", authorizationLine(std::string("Basic ") + token)).status(),
            401)
            << token;
}

class DigestKinds : public testing::TestWithParam<AuthKind> {};

TEST_P(DigestKinds, LetsInWhoKnowsThePassword) {
    const SimulatedDevice device(optionsFor("minimal", GetParam()));
    DigestClient client;
    EXPECT_EQ(login(device, client).status, 200);
    EXPECT_EQ(client.get(device.url() + "/Config.cgi?action=get&category=Video.*").status, 200);
    client.setCredentials(CURLAUTH_DIGEST, "admin", "wrong");
    EXPECT_EQ(login(device, client).status, 401);
    client.setCredentials(CURLAUTH_DIGEST, "root", kPassword);
    EXPECT_EQ(login(device, client).status, 401);
}

TEST_P(DigestKinds, ANonceServesForManyRequestsOnOneConnection) {
    const SimulatedDevice device(optionsFor("minimal", GetParam()));
    DigestClient client;
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(login(device, client).status, 200);
    EXPECT_EQ(device.counters().unauthorized, 1U);
    EXPECT_EQ(device.counters().requests, 6U);
    EXPECT_EQ(device.counters().connections, 1U);
}

INSTANTIATE_TEST_SUITE_P(Authentication, DigestKinds,
                         testing::Values(AuthKind::digestMd5, AuthKind::digestSha256), [](const auto& suite) {
                             return suite.param == AuthKind::digestMd5 ? "Md5" : "Sha256";
                         });

TEST(Digest, TheChallengeSaysWhatTheDeviceWants) {
    const SimulatedDevice md5(optionsFor("minimal", AuthKind::digestMd5));
    const SimulatedDevice sha256(optionsFor("minimal", AuthKind::digestSha256));
    const std::string challenge = getOnce(md5.port(), "/Login.cgi").header("WWW-Authenticate");
    EXPECT_EQ(challenge.find("Digest realm=\"device\", qop=\"auth\", algorithm=MD5, nonce=\""), 0U)
        << challenge;
    EXPECT_NE(challenge.find("opaque="), std::string::npos);
    EXPECT_EQ(challenge.find("stale"), std::string::npos);
    EXPECT_NE(challenge, getOnce(md5.port(), "/Login.cgi").header("WWW-Authenticate"))
        << "a new nonce each time";
    const std::string other = getOnce(sha256.port(), "/Login.cgi").header("WWW-Authenticate");
    EXPECT_NE(other.find("algorithm=SHA-256"), std::string::npos) << other;
}

TEST(Digest, AReplayIsRefused) {
    const SimulatedDevice device(optionsFor("minimal", AuthKind::digestMd5));
    DigestClient client;
    const std::string used = login(device, client).authorization;
    ASSERT_EQ(used.find("Digest "), 0U) << used;
    EXPECT_EQ(getOnce(device.port(), "/Login.cgi", authorizationLine(used)).status(), 401);
}

TEST(Digest, EveryPartOfTheAnswerCounts) {
    SimulatedDevice device(optionsFor("minimal", AuthKind::digestMd5));
    DigestClient client;
    // In the storm the device looks at no credentials: the last ones are right and have not been used.
    device.setFault(sim::FaultKind::unauthorizedStorm);
    const std::string right = client.get(device.url() + "/Login.cgi").authorization;
    device.clearFaults();
    ASSERT_NE(right.find("nc=0000000"), std::string::npos) << right;
    const auto status = [&device](const std::string& authorization,
                                  const std::string& target = "/Login.cgi") {
        return getOnce(device.port(), target, authorizationLine(authorization)).status();
    };
    EXPECT_EQ(status(replaced(right, "username=\"admin\"", "username=\"Admin\"")), 401);
    EXPECT_EQ(status(replaced(right, "realm=\"device\"", "realm=\"other\"")), 401);
    EXPECT_EQ(status(replaced(right, "uri=\"/Login.cgi\"", "uri=\"/Other.cgi\"")), 401);
    EXPECT_EQ(status(replaced(right, "qop=auth", "qop=auth-int")), 401);
    EXPECT_EQ(status(replaced(right, "cnonce=\"", "cnonce=\"x")), 401);
    EXPECT_EQ(status(replaced(right, "nc=0", "nc=1")), 401);
    EXPECT_EQ(status(replaced(right, "nc=0", "nc=")), 401);
    EXPECT_EQ(status(replaced(right, "opaque=\"", "opaque=\"x")), 401);
    EXPECT_EQ(status(replaced(right, "algorithm=MD5", "algorithm=SHA-256")), 401);
    EXPECT_EQ(status(replaced(right, "response=\"", "response=\"0")), 401);
    EXPECT_EQ(status(replaced(right, "Digest", "Basic")), 401);
    EXPECT_EQ(status(right, "/Capability.cgi?action=get"), 401) << "for another target";
    EXPECT_EQ(status(right), 200) << "and unchanged it is right";
}

/// Wrong beyond repair, in many ways; none may do more than be refused.
TEST(Digest, NonsenseIsRefused) {
    const SimulatedDevice device(optionsFor("minimal", AuthKind::digestMd5));
    for (const char* nonsense :
         {"Digest", "Digest ", "Digest =", "Digest a", "Digest a=\"", "Digest a=\"\\", "Digest ,,,",
          "Digest username=\"admin\", nc=zzzzzzzz", "Bearer x", "Digest nonce=\"\", response=\"\""})
        EXPECT_EQ(getOnce(device.port(), "/Login.cgi", authorizationLine(nonsense)).status(), 401)
            << nonsense;
}

TEST(Digest, AnExpiredNonceCostsOneRefusal) {
    sim::Options options = optionsFor("minimal", AuthKind::digestMd5);
    options.nonceLifetimeRequests = 2;
    const SimulatedDevice device(options);
    DigestClient client;
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(login(device, client).status, 200);
    EXPECT_EQ(device.counters().unauthorized, 3U) << "one for each nonce";
    EXPECT_EQ(device.counters().requests, 9U);
}

TEST(Digest, TheHintIsGivenOnlyForARightAnswer) {
    for (const bool hint : {true, false}) {
        sim::Options options = optionsFor("minimal", AuthKind::digestMd5);
        options.staleHint = hint;
        SimulatedDevice device(options);
        DigestClient client;
        const std::string used = login(device, client).authorization;
        device.expireNonces();
        const RawAnswer expired = getOnce(device.port(), "/Login.cgi", authorizationLine(used));
        EXPECT_EQ(expired.status(), 401);
        EXPECT_EQ(expired.header("WWW-Authenticate").find("stale=true") != std::string::npos, hint);
        const RawAnswer wrong = getOnce(device.port(), "/Login.cgi",
                                        authorizationLine(replaced(used, "response=\"", "response=\"0")));
        EXPECT_EQ(wrong.header("WWW-Authenticate").find("stale"), std::string::npos);
    }
}

TEST(Authentication, CanBeChangedWhileItRuns) {
    SimulatedDevice device(optionsFor("minimal", AuthKind::digestMd5));
    CurlClient client;
    client.setCredentials(CURLAUTH_DIGEST | CURLAUTH_BASIC, "admin", kPassword);
    EXPECT_EQ(login(device, client).status, 200);
    device.setCredentials("admin", "another");
    EXPECT_EQ(login(device, client).status, 401);
    device.setCredentials("admin", kPassword);
    device.setAuth(AuthKind::basic);
    CurlClient basic;
    basic.setCredentials(CURLAUTH_BASIC, "admin", kPassword);
    EXPECT_EQ(login(device, basic).status, 200);
    device.setAuth(AuthKind::none);
    EXPECT_EQ(getOnce(device.port(), "/Login.cgi").status(), 200);
}

TEST(Authentication, WrongCredentialsMayBeToldInTheText) {
    for (const AuthKind kind : {AuthKind::basic, AuthKind::digestMd5}) {
        sim::Options options = optionsFor("minimal", kind);
        options.textRefusal = true;
        const SimulatedDevice device(options);
        EXPECT_EQ(getOnce(device.port(), "/Login.cgi").status(), 401) << "nobody knows yet what to send";
        CurlClient client;
        client.setCredentials(CURLAUTH_DIGEST | CURLAUTH_BASIC, "admin", "wrong");
        const CurlAnswer wrong = login(device, client);
        EXPECT_EQ(wrong.status, 200);
        EXPECT_EQ(wrong.body, kRefusedInText);
        EXPECT_EQ(client.get(device.url() + "/Config.cgi?action=set&Video.I0.Hue=1").body, kRefusedInText);
        EXPECT_EQ(device.value("Video.I0.Hue"), "50");
        client.setCredentials(CURLAUTH_DIGEST | CURLAUTH_BASIC, "admin", kPassword);
        EXPECT_EQ(login(device, client).body.substr(0, 5), "0\nOK\n");
    }
}

TEST(Authentication, WordsOfTheCommandLine) {
    EXPECT_EQ(sim::parseAuthKind("none"), AuthKind::none);
    EXPECT_EQ(sim::parseAuthKind("basic"), AuthKind::basic);
    EXPECT_EQ(sim::parseAuthKind("digest"), AuthKind::digestMd5);
    EXPECT_EQ(sim::parseAuthKind("digest-sha256"), AuthKind::digestSha256);
    EXPECT_THROW(sim::parseAuthKind("ntlm"), std::invalid_argument);
}

} // namespace
} // namespace koine::test
