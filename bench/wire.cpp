// A full first stream over loopback with Digest, against bare libcurl sending the same requests.

#include "bench/bare_client.h"
#include "bench/groups.h"
#include "bench/memory_device.h"
#include "bench/statistics.h"
#include "bench/wire_device.h"

#include <stdexcept>

namespace koine::bench {
namespace {

constexpr const char* kGroup = "wire";
constexpr const char* kModel = "dome";
constexpr unsigned int kRoundTripMilliseconds = 20;
constexpr unsigned int kConnections = 2; ///< what a device class uses unless told otherwise

/// Median milliseconds of a first stream.
struct Times {
    double oneByOne = 0.0; ///< the library over one connection
    double ahead = 0.0;    ///< the library, asking ahead
    double bare = 0.0;     ///< libcurl
};

/// What one first stream over one connection caused.
struct Traffic {
    std::vector<std::string> lines;
    sim::Counters counters;
};

Traffic trafficOf(WireDevice& device, unsigned int connections) {
    const auto object = device.open(connections);
    device.peer().resetCounters();
    startStream(*object);
    return {device.answeredLines(), device.peer().counters()};
}

void sendBare(const WireDevice& device, const std::vector<std::string>& lines) {
    BareClient client(kUser, kPassword);
    for (const std::string& line : lines)
        client.get(device.url() + "/" + line);
}

Times measure(WireDevice& device, const std::vector<std::string>& lines, int repetitions) {
    std::vector<double> oneByOne;
    std::vector<double> ahead;
    std::vector<double> bare;
    for (int at = 0; at < repetitions; ++at) {
        oneByOne.push_back(millisecondsOf([&] { startStream(*device.open(1)); }));
        bare.push_back(millisecondsOf([&] { sendBare(device, lines); }));
        ahead.push_back(millisecondsOf([&] { startStream(*device.open(kConnections)); }));
    }
    return {median(oneByOne), median(ahead), median(bare)};
}

/// Every repetition must ask the same, or the times could not be compared.
void checkSame(const Traffic& first, const Traffic& again) {
    if (first.lines != again.lines)
        throw std::runtime_error("a second first stream asks the device something else than the first");
}

std::string countOf(const Traffic& traffic) { return std::to_string(traffic.lines.size()) + " requests"; }

} // namespace

Rows measureWire() {
    WireDevice near(sim::builtinModel(kModel));
    WireDevice far(sim::builtinModel(kModel), kRoundTripMilliseconds);
    trafficOf(near, 1); // settles what the device is set to
    const Traffic traffic = trafficOf(near, 1);
    const Traffic aheadTraffic = trafficOf(near, kConnections);
    checkSame(traffic, trafficOf(near, 1));
    const Times fast = measure(near, traffic.lines, 41);
    const Times slow = measure(far, traffic.lines, 9);

    const double challenged = static_cast<double>(traffic.counters.unauthorized);
    const double roundTrips = static_cast<double>(traffic.lines.size()) + challenged;
    return {
        ratioRow(kGroup, "first stream over loopback, Digest, one by one", fast.oneByOne, fast.bare, "ms",
                 Target::atMost(1.3), countOf(traffic)),
        valueRow(kGroup, "the same: connections", static_cast<double>(traffic.counters.connections), "",
                 Target::exactly(1)),
        valueRow(kGroup, "the same: answers with 401", challenged, "", Target::exactly(1)),
        ratioRow(kGroup, "the same, 20 ms per round trip", slow.oneByOne, slow.bare, "ms",
                 Target::atMost(1.02), std::to_string(static_cast<int>(roundTrips)) + " round trips"),
        ratioRow(kGroup, "asking ahead, loopback", fast.ahead, fast.bare, "ms", Target::report(),
                 std::to_string(aheadTraffic.counters.connections) + " connections, " +
                     std::to_string(aheadTraffic.counters.unauthorized) + " x 401"),
        ratioRow(kGroup, "asking ahead, 20 ms per round trip", slow.ahead, slow.bare, "ms", Target::report()),
        ratioRow(kGroup, "asking ahead: round trips to the URI", slow.ahead, slow.bare / roundTrips, "ms",
                 Target::atMost(6.0), "floor: one round trip of bare libcurl"),
    };
}

} // namespace koine::bench
