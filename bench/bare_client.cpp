#include "bench/bare_client.h"

#include "default_platform/curl_handle.h"

#include <stdexcept>

namespace koine::bench {
namespace {

std::size_t append(char* data, std::size_t size, std::size_t count, void* body) {
    static_cast<std::string*>(body)->append(data, size * count);
    return size * count;
}

} // namespace

struct BareClient::Handle {
    platform::CurlEasy easy;
    std::string body;
};

BareClient::BareClient(const std::string& username, const std::string& password)
    : handle_(std::make_unique<Handle>()) {
    platform::CurlEasy& easy = handle_->easy;
    if (!easy)
        throw std::runtime_error("libcurl has no handle to give");
    easy.set(CURLOPT_HTTPAUTH, static_cast<long>(CURLAUTH_DIGEST));
    easy.set(CURLOPT_USERNAME, username.c_str());
    easy.set(CURLOPT_PASSWORD, password.c_str());
    easy.set(CURLOPT_NOPROXY, "*");
    easy.set(CURLOPT_TCP_NODELAY, 1L);
    easy.set(CURLOPT_FAILONERROR, 1L);
    easy.set(CURLOPT_WRITEFUNCTION, &append);
    easy.set(CURLOPT_WRITEDATA, &handle_->body);
}

BareClient::~BareClient() = default;

void BareClient::get(const std::string& url) {
    handle_->body.clear();
    handle_->easy.set(CURLOPT_URL, url.c_str());
    const CURLcode code = curl_easy_perform(handle_->easy.get());
    if (code != CURLE_OK)
        throw std::runtime_error(url + ": " + curl_easy_strerror(code));
}

} // namespace koine::bench
