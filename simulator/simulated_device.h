/// @file
/// A network video device that exists only in this process: an HTTP server that speaks the dialect, keeps
/// what it is set to, asks for credentials and misbehaves on demand.
///
/// @code
/// koine::sim::Options options(koine::sim::builtinModel("dome"));
/// options.auth = koine::sim::AuthKind::digestMd5;
/// options.username = "admin";
/// options.password = "secret";
/// koine::sim::SimulatedDevice device(options);
/// // ... talk to device.url() ...
/// device.setFault(koine::sim::parseFault("delay=20"));
/// @endcode
#pragma once

#include "simulator/counters.h"
#include "simulator/device_model.h"
#include "simulator/fault.h"
#include "simulator/options.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace koine::sim {

/// Serves from its construction until `stop` or its destruction, on one thread of its own. Any number of them
/// may run in a process. Every operation may be called on any thread at any time.
class SimulatedDevice {
public:
    /// Listens when it returns.
    /// @throws std::runtime_error when it cannot listen or cannot use the certificate; says what to do
    explicit SimulatedDevice(const Options& options);
    ~SimulatedDevice();
    SimulatedDevice(const SimulatedDevice&) = delete;
    SimulatedDevice& operator=(const SimulatedDevice&) = delete;

    /// Closes all connections and ends the thread, whatever is under way; returns when that is done.
    /// Counters, log and values can still be read. May be called again.
    void stop();

    unsigned short port() const noexcept;
    /// "http://127.0.0.1:PORT", without credentials.
    std::string url() const;

    /// Adds a fault, from the next request on; it replaces one of the same kind and path.
    void setFault(const Fault& fault);
    void clearFaults();
    void clearFault(FaultKind kind);

    /// The kind of authentication and the credentials from the next request on.
    void setAuth(AuthKind kind);
    void setCredentials(const std::string& username, const std::string& password);
    /// Digest: no nonce given out so far serves any longer.
    void expireNonces();

    Counters counters() const;
    /// Requests in the order of their arrival, those that were refused too. The newest ten thousand.
    std::vector<LoggedRequest> requests() const;
    /// The same as texts: HTTP status and line, for example "200 Login.cgi".
    std::vector<std::string> requestLog() const;
    /// Forgets counters and log.
    void resetCounters();

    /// What the device holds under a key now; empty when it holds nothing.
    /// @param key as in set lines, for example "Video.I0.Brightness"
    /// @param channel counted from 1
    std::string value(std::string_view key, unsigned int channel = 1) const;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace koine::sim
