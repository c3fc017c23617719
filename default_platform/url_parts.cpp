#include "default_platform/url_parts.h"

#include "default_platform/curl_handle.h"
#include "platform/url.h"
#include "text/numbers.h"
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

/// Where things stand in a URL, for the error texts and for what the parser below is given.
struct Layout {
    std::size_t authority; ///< behind "://"
    std::size_t host;      ///< behind the user information
    std::size_t port;      ///< behind the host's ":", or the end of the authority
    std::size_t end;       ///< of the authority
};

Layout layOut(std::string_view url, const Scheme& scheme) noexcept {
    Layout at{};
    at.authority = scheme.beginning.size();
    at.end = std::min(url.find_first_of("/?#", at.authority), url.size());
    const std::string_view authority = url.substr(0, at.end);
    const std::size_t userEnd = authority.find_last_of('@');
    at.host = userEnd == std::string_view::npos || userEnd < at.authority ? at.authority : userEnd + 1;
    const std::size_t bracket = authority.find(']', at.host);
    const std::size_t colon = authority.find(':', bracket == std::string_view::npos ? at.host : bracket);
    at.port = colon == std::string_view::npos ? at.end : colon + 1;
    return at;
}

[[noreturn]] void fail(const char* what, std::size_t offset) {
    std::string text = "URL: ";
    text += what;
    text += " at character ";
    appendNumber(text, static_cast<long>(offset + 1));
    throw Url::parse_error(text);
}

[[noreturn]] void fail(CURLUcode code, const Layout& at) {
    switch (code) {
    case CURLUE_OUT_OF_MEMORY:
        throw std::bad_alloc();
    case CURLUE_BAD_PORT_NUMBER:
        fail("bad port", at.port);
    case CURLUE_BAD_USER:
    case CURLUE_BAD_PASSWORD:
    case CURLUE_BAD_LOGIN:
    case CURLUE_USER_NOT_ALLOWED:
        fail("bad user information", at.authority);
    case CURLUE_BAD_IPV6:
        fail("bad IPv6 address", at.host);
    case CURLUE_NO_HOST:
        fail("no host", at.host);
    default:
        fail("bad host", at.host);
    }
}

/// Digits only and within 1 to 65535; nothing between ":" and the end means the scheme's own port.
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

CurlText partOf(const CurlUrl& url, CURLUPart part, const Layout& at) {
    char* text = nullptr;
    const CURLUcode code = curl_url_get(url.get(), part, &text, 0);
    if (code == CURLUE_NO_ZONEID)
        return nullptr;
    if (code != CURLUE_OK)
        fail(code, at);
    return CurlText(text);
}

std::string hostOf(const CurlUrl& url, const Layout& at) {
    const CurlText text = partOf(url, CURLUPART_HOST, at);
    std::string_view host = text.get();
    if (host.empty())
        fail("no host", at.host);
    if (host.size() > kLongestHost)
        fail("host name too long", at.host);
    if (host.front() != '[')
        return std::string(host);
    std::string address(host.substr(1, host.size() - 2));
    if (const CurlText zone = partOf(url, CURLUPART_ZONEID, at))
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
    const std::string_view host = url.substr(at.host, at.end - at.host);
    if (host.empty() || host.front() == ':')
        fail("no host", at.host);
    if (host.front() == '[' && !contains(host, "]"))
        fail("bad IPv6 address", at.host);
    UrlParts parts;
    parts.secure = scheme->secure;
    parts.port = portOf(url, at, scheme->port);
    parts.target = url.substr(at.end);

    // What follows the authority is the device's business: line ends and any other byte may stand there.
    const std::string authority(url.substr(0, at.end));
    const CurlUrl parser(curl_url());
    if (!parser)
        throw std::bad_alloc();
    const CURLUcode code = curl_url_set(parser.get(), CURLUPART_URL, authority.c_str(), 0);
    if (code != CURLUE_OK)
        fail(code, at);
    parts.host = hostOf(parser, at);
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
