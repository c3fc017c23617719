// Every test starts with a new support library and must leave it clean.
#include "scripted_platform.h"

#include <gtest/gtest.h>

namespace {

class CleanPlatform : public ::testing::EmptyTestEventListener {
    void OnTestStart(const ::testing::TestInfo& /*test*/) override { koine::test::platform().reset(); }

    void OnTestEnd(const ::testing::TestInfo& /*test*/) override {
        const koine::test::ScriptedPlatform& platform = koine::test::platform();
        EXPECT_EQ(platform.lockMisuses(), 0) << "a lock was used wrongly";
        EXPECT_EQ(platform.locksInUse(), 0) << "a lock was not ended";
        EXPECT_EQ(platform.clientsAlive(), 0) << "an HTTP client was not released";
    }
};

const bool installed = [] {
    ::testing::UnitTest::GetInstance()->listeners().Append(new CleanPlatform);
    return true;
}();

} // namespace
