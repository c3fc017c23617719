/// @file
/// How a simulated device is set up.
#pragma once

#include "simulator/counters.h"
#include "simulator/device_model.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace koine::sim {

/// How a device wants its clients to prove who they are.
enum class AuthKind { none, basic, digestMd5, digestSha256 };

/// "none", "basic", "digest" or "digest-sha256".
/// @throws std::invalid_argument listing these words
AuthKind parseAuthKind(std::string_view word);

struct Options {
    explicit Options(DeviceModel chosen) : model(std::move(chosen)) {}

    DeviceModel model;

    AuthKind auth = AuthKind::none;
    std::string username;
    std::string password;
    /// Digest: a nonce serves for this many requests; 0 for ever.
    unsigned int nonceLifetimeRequests = 0;
    /// Digest: whether the device says "stale=true" when all that is wrong is the nonce.
    bool staleHint = true;
    /// Whether wrong credentials are told in the answer text ("-35", HTTP 200). A request without any still
    /// gets HTTP 401, or no client would know what to send.
    bool textRefusal = false;

    std::string address = "127.0.0.1"; ///< IPv4 or IPv6, in digits
    unsigned short port = 0;           ///< 0 takes a free one

    bool https = false;
    std::filesystem::path certificateFile; ///< PEM; https only
    std::filesystem::path privateKeyFile;  ///< PEM; https only

    /// "name=value"; sent with "Set-Cookie" to a client that does not send it back. Empty for none.
    std::string cookie;

    /// Told of each request as it is answered, on the device's thread; must not throw. The line is as the
    /// client sent it, whatever stands in it.
    std::function<void(const LoggedRequest&)> onRequest;
};

} // namespace koine::sim
