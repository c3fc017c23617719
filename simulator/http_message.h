/// @file
/// Requests as the simulated device reads them, and what it sends back.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace koine::sim {

struct HttpRequest {
    std::string method;
    std::string target;
    std::string authorization;
    std::string cookie;
    std::string contentType;
    std::string body;
    bool keepAlive = true;        ///< whether the client wants to keep the connection
    std::uint64_t connection = 0; ///< which connection it came on, counted from 1
};

/// What goes onto a connection for one request, and what becomes of the connection.
struct Reply {
    enum class Ending { keep, close, reset };

    unsigned int status = 0; ///< the HTTP status that is sent, 0 when none is
    std::chrono::milliseconds delay{0};
    bool silent = false; ///< nothing is ever sent
    std::string bytes;
    std::string repeated;                          ///< sent behind `bytes` again and again
    std::uint64_t repeatedBytes = 0;               ///< how much of it at most
    std::optional<std::chrono::milliseconds> drip; ///< a byte at a time, this far apart
    Ending ending = Ending::keep;
};

/// Answers requests; called on the thread of the device's connections.
class RequestHandler {
public:
    virtual ~RequestHandler() = default;
    virtual Reply reply(const HttpRequest& request) = 0;
    /// The answer to what is no HTTP request.
    virtual Reply replyToGarbage() = 0;
};

} // namespace koine::sim
