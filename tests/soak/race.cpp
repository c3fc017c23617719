// Many threads on few devices: streams are started, settings written, objects shared and destroyed, clients
// aborted and closed, while devices misbehave. Built with the thread sanitizer it ends at the first race.
#include "clients.h"
#include "crew.h"
#include "fleet.h"
#include "host.h"
#include "ledger.h"
#include "plan.h"

#include "default_platform/host_settings.h"

#include <cstdio>
#include <exception>
#include <thread>

namespace koine::soak {
namespace {

using Clock = std::chrono::steady_clock;

constexpr unsigned int kClients = 4;

/// Until the time is over or a thread is stuck.
void waitFor(std::chrono::seconds time, const Host& host, const Clients& clients, const Meddler& meddler) {
    const Clock::time_point end = Clock::now() + time;
    while (Clock::now() < end && host.moves() && clients.moves() && meddler.moves())
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
}

int run(const Plan& plan) {
    std::printf("%u devices, %u host threads, %lld seconds, seed %u\n", plan.devices, plan.threads,
                static_cast<long long>(plan.time.count()), plan.seed);
    std::fflush(stdout); // or the devices' process would print it again
    Fleet fleet(plan.devices, plan.seed);
    setRequestTimeLimit(static_cast<unsigned int>(kTimeLimit.count()));
    fleet.misbehave();
    Ledger ledger;
    Meddler meddler(ledger);
    Host host(fleet.units(), ledger, plan.threads, plan.seed);
    Clients clients(fleet.units(), ledger, kClients, plan.seed);
    waitFor(plan.time, host, clients, meddler);
    const bool clientsEnded = clients.end();
    const bool hostEnded = host.end();
    if (!meddler.end() || !clientsEnded || !hostEnded)
        giveUp(ledger); // a dead lock

    ledger.print();
    std::printf("%llu requests by clients, %llu of them aborted; %llu objects; %llu lines traced\n",
                static_cast<unsigned long long>(clients.requests()),
                static_cast<unsigned long long>(clients.aborted()),
                static_cast<unsigned long long>(host.objectsMade()),
                static_cast<unsigned long long>(meddler.tracedLines()));
    const Tally total = ledger.total();
    // What takes long here is the sanitizer, so lateness does not count.
    const bool good =
        total.lost == 0 && total.ended > 0 && total.otherResults == 0 && ledger.complaints() == total.late;
    const bool devicesEndedWell = fleet.end();
    std::printf("%s\n", good && devicesEndedWell ? "ok" : "BAD");
    return good && devicesEndedWell ? 0 : 1;
}

} // namespace
} // namespace koine::soak

int main(int argc, char** argv) {
    koine::soak::Plan plan;
    plan.devices = 6;
    int exitCode = 0;
    const auto read =
        koine::soak::readPlan(argc, argv, "Many threads on few devices that misbehave", plan, exitCode);
    if (!read)
        return exitCode;
    try {
        return koine::soak::run(*read);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "race: %s\n", error.what());
        return 1;
    }
}
