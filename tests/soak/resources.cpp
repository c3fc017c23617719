#include "resources.h"

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <malloc.h>

namespace koine::soak {
namespace {

std::size_t entriesIn(const char* folder) {
    const std::filesystem::directory_iterator entries(folder);
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

std::size_t residentKilobytes() {
    std::ifstream status("/proc/self/status");
    const std::string key = "VmRSS:";
    for (std::string line; std::getline(status, line);)
        if (line.compare(0, key.size(), key) == 0)
            return std::stoul(line.substr(key.size()));
    return 0;
}

/// What the program has not given back, to the byte.
std::size_t allocatedBytes() {
    const struct mallinfo2 heap = ::mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

double processorSeconds() {
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

} // namespace

Usage usageNow() {
    Usage usage;
    usage.residentKilobytes = residentKilobytes();
    usage.allocatedBytes = allocatedBytes();
    usage.descriptors = entriesIn("/proc/self/fd");
    usage.threads = entriesIn("/proc/self/task");
    usage.processorSeconds = processorSeconds();
    return usage;
}

std::size_t MemoryWatch::medianOfFifth(std::size_t fifth) const {
    const auto begin = samples_.begin() + static_cast<std::ptrdiff_t>(samples_.size() * fifth / 5);
    const auto end = samples_.begin() + static_cast<std::ptrdiff_t>(samples_.size() * (fifth + 1) / 5);
    std::vector<std::size_t> part(begin, end);
    if (part.empty())
        return 0;
    const auto middle = part.begin() + static_cast<std::ptrdiff_t>(part.size() / 2);
    std::nth_element(part.begin(), middle, part.end());
    return *middle;
}

std::size_t MemoryWatch::largest() const {
    return samples_.empty() ? 0 : *std::max_element(samples_.begin(), samples_.end());
}

} // namespace koine::soak
