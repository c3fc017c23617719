#include "bench/timings.h"

#include <benchmark/benchmark.h>

#include <stdexcept>

namespace koine::bench {
namespace {

/// Keeps the medians and prints nothing.
class Medians : public benchmark::BenchmarkReporter {
public:
    explicit Medians(std::map<std::string, double>& medians) : medians_(medians) {}

    bool ReportContext(const Context& /*context*/) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs)
            if (run.aggregate_name == "median")
                medians_[run.run_name.function_name] = run.GetAdjustedCPUTime();
    }

private:
    std::map<std::string, double>& medians_;
};

} // namespace

void Timings::measure() {
    for (const auto& [name, call] : calls_)
        benchmark::RegisterBenchmark(name.c_str(),
                                     [run = &call](benchmark::State& state) {
                                         for (const auto step : state) {
                                             static_cast<void>(step);
                                             (*run)();
                                         }
                                     })
            ->Unit(benchmark::kNanosecond)
            ->MinTime(seconds_)
            ->Repetitions(repetitions_);
    Medians reporter(medians_);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::ClearRegisteredBenchmarks();
    if (medians_.size() != calls_.size())
        throw std::runtime_error("some calls were not measured");
}

} // namespace koine::bench
