/// @file
/// What a simulated device remembers of its clients.
#pragma once

#include "simulator/counters.h"

#include <deque>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace koine::sim {

/// Counts and logs requests. Any thread may use it at any time; its memory is bounded whatever clients do.
class Journal {
public:
    /// @return the number of the connection, counted from 1 since the device was made
    std::uint64_t countConnection();
    void countCookie();
    void log(LoggedRequest request, std::string_view path);

    Counters counters() const;
    std::vector<LoggedRequest> requests() const;
    void reset();

private:
    mutable std::mutex mutex_;
    Counters counters_;
    std::uint64_t lastConnection_ = 0;
    std::deque<LoggedRequest> log_;
    std::size_t logBytes_ = 0;
};

} // namespace koine::sim
