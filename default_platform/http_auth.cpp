#include "default_platform/http_auth.h"

#include <curl/curl.h>

#include <utility>

namespace koine::platform {
namespace {

constexpr long kDigest = static_cast<long>(CURLAUTH_DIGEST);
constexpr long kBasic = static_cast<long>(CURLAUTH_BASIC);

} // namespace

long AuthMemory::schemes() const noexcept { return scheme_ != 0 ? scheme_ : kDigest | kBasic; }

bool AuthMemory::learn(const AuthOutcome& outcome) noexcept {
    if ((outcome.offered & kDigest) != 0)
        return learnDigest(outcome);
    if ((outcome.offered & kBasic) != 0)
        return learnBasic(outcome);
    return passesOver_ && outcome.refused && !outcome.anonymous && learnPassedOver();
}

bool AuthMemory::learnDigest(const AuthOutcome& outcome) noexcept {
    const bool choosing = scheme_ == 0; // then libcurl has answered the challenge by itself
    const bool freshRefused = std::exchange(freshNonce_, true);
    scheme_ = kDigest;
    passesOver_ = outcome.refused && !outcome.stopped;
    return outcome.refused && !outcome.anonymous && !choosing && !freshRefused;
}

bool AuthMemory::learnBasic(const AuthOutcome& outcome) noexcept {
    const bool changed = scheme_ == kDigest;
    scheme_ = kBasic;
    passesOver_ = passesOver_ && outcome.anonymous;
    return outcome.refused && !outcome.anonymous && changed;
}

/// Only a Digest challenge is passed over, and only once.
bool AuthMemory::learnPassedOver() noexcept {
    scheme_ = kDigest;
    passesOver_ = false;
    return !freshNonce_;
}

} // namespace koine::platform
