/// @file
/// A client that sends bytes as they are and sees exactly what comes back.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace koine::test {

/// A target that every device answers.
inline constexpr const char* kLine = "/Login.cgi";

/// How the reading of an answer ended.
enum class End { complete, closed, reset, timeLimit };

struct RawAnswer {
    End end = End::timeLimit;
    std::string bytes; ///< everything that came
    std::string head;  ///< up to the empty line, without it
    std::string body;

    /// The number in the status line; 0 when there is none.
    int status() const;
    /// The value of a header, any case; empty when it is missing.
    std::string header(std::string_view name) const;
};

class RawClient {
public:
    explicit RawClient(unsigned short port);
    ~RawClient();
    RawClient(const RawClient&) = delete;
    RawClient& operator=(const RawClient&) = delete;

    bool isConnected() const { return socket_ >= 0; }
    bool send(std::string_view bytes);

    /// Reads one answer: to the end of its declared length, else until the connection ends.
    RawAnswer receive(std::chrono::milliseconds limit = std::chrono::seconds(5));

    /// Reads until the connection ends, or for at most so long and so many bytes.
    RawAnswer receiveAll(std::chrono::milliseconds limit = std::chrono::seconds(5),
                         std::size_t most = SIZE_MAX);

    /// Sends a GET and reads its answer; `headers` are whole lines.
    RawAnswer get(std::string_view target, std::string_view headers = {});

private:
    std::optional<End> readMore(std::chrono::steady_clock::time_point until);

    int socket_ = -1;
    std::string read_;
};

/// One GET on a connection of its own.
RawAnswer getOnce(unsigned short port, std::string_view target, std::string_view headers = {});

} // namespace koine::test
