/// @file
/// Who may ask a simulated device: Basic and Digest authentication (RFC 7617, RFC 7616).
#pragma once

#include "simulator/options.h"

#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

namespace koine::sim {

/// What an authenticator says of a request.
enum class Verdict {
    granted,
    noCredentials,   ///< none were sent
    staleNonce,      ///< right, but for a nonce that serves no longer
    wrongCredentials ///< wrong, or not understood
};

/// Any thread may use it at any time.
class Authenticator {
public:
    explicit Authenticator(const Options& options);

    /// @param authorization the "Authorization" header, empty when there is none
    Verdict check(std::string_view method, std::string_view target, std::string_view authorization);

    /// The value of "WWW-Authenticate" for a client that was not let in, with a new nonce.
    std::string challenge(Verdict verdict);

    void setKind(AuthKind kind);
    void setCredentials(std::string username, std::string password);
    /// No nonce given out so far serves any longer.
    void expireNonces();

private:
    using Parameters = std::map<std::string, std::string, std::less<>>;

    /// What is known of a nonce that was given out.
    struct Nonce {
        std::uint64_t lastCount = 0; ///< the highest "nc" seen
        std::uint64_t uses = 0;
        bool expired = false;
    };

    bool basicIsRight(std::string_view token) const;
    bool digestIsRight(std::string_view method, std::string_view target, const Parameters& sent) const;
    std::string digestResponse(std::string_view method, const Parameters& sent) const;
    Verdict useNonce(const Parameters& sent);
    std::string newNonce();

    std::mutex mutex_;
    AuthKind kind_;
    std::string username_;
    std::string password_;
    const unsigned int nonceLifetime_;
    const bool staleHint_;
    const std::string opaque_;
    std::map<std::string, Nonce, std::less<>> nonces_;
    std::deque<std::string> nonceOrder_; ///< oldest first, so that a storm of clients cannot fill the memory
};

} // namespace koine::sim
