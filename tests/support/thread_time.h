/// @file
/// What the calling thread has used, and what it was kept from using.
#pragma once

#include <chrono>

namespace koine::test {

/// Processor time.
std::chrono::nanoseconds threadProcessorTime();

/// How long it could have run while others did. Nothing where the system does not tell.
std::chrono::nanoseconds threadWaitingTime();

} // namespace koine::test
