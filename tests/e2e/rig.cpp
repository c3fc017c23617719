#include "tests/e2e/rig.h"

namespace koine::test {
namespace {

sim::Options optionsFor(sim::AuthKind auth, const Rig::Change& change) {
    static const sim::DeviceModel dome = sim::builtinModel("dome"); // copies share what was read
    sim::Options options(dome);
    options.auth = auth;
    options.username = kUser;
    options.password = kPassword;
    if (change)
        change(options);
    return options;
}

} // namespace

Rig::Rig(sim::AuthKind auth, const Change& change) : peer_(optionsFor(auth, change)), device_(another()) {}

boost::shared_ptr<DialectRequest> Rig::another(const std::string& user, const std::string& password) const {
    DeviceOptions options;
    options.username = user;
    options.password = password;
    return openDevice(peer_.url(), options);
}

std::string trafficText(std::uint64_t connections, std::uint64_t requests, std::uint64_t unauthorized) {
    return std::to_string(connections) + " connections, " + std::to_string(requests) + " requests, " +
           std::to_string(unauthorized) + " x 401";
}

std::string Rig::traffic() const {
    const sim::Counters counters = peer_.counters();
    return trafficText(counters.connections, counters.requests, counters.unauthorized);
}

} // namespace koine::test
