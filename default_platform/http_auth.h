/// @file
/// How a device wants its credentials.
#pragma once

namespace koine::platform {

/// How an attempt ended, as far as authentication is concerned.
struct AuthOutcome {
    long offered = 0;       ///< schemes that the device offered, as libcurl's bits
    bool refused = false;   ///< the last answer was 401
    bool stopped = false;   ///< libcurl would have repeated the request by itself, but was not let
    bool anonymous = false; ///< no credentials were given
};

/// What a client has learned about the authentication of its device.
///
/// libcurl sends credentials unasked only when it is told exactly one scheme. So the first request leaves it
/// the choice, and every later one names the scheme found: then a nonce costs one refusal. From then on
/// libcurl repeats nothing by itself; this class decides, and knows two things about libcurl. A challenge
/// that replaces a nonce counts there as "wrong password" unless it says "stale", though the new nonce is
/// taken all the same and worth a try. And the offer of such a challenge stays noted, so that libcurl passes
/// over the next challenge: it reports no offer then and takes no nonce.
class AuthMemory {
public:
    /// At most this many attempts make up one request.
    static constexpr int kMostAttempts = 3;

    void beginRequest() noexcept { freshNonce_ = false; }

    /// Schemes to tell libcurl.
    long schemes() const noexcept;

    /// How often libcurl may repeat a request by itself.
    long repetitions() const noexcept { return scheme_ == 0 ? 1 : 0; }

    /// Takes note of an attempt.
    /// @return whether another attempt may fare better
    bool learn(const AuthOutcome& outcome) noexcept;

private:
    bool learnDigest(bool refused) noexcept;
    bool learnBasic(bool refused) noexcept;
    bool learnNoOffer(const AuthOutcome& outcome) noexcept;

    long scheme_ = 0;
    bool metDigest_ = false;  ///< so libcurl may pass over a challenge
    bool freshNonce_ = false; ///< the nonce came with this very request
};

} // namespace koine::platform
