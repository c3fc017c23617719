// The start of a stream whose device is known: which requests it still causes.

#include "bench/groups.h"
#include "bench/memory_device.h"
#include "bench/wire_device.h"

namespace koine::bench {
namespace {

constexpr const char* kGroup = "warm start";
constexpr const char* kSet = "Config.cgi?action=set";

struct Requests {
    double sets = 0.0;   ///< the encoder settings of the user's profile, once per user
    double others = 0.0; ///< nothing else has a reason
};

Requests requestsOf(WireDevice& device, DialectRequest& object, unsigned int uid) {
    device.peer().resetCounters();
    startStream(object, uid);
    Requests requests;
    for (const sim::LoggedRequest& request : device.peer().requests())
        ++(request.line.rfind(kSet, 0) == 0 ? requests.sets : requests.others);
    return requests;
}

} // namespace

Rows measureWarmStart() {
    WireDevice device(sim::builtinModel("dome"));
    const auto object = device.open();
    const Requests first = requestsOf(device, *object, 1);
    const Requests again = requestsOf(device, *object, 1);
    const Requests second = requestsOf(device, *object, 2);
    const auto row = [](const char* what, double count, const char* note) {
        return valueRow(kGroup, what, count, "", Target::exactly(0), note);
    };
    return {
        valueRow(kGroup, "requests of a cold start, for comparison", first.sets + first.others, "",
                 Target::report()),
        row("requests of a warm start, the same user again", again.sets + again.others, ""),
        valueRow(kGroup, "requests of a warm start, another user: its set line", second.sets, "",
                 Target::exactly(1), "once per user"),
        row("requests of a warm start, another user: anything else", second.others, ""),
    };
}

} // namespace koine::bench
