#include "plan.h"

#include <CLI/CLI.hpp>
#include <random>

namespace koine::soak {

std::optional<Plan> readPlan(int argc, char** argv, const std::string& purpose, Plan plan, int& exitCode) {
    CLI::App app(purpose);
    double minutes = 0;
    unsigned int seconds = 0;
    plan.seed = std::random_device()();
    app.add_option("--minutes", minutes, "how long")->check(CLI::Range(0.1, 100'000.0));
    app.add_option("--seconds", seconds, "how long, for short runs")->check(CLI::Range(1, 600));
    app.add_option("--devices", plan.devices, "number of simulated devices")
        ->check(CLI::Range(2, 200))
        ->capture_default_str();
    app.add_option("--threads", plan.threads, "number of host threads")
        ->check(CLI::Range(1, 64))
        ->capture_default_str();
    app.add_option("--seed", plan.seed, "of all random choices; a random one when it is not given");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        exitCode = app.exit(error) == 0 ? 0 : 2;
        return std::nullopt;
    }
    if (minutes > 0)
        plan.time = std::chrono::seconds(static_cast<long>(minutes * 60));
    if (seconds > 0)
        plan.time = std::chrono::seconds(seconds);
    return plan;
}

} // namespace koine::soak
