#include "simulator/simulated_device.h"

#include "simulator/responder.h"
#include "simulator/server.h"
#include "text/words.h"

namespace koine::sim {

struct SimulatedDevice::Parts {
    explicit Parts(const Options& chosen)
        : address(chosen.address),
          https(chosen.https),
          state(chosen.model),
          authenticator(chosen),
          responder(chosen, Dialect(chosen.model, state), authenticator, faults, journal),
          server(chosen, responder, faults, journal) {}

    const std::string address;
    const bool https;
    DeviceState state;
    Authenticator authenticator;
    FaultList faults;
    Journal journal;
    Responder responder;
    Server server; // last: its thread uses all the others
};

SimulatedDevice::SimulatedDevice(const Options& options) : parts_(std::make_unique<Parts>(options)) {}

SimulatedDevice::~SimulatedDevice() = default;

void SimulatedDevice::stop() { parts_->server.stop(); }

unsigned short SimulatedDevice::port() const noexcept { return parts_->server.port(); }

std::string SimulatedDevice::url() const {
    const bool isIpv6 = contains(parts_->address, ":");
    const std::string host = isIpv6 ? "[" + parts_->address + "]" : parts_->address;
    return (parts_->https ? "https://" : "http://") + host + ":" + std::to_string(port());
}

void SimulatedDevice::setFault(const Fault& fault) {
    if (fault.kind == FaultKind::refuse)
        parts_->server.refuse(true);
    else
        parts_->faults.set(fault);
}

void SimulatedDevice::clearFaults() {
    parts_->faults.clear();
    parts_->server.refuse(false);
}

void SimulatedDevice::clearFault(FaultKind kind) {
    if (kind == FaultKind::refuse)
        parts_->server.refuse(false);
    else
        parts_->faults.clear(kind);
}

void SimulatedDevice::setAuth(AuthKind kind) { parts_->authenticator.setKind(kind); }

void SimulatedDevice::setCredentials(const std::string& username, const std::string& password) {
    parts_->authenticator.setCredentials(username, password);
}

void SimulatedDevice::expireNonces() { parts_->authenticator.expireNonces(); }

Counters SimulatedDevice::counters() const { return parts_->journal.counters(); }

std::vector<LoggedRequest> SimulatedDevice::requests() const { return parts_->journal.requests(); }

std::vector<std::string> SimulatedDevice::requestLog() const {
    std::vector<std::string> lines;
    for (const LoggedRequest& request : requests())
        lines.push_back(std::to_string(request.status) + ' ' + request.line);
    return lines;
}

void SimulatedDevice::resetCounters() { parts_->journal.reset(); }

std::string SimulatedDevice::value(std::string_view key, unsigned int channel) const {
    return parts_->state.value(key, channel);
}

} // namespace koine::sim
