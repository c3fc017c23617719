#include "tests/support/certificate.h"

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

#include <unistd.h>

namespace koine::test {
namespace {

using Key = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;
using X509Owner = std::unique_ptr<X509, decltype(&X509_free)>;

template <typename Write>
std::string writeFile(Write&& write) {
    std::string path = "/tmp/koine-test-XXXXXX";
    const int descriptor = mkstemp(path.data());
    std::FILE* const file = fdopen(descriptor, "w");
    EXPECT_EQ(write(file), 1);
    std::fclose(file);
    return path;
}

X509Owner selfSigned(EVP_PKEY* key) {
    constexpr long kDay = 24L * 60 * 60;
    X509Owner certificate(X509_new(), X509_free);
    X509* const x509 = certificate.get();
    X509_set_version(x509, 2);
    ASN1_INTEGER_set(X509_get_serialNumber(x509), 1);
    X509_gmtime_adj(X509_getm_notBefore(x509), -kDay);
    X509_gmtime_adj(X509_getm_notAfter(x509), kDay);
    X509_set_pubkey(x509, key);
    X509_NAME* const name = X509_get_subject_name(x509);
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC,
                               reinterpret_cast<const unsigned char*>("simulated device"), -1, -1, 0);
    X509_set_issuer_name(x509, name);
    X509_EXTENSION* const address =
        X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, "IP:127.0.0.1");
    X509_add_ext(x509, address, -1);
    X509_EXTENSION_free(address);
    EXPECT_GT(X509_sign(x509, key, EVP_sha256()), 0);
    return certificate;
}

} // namespace

Certificate::Certificate() {
    const Key key(EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", "P-256"), EVP_PKEY_free);
    const X509Owner certificate = selfSigned(key.get());
    certificateFile_ = writeFile([&](std::FILE* file) { return PEM_write_X509(file, certificate.get()); });
    keyFile_ = writeFile([&](std::FILE* file) {
        return PEM_write_PrivateKey(file, key.get(), nullptr, nullptr, 0, nullptr, nullptr);
    });
}

Certificate::~Certificate() {
    unlink(certificateFile_.c_str());
    unlink(keyFile_.c_str());
}

} // namespace koine::test
