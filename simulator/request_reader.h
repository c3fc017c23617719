/// @file
/// HTTP requests out of the bytes of a connection.
#pragma once

#include "simulator/http_message.h"

#include <memory>
#include <optional>
#include <string_view>

namespace koine::sim {

/// Reads one request after the other. Lengths are bounded, so that no client can fill the memory.
class RequestReader {
public:
    RequestReader();
    ~RequestReader();
    RequestReader(const RequestReader&) = delete;
    RequestReader& operator=(const RequestReader&) = delete;

    /// Takes the next bytes of the connection.
    void feed(std::string_view bytes);

    /// The next whole request among the bytes taken so far; nothing while more bytes are needed.
    std::optional<HttpRequest> next();

    /// Whether the bytes are no HTTP; nothing comes out of this connection any more.
    bool isBroken() const noexcept;

private:
    struct Parser;
    std::unique_ptr<Parser> parser_;
};

} // namespace koine::sim
