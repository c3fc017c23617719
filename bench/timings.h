/// @file
/// How long calls take, told by Google Benchmark: repetitions of all of them in random order, and the median
/// of each.
#pragma once

#include <functional>
#include <map>
#include <string>

namespace koine::bench {

class Timings {
public:
    explicit Timings(int repetitions = 15, double secondsPerRepetition = 0.01)
        : repetitions_(repetitions), seconds_(secondsPerRepetition) {}

    /// The call must leave things as it found them: it is made any number of times.
    void add(const std::string& name, std::function<void()> call) { calls_[name] = std::move(call); }

    void measure();

    /// Median CPU time of one call.
    double nanoseconds(const std::string& name) const { return medians_.at(name); }

private:
    int repetitions_;
    double seconds_;
    std::map<std::string, std::function<void()>> calls_;
    std::map<std::string, double> medians_;
};

} // namespace koine::bench
