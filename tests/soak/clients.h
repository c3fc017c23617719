/// @file
/// HTTP clients that are aborted and closed by threads that do not own them.
#pragma once

#include "fleet.h"
#include "ledger.h"

#include "platform/http_client.h"

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace koine::soak {

/// One client, a thread that makes requests of it, and one that interferes. Clients are made anew now and
/// then. From construction to `join`.
class Clients {
public:
    Clients(const std::vector<Unit>& units, Ledger& ledger, unsigned int count, unsigned int seed);
    ~Clients() { join(); }
    Clients(const Clients&) = delete;
    Clients& operator=(const Clients&) = delete;

    void join();

    std::uint64_t requests() const { return requests_; }
    std::uint64_t aborted() const { return aborted_; }

private:
    struct Release {
        void operator()(IHttpClient* client) const { client->Release(); }
    };

    void use(const Unit& unit, unsigned int seed);
    void requestOnce(IHttpClient& client, const Unit& unit, bool fresh);
    void interfere(IHttpClient& client, const std::atomic<bool>& done, unsigned int seed) const;

    Ledger& ledger_;
    std::atomic<bool> ending_{false};
    std::atomic<std::uint64_t> requests_{0};
    std::atomic<std::uint64_t> aborted_{0};
    std::vector<std::thread> threads_;
};

/// Changes, while others are at work, everything that a host may change at any time.
class Meddler {
public:
    Meddler();
    ~Meddler() { join(); }
    Meddler(const Meddler&) = delete;
    Meddler& operator=(const Meddler&) = delete;

    void join();

    std::uint64_t tracedLines() const { return lines_; }

private:
    void run();

    std::atomic<bool> ending_{false};
    std::atomic<std::uint64_t> lines_{0};
    std::thread thread_;
};

} // namespace koine::soak
