/// @file
/// What a run is asked to do.
#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace koine::soak {

struct Plan {
    std::chrono::seconds time{60};
    unsigned int devices = 64;
    unsigned int threads = 8;
    unsigned int seed = 0; ///< chosen and printed when it is not given
};

/// Reads the command line; a program that is only asked for help, or asked wrongly, ends here.
/// @return nothing when the program is to end with `exitCode`
std::optional<Plan> readPlan(int argc, char** argv, const std::string& purpose, Plan plan, int& exitCode);

} // namespace koine::soak
