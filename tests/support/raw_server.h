/// @file
/// A server on loopback that sends exactly the bytes a test tells it to, right or wrong.
#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace koine::test {

/// The bytes of a connection; a test may put a layer of its own between them and the socket.
class ByteStream {
public:
    virtual ~ByteStream() = default;
    /// Number of bytes read, 0 at the end, negative after an error.
    virtual long read(char* bytes, std::size_t size) = 0;
    /// Number of bytes written, not positive after an error.
    virtual long write(const char* bytes, std::size_t size) = 0;
};

class RawServer;

/// One accepted connection, in the hands of the script.
class RawConnection {
public:
    RawConnection(RawServer& server, int socket);
    ~RawConnection();
    RawConnection(const RawConnection&) = delete;
    RawConnection& operator=(const RawConnection&) = delete;

    /// Reads one request, head and declared body, and records it; empty when the client has closed.
    std::string readRequest();

    /// False when the client is gone.
    bool send(std::string_view bytes);

    /// Sends the same bytes until the client is gone or the server ends, at most `most` times.
    void sendAgainAndAgain(std::string_view bytes, std::chrono::microseconds pause, std::size_t most);

    /// Waits; false when the server ends meanwhile.
    bool wait(std::chrono::milliseconds time);

    /// Makes the end of this connection a reset.
    void reset();

    RawServer& server() { return server_; }

private:
    friend class RawServer;
    RawServer& server_;
    int socket_;
    std::unique_ptr<ByteStream> stream_;
    std::string read_;
};

/// Runs a script for every connection, each on a thread of its own. Ends within moments when destroyed.
class RawServer {
public:
    using Script = std::function<void(RawConnection&)>;
    /// Makes the layer over a connected socket; null when the client cannot be talked to.
    using Layer = std::function<std::unique_ptr<ByteStream>(int socket)>;

    /// Listens on `host`, an address of this machine in numbers.
    /// @throws std::runtime_error when the machine does not have it
    explicit RawServer(Script script, Layer layer = {}, std::string host = "127.0.0.1");
    ~RawServer();
    RawServer(const RawServer&) = delete;
    RawServer& operator=(const RawServer&) = delete;

    unsigned int port() const { return port_; }
    std::string url(std::string_view target = "/") const;

    /// How many connections were accepted so far.
    int connections() const { return connections_; }
    /// How many of them the script has left.
    int ended() const { return ended_; }
    /// Every request read so far, in order.
    std::vector<std::string> requests() const;

private:
    friend class RawConnection;
    void accept();
    void serve(int socket);
    bool ending() const { return ending_; }
    void record(const std::string& request);

    Script script_;
    Layer layer_;
    std::string host_;
    int listener_ = -1;
    unsigned int port_ = 0;
    std::atomic<bool> ending_{false};
    std::atomic<int> connections_{0};
    std::atomic<int> ended_{0};
    mutable std::mutex mutex_;
    std::vector<std::string> requests_;
    std::vector<int> open_;
    std::vector<std::thread> serving_;
    std::thread accepting_;
};

/// A script that answers request after request on a connection, until the client closes it.
RawServer::Script answering(std::function<std::string(const std::string& request)> answer);

/// A script that answers every request with the same text.
RawServer::Script always(const std::string& text);

/// A complete answer with a length; `headers` are whole lines.
std::string answerText(std::string_view status, std::string_view body, std::string_view headers = {});

/// What a device says that is content.
inline const std::string kGood = answerText("200 OK", "0\nOK\n");

/// The value of a header in a recorded request; empty when it is missing.
std::string headerOf(const std::string& request, std::string_view name);

/// The request line of a recorded request.
std::string firstLine(const std::string& request);

} // namespace koine::test
