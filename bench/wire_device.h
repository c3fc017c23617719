/// @file
/// A simulated device behind loopback, and request objects for it.
#pragma once

#include "bench/device_texts.h"
#include "devices/open_device.h"
#include "simulator/simulated_device.h"

#include <string>
#include <vector>

namespace koine::bench {

inline constexpr const char* kUser = "admin";
inline constexpr const char* kPassword = "only for measuring";

/// As many as hosts get that do not choose.
inline const unsigned int kUsualConnections = DeviceOptions().connections;

/// A request object that knows nothing yet; it asks over so many connections at a time.
boost::shared_ptr<DialectRequest> openWireDevice(const std::string& url,
                                                 unsigned int connections = kUsualConnections);

/// Wants Digest.
class WireDevice {
public:
    explicit WireDevice(const sim::DeviceModel& model, unsigned int roundTripMilliseconds = 0);

    sim::SimulatedDevice& peer() { return peer_; }
    std::string url() const { return peer_.url(); }

    /// As `openWireDevice`.
    boost::shared_ptr<DialectRequest> open(unsigned int connections = kUsualConnections) const {
        return openWireDevice(url(), connections);
    }

    /// The lines that were answered with success, in order, since the counters were reset.
    std::vector<std::string> answeredLines() const;

private:
    sim::SimulatedDevice peer_;
};

/// A model made of generated answers.
sim::DeviceModel generatedModel(const DeviceShape& shape);

} // namespace koine::bench
