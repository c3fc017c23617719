// A full first stream over loopback with Digest, against bare libcurl sending the same requests.

#include "bench/bare_client.h"
#include "bench/groups.h"
#include "bench/memory_device.h"
#include "bench/statistics.h"
#include "bench/wire_device.h"

#include <cmath>
#include <cstdio>
#include <optional>
#include <stdexcept>

namespace koine::bench {
namespace {

constexpr const char* kGroup = "wire";
constexpr const char* kModel = "dome";
constexpr unsigned int kRoundTripMilliseconds = 20;
constexpr unsigned int kLongRoundTripMilliseconds = 120;
constexpr unsigned int kOneByOne = 1; ///< connections at a time

/// Median milliseconds of a first stream.
struct Times {
    double oneByOne = 0.0; ///< the library over one connection
    double ahead = 0.0;    ///< the library, asking ahead
    double bare = 0.0;     ///< libcurl
};

/// What one first stream caused.
struct Traffic {
    std::vector<std::string> lines;
    sim::Counters counters;
};

Traffic trafficOf(WireDevice& device, const boost::shared_ptr<DialectRequest>& object) {
    device.peer().resetCounters();
    startStream(*object);
    return {device.answeredLines(), device.peer().counters()};
}

/// From nothing to the URI. The object is still there when the clock stops: giving it up is no part of a
/// start.
double firstStream(const WireDevice& device, unsigned int connections) {
    boost::shared_ptr<DialectRequest> object;
    return millisecondsOf([&] {
        object = device.open(connections);
        startStream(*object);
    });
}

double bareRequests(const WireDevice& device, const std::vector<std::string>& lines) {
    std::optional<BareClient> client;
    return millisecondsOf([&] {
        client.emplace(kUser, kPassword);
        for (const std::string& line : lines)
            client->get(device.url() + "/" + line);
    });
}

Times measure(WireDevice& device, const std::vector<std::string>& lines, int repetitions) {
    std::vector<double> oneByOne;
    std::vector<double> ahead;
    std::vector<double> bare;
    for (int at = 0; at < repetitions; ++at) {
        oneByOne.push_back(firstStream(device, kOneByOne));
        bare.push_back(bareRequests(device, lines));
        ahead.push_back(firstStream(device, kUsualConnections));
    }
    return {median(oneByOne), median(ahead), median(bare)};
}

/// Every repetition must ask the same, or the times could not be compared.
void checkSame(const Traffic& first, const Traffic& again) {
    if (first.lines != again.lines)
        throw std::runtime_error("a second first stream asks the device something else than the first");
}

/// How many round trips a first stream waits for: what it takes longer when each of them does.
double roundTripsAhead(double milliseconds) {
    WireDevice farther(sim::builtinModel(kModel), kLongRoundTripMilliseconds);
    std::vector<double> longer;
    for (int at = 0; at < 7; ++at)
        longer.push_back(firstStream(farther, kUsualConnections));
    return (median(longer) - milliseconds) / (kLongRoundTripMilliseconds - kRoundTripMilliseconds);
}

std::string rounded(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value);
    return text;
}

Rows oneByOneRows(const Traffic& traffic, const Times& fast, const Times& slow) {
    const auto count = [](const char* what, std::uint64_t counted) {
        return valueRow(kGroup, what, static_cast<double>(counted), "", Target::exactly(1));
    };
    return {
        ratioRow(kGroup, "first stream over loopback, Digest, one by one", fast.oneByOne, fast.bare, "ms",
                 Target::atMost(1.3), std::to_string(traffic.lines.size()) + " requests"),
        count("the same: connections", traffic.counters.connections),
        count("the same: answers with 401", traffic.counters.unauthorized),
        ratioRow(kGroup, "the same, 20 ms per round trip", slow.oneByOne, slow.bare, "ms",
                 Target::atMost(1.02), std::to_string(traffic.counters.requests) + " round trips"),
    };
}

Rows aheadRows(const Traffic& traffic, const Times& fast, const Times& slow) {
    const double roundTrips = roundTripsAhead(slow.ahead);
    return {
        ratioRow(kGroup, "first stream, asking ahead, loopback", fast.ahead, fast.bare, "ms",
                 Target::report(),
                 std::to_string(traffic.counters.connections) + " connections, " +
                     std::to_string(traffic.counters.unauthorized) + " x 401"),
        ratioRow(kGroup, "the same, 20 ms per round trip", slow.ahead, slow.bare, "ms", Target::report(),
                 "floor: one after the other"),
        valueRow(kGroup, "the same: round trips to the URI", std::round(roundTrips), "", Target::atMost(6),
                 "each ms more per round trip adds " + rounded(roundTrips) + " ms"),
    };
}

} // namespace

Rows measureWire() {
    WireDevice near(sim::builtinModel(kModel));
    WireDevice far(sim::builtinModel(kModel), kRoundTripMilliseconds);
    // Settles what the devices are set to.
    trafficOf(near, near.open());
    trafficOf(far, far.open());
    const Traffic traffic = trafficOf(near, near.open(kOneByOne));
    const Traffic aheadTraffic = trafficOf(near, near.open());
    checkSame(traffic, trafficOf(near, near.open(kOneByOne)));
    checkSame(traffic, trafficOf(far, far.open(kOneByOne)));
    const Times fast = measure(near, traffic.lines, 61);
    const Times slow = measure(far, traffic.lines, 15);

    Rows rows = oneByOneRows(traffic, fast, slow);
    for (Row& row : aheadRows(aheadTraffic, fast, slow))
        rows.push_back(std::move(row));
    return rows;
}

} // namespace koine::bench
