/// @file
/// SIGINT and SIGTERM, waited for instead of acted on.
#pragma once

#include <csignal>

namespace koine::tool {

/// To be made before there are threads: they take its mask over. So do processes that are forked.
class StopSignals {
public:
    StopSignals();
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    /// Waits for one of them.
    void wait() const;

    /// Becomes readable when one of them has come; -1 when the system has none to give.
    int descriptor() const { return descriptor_; }

private:
    sigset_t set_{};
    int descriptor_ = -1;
};

} // namespace koine::tool
