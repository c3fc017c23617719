/// @file
/// The listening side of a simulated device and its thread.
#pragma once

#include "simulator/fault_list.h"
#include "simulator/http_message.h"
#include "simulator/journal.h"
#include "simulator/options.h"

#include <memory>

namespace koine::sim {

/// Accepts connections and serves them on one thread of its own, until it is stopped.
class Server {
public:
    /// Listens from now on.
    /// @throws std::runtime_error when it cannot
    Server(const Options& options, RequestHandler& handler, FaultList& faults, Journal& journal);
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    unsigned short port() const noexcept;

    /// While it refuses, nobody listens and open connections have been reset. The port stays taken.
    void refuse(bool refusing);

    /// Closes everything and ends the thread; returns when that is done. May be called again.
    void stop();

private:
    class Listener;
    std::unique_ptr<Listener> listener_;
};

} // namespace koine::sim
