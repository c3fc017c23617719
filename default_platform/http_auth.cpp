#include "default_platform/http_auth.h"

#include <curl/curl.h>

namespace koine::platform {

bool AuthMemory::learn(long offered) noexcept {
    const long before = scheme_;
    if ((offered & static_cast<long>(CURLAUTH_DIGEST)) != 0) {
        scheme_ = static_cast<long>(CURLAUTH_DIGEST);
        // Also when it was known: some devices let a nonce expire and do not say that it is stale.
        return true;
    }
    if ((offered & static_cast<long>(CURLAUTH_BASIC)) != 0) {
        scheme_ = static_cast<long>(CURLAUTH_BASIC);
        return before != scheme_;
    }
    return false;
}

} // namespace koine::platform
