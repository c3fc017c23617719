#include "certificate.h"

#include "temporary_folder.h"

#include <cstdio>
#include <memory>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>
#include <stdexcept>

namespace koine::test {
namespace {

constexpr long kOneDay = 24L * 60 * 60;

template <typename Type, void (*Free)(Type*)>
struct Freed {
    void operator()(Type* object) const { Free(object); }
};
using Key = std::unique_ptr<EVP_PKEY, Freed<EVP_PKEY, EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Freed<X509, X509_free>>;
using Extension = std::unique_ptr<X509_EXTENSION, Freed<X509_EXTENSION, X509_EXTENSION_free>>;

struct Closed {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, Closed>;

void check(bool well) {
    if (!well)
        throw std::runtime_error("the test certificate could not be made");
}

Certificate selfSigned(EVP_PKEY* key) {
    Certificate certificate(X509_new());
    check(certificate != nullptr);
    X509* x509 = certificate.get();
    X509_set_version(x509, 2);
    ASN1_INTEGER_set(X509_get_serialNumber(x509), 1);
    X509_gmtime_adj(X509_getm_notBefore(x509), -kOneDay);
    X509_gmtime_adj(X509_getm_notAfter(x509), kOneDay);
    X509_set_pubkey(x509, key);
    X509_NAME* name = X509_get_subject_name(x509);
    const auto* common = reinterpret_cast<const unsigned char*>("device");
    check(X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, common, -1, -1, 0) == 1);
    X509_set_issuer_name(x509, name);
    const Extension address(X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, "IP:127.0.0.1"));
    check(address != nullptr && X509_add_ext(x509, address.get(), -1) == 1);
    check(X509_sign(x509, key, EVP_sha256()) > 0);
    return certificate;
}

} // namespace

TestCertificate::TestCertificate() : folder_(makeTemporaryFolder()) {
    const Key key(EVP_EC_gen("P-256"));
    check(key != nullptr);
    const Certificate certificate = selfSigned(key.get());
    const File certificateOut(std::fopen(certificateFile().c_str(), "w"));
    const File keyOut(std::fopen(keyFile().c_str(), "w"));
    check(certificateOut != nullptr && PEM_write_X509(certificateOut.get(), certificate.get()) == 1);
    check(keyOut != nullptr &&
          PEM_write_PrivateKey(keyOut.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr) == 1);
}

TestCertificate::~TestCertificate() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

} // namespace koine::test
