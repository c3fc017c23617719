/// @file
/// libcurl as a client: it does its own part of Basic and Digest authentication.
#pragma once

#include <curl/curl.h>
#include <memory>
#include <string>
#include <string_view>

namespace koine::test {

struct CurlAnswer {
    CURLcode code = CURLE_OK;
    long status = 0;
    std::string body;
    std::string authorization; ///< the "Authorization" header sent last, empty when none was
};

/// Keeps its connection, its nonce and its cookies from request to request.
class CurlClient {
public:
    CurlClient();

    void setCredentials(unsigned long kinds, const std::string& username, const std::string& password);
    void trust(const std::string& certificateFile);
    CurlAnswer get(const std::string& url);
    CurlAnswer post(const std::string& url, const std::string& form);

private:
    CurlAnswer perform(const std::string& url);

    struct Cleanup {
        void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
    };
    std::unique_ptr<CURL, Cleanup> handle_;
};

} // namespace koine::test
