/// @file
/// HTTP clients that are aborted and closed by threads that do not own them.
#pragma once

#include "crew.h"
#include "fleet.h"
#include "ledger.h"

#include "platform/http_client.h"

#include <atomic>
#include <memory>
#include <vector>

namespace koine::soak {

/// One client, a thread that makes requests of it, and one that interferes. Clients are made anew now and
/// then. From construction to `end`.
class Clients {
public:
    Clients(const std::vector<Unit>& units, Ledger& ledger, unsigned int count, unsigned int seed);
    Clients(const Clients&) = delete;
    Clients& operator=(const Clients&) = delete;

    bool moves() const { return crew_.moves(); }
    /// @return whether all threads ended
    bool end() { return crew_.end(); }

    std::uint64_t requests() const { return requests_; }
    std::uint64_t aborted() const { return aborted_; }

private:
    struct Release {
        void operator()(IHttpClient* client) const { client->Release(); }
    };

    void use(Crew::Member& member, const Unit& unit, unsigned int seed);
    void requestOnce(IHttpClient& client, const Unit& unit, bool fresh);
    void interfere(IHttpClient& client, const std::atomic<bool>& done, unsigned int seed) const;

    Ledger& ledger_;
    std::atomic<std::uint64_t> requests_{0};
    std::atomic<std::uint64_t> aborted_{0};
    Crew crew_;
};

/// Changes, while others are at work, everything that a host may change at any time.
class Meddler {
public:
    explicit Meddler(Ledger& ledger);
    ~Meddler() { end(); }
    Meddler(const Meddler&) = delete;
    Meddler& operator=(const Meddler&) = delete;

    bool moves() const { return crew_.moves(); }
    /// @return whether it ended
    bool end();

    std::uint64_t tracedLines() const { return lines_; }

private:
    void run(Crew::Member& member);

    std::atomic<std::uint64_t> lines_{0};
    Crew crew_;
};

} // namespace koine::soak
