#include "tests/platform/http_caller.h"
#include "tests/platform/tls_layer.h"
#include "tests/support/raw_server.h"

#include "default_platform/host_settings.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace {

using koine::test::answering;
using koine::test::answerText;
using koine::test::HttpCaller;
using koine::test::RawServer;
using koine::test::TlsIdentity;

RawServer::Script good() {
    return answering([](const std::string&) { return answerText("200 OK", "0\nOK\n"); });
}

const TlsIdentity& identity() {
    static const TlsIdentity device;
    return device;
}

class HttpTls : public testing::Test {
protected:
    ~HttpTls() override { restore(); }

    static void restore() {
        koine::setTlsVerification(true);
        koine::setTlsAuthorityFile(nullptr);
        koine::setTlsPinnedKey(nullptr);
    }

    std::string url(const char* host = "127.0.0.1") const {
        return "https://" + std::string(host) + ":" + std::to_string(server.port()) + "/";
    }

    RawServer server{good(), identity().layer()};
    HttpCaller caller;
};

TEST_F(HttpTls, UnknownCertificateIsRefused) {
    EXPECT_EQ(caller.get(url()).result, -5);
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(HttpTls, CertificateOfAKnownAuthorityIsAccepted) {
    ASSERT_EQ(koine::setTlsAuthorityFile(identity().certificateFile().c_str()), 1);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(caller.get(url()).result, 1);
    EXPECT_EQ(server.connections(), 1);
}

TEST_F(HttpTls, CertificateForAnotherNameIsRefused) {
    ASSERT_EQ(koine::setTlsAuthorityFile(identity().certificateFile().c_str()), 1);
    EXPECT_EQ(caller.get(url("localhost")).result, -5);
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(HttpTls, CertificateOfAnotherAuthorityIsRefused) {
    const TlsIdentity other;
    ASSERT_EQ(koine::setTlsAuthorityFile(other.certificateFile().c_str()), 1);
    EXPECT_EQ(caller.get(url()).result, -5);
}

TEST_F(HttpTls, AuthorityFileThatDoesNotExistRefusesEveryDevice) {
    ASSERT_EQ(koine::setTlsAuthorityFile("/nonexistent/authorities.pem"), 1);
    EXPECT_EQ(caller.get(url()).result, -5);
    ASSERT_EQ(koine::setTlsAuthorityFile(identity().certificateFile().c_str()), 1);
    EXPECT_EQ(caller.get(url()).result, 1);
}

TEST_F(HttpTls, EmptyAuthorityFileRestoresTheSystemsOwn) {
    ASSERT_EQ(koine::setTlsAuthorityFile(identity().certificateFile().c_str()), 1);
    EXPECT_EQ(caller.get(url()).result, 1);
    ASSERT_EQ(koine::setTlsAuthorityFile(""), 1);
    EXPECT_EQ(caller.get(url()).result, -5) << "a kept connection must not outlive the trust in it";
}

TEST_F(HttpTls, VerificationCanBeSwitchedOffAndOn) {
    koine::setTlsVerification(false);
    EXPECT_EQ(caller.get(url()).result, 1);
    EXPECT_EQ(caller.get(url("localhost")).result, 1);
    EXPECT_EQ(caller.get(url()).result, 1);
    koine::setTlsVerification(true);
    EXPECT_EQ(caller.get(url()).result, -5) << "a kept connection must not outlive the trust in it";
}

TEST_F(HttpTls, PinnedKeyIsAskedForBesidesTheCertificate) {
    ASSERT_EQ(koine::setTlsPinnedKey(identity().pin().c_str()), 1);
    EXPECT_EQ(caller.get(url()).result, -5) << "the certificate is unknown still";
    ASSERT_EQ(koine::setTlsAuthorityFile(identity().certificateFile().c_str()), 1);
    EXPECT_EQ(caller.get(url()).result, 1);
}

TEST_F(HttpTls, PinnedKeyAloneIsEnoughWithoutVerification) {
    koine::setTlsVerification(false);
    ASSERT_EQ(koine::setTlsPinnedKey(identity().pin().c_str()), 1);
    EXPECT_EQ(caller.get(url()).result, 1);
}

TEST_F(HttpTls, AnyOtherKeyThanThePinnedOneIsRefused) {
    const TlsIdentity other;
    koine::setTlsVerification(false);
    EXPECT_EQ(caller.get(url()).result, 1);
    ASSERT_EQ(koine::setTlsPinnedKey(other.pin().c_str()), 1);
    EXPECT_EQ(caller.get(url()).result, -5) << "also over a connection that was kept";
    ASSERT_EQ(koine::setTlsPinnedKey((other.pin() + ";" + identity().pin()).c_str()), 1);
    EXPECT_EQ(caller.get(url()).result, 1);
}

TEST_F(HttpTls, PlainHttpToATlsPortIsABrokenAnswer) { EXPECT_EQ(caller.get(server.url()).result, -5); }

TEST_F(HttpTls, TlsToAPlainPortIsABrokenAnswer) {
    RawServer plain(
        [](koine::test::RawConnection& connection) { connection.send("HTTP/1.1 400 Bad\r\n\r\n"); });
    koine::setTlsVerification(false);
    EXPECT_EQ(caller.get("https://127.0.0.1:" + std::to_string(plain.port()) + "/").result, -5);
}

TEST_F(HttpTls, DeviceThatVanishesIsNoSignal) {
    koine::setTlsVerification(false);
    RawServer vanishing(
        [](koine::test::RawConnection& connection) {
            connection.readRequest();
            connection.send(answerText("200 OK", "0\nOK\n"));
            connection.reset();
        },
        identity().layer());
    for (int i = 0; i < 5; ++i) {
        const int result = caller.get("https://127.0.0.1:" + std::to_string(vanishing.port()) + "/").result;
        EXPECT_TRUE(result == 1 || result == -5) << result;
        caller.client().Close();
    }
}

TEST_F(HttpTls, SettingsMayChangeWhileClientsWork) {
    ASSERT_EQ(koine::setTlsAuthorityFile(identity().certificateFile().c_str()), 1);
    std::atomic<bool> done{false};
    std::thread setting([&] {
        while (!done) {
            koine::setTlsAuthorityFile(identity().certificateFile().c_str());
            koine::setTlsPinnedKey(identity().pin().c_str());
            koine::setRequestTimeLimit(20'000);
            koine::setConnectTimeLimit(9'000);
            koine::setBodyLimit(1 << 20);
            koine::setTlsPinnedKey(nullptr);
        }
    });
    std::vector<std::thread> working;
    std::atomic<int> answered{0};
    for (int i = 0; i < 3; ++i)
        working.emplace_back([&] {
            HttpCaller own;
            for (int round = 0; round < 10; ++round)
                answered += own.get(url()).result == 1 ? 1 : 0;
        });
    for (std::thread& thread : working)
        thread.join();
    done = true;
    setting.join();
    koine::setRequestTimeLimit(0);
    koine::setConnectTimeLimit(0);
    koine::setBodyLimit(0);
    EXPECT_EQ(answered, 30);
}

} // namespace
