/// @file
/// A device that wants credentials: checks them as a device does and counts its refusals.
#pragma once

#include <atomic>
#include <mutex>
#include <string>

namespace koine::test {

/// Thread safe, since each connection has a thread of its own.
class DigestDevice {
public:
    DigestDevice(std::string username, std::string password);

    /// The whole answer to a request: "0\nOK\n", or 401 with a challenge.
    std::string answer(const std::string& request);

    // Behaviour; set before the requests that it is for.
    std::string algorithm = "MD5"; ///< or "SHA-256"
    bool saysStale = true;         ///< whether an expired nonce is called stale
    bool alwaysStale = false;      ///< calls every nonce stale, for ever
    bool offersDigest = true;
    bool offersBasic = false;
    bool challenges = true; ///< whether a refusal carries a challenge at all
    bool storm = false;     ///< refuses whatever comes

    /// The nonce given out so far is no longer good.
    void expire();

    int refusals() const { return refusals_; }

private:
    bool accepts(const std::string& request) const;
    bool acceptsDigest(const std::string& request, const std::string& authorization) const;
    std::string challenge(bool stale) const;
    std::string hash(const std::string& text) const;

    std::string username_;
    std::string password_;
    mutable std::mutex mutex_;
    int nonce_ = 1;
    std::atomic<int> refusals_{0};
};

/// "Basic ..." for these credentials.
std::string basicCredentials(const std::string& username, const std::string& password);

} // namespace koine::test
