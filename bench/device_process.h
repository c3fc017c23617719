/// @file
/// A simulated device in a process of its own, so that nothing of it is counted as the library's.
#pragma once

#include "simulator/device_model.h"

#include <string>

#include <sys/types.h>

namespace koine::bench {

/// Ends with the object that started it, and with this process however that ends.
class DeviceProcess {
public:
    /// Serves when it returns.
    /// @throws std::runtime_error when the system has no process to give, or the device cannot serve
    explicit DeviceProcess(const sim::DeviceModel& model);
    ~DeviceProcess();
    DeviceProcess(const DeviceProcess&) = delete;
    DeviceProcess& operator=(const DeviceProcess&) = delete;

    const std::string& url() const { return url_; }

private:
    pid_t child_ = -1;
    int lifeline_ = -1; ///< the child ends when this is closed
    std::string url_;
};

} // namespace koine::bench
