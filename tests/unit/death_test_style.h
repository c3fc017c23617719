#pragma once

#include <cstdlib>
#include <gtest/gtest.h>

namespace koine::test {

/// A program that has started threads dies in a process of its own, unless the environment names another
/// style: where an emulator runs this program, it cannot start itself anew.
inline void dieInAProcessOfItsOwn() {
    if (std::getenv("GTEST_DEATH_TEST_STYLE") == nullptr)
        ::testing::FLAGS_gtest_death_test_style = "threadsafe";
}

} // namespace koine::test
