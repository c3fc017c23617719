/// @file
/// Message digests and random texts, by libcrypto.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace koine::sim {

enum class DigestKind { md5, sha256 };

/// The digest of a text in lower-case hexadecimal digits.
/// @throws std::runtime_error when libcrypto does not offer it
std::string digestOf(DigestKind kind, std::string_view text);

/// Random bytes in hexadecimal digits, twice as many as bytes.
std::string randomText(std::size_t bytes);

/// The bytes behind a base64 text; empty when it is none.
std::string base64Decoded(std::string_view text);

/// Compares in a time that does not tell where texts differ.
bool sameSecret(std::string_view one, std::string_view other) noexcept;

} // namespace koine::sim
