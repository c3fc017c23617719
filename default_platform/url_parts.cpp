#include "default_platform/url_parts.h"

#include "default_platform/curl_handle.h"
#include "platform/url.h"
#include "text/numbers.h"
#include "text/owned_text.h"
#include "text/words.h"

#include <algorithm>
#include <array>
#include <new>
#include <optional>

namespace koine::platform {
namespace {

constexpr std::size_t kLongestHost = 255;
constexpr long kHighestPort = 65535;

struct Scheme {
    std::string_view beginning;
    bool secure;
    unsigned int port;
};

constexpr std::array kSchemes = {Scheme{"http://", false, 80}, Scheme{"https://", true, 443}};

const Scheme* schemeOf(std::string_view url) noexcept {
    for (const Scheme& scheme : kSchemes)
        if (startsWithIgnoreCase(url, scheme.beginning))
            return &scheme;
    return nullptr;
}

/// Where things stand in a URL.
struct Layout {
    std::size_t host;    ///< behind the user information
    std::size_t hostEnd; ///< the ":" before a port, or the end of the authority
    std::size_t port;    ///< behind that ":"
    std::size_t end;     ///< of the authority
};

Layout layOut(std::string_view url, const Scheme& scheme) noexcept {
    Layout at{};
    const std::size_t begin = scheme.beginning.size();
    at.end = std::min(url.find_first_of("/?#", begin), url.size());
    const std::string_view authority = url.substr(0, at.end);
    // What stands before the last "@" is user information, whatever its form: it is not used.
    const std::size_t userEnd = authority.substr(begin).find_last_of('@');
    at.host = userEnd == std::string_view::npos ? begin : begin + userEnd + 1;
    const std::size_t bracket = authority.find(']', at.host);
    at.hostEnd = std::min(authority.find(':', bracket == std::string_view::npos ? at.host : bracket), at.end);
    at.port = std::min(at.hostEnd + 1, at.end);
    return at;
}

[[noreturn]] void fail(const char* what, std::size_t offset) {
    std::string text = "URL: ";
    text += what;
    text += " at character ";
    appendNumber(text, static_cast<long>(offset + 1));
    throw Url::parse_error(text);
}

/// Digits only and within 1 to 65535; nothing at all means the scheme's own port.
unsigned int portOf(std::string_view url, const Layout& at, unsigned int standard) {
    const std::string_view digits = url.substr(at.port, at.end - at.port);
    if (digits.empty())
        return standard;
    if (!std::all_of(digits.begin(), digits.end(), isDigit))
        fail("bad port", at.port);
    const long port = readLong(digits);
    if (port < 1 || port > kHighestPort)
        fail("port outside 1 to 65535", at.port);
    return static_cast<unsigned int>(port);
}

/// A part of a parsed URL; null when it has none.
CurlText partOf(const CurlUrl& url, CURLUPart part) {
    char* text = nullptr;
    const CURLUcode code = curl_url_get(url.get(), part, &text, 0);
    if (code == CURLUE_OUT_OF_MEMORY)
        throw std::bad_alloc();
    return CurlText(text);
}

/// Parses "http://" and the host: all that stands around the host is our own business. Any byte may follow
/// it, and a password before it may be written as it likes.
CurlUrl parsed(std::string_view host, std::size_t offset) {
    const std::string text = std::string(kSchemes.front().beginning).append(host);
    CurlUrl parser(curl_url());
    const CURLUcode code =
        parser ? curl_url_set(parser.get(), CURLUPART_URL, text.c_str(), 0) : CURLUE_OUT_OF_MEMORY;
    if (code == CURLUE_OUT_OF_MEMORY)
        throw std::bad_alloc();
    if (code != CURLUE_OK)
        fail(host.front() == '[' ? "bad IPv6 address" : "bad host", offset);
    return parser;
}

std::string hostOf(std::string_view url, const Layout& at) {
    const std::string_view written = url.substr(at.host, at.hostEnd - at.host);
    if (written.empty())
        fail("no host", at.host);
    if (written.size() > kLongestHost)
        fail("host name too long", at.host);
    const CurlUrl parser = parsed(written, at.host);
    const CurlText text = partOf(parser, CURLUPART_HOST);
    const std::string_view host = viewOf(text.get());
    if (!startsWith(host, "["))
        return std::string(host);
    std::string address(host.substr(1, host.size() - 2));
    if (const CurlText zone = partOf(parser, CURLUPART_ZONEID))
        address.append("%").append(zone.get());
    return address;
}

} // namespace

std::string UrlParts::origin() const {
    std::string text = secure ? "https://" : "http://";
    text += bracketed(host);
    text += ':';
    appendNumber(text, static_cast<long>(port));
    return text;
}

UrlParts splitUrl(std::string_view url) {
    const Scheme* scheme = schemeOf(url);
    if (scheme == nullptr)
        fail("neither http:// nor https://", 0);
    const Layout at = layOut(url, *scheme);
    UrlParts parts;
    parts.secure = scheme->secure;
    parts.host = hostOf(url, at);
    parts.port = portOf(url, at, scheme->port);
    parts.target = url.substr(at.end);
    return parts;
}

std::size_t targetOffset(std::string_view text) noexcept {
    const Scheme* scheme = schemeOf(text);
    if (scheme == nullptr)
        return std::string_view::npos;
    return std::min(text.find_first_of("/?#", scheme->beginning.size()), text.size());
}

std::string bracketed(std::string_view host) {
    if (!contains(host, ":"))
        return std::string(host);
    std::string text = "[";
    const std::size_t zone = host.find('%');
    text += host.substr(0, zone);
    if (zone != std::string_view::npos) {
        const std::string_view name = host.substr(zone + 1);
        text += "%25";
        text += startsWith(name, "25") && name.size() > 2 ? name.substr(2) : name;
    }
    text += ']';
    return text;
}

} // namespace koine::platform
