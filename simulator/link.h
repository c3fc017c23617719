/// @file
/// A connection of the simulated device, with or without TLS.
#pragma once

#include "simulator/options.h"

#include <boost/asio/buffer.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <functional>
#include <memory>

namespace koine::sim {

using Failure = boost::system::error_code;

/// Reads and writes bytes. Used on the thread of the connections only.
class Link {
public:
    using Opened = std::function<void(const Failure&)>;
    using Moved = std::function<void(const Failure&, std::size_t)>;

    virtual ~Link() = default;
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    /// What a connection begins with before the first byte of HTTP.
    virtual void open(Opened done) = 0;
    virtual void read(boost::asio::mutable_buffer into, Moved done) = 0;
    /// Writes all bytes.
    virtual void write(boost::asio::const_buffer bytes, Moved done) = 0;
    /// Says that nothing follows. `done` may never be called when the client does not answer.
    virtual void finish(Opened done) = 0;

    /// Closes without further ado.
    void close();
    /// Closes so that the client sees a reset.
    void reset();
    /// Bytes that were written and have not reached the client.
    std::size_t unsent();

protected:
    explicit Link(boost::asio::ip::tcp::socket&& socket) : socket_(std::move(socket)) {}

    boost::asio::ip::tcp::socket socket_;
};

/// Makes the links of one device.
class LinkFactory {
public:
    /// @throws std::runtime_error when the certificate or its key cannot be used
    explicit LinkFactory(const Options& options);
    ~LinkFactory();

    std::unique_ptr<Link> link(boost::asio::ip::tcp::socket&& socket);

private:
    struct Tls;
    std::unique_ptr<Tls> tls_;
};

} // namespace koine::sim
