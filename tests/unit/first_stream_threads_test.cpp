// Sixty-four stream users of one device, started from eight threads.

#include "tests/support/test_request.h"
#include "three_profiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>

namespace koine::test {
namespace {

constexpr unsigned int kStarters = 8;
constexpr unsigned int kUsersPerThread = 8;
constexpr unsigned int kUsers = kStarters * kUsersPerThread;

struct Kind {
    const char* items;
    const char* token;
};
constexpr Kind kKinds[] = {
    {"&ProfileMode=AUTO&StreamSetup.VideoEncoderConfiguration.Resolution.NxN=1280x720", "main"},
    {"&ProfileMode=MOBILE&StreamSetup.VideoEncoderConfiguration.Resolution.NxN=352x288", "phone"},
    {"&ProfileMode=ONLY_STATUS", "main"},
    {"&ProfileToken=sub", "sub"},
};

const Kind& kindOf(unsigned int uid) { return kKinds[uid % 4]; }

/// Starts one user and reads back what it got.
bool startsWell(TestRequest& request, unsigned int uid) {
    const Kind& kind = kindOf(uid);
    if (request.ask(setUpLine(kind.items), uid).result != 1)
        return false;
    const Reply got = request.ask("http://camera:80/Stream.cgi?action=get", uid);
    const std::string head = std::string("0\nOK\nProfileToken=") + kind.token + "\n";
    return got.result == 1 && got.text.compare(0, head.size(), head) == 0;
}

class ManyUsers : public ::testing::Test {
protected:
    ManyUsers() {
        scriptThreeProfiles();
        request.connect();
        device().handler = [this, camera = device()](const DeviceRequest& asked) mutable {
            // The object's lock lets one request at a time through; a second one would show here.
            overlaps += inside.exchange(true) ? 1 : 0;
            (asked.line.find("action=set") == std::string::npos ? fillings : settings)++;
            const DeviceAnswer answer = camera.answerTo(asked);
            inside = false;
            return answer;
        };
        platform().beQuiet();
    }

    std::atomic<bool> inside{false};
    std::atomic<int> overlaps{0};
    std::atomic<int> fillings{0};
    std::atomic<int> settings{0};
    TestRequest request;
};

TEST_F(ManyUsers, OfOneDeviceAreStartedFromEightThreads) {
    std::atomic<unsigned int> good{0};
    std::vector<std::thread> threads;
    for (unsigned int t = 0; t < kStarters; ++t)
        threads.emplace_back([&, t] {
            for (unsigned int i = 0; i < kUsersPerThread; ++i)
                good += startsWell(request, 1 + t + i * kStarters) ? 1 : 0;
        });
    for (std::thread& thread : threads)
        thread.join();

    EXPECT_EQ(good, kUsers);
    EXPECT_EQ(overlaps, 0);
    EXPECT_EQ(fillings, static_cast<int>(fillingLines().size())) << "the caches are filled once for all";
    EXPECT_EQ(settings, static_cast<int>(kUsers) * 3 / 4) << "one set line each, none for status alone";
    for (unsigned int uid = 1; uid <= kUsers; ++uid)
        EXPECT_STREQ(request.profile_token(uid), kindOf(uid).token) << uid;
}

TEST_F(ManyUsers, StartingTheSameUserIsActedOnOnce) {
    std::atomic<unsigned int> good{0};
    std::vector<std::thread> threads;
    for (unsigned int t = 0; t < kStarters; ++t)
        threads.emplace_back([&] { good += startsWell(request, 4) ? 1 : 0; });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(good, kStarters);
    EXPECT_EQ(settings, 1);
    EXPECT_EQ(overlaps, 0);
}

} // namespace
} // namespace koine::test
