// What the way to the device does beside carrying lines: connections, cookies, TLS, counters.

#include "tests/e2e/rig.h"
#include "tests/support/certificate.h"

#include "default_platform/host_settings.h"

#include <gtest/gtest.h>

namespace koine {
namespace {

using sim::AuthKind;
using test::Rig;
using test::trafficText;

TEST(Transport, OneConnectionServesEverything) {
    Rig rig(AuthKind::digestMd5);
    rig.device().setConnections(1);
    EXPECT_EQ(rig.device().cacheCgi(1), 1);
    EXPECT_EQ(rig.ask("Config.cgi?action=set&Video.I0.Brightness=60").result, 1);
    EXPECT_EQ(rig.ask("Config.cgi?action=get&category=*").result, 1);
    EXPECT_EQ(rig.traffic(), trafficText(1, 10, 1));
}

TEST(Transport, CachesAreFilledInOrder) {
    Rig rig;
    rig.device().setConnections(1);
    EXPECT_EQ(rig.device().cacheCgi(1), 1);
    EXPECT_EQ(rig.peer().requestLog(),
              (std::vector<std::string>{"200 Login.cgi", "200 Capability.cgi?action=get",
                                        "200 Config.cgi?action=get&category=Media.*&ch=1",
                                        "200 Config.cgi?action=get&category=Video.*",
                                        "200 Config.cgi?action=get&category=Camera.*",
                                        "200 Config.cgi?action=get&category=Notification.*",
                                        "200 Config.cgi?action=get&category=Misc.*",
                                        "200 Config.cgi?action=get&category=VideoAnalytics.*"}));
}

TEST(Transport, TheDevicesCountersTellThePaths) {
    Rig rig;
    rig.device().cacheCgi(1);
    const sim::Counters counters = rig.peer().counters();
    EXPECT_EQ(counters.perPath,
              (decltype(counters.perPath){{"Login.cgi", 1}, {"Capability.cgi", 1}, {"Config.cgi", 6}}));
    EXPECT_EQ(rig.device().requestsSent(), 8U);
}

TEST(Transport, CloseEndsTheConnectionAndTheNextLineOpensOne) {
    Rig rig(AuthKind::digestMd5);
    EXPECT_EQ(rig.ask("Login.cgi").result, 1);
    rig.device().close();
    EXPECT_EQ(rig.ask("PTZ.cgi?stop=1").result, 1);
    EXPECT_EQ(rig.peer().counters().connections, 2U);
    EXPECT_EQ(rig.peer().counters().unauthorized, 1U) << "the nonce outlives the connection";
}

TEST(Transport, ACookieIsKeptShownAndSentBack) {
    Rig rig(AuthKind::none, [](sim::Options& options) { options.cookie = "session=c00kie"; });
    EXPECT_EQ(rig.ask("Login.cgi").result, 1);
    ASSERT_NE(rig.device().getCookie(), nullptr);
    EXPECT_NE(std::string(rig.device().getCookie()).find("session=c00kie"), std::string::npos);
    EXPECT_EQ(rig.ask("PTZ.cgi?stop=1").result, 1);
    EXPECT_EQ(rig.ask("PTZ.cgi?stop=2").result, 1);
    EXPECT_EQ(rig.peer().counters().cookiesReturned, 2U);
    EXPECT_EQ(rig.device().getCookie(), nullptr) << "the last answer set none";
}

TEST(Transport, AnswersOfEverySizeArriveWhole) {
    Rig rig;
    for (const std::size_t size : {1U, 1000U, 100'000U, 1'000'000U}) {
        const std::string value(size, 'x');
        rig.misbehave("answer=0\\nOK\\nBig=" + value + ";path=PTZ");
        EXPECT_EQ(rig.ask("PTZ.cgi?up=1").text, "0\nOK\nBig=" + value);
    }
}

TEST(Transport, AnAnswerWithoutABodyIsASuccess) {
    Rig rig;
    rig.misbehave("empty-body;path=PTZ");
    const Answer answer = rig.ask("PTZ.cgi?up=1");
    EXPECT_EQ(answer.result, 1);
    EXPECT_EQ(answer.text, "0\nOK\n");
}

TEST(Transport, HostilePercentSignsTravelUnharmed) {
    Rig rig;
    rig.misbehave("answer=0\\nOK\\n%n%s%x=%n%s%x;path=PTZ");
    EXPECT_EQ(rig.ask("PTZ.cgi?a=%n%s%x").text, "0\nOK\n%n%s%x=%n%s%x");
}

TEST(Transport, OnlyTheBytesUpToANulCount) {
    Rig rig;
    rig.misbehave("answer=0\\nOK\\nA=1\\0\\nB=2\\n;path=PTZ");
    EXPECT_EQ(rig.ask("PTZ.cgi?up=1").text, "0\nOK\nA=1");
}

class Tls : public testing::Test {
protected:
    ~Tls() override {
        setTlsVerification(true);
        setTlsAuthorityFile(nullptr);
    }

    void useCertificate(sim::Options& options) const {
        options.https = true;
        options.certificateFile = certificate_.certificateFile();
        options.privateKeyFile = certificate_.keyFile();
    }

    test::Certificate certificate_;
};

TEST_F(Tls, ADeviceWithAKnownCertificateIsSpokenTo) {
    Rig rig(AuthKind::digestMd5, [this](sim::Options& options) { useCertificate(options); });
    setTlsAuthorityFile(certificate_.certificateFile().c_str());
    EXPECT_EQ(rig.peer().url().rfind("https://", 0), 0U);
    rig.device().setConnections(1);
    EXPECT_EQ(rig.device().cacheCgi(1), 1);
    EXPECT_EQ(rig.traffic(), trafficText(1, 9, 1));
    EXPECT_EQ(rig.another()->cacheCgi(1), 1) << "over two connections";
}

TEST_F(Tls, AnUnknownCertificateIsRefusedBeforeAnythingIsSaid) {
    Rig rig(AuthKind::basic, [this](sim::Options& options) { useCertificate(options); });
    const Answer answer = rig.ask("Login.cgi");
    EXPECT_EQ(answer.result, -5);
    EXPECT_EQ(answer.text, test::kUnknownParameter);
    EXPECT_EQ(rig.peer().counters().requests, 0U);
    setTlsVerification(false);
    EXPECT_EQ(rig.ask("Login.cgi").result, 1) << "for those who ask for it";
}

} // namespace
} // namespace koine
