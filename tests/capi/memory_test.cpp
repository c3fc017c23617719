// Memory that runs out under a host in C: a code, and nothing thrown past the edge.

#include "simulator/simulated_device.h"
#include "tests/capi/c_device.h"
#include "tests/support/failing_allocations.h"

#include <gtest/gtest.h>

namespace koine::test {
namespace {

int ignore(const char* /*key*/, const char* /*value*/, void* /*context*/) { return 0; }

/// Runs an operation again and again, each time with another allocation that fails.
/// @return how many failed
template <typename Operation>
unsigned int tortured(const Operation& operation) {
    return failEachAllocation([&](unsigned int n) {
               FailAllocations fail(n);
               const int result = operation();
               const bool failed = fail.stop();
               EXPECT_TRUE(result == KOINE_NO_RESOURCE || result == KOINE_OK)
                   << "allocation " << n << ": " << result;
               EXPECT_TRUE(failed || result == KOINE_OK) << result;
               return failed;
           }) -
           1;
}

TEST(CMemory, OpeningFailsWithACodeAndLeavesNoDevice) {
    koine_options options = KOINE_OPTIONS;
    options.username = "a user name that is too long for a small text";
    options.uri_pattern = "rtsp://{address}/a-pattern-that-is-too-long-for-a-small-text/{token}";
    const unsigned int failed = tortured([&] {
        koine_device* device = nullptr;
        char* problem = nullptr;
        const int result =
            koine_open("http://camera-with-a-long-name.example:8080", &options, &device, &problem);
        if ((result == KOINE_OK) != (device != nullptr) || problem != nullptr)
            return -99;
        koine_close(device);
        return result;
    });
    EXPECT_GE(failed, 5U);
}

TEST(CMemory, ReadingAnAnswerFailsWithACode) {
    const char* const answer = "0\nOK\nAKeyThatIsTooLongForASmallText=and a value that is too long for one\n";
    EXPECT_GE(tortured([&] { return koine_visit_values(answer, ignore, nullptr); }), 2U);
    EXPECT_GE(tortured([&] {
                  koine_free(koine_value(answer, "AKeyThatIsTooLongForASmallText"));
                  return +KOINE_OK;
              }),
              2U);
}

TEST(CMemory, ARequestFailsWithACodeAndTheNextOneWorks) {
    sim::SimulatedDevice dome{sim::Options(sim::builtinModel("dome"))};
    const CDevice device = opened(dome.url());
    for (unsigned int n = 1; n < 200; ++n) {
        FailAllocations fail(n);
        char* text = nullptr;
        const int result =
            koine_request(device.get(), 1, "PTZ.cgi?a-line-that-is-too-long-for-a-small-text=1", &text);
        const bool hit = fail.stop();
        koine_free(text);
        if (!hit) {
            EXPECT_GT(n, 2U);
            EXPECT_EQ(result, KOINE_OK);
            return;
        }
    }
    ADD_FAILURE() << "allocations never end";
}

} // namespace
} // namespace koine::test
