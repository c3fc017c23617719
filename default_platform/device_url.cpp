#include "platform/cgi_text.h"

#include "default_platform/characters.h"
#include "default_platform/url_parts.h"
#include "text/owned_text.h"
#include "text/shortage.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

namespace {

constexpr unsigned int kSecurePort = 443;
constexpr unsigned int kHighestPort = 65535;

struct Device {
    std::string_view host;
    bool secure;
};

/// An address may come as the user typed it: with a scheme, and with a slash at its end.
Device deviceOf(std::string_view address, unsigned int port) {
    const bool secure = port == kSecurePort || koine::startsWithIgnoreCase(address, "https://");
    for (const std::string_view scheme : {"https://", "http://"})
        if (koine::startsWithIgnoreCase(address, scheme)) {
            address.remove_prefix(scheme.size());
            break;
        }
    while (!address.empty() && address.back() == '/')
        address.remove_suffix(1);
    return {address, secure};
}

bool hasOnly(std::string_view text, bool (*allowed)(char)) {
    return std::all_of(text.begin(), text.end(), allowed);
}

/// Nothing that could end the host inside a URL and begin something else.
bool inName(char c) {
    constexpr std::string_view kDelimiters = "/?#@\\:[]%<>\"'`{}|^";
    return c > ' ' && c < '\x7f' && !koine::contains(kDelimiters, std::string_view(&c, 1));
}

bool inAddress(char c) { return koine::platform::isHexDigit(c) || c == ':' || c == '.'; }

/// Nothing, or "%" and the name of an interface.
bool goodZone(std::string_view zone) {
    return zone.empty() || (zone.size() > 1 && hasOnly(zone.substr(1), inName));
}

/// The host as a URL writes it; nothing when it is neither a name nor an address.
std::optional<std::string> hostText(std::string_view host) {
    if (host.empty())
        return std::nullopt;
    if (host.front() == '[' && host.back() == ']')
        host = host.substr(1, host.size() - 2);
    if (std::count(host.begin(), host.end(), ':') < 2)
        return hasOnly(host, inName) && !host.empty() ? std::optional(std::string(host)) : std::nullopt;
    const std::size_t zone = std::min(host.find('%'), host.size());
    if (!hasOnly(host.substr(0, zone), inAddress) || !goodZone(host.substr(zone)))
        return std::nullopt;
    return koine::platform::bracketed(host);
}

/// The line without what would double the slash before it. Of an absolute URL its path and query count:
/// the result always addresses the device, wherever the line points.
std::string_view lineOf(std::string_view line) {
    const std::size_t target = koine::platform::targetOffset(line);
    if (target != std::string_view::npos)
        line.remove_prefix(target);
    line.remove_prefix(std::min(line.find_first_not_of('/'), line.size()));
    return line;
}

koine::OwnedText deviceUrl(std::string_view address, unsigned int port, std::string_view line) {
    const Device device = deviceOf(address, port);
    const std::optional<std::string> host = hostText(device.host);
    if (!host || port == 0 || port > kHighestPort)
        return nullptr;
    std::string url = device.secure ? "https://" : "http://";
    url += *host;
    url += ':';
    koine::appendNumber(url, static_cast<long>(port));
    url += '/';
    url += lineOf(line);
    return koine::copyText(url);
}

} // namespace

char* getTovlinCgiUrl(const char* address, unsigned int port, char* requestLine) {
    if (address == nullptr || requestLine == nullptr)
        return nullptr;
    return koine::orOnShortage<char*>(nullptr,
                                      [&] { return deviceUrl(address, port, requestLine).release(); });
}
