#include "bench/pairs.h"

#include "bench/heap_meter.h"
#include "bench/timings.h"

namespace koine::bench {
namespace {

std::string floorName(const Pair& pair) { return pair.what + " (floor)"; }

std::string allocationNote(const Pair& pair) {
    pair.run(); // what the first call alone takes does not count
    const HeapUse use = heapUseOf(pair.run);
    std::string note = pair.note.empty() ? "" : pair.note + "; ";
    return note + std::to_string(use.allocations) + " allocations";
}

} // namespace

Rows measurePairs(const std::string& group, const std::vector<Pair>& pairs) {
    Timings timings;
    for (const Pair& pair : pairs) {
        timings.add(pair.what, pair.run);
        if (pair.floor)
            timings.add(floorName(pair), pair.floor);
    }
    timings.measure();

    Rows rows;
    for (const Pair& pair : pairs) {
        const double time = timings.nanoseconds(pair.what);
        const std::string note = allocationNote(pair);
        rows.push_back(pair.floor ? ratioRow(group, pair.what, time, timings.nanoseconds(floorName(pair)),
                                             "ns", pair.target, note)
                                  : valueRow(group, pair.what, time, "ns", pair.target, note));
    }
    return rows;
}

} // namespace koine::bench
