/// @file
/// The host: threads that make request objects, use them, share them and throw them away.
#pragma once

#include "fleet.h"
#include "ledger.h"

#include "devices/dialect_request.h"

#include <atomic>
#include <chrono>
#include <mutex>
#include <random>
#include <thread>
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

/// Host threads, from construction to `join`.
class Host {
public:
    Host(const std::vector<Unit>& units, Ledger& ledger, unsigned int threads, unsigned int seed);
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    void join();

    /// Complains when a thread has been in one request for longer than any request may last.
    /// @return whether all of them move
    bool moves() const;

    std::uint64_t objectsMade() const { return objectsMade_; }

private:
    class Worker;

    const std::vector<Unit>& units_;
    Ledger& ledger_;
    SharedObjects shared_;
    std::atomic<bool> ending_{false};
    std::atomic<std::uint64_t> objectsMade_{0};
    /// When each thread began the request that it is in; 0 when it is in none.
    std::vector<std::atomic<std::int64_t>> busySince_;
    std::vector<std::thread> threads_;
};

} // namespace koine::soak
