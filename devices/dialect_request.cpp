// Devices that speak the dialect themselves: lines go out as they are.

#include "devices/dialect_request.h"

#include "devices/percent.h"
#include "devices/schemes.h"
#include "platform/cgi_text.h"
#include "platform/trace.h"
#include "platform/url.h"
#include "request/object_lock.h"
#include "text/owned_text.h"
#include "text/words.h"

#include <algorithm>
#include <new>

namespace koine {
namespace {

constexpr std::string_view kConfigSet = "Config.cgi?action=set";
constexpr unsigned int kTlsPort = 443;

/// Does the line begin with "scheme://"? A URL among the parameters does not make it one.
bool isAbsolute(std::string_view line) {
    const std::size_t scheme = line.find("://");
    return scheme != std::string_view::npos && line.find_first_of("/?#&=") > scheme;
}

/// The host in an address that may carry a scheme or brackets.
std::string_view hostOf(std::string_view address) {
    for (const std::string_view scheme : {kHttps, kHttp})
        if (startsWithIgnoreCase(address, scheme))
            address.remove_prefix(scheme.size());
    if (address.size() >= 2 && address.front() == '[' && address.back() == ']')
        return address.substr(1, address.size() - 2);
    return address;
}

bool sameHost(std::string_view one, std::string_view other) {
    return one.size() == other.size() && startsWithIgnoreCase(one, other);
}

bool speaksTls(std::string_view address, unsigned int port) {
    return startsWithIgnoreCase(address, kHttps) || port == kTlsPort;
}

/// May this URL be sent with the credentials of the device at `address`?
bool addresses(const char* url, const char* address, unsigned int port) {
    try {
        Url parsed(url);
        parsed.parse_url();
        return sameHost(hostOf(parsed.host()), hostOf(address)) &&
               (startsWithIgnoreCase(url, kHttps) || !speaksTls(address, port));
    } catch (const Url::parse_error&) {
        return false;
    }
}

/// The result of a set that the device answered with this text. A text that is no answer of the dialect is no
/// consent; a device that sends no text at all has nothing against it.
int resultOfSet(const char* answer) {
    if (viewOf(answer).empty())
        return kOk;
    CgiMap ignored;
    return createMapStr(answer, &ignored);
}

std::string positive(int value) { return value > 0 ? std::to_string(value) : std::string(); }

/// The host part of a URI.
std::string uriHost(std::string_view address) {
    const std::string_view host = hostOf(address);
    if (host.find(':') == std::string_view::npos)
        return percentEncoded(host);
    std::string bracketed = "[";
    for (const char c : host)
        bracketed.append(c == '%' ? std::string("%25") : std::string(1, c)); // before a zone
    return bracketed + "]";
}

} // namespace

const char* DialectRequest::deviceClass() { return "DialectRequest"; }

int DialectRequest::probe(unsigned int uid) {
    const ObjectLock lock(*this);
    return getCacheLogin(uid, 0, nullptr, nullptr);
}

int DialectRequest::handleParameter(unsigned int /*uid*/, char* url, char** answer) {
    return handleParameter_1(url, answer);
}

int DialectRequest::syncProfileToken(unsigned int uid) { return syncProfileToken_1(uid); }

int DialectRequest::requestCgi(unsigned int uid, char* url, char** answer, _REQCGI_METHOD_DEF method,
                               _REQCGI_CONNECTION_DEF connection) {
    const std::string_view line = viewOf(url);
    OwnedText built;
    if (url != nullptr && !isAbsolute(line)) {
        built.reset(getTovlinCgiUrl(server_address(), server_port(), url));
        url = built.get();
    } else if (url != nullptr && !isOwnUrl(url)) {
        return refuse(uid, url);
    }

    if (url != nullptr)
        requestsSent_.fetch_add(1, std::memory_order_relaxed);
    OwnedText text;
    int result = requestCgi_1(uid, url, OutText(text), method, connection);
    if (result == kOk && contains(line, kConfigSet))
        result = resultOfSet(text.get());
    if (result != kOk)
        requestsFailed_.fetch_add(1, std::memory_order_relaxed);
    else if (text && answer != nullptr)
        *answer = text.release();
    return result;
}

bool DialectRequest::isOwnUrl(const char* url) const {
    return addresses(url, server_address(), server_port());
}

int DialectRequest::refuse(unsigned int uid, const char* url) {
    dbg_trace("??#%d DialectRequest.requestCgi: uid=%d:%d, pchUrl=%s, not this device, err%d. \n", __LINE__,
              static_cast<int>(uid), strm_setting_channel(), url, static_cast<int>(kRefused));
    return kRefused;
}

int DialectRequest::buildStreamUri(unsigned int uid, const char* serverAddress, unsigned int /*serverPort*/,
                                   const char* videoEncoding, const char* audioEncoding, int width,
                                   int height, char** uri) {
    if (uri == nullptr)
        return kRefused;
    UriValues values;
    const std::string username = get_username();
    if (credentialsInUri_ && !username.empty())
        values[UriField::credentials] = percentEncoded(username) + ":" + percentEncoded(get_password());
    values[UriField::address] = uriHost(viewOf(serverAddress));
    values[UriField::rtspPort] = std::to_string(rtspPort_);
    values[UriField::token] = percentEncoded(viewOf(profile_token(uid)));
    values[UriField::encoding] = percentEncoded(viewOf(videoEncoding));
    values[UriField::audio] = percentEncoded(viewOf(audioEncoding));
    values[UriField::width] = positive(width);
    values[UriField::height] = positive(height);
    OwnedText text = copyText(uriPattern_.expand(values));
    if (!text)
        return kNoResource;
    *uri = text.release();
    return kOk;
}

} // namespace koine
