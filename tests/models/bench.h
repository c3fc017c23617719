/// @file
/// A request object and the simulated device that it talks to.
#pragma once

#include "devices/answer.h"
#include "devices/open_device.h"
#include "simulator/simulated_device.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace koine::test {

using Lines = std::vector<std::string>;

inline constexpr const char* kDone = "0\nOK\n";
inline constexpr const char* kUnknownParameter = "-11\nERROR: Unknown parameter.\n";
inline constexpr const char* kAuthenticationError = "-35\nERROR: Authentication error.\n";
inline constexpr const char* kConfigSet = "Config.cgi?action=set";
inline constexpr const char* kStart =
    "Stream.cgi?action=set&StreamSetup.Stream=RTP-Unicast&StreamSetup.Transport.Protocol=TCP&ProfileMode=AUTO"
    "&StreamSetup.VideoEncoderConfiguration.RateControl.BitrateLimit=1000";

class Bench {
public:
    /// @param connections with one, lines reach the device in the order in which the library asks them
    explicit Bench(const std::string& model, const std::string& vendor = {},
                   sim::AuthKind auth = sim::AuthKind::none, unsigned int connections = 1);

    sim::SimulatedDevice& device() { return device_; }
    DialectRequest& request() { return *request_; }

    /// Sends a line of the host.
    Answer ask(std::string_view line, unsigned int uid = 1) { return koine::request(*request_, uid, line); }

    /// The lines that reached the device since the last call, refused ones without their "200 ".
    Lines takeLines();

private:
    sim::SimulatedDevice device_;
    boost::shared_ptr<DialectRequest> request_;
};

/// What a stream start asks a device of this model, in this order, until the encoder settings.
Lines learningLines(const std::string& model);

/// Names of the models for parameterised tests.
std::string modelOf(const testing::TestParamInfo<std::string>& info);

/// "Config.cgi?action=get&category=Video.*"
std::string getLine(std::string_view category);

/// The lines of a text, empty ones left out.
Lines linesOf(std::string_view text);

/// The lines of the second text that the first does not have, "key=value" by "key=value".
std::string changedLines(std::string_view before, std::string_view now);

/// Tests that run once for every model that the simulator offers.
class OnEveryModel : public testing::TestWithParam<std::string> {
protected:
    const std::string& model() const { return GetParam(); }
};

} // namespace koine::test
