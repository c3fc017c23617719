// One device misbehaves; the objects of all others notice nothing.

#include "tests/e2e/request_kinds.h"

#include "default_platform/host_settings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

namespace koine {
namespace {

using std::chrono::steady_clock;
using test::isStated;
using test::Rig;

class Neighbours : public testing::Test {
protected:
    Neighbours() { setRequestTimeLimit(300); }
    ~Neighbours() override { setRequestTimeLimit(0); }
};

/// The median time of a line to a well device.
steady_clock::duration medianOfLines(Rig& rig) {
    std::vector<steady_clock::duration> times(101);
    for (steady_clock::duration& time : times) {
        const auto start = steady_clock::now();
        EXPECT_EQ(rig.ask("PTZ.cgi?stop=1").result, 1);
        time = steady_clock::now() - start;
    }
    std::nth_element(times.begin(), times.begin() + 50, times.end());
    return times[50];
}

TEST_F(Neighbours, AreNotSlowedByADeviceThatMisbehaves) {
    Rig well;
    for (const char* fault :
         {"hang", "drip=1", "endless-body=1000000", "401-storm", "header-flood=2000", "close-silently"}) {
        const auto quiet = medianOfLines(well);
        Rig ill(sim::AuthKind::digestMd5);
        ill.misbehave(fault);
        std::atomic<bool> ending{false};
        std::thread asking([&] {
            while (!ending)
                EXPECT_TRUE(isStated(ill.ask("PTZ.cgi?stop=1")));
        });
        const auto disturbed = medianOfLines(well);
        ending = true;
        asking.join();
        // They share a processor, at worst; a shared lock would cost hundreds of milliseconds.
        EXPECT_LT(disturbed, 4 * quiet + std::chrono::milliseconds(5)) << fault;
    }
}

TEST_F(Neighbours, AreServedWhileManyDevicesHang) {
    constexpr int kHung = 8;
    Rig well;
    EXPECT_EQ(well.ask("Login.cgi").result, 1);
    std::vector<std::unique_ptr<Rig>> hung;
    std::atomic<int> waiting{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < kHung; ++i) {
        hung.push_back(std::make_unique<Rig>());
        hung.back()->misbehave("hang");
    }
    for (const auto& rig : hung)
        threads.emplace_back([&] {
            ++waiting;
            EXPECT_EQ(rig->ask("Login.cgi").result, -4);
            --waiting;
        });
    while (waiting < kHung)
        std::this_thread::yield();
    int served = 0;
    while (waiting == kHung) {
        EXPECT_EQ(well.ask("PTZ.cgi?stop=1").result, 1);
        ++served;
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_GE(served, 3) << "before the first of the hung ones had reached its limit";
}

TEST_F(Neighbours, OfTheSameDeviceWaitForTheLineBeforeAndNoLonger) {
    Rig rig;
    rig.misbehave("hang;count=1");
    std::thread first([&] { EXPECT_EQ(rig.ask("PTZ.cgi?stop=1").result, -4); });
    while (rig.peer().counters().requests == 0)
        std::this_thread::yield();
    EXPECT_EQ(rig.device().testOK(nullptr, 0, nullptr, nullptr), 1);
    EXPECT_EQ(rig.ask("PTZ.cgi?stop=2").result, 1);
    first.join();
}

} // namespace
} // namespace koine
