/// @file
/// What this process uses.
#pragma once

#include <chrono>
#include <cstddef>
#include <vector>

namespace koine::soak {

struct Usage {
    std::size_t residentKilobytes = 0;
    std::size_t allocatedBytes = 0;
    std::size_t descriptors = 0;
    std::size_t threads = 0;
    double processorSeconds = 0;
};

Usage usageNow();

/// Resident memory over time.
class MemoryWatch {
public:
    void sample() { samples_.push_back(usageNow().residentKilobytes); }

    std::size_t count() const { return samples_.size(); }

    /// The median of one fifth of the run, counted from 0.
    std::size_t medianOfFifth(std::size_t fifth) const;
    std::size_t largest() const;

    /// The first fifth warms up. From the second to the last the median may grow by 4 MiB and a tenth.
    std::size_t allowed() const { return medianOfFifth(1) * 11 / 10 + 4096; }
    bool isFlat() const { return medianOfFifth(4) <= allowed(); }

private:
    std::vector<std::size_t> samples_;
};

} // namespace koine::soak
