#include "default_platform/http_request.h"

#include "default_platform/characters.h"
#include "default_platform/url_parts.h"
#include "platform/url.h"
#include "text/tokens.h"

#include <algorithm>

namespace koine::platform {
namespace {

constexpr int kGet = 0;
constexpr int kPost = 2;

// libcurl makes up a request of at most one MiB, headers included, and calls a longer one "out of memory".
constexpr std::size_t kLongestTarget = 1'000'000;

/// Of a text that begins with "%".
bool beginsEscape(std::string_view text) noexcept {
    return text.size() >= 3 && isHexDigit(text[1]) && isHexDigit(text[2]);
}

bool mayStand(std::string_view rest) noexcept {
    const char c = rest.front();
    return c > ' ' && c < '\x7f' && c != '#' && (c != '%' || beginsEscape(rest));
}

void appendEscaped(std::string& text, char c) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(c);
    text += '%';
    text += kDigits[byte >> 4U];
    text += kDigits[byte & 15U];
}

void checkCall(const HttpCall& call) {
    if (call.method != kGet && call.method != kPost)
        throw Url::parse_error("request: method is neither 0 nor 2");
    // Dropping it without a word would be worse.
    if (call.method == kGet && call.content != nullptr && call.contentLength != 0)
        throw Url::parse_error("request: content needs method 2");
    if (std::any_of(call.contentType.begin(), call.contentType.end(), isControl))
        throw Url::parse_error("request: control character in the content type");
}

} // namespace

std::string escapedTarget(std::string_view target) {
    std::string text;
    text.reserve(std::min(target.size(), kLongestTarget));
    for (std::size_t i = 0; i < target.size(); ++i) {
        if (text.size() >= kLongestTarget)
            throw Url::parse_error("request: line too long");
        if (mayStand(target.substr(i)))
            text += target[i];
        else
            appendEscaped(text, target[i]);
    }
    return text;
}

HttpRequest::HttpRequest(const HttpCall& call)
    : content_(call.content),
      contentLength_(call.content == nullptr ? 0 : call.contentLength),
      post_(call.method == kPost),
      freshConnection_(call.freshConnection) {
    checkCall(call);
    const UrlParts parts = splitUrl(call.url);
    origin_ = parts.origin();
    url_ = origin_;
    if (!startsWith(parts.target, "/"))
        url_ += '/';
    url_ += escapedTarget(parts.target);
    addHeaders(call);
}

void HttpRequest::addHeaders(const HttpCall& call) {
    for (const std::string_view line : Tokens(call.headers, "\r\n"))
        headers_.add(std::string(line).c_str());
    if (!call.contentType.empty())
        headers_.add(("Content-Type: " + std::string(call.contentType)).c_str());
    // Cameras do not know "100 Continue", and waiting for it costs a second.
    if (post_)
        headers_.add("Expect:");
    if (freshConnection_)
        headers_.add("Connection: close");
}

void HttpRequest::applyTo(CurlEasy& easy) const {
    easy.set(CURLOPT_URL, url_.c_str());
    easy.set(CURLOPT_HTTPHEADER, headers_.get());
    easy.set(CURLOPT_FRESH_CONNECT, freshConnection_ ? 1L : 0L);
    easy.set(CURLOPT_FORBID_REUSE, freshConnection_ ? 1L : 0L);
    if (!post_) {
        easy.set(CURLOPT_HTTPGET, 1L);
        return;
    }
    easy.set(CURLOPT_POST, 1L);
    easy.set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(contentLength_));
    easy.set(CURLOPT_POSTFIELDS, content_ == nullptr ? "" : static_cast<const char*>(content_));
}

} // namespace koine::platform
