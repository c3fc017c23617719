// URLs, by rules that suffice for tests: "http://" or "https://", user information, a host, a port.
#include "failing_allocations.h"
#include "scripted_platform.h"

#include <cstdlib>
#include <cstring>
#include <string>

namespace {

using koine::test::platform;

constexpr unsigned int kSecurePort = 443;

bool beginsWith(const std::string& text, const char* beginning) {
    return text.compare(0, std::strlen(beginning), beginning) == 0;
}

char* deviceUrl(const std::string& address, unsigned int port, const std::string& line) {
    const bool schemed = beginsWith(address, "https://");
    const std::string host = schemed ? address.substr(std::strlen("https://")) : address;
    const bool bracketed = host.find(':') != std::string::npos;
    return koine::test::mallocedText(std::string(schemed || port == kSecurePort ? "https://" : "http://") +
                                     (bracketed ? "[" + host + "]" : host) + ":" + std::to_string(port) +
                                     "/" + line);
}

} // namespace

char* getTovlinCgiUrl(const char* address, unsigned int port, char* requestLine) {
    if (!platform().quiet()) {
        const koine::test::SpareAllocations spare;
        platform().note("getTovlinCgiUrl(" + std::string(address == nullptr ? "(null)" : address) + ", " +
                        std::to_string(port) + ", " + (requestLine == nullptr ? "(null)" : requestLine) +
                        ")");
    }
    if (platform().hooks.getTovlinCgiUrl)
        return platform().hooks.getTovlinCgiUrl(address, port, requestLine);
    if (address == nullptr || requestLine == nullptr)
        return nullptr;
    try {
        return deviceUrl(address, port, requestLine);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

Url::parse_error::~parse_error() = default;

Url::Url(const char* text) : text_(text == nullptr ? "" : text) {}

void Url::parse_url() {
    const bool secure = beginsWith(text_, "https://");
    if (!secure && !beginsWith(text_, "http://"))
        throw parse_error("no scheme at 0");
    std::size_t at = text_.find("://") + 3;
    const std::size_t end = std::min(text_.find_first_of("/?#", at), text_.size());
    const std::size_t user = text_.rfind('@', end);
    if (user != std::string::npos && user >= at && user < end)
        at = user + 1;
    std::string host = text_.substr(at, end - at);
    unsigned long port = secure ? kSecurePort : 80;
    const std::size_t closing = host.find(']');
    const std::size_t colon = host.find(':', closing == std::string::npos ? 0 : closing);
    if (colon != std::string::npos) {
        const std::string digits = host.substr(colon + 1);
        if (digits.empty() || digits.size() > 5 ||
            digits.find_first_not_of("0123456789") != std::string::npos)
            throw parse_error("bad port at " + std::to_string(at + colon + 1));
        port = std::stoul(digits);
        host.resize(colon);
    }
    if (port == 0 || port > 65535)
        throw parse_error("bad port at " + std::to_string(at + colon + 1));
    if (!host.empty() && host.front() == '[')
        host = host.substr(1, host.size() - 2);
    if (host.empty())
        throw parse_error("no host at " + std::to_string(at));
    host_ = host;
    port_ = static_cast<unsigned int>(port);
}

const std::string& Url::host() const { return host_; }
unsigned int Url::port() const { return port_; }
