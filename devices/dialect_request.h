/// @file
/// A request object for devices that speak the dialect themselves.
#pragma once

#include "devices/uri_pattern.h"
#include "koine/BaseRequest.h"

#include <atomic>
#include <cstdint>
#include <string_view>

namespace koine {

class PrefetchingClient;

/// Sends every line to the device as it is and understands its refusals.
///
/// Made by `openDevice`, or like any request object: created, then told address, port and credentials. A
/// class for a device with ways of its own derives from this one and replaces the steps that differ.
///
/// The settings below are plain members (see the rules at `IBaseRequest`): call the setters before the
/// object is shared. The counters may be read from any thread.
class KOINE_EXPORT DialectRequest : public BaseRequest {
public:
    DialectRequest();

    const char* deviceClass() override;

    /// Locked. Asks the device for its login answer, unless it is known already.
    /// @retval 1 the device answered
    /// @return otherwise the result of `getCacheLogin`
    int probe(unsigned int uid) override;

    int handleParameter(unsigned int uid, char* url, char** answer) override;
    int syncProfileToken(unsigned int uid) override;

    /// As in `BaseRequest`. What several caches still lack is asked for at the same time: see
    /// `setConnections`.
    int cacheCgi(unsigned int uid) override;
    int getCacheConfigAll(unsigned int uid, int mode, char** answer) override;

    /// Sends a line ("Login.cgi", "/Login.cgi") or an absolute URL to the device.
    ///
    /// A URL that names another host, or that would ask a TLS device in the clear, is refused: the
    /// credentials belong to this device. A "Config.cgi?action=set" that the device answers with a status
    /// other than 0, or with a text without one, counts as failed: refused settings never reach the caches.
    /// @retval 1 the device answered and did not refuse
    /// @retval -1 the device refused the credentials, by HTTP or by the status -35 of a set
    /// @retval -2 null, not a URL, another host; or the device answered a set with a text without a status
    /// @return otherwise the result of `requestCgi_1`, or the status with which the device refused a set
    int requestCgi(unsigned int uid, char* url, char** answer, _REQCGI_METHOD_DEF method,
                   _REQCGI_CONNECTION_DEF connection) override;

    /// Expands the URI pattern; the token is that of the user's profile.
    /// @retval 1 built
    /// @retval -2 no place for the URI
    /// @retval -8 out of memory
    int buildStreamUri(unsigned int uid, const char* serverAddress, unsigned int serverPort,
                       const char* videoEncoding, const char* audioEncoding, int width, int height,
                       char** uri) override;

    /// @throws UriPatternError; the pattern then stays as it was
    void setUriPattern(std::string_view pattern) { uriPattern_ = UriPattern(pattern); }

    void setRtspPort(unsigned int port) { rtspPort_ = port; } ///< 554 unless set
    unsigned int rtspPort() const { return rtspPort_; }

    /// Whether stream URIs carry user name and password. Off unless set: URIs end up in logs.
    void setCredentialsInUri(bool wanted) { credentialsInUri_ = wanted; }

    /// How many connections the device may see at a time while several caches are filled: 2 unless set, at
    /// most 8. With 1 nothing is asked ahead. A class whose `requestCgi` changes the lines of the caches, or
    /// that replaces how they are filled, sets 1: what is asked ahead are the lines of the dialect.
    void setConnections(unsigned int most);
    unsigned int connections() const { return connections_; }

    /// Requests that were put to the device, answered or not; one whose answer came ahead counts as well.
    /// What a line cost is the difference of two reads; 0 means that it was answered from the caches.
    std::uint64_t requestsSent() const { return requestsSent_.load(std::memory_order_relaxed); }

    /// Those of them that failed or were refused.
    std::uint64_t requestsFailed() const { return requestsFailed_.load(std::memory_order_relaxed); }

    /// Those of them whose answers came ahead.
    std::uint64_t requestsPrefetched() const;

private:
    class Fill;

    bool isOwnUrl(const char* url) const;
    int refuse(unsigned int uid, const char* url);

    UriPattern uriPattern_;
    unsigned int rtspPort_ = 554;
    bool credentialsInUri_ = false;
    unsigned int connections_ = 2;
    bool hasFillFailed_ = false;
    PrefetchingClient* client_ = nullptr; ///< owned by the base, as its client
    std::atomic<std::uint64_t> requestsSent_{0};
    std::atomic<std::uint64_t> requestsFailed_{0};
};

} // namespace koine
