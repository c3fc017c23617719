/// @file
/// Results of `IHttpClient::Request`.
#pragma once

#include <curl/curl.h>

namespace koine::platform {

enum HttpResult : int {
    kAnswered = 1,
    kCredentialsRefused = -1,
    kUnusableUrl = -2,
    kCannotConnect = -3,
    kTimeLimit = -4,
    kBrokenAnswer = -5,
    kOtherStatus = -6,
    kAborted = -7,
    kNoMemory = -8,
    kFunctionMissing = -14,
};

/// Result of a complete answer with this HTTP status.
HttpResult resultOfStatus(long status) noexcept;

/// Result of a request that ended like this without a complete answer.
HttpResult resultOfFailure(CURLcode code) noexcept;

} // namespace koine::platform
