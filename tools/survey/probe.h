/// @file
/// One device of a survey, asked in a process of its own.
#pragma once

#include "tools/connection.h"
#include "tools/json.h"

#include <chrono>
#include <string>

#include <sys/types.h>

namespace koine::tool {

/// What came of one device.
struct Finding {
    enum class State { notAsked, answered, failed, interrupted };

    State state = State::notAsked;
    ExitCode code = ExitCode::answered; ///< that `koine info` would end with
    std::string brief;                  ///< what went wrong, for a cell of a table
    std::string error;                  ///< what went wrong and what to do
    Json summary = Json::null();        ///< what `koine info --json` writes
    double milliseconds = 0;
};

/// A process that asks one device: however a device behaves, the survey can end it at once, and no other
/// device is touched.
class Probe {
public:
    using Clock = std::chrono::steady_clock;

    /// Starts it.
    /// @throws Failure when there can be no further process
    Probe(std::size_t device, const ConnectionOptions& options, const DeviceOptions& deviceOptions,
          const Arguments& arguments);
    ~Probe();
    Probe(Probe&& other) noexcept;
    Probe& operator=(Probe&& other) noexcept;

    std::size_t device() const { return device_; }
    Clock::time_point start() const { return start_; }

    /// Readable when there is news.
    int descriptor() const { return descriptor_; }

    /// Takes the news.
    /// @return false when that was all
    bool read();

    /// What it found. Waits for the process, which has said all.
    Finding finish();

    /// Ends the process and says why.
    Finding end(Finding::State state, ExitCode code, const std::string& brief, const std::string& error);

private:
    double milliseconds() const;
    int wait();

    std::size_t device_;
    Clock::time_point start_ = Clock::now();
    pid_t id_ = -1;
    int descriptor_ = -1;
    std::string text_;
};

} // namespace koine::tool
