/// @file
/// The faults that a simulated device shows at present.
#pragma once

#include "simulator/fault.h"

#include <mutex>
#include <optional>
#include <string_view>
#include <vector>

namespace koine::sim {

/// Any thread may use it at any time.
class FaultList {
public:
    /// Adds a fault; it replaces one of the same kind and path.
    void set(Fault fault);
    void clear();
    void clear(FaultKind kind);

    /// The first fault of a kind that concerns a request. One that lasts for a number of answers has been
    /// used once more.
    std::optional<Fault> take(FaultKind kind, std::string_view target);

private:
    std::mutex mutex_;
    std::vector<Fault> faults_;
};

} // namespace koine::sim
