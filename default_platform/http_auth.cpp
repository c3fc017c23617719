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
    const bool refused = outcome.refused && !outcome.anonymous;
    if ((outcome.offered & kDigest) != 0)
        return learnDigest(refused);
    if ((outcome.offered & kBasic) != 0)
        return learnBasic(refused);
    return !outcome.anonymous && learnNoOffer(outcome);
}

bool AuthMemory::learnDigest(bool refused) noexcept {
    const bool choosing = scheme_ == 0; // then libcurl has answered the challenge by itself
    const bool freshRefused = std::exchange(freshNonce_, true);
    scheme_ = kDigest;
    metDigest_ = true;
    return refused && !choosing && !freshRefused;
}

bool AuthMemory::learnBasic(bool refused) noexcept {
    const bool changed = scheme_ == kDigest;
    scheme_ = kBasic;
    return refused && changed;
}

bool AuthMemory::learnNoOffer(const AuthOutcome& outcome) noexcept {
    // Without a nonce libcurl first sends an empty request where content would follow; the device took it.
    if (outcome.stopped && !outcome.refused) {
        scheme_ = 0;
        return true;
    }
    // Only a Digest challenge is passed over. With Basic that looks like a refusal without any challenge.
    if (!outcome.refused || freshNonce_ || !metDigest_ || (scheme_ == kDigest && !outcome.stopped))
        return false;
    scheme_ = kDigest;
    return true;
}

} // namespace koine::platform
