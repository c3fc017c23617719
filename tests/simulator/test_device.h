/// @file
/// Short ways to a device under test.
#pragma once

#include "simulator/simulated_device.h"

#include <string>

namespace koine::test {

inline sim::Options optionsFor(const std::string& model, sim::AuthKind auth = sim::AuthKind::none) {
    sim::Options options(sim::builtinModel(model));
    options.auth = auth;
    options.username = "admin";
    options.password = "open:sesame";
    return options;
}

} // namespace koine::test
