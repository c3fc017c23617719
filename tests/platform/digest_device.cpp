#include "tests/platform/digest_device.h"

#include "tests/support/raw_server.h"

#include <openssl/evp.h>

#include <array>

namespace koine::test {
namespace {

std::string quoted(const std::string& authorization, const std::string& name) {
    const std::string before = name + "=\"";
    std::size_t begin = authorization.find(" " + before);
    if (begin == std::string::npos)
        return {};
    begin += before.size() + 1;
    return authorization.substr(begin, authorization.find('"', begin) - begin);
}

std::string plain(const std::string& authorization, const std::string& name) {
    const std::size_t begin = authorization.find(" " + name + "=");
    if (begin == std::string::npos)
        return {};
    const std::size_t value = begin + name.size() + 2;
    return authorization.substr(value, authorization.find_first_of(", ", value) - value);
}

} // namespace

DigestDevice::DigestDevice(std::string username, std::string password)
    : username_(std::move(username)), password_(std::move(password)) {}

std::string DigestDevice::answer(const std::string& request) {
    const std::lock_guard<std::mutex> guard(mutex_);
    if (!storm && !alwaysStale && accepts(request))
        return answerText("200 OK", "0\nOK\n");
    ++refusals_;
    const std::string nonce = quoted(headerOf(request, "Authorization"), "nonce");
    const bool expired = !nonce.empty() && nonce != "nonce" + std::to_string(nonce_);
    if (storm || alwaysStale)
        ++nonce_;
    return answerText("401 Unauthorized", "refused",
                      challenges ? challenge(alwaysStale || (saysStale && expired)) : "");
}

void DigestDevice::expire() {
    const std::lock_guard<std::mutex> guard(mutex_);
    ++nonce_;
}

std::string DigestDevice::challenge(bool stale) const {
    std::string lines;
    if (offersBasic)
        lines += "WWW-Authenticate: Basic realm=\"cam\"\r\n";
    if (offersDigest)
        lines += "WWW-Authenticate: Digest realm=\"cam\", qop=\"auth\", nonce=\"nonce" +
                 std::to_string(nonce_) + "\", algorithm=" + algorithm + (stale ? ", stale=true" : "") +
                 "\r\n";
    return lines;
}

bool DigestDevice::accepts(const std::string& request) const {
    const std::string authorization = headerOf(request, "Authorization");
    if (offersBasic && authorization == basicCredentials(username_, password_))
        return true;
    return offersDigest && authorization.rfind("Digest ", 0) == 0 && acceptsDigest(request, authorization);
}

bool DigestDevice::acceptsDigest(const std::string& request, const std::string& authorization) const {
    const std::string nonce = quoted(authorization, "nonce");
    const std::string uri = quoted(authorization, "uri");
    const std::string line = firstLine(request);
    const std::string method = line.substr(0, line.find(' '));
    if (quoted(authorization, "username") != username_ || nonce != "nonce" + std::to_string(nonce_) ||
        line != method + " " + uri + " HTTP/1.1")
        return false;
    const std::string secret = hash(username_ + ":cam:" + password_);
    return quoted(authorization, "response") ==
           hash(secret + ":" + nonce + ":" + plain(authorization, "nc") + ":" +
                quoted(authorization, "cnonce") + ":auth:" + hash(method + ":" + uri));
}

std::string DigestDevice::hash(const std::string& text) const {
    std::array<unsigned char, EVP_MAX_MD_SIZE> bytes{};
    unsigned int size = 0;
    EVP_Digest(text.data(), text.size(), bytes.data(), &size, algorithm == "MD5" ? EVP_md5() : EVP_sha256(),
               nullptr);
    std::string hex;
    for (unsigned int i = 0; i < size; ++i) {
        hex += "0123456789abcdef"[bytes.at(i) >> 4U];
        hex += "0123456789abcdef"[bytes.at(i) & 15U];
    }
    return hex;
}

std::string basicCredentials(const std::string& username, const std::string& password) {
    const std::string text = username + ":" + password;
    std::string encoded(4 * text.size() / 3 + 8, '\0');
    const int size =
        EVP_EncodeBlock(reinterpret_cast<unsigned char*>(encoded.data()),
                        reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
    encoded.resize(static_cast<std::size_t>(size));
    return "Basic " + encoded;
}

} // namespace koine::test
