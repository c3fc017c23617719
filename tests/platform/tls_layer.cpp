#include "tests/platform/tls_layer.h"

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>

#include <array>
#include <csignal>
#include <stdexcept>
#include <vector>

#include <unistd.h>

namespace koine::test {
namespace {

template <auto Free>
struct Freeing {
    template <typename T>
    void operator()(T* object) const {
        Free(object);
    }
};
using KeyPtr = std::unique_ptr<EVP_PKEY, Freeing<EVP_PKEY_free>>;
using CertificatePtr = std::unique_ptr<X509, Freeing<X509_free>>;
using SslPtr = std::unique_ptr<SSL, Freeing<SSL_free>>;

void require(bool done, const char* what) {
    if (!done)
        throw std::runtime_error(what);
}

CertificatePtr selfSigned(EVP_PKEY* key) {
    CertificatePtr certificate(X509_new());
    X509* raw = certificate.get();
    X509_set_version(raw, X509_VERSION_3);
    ASN1_INTEGER_set(X509_get_serialNumber(raw), 1);
    X509_gmtime_adj(X509_getm_notBefore(raw), -3600);
    X509_gmtime_adj(X509_getm_notAfter(raw), 3600);
    X509_set_pubkey(raw, key);
    const std::string name = "device under test";
    X509_NAME_add_entry_by_txt(X509_get_subject_name(raw), "CN", MBSTRING_ASC,
                               reinterpret_cast<const unsigned char*>(name.data()), -1, -1, 0);
    X509_set_issuer_name(raw, X509_get_subject_name(raw));
    const std::unique_ptr<X509_EXTENSION, Freeing<X509_EXTENSION_free>> address(
        X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, "IP:127.0.0.1"));
    require(address && X509_add_ext(raw, address.get(), -1) == 1 && X509_sign(raw, key, EVP_sha256()) > 0,
            "no certificate");
    return certificate;
}

std::string pinOf(EVP_PKEY* key) {
    unsigned char* der = nullptr;
    const int size = i2d_PUBKEY(key, &der);
    require(size > 0, "no public key");
    std::array<unsigned char, 32> digest{};
    EVP_Digest(der, static_cast<std::size_t>(size), digest.data(), nullptr, EVP_sha256(), nullptr);
    OPENSSL_free(der);
    std::array<char, 64> text{};
    EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()), digest.data(),
                    static_cast<int>(digest.size()));
    return std::string("sha256//") + text.data();
}

std::string writeFile(X509* certificate) {
    std::string path = "/tmp/koine-certificate-XXXXXX";
    const int descriptor = ::mkstemp(path.data());
    FILE* file = descriptor < 0 ? nullptr : ::fdopen(descriptor, "w");
    require(file != nullptr && PEM_write_X509(file, certificate) == 1, "no certificate file");
    std::fclose(file);
    return path;
}

/// OpenSSL writes to a socket whose other end may be gone. Only for this thread: in the clients the signal
/// must not arise, and there it would end the tests.
void blockPipeSignal() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

class TlsStream : public ByteStream {
public:
    explicit TlsStream(SslPtr ssl) : ssl_(std::move(ssl)) {}
    long read(char* bytes, std::size_t size) override {
        return SSL_read(ssl_.get(), bytes, static_cast<int>(size));
    }
    long write(const char* bytes, std::size_t size) override {
        return SSL_write(ssl_.get(), bytes, static_cast<int>(size));
    }

private:
    SslPtr ssl_;
};

} // namespace

TlsIdentity::TlsIdentity() : context_(SSL_CTX_new(TLS_server_method())) {
    std::string curve = "P-256";
    const KeyPtr key(EVP_PKEY_Q_keygen(nullptr, nullptr, "EC", curve.data()));
    require(context_ != nullptr && key, "no key");
    const CertificatePtr certificate = selfSigned(key.get());
    require(SSL_CTX_use_certificate(context_, certificate.get()) == 1 &&
                SSL_CTX_use_PrivateKey(context_, key.get()) == 1,
            "certificate not taken");
    pin_ = pinOf(key.get());
    file_ = writeFile(certificate.get());
}

TlsIdentity::~TlsIdentity() {
    SSL_CTX_free(context_);
    ::unlink(file_.c_str());
}

RawServer::Layer TlsIdentity::layer() const {
    return [context = context_](int socket) -> std::unique_ptr<ByteStream> {
        blockPipeSignal();
        SslPtr ssl(SSL_new(context));
        if (!ssl || SSL_set_fd(ssl.get(), socket) != 1 || SSL_accept(ssl.get()) != 1)
            return nullptr;
        return std::make_unique<TlsStream>(std::move(ssl));
    };
}

} // namespace koine::test
