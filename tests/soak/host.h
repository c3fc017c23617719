/// @file
/// The host: threads that make request objects, use them, share them and throw them away.
#pragma once

#include "crew.h"
#include "fleet.h"
#include "ledger.h"

#include "devices/dialect_request.h"

#include <atomic>
#include <chrono>
#include <mutex>
#include <random>
#include <vector>

namespace koine::soak {

/// Time limit of one request to a device.
inline constexpr std::chrono::milliseconds kTimeLimit{300};

/// One object per device that all threads use, and that any of them may replace at any time. Whoever uses
/// the old one keeps it alive.
class SharedObjects {
public:
    explicit SharedObjects(const std::vector<Unit>& units);

    boost::shared_ptr<DialectRequest> get(const Unit& unit);
    void replace(const Unit& unit);
    void clear();

private:
    std::mutex mutex_;
    std::vector<boost::shared_ptr<DialectRequest>> objects_;
};

/// A request object for a device, ready for use.
boost::shared_ptr<DialectRequest> makeObject(const Unit& unit);

/// Host threads, from construction to `end`.
class Host {
public:
    Host(const std::vector<Unit>& units, Ledger& ledger, unsigned int threads, unsigned int seed);
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    bool moves() const { return crew_.moves(); }

    /// @return whether all threads ended; the requests of those that did not are lost
    bool end();

    std::uint64_t objectsMade() const { return objectsMade_; }

private:
    class Worker;
    static constexpr int kNothing = -1;

    const std::vector<Unit>& units_;
    Ledger& ledger_;
    SharedObjects shared_;
    std::atomic<std::uint64_t> objectsMade_{0};
    std::vector<std::atomic<int>> asking_; ///< the kind of request that each thread is in, or `kNothing`
    Crew crew_;                            // the threads use all of the above
};

} // namespace koine::soak
