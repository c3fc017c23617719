/// @file
/// A simulated device and request objects that talk to it.
#pragma once

#include "devices/answer.h"
#include "devices/open_device.h"
#include "simulator/simulated_device.h"

#include <functional>
#include <string>
#include <string_view>

namespace koine::test {

inline constexpr const char* kUser = "admin";
inline constexpr const char* kPassword = "s3cret";
inline constexpr const char* kUnknownParameter = "-11\nERROR: Unknown parameter.\n";
inline constexpr const char* kAuthenticationError = "-35\nERROR: Authentication error.\n";
inline constexpr const char* kVideo = "Config.cgi?action=get&category=Video.*";

class Rig {
public:
    using Change = std::function<void(sim::Options&)>;

    explicit Rig(sim::AuthKind auth = sim::AuthKind::none, const Change& change = {});

    sim::SimulatedDevice& peer() { return peer_; }
    DialectRequest& device() { return *device_; }

    Answer ask(std::string_view line, unsigned int uid = 1) { return request(*device_, uid, line); }

    /// Another object for the same device.
    boost::shared_ptr<DialectRequest> another(const std::string& user = kUser,
                                              const std::string& password = kPassword) const;

    void misbehave(std::string_view fault) { peer_.setFault(sim::parseFault(fault)); }

    /// "3 connections, 5 requests, 2 x 401".
    std::string traffic() const;

private:
    sim::SimulatedDevice peer_;
    boost::shared_ptr<DialectRequest> device_;
};

/// The text for `Rig::traffic`.
std::string trafficText(std::uint64_t connections, std::uint64_t requests, std::uint64_t unauthorized);

} // namespace koine::test
