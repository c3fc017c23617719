#include "default_platform/http_outcome.h"

namespace koine::platform {

HttpResult resultOfStatus(long status) noexcept {
    if (status >= 200 && status < 300)
        return kAnswered;
    switch (status) {
    case 401:
    case 403:
        return kCredentialsRefused;
    case 404:
    case 405:
    case 501:
        return kFunctionMissing;
    default:
        return kOtherStatus;
    }
}

HttpResult resultOfFailure(CURLcode code) noexcept {
    switch (code) {
    case CURLE_URL_MALFORMAT:
    case CURLE_BAD_FUNCTION_ARGUMENT:
        return kUnusableUrl;
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_CONNECT:
        return kCannotConnect;
    case CURLE_OPERATION_TIMEDOUT:
        return kTimeLimit;
    case CURLE_ABORTED_BY_CALLBACK:
        return kAborted;
    // The device refused, and another repetition was not allowed.
    case CURLE_TOO_MANY_REDIRECTS:
        return kCredentialsRefused;
    case CURLE_OUT_OF_MEMORY:
    case CURLE_FAILED_INIT:
        return kNoMemory;
    default:
        return kBrokenAnswer;
    }
}

} // namespace koine::platform
