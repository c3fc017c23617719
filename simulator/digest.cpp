#include "simulator/digest.h"

#include <algorithm>
#include <array>
#include <climits>
#include <memory>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/rand.h>
#include <stdexcept>
#include <vector>

namespace koine::sim {
namespace {

using Bytes = std::vector<unsigned char>;

std::string hexadecimal(const Bytes& bytes) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (const unsigned char byte : bytes) {
        text += kDigits[byte >> 4U];
        text += kDigits[byte & 0xFU];
    }
    return text;
}

} // namespace

std::string digestOf(DigestKind kind, std::string_view text) {
    const EVP_MD* method = kind == DigestKind::md5 ? EVP_md5() : EVP_sha256();
    Bytes bytes(EVP_MAX_MD_SIZE);
    unsigned int length = 0;
    if (EVP_Digest(text.data(), text.size(), bytes.data(), &length, method, nullptr) != 1)
        throw std::runtime_error("libcrypto does not offer the digest that authentication needs");
    bytes.resize(length);
    return hexadecimal(bytes);
}

std::string randomText(std::size_t count) {
    Bytes bytes(count);
    if (RAND_bytes(bytes.data(), static_cast<int>(bytes.size())) != 1)
        throw std::runtime_error("libcrypto has no random bytes");
    return hexadecimal(bytes);
}

std::string base64Decoded(std::string_view text) {
    if (text.empty() || text.size() % 4 != 0 || text.size() > INT_MAX)
        return {};
    const Bytes encoded(text.begin(), text.end());
    Bytes bytes(text.size() / 4 * 3);
    const int length = EVP_DecodeBlock(bytes.data(), encoded.data(), static_cast<int>(encoded.size()));
    if (length < 0)
        return {};
    const std::size_t padding = std::min<std::size_t>(text.size() - text.find_last_not_of('=') - 1, 2);
    return {bytes.begin(), bytes.begin() + (length - static_cast<int>(padding))};
}

bool sameSecret(std::string_view one, std::string_view other) noexcept {
    return one.size() == other.size() && CRYPTO_memcmp(one.data(), other.data(), one.size()) == 0;
}

} // namespace koine::sim
