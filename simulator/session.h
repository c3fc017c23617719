/// @file
/// One client's connection to a simulated device.
#pragma once

#include "simulator/http_message.h"
#include "simulator/link.h"
#include "simulator/request_reader.h"

#include <array>
#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>
#include <functional>
#include <memory>
#include <string>

namespace koine::sim {

/// Reads requests and sends replies, one after the other. Lives for as long as something is under way.
class Session : public std::enable_shared_from_this<Session> {
public:
    using Ended = std::function<void(Session*)>;

    /// @param ended called when the session dies
    Session(boost::asio::io_context& io, std::unique_ptr<Link> link, RequestHandler& handler,
            std::uint64_t number, Ended ended);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    void start();
    /// Ends it from outside; what is under way fails.
    void close() { link_->close(); }
    void reset() { link_->reset(); }

private:
    void read();
    void takeRequest();
    void begin(Reply reply);
    void awaitGoodbye();
    void send();
    void sent(std::size_t bytes);
    void end();
    void resetWhenSent(int attemptsLeft);
    void pause(std::chrono::milliseconds time, void (Session::*then)());
    boost::asio::const_buffer nextBytes() const;

    std::unique_ptr<Link> link_;
    boost::asio::steady_timer timer_;
    RequestHandler& handler_;
    const std::uint64_t number_;
    const Ended ended_;
    RequestReader reader_;
    std::array<char, 16384> input_{};
    Reply reply_;
    std::size_t sentBytes_ = 0;      ///< of reply_.bytes
    std::uint64_t sentRepeated_ = 0; ///< of what follows
};

} // namespace koine::sim
