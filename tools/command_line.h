/// @file
/// The command line: reads it, runs what it asks for.
#pragma once

#include "tools/failure.h"
#include "tools/secrets.h"

namespace koine::tool {

/// @throws Failure and what opening a device throws
ExitCode runCommandLine(const Arguments& arguments);

} // namespace koine::tool
