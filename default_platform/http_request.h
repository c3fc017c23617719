/// @file
/// A request as it goes on the wire.
#pragma once

#include "default_platform/curl_handle.h"

#include <string>
#include <string_view>

namespace koine::platform {

/// What `IHttpClient::Request` was called with; null texts are empty.
struct HttpCall {
    std::string_view url;
    std::string_view headers;
    std::string_view contentType;
    const void* content = nullptr;
    unsigned int contentLength = 0;
    const char* username = "";
    const char* password = "";
    int method = 0;
    bool freshConnection = false;

    bool anonymous() const noexcept { return *username == '\0'; }
};

/// The call, checked and brought into libcurl's form.
class HttpRequest {
public:
    /// @throws Url::parse_error when the call cannot be put on the wire, saying why
    explicit HttpRequest(const HttpCall& call);

    /// Which device it goes to.
    const std::string& origin() const noexcept { return origin_; }

    /// Sets it up on `easy`, credentials apart. `easy` refers to this object from then on.
    /// @throws CurlFailure
    void applyTo(CurlEasy& easy) const;

private:
    void addHeaders(const HttpCall& call);

    std::string origin_;
    std::string url_;
    CurlList headers_;
    const void* content_;
    unsigned int contentLength_;
    bool post_;
    bool freshConnection_;
};

/// A path and query with every byte escaped that must not stand in a request: blanks, control and non-ASCII
/// characters, "#" (nothing would send what follows it) and a "%" that begins no escape.
/// @throws Url::parse_error when it is longer than libcurl can send
std::string escapedTarget(std::string_view target);

} // namespace koine::platform
