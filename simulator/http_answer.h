/// @file
/// An HTTP answer before it is written out.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace koine::sim {

struct HttpAnswer {
    enum class Framing { length, chunked, untilClose };

    unsigned int status = 200;
    std::string statusLine; ///< in place of the right one, when not empty
    std::vector<std::string> headers;
    std::string body;
    Framing framing = Framing::length;
    std::optional<std::uint64_t> announcedLength; ///< in place of the body's length
    std::uint64_t chunkSize = 0;                  ///< chunked only
    bool announcesClose = false;
};

/// The status line, the header lines and the empty line.
std::string headText(const HttpAnswer& answer);

/// The body as it goes onto the wire.
std::string bodyText(const HttpAnswer& answer);

/// One chunk of a chunked body.
std::string chunkText(std::string_view bytes);

} // namespace koine::sim
