/// @file
/// The CGIs of a simulated device.
#pragma once

#include "simulator/device_state.h"
#include "simulator/request_target.h"

#include <string>
#include <string_view>

namespace koine::sim {

inline constexpr std::string_view kUnknownParameter = "-11\nERROR: Unknown parameter.\n";
inline constexpr std::string_view kAuthenticationError = "-35\nERROR: Authentication error.\n";

struct CgiAnswer {
    unsigned int httpStatus = 200;
    std::string text;
};

/// Answers request lines from a model and the state of one device.
class Dialect {
public:
    Dialect(DeviceModel model, DeviceState& state) : model_(std::move(model)), state_(state) {}

    /// Carries out a request line; a "Config.cgi?action=set" changes the state.
    CgiAnswer answer(const RequestTarget& request) const;

private:
    CgiAnswer stored(std::string_view name) const;
    CgiAnswer capability(const RequestTarget& request) const;
    CgiAnswer machine(const RequestTarget& request) const;
    CgiAnswer config(const RequestTarget& request) const;
    CgiAnswer configGet(const RequestTarget& request, unsigned int channel) const;
    CgiAnswer configSet(const RequestTarget& request, unsigned int channel) const;
    unsigned int channelOf(const RequestTarget& request) const;

    const DeviceModel model_;
    DeviceState& state_;
};

} // namespace koine::sim
