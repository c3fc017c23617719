/// @file
/// Time and memory that a call may take.
#pragma once

#include <functional>

namespace koine::test {

/// Runs a call and fails the test when it takes longer than `seconds`, or when the resident memory of the
/// program grows by more than `mebibytes` at any moment of it. Under a sanitizer the time is stretched and
/// the memory, which is the sanitizer's then, does not count.
void within(double seconds, double mebibytes, const std::function<void()>& call);

} // namespace koine::test
