// A thousand devices on two threads: does the second thread bring as much as it brings to work that shares
// nothing at all?

#include "bench/groups.h"
#include "bench/memory_device.h"
#include "bench/statistics.h"

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>

#include <functional>
#include <thread>
#include <vector>

namespace koine::bench {
namespace {

constexpr std::size_t kDevices = 1000;
constexpr int kThreads = 2;
constexpr int kRounds = 15;
constexpr double kMillisecondsPerRound = 40.0;
constexpr int kSpinsPerCall = 2000;

using Devices = std::vector<boost::shared_ptr<MemoryDevice>>;
using Work = std::function<void(int thread)>; ///< one portion, some tens of microseconds

Devices makeDevices() {
    const std::shared_ptr<const DeviceTexts> texts = deviceTexts(withKeys(40));
    Devices devices;
    for (std::size_t at = 0; at < kDevices; ++at) {
        devices.push_back(boost::make_shared<MemoryDevice>(texts));
        startStream(*devices.back());
    }
    return devices;
}

/// Each thread has its half of the devices and asks them in turn.
class Asking {
public:
    explicit Asking(const Devices& devices) : devices_(devices) {}

    void operator()(int thread) {
        std::size_t& next = next_[static_cast<std::size_t>(thread)].value;
        for (int call = 0; call < 20; ++call) {
            MemoryDevice& device = *devices_[next % (kDevices / 2) * 2 + static_cast<std::size_t>(thread)];
            for (const char* line : {kStreamGet, kGetUri, "Login.cgi"})
                send(device, line);
            ++next;
        }
    }

private:
    struct alignas(64) Position { // on a cache line of its own
        std::size_t value = 0;
    };
    const Devices& devices_;
    Position next_[kThreads];
};

void spin(int /*thread*/) {
    for (int at = 0; at < kSpinsPerCall * 10; ++at)
        benchmark::DoNotOptimize(at);
}

/// Portions per millisecond of so many threads together.
double throughput(const Work& work, int threads) {
    std::vector<double> rates(static_cast<std::size_t>(threads));
    const auto run = [&](int thread) {
        long portions = 0;
        double elapsed = 0.0;
        const auto start = std::chrono::steady_clock::now();
        do {
            work(thread);
            ++portions;
            elapsed =
                std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
        } while (elapsed < kMillisecondsPerRound);
        rates[static_cast<std::size_t>(thread)] = static_cast<double>(portions) / elapsed;
    };
    std::vector<std::thread> others;
    for (int thread = 1; thread < threads; ++thread)
        others.emplace_back(run, thread);
    run(0);
    for (std::thread& other : others)
        other.join();
    double sum = 0.0;
    for (const double rate : rates)
        sum += rate;
    return sum;
}

} // namespace

Rows measureManyDevices() {
    const Devices devices = makeDevices();
    const auto asking = std::make_shared<Asking>(devices);
    const Work ask = [asking](int thread) { (*asking)(thread); };
    std::vector<double> askScaling;
    std::vector<double> spinScaling;
    for (int round = 0; round < kRounds; ++round) {
        const double askedAlone = throughput(ask, 1);
        const double spunAlone = throughput(spin, 1);
        askScaling.push_back(throughput(ask, kThreads) / (kThreads * askedAlone));
        spinScaling.push_back(throughput(spin, kThreads) / (kThreads * spunAlone));
    }
    return {ratioRow("many devices", "1,000 devices on 2 threads, cached answers: share of 2 x single",
                     median(askScaling), median(spinScaling), "", Target::atLeast(0.9),
                     "floor: threads that only spin")};
}

} // namespace koine::bench
