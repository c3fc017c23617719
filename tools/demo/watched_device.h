/// @file
/// A request object whose talk with the device can be watched.
#pragma once

#include "devices/dialect_request.h"

#include <string>
#include <utility>
#include <vector>

namespace koine::tool {

/// One request to the device.
struct DeviceRequest {
    std::string line; ///< without scheme and host
    int result = 0;
    double milliseconds = 0;
};

/// Notes every request that goes to the device: a step that is replaced, as a device class of one's own may.
class WatchedDevice : public DialectRequest {
public:
    const char* deviceClass() override { return "WatchedDevice"; }

    int requestCgi(unsigned int uid, char* url, char** answer, _REQCGI_METHOD_DEF method,
                   _REQCGI_CONNECTION_DEF connection) override;

    /// What was noted since the last call.
    std::vector<DeviceRequest> takeRequests() { return std::exchange(requests_, {}); }

private:
    std::vector<DeviceRequest> requests_;
};

} // namespace koine::tool
