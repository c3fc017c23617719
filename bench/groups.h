/// @file
/// What `koine_bench` measures: one function per group of rows, each in a file of its own.
#pragma once

#include "bench/rows.h"

namespace koine::bench {

Rows measureCachedAnswers();
Rows measureSetLines();
Rows measureFirstStream();
Rows measureGrowth();
Rows measureWire();
Rows measureWarmStart();
Rows measureMemory();
Rows measureManyDevices();

} // namespace koine::bench
