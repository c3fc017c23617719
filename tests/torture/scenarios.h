/// @file
/// What is run while memory runs out.
#pragma once

#include "fuzz/fuzz_device.h"

#include <string>
#include <vector>

namespace koine::torture {

struct Scenario {
    const char* name;
    /// Brings a fresh device where the scenario begins; memory is there.
    void (*prepare)(fuzz::Device& device);
    /// The calls under shortage. Results are noted.
    void (*run)(fuzz::Device& device, std::vector<int>& results);
    /// Whether `run` may end with std::bad_alloc: single steps may, the host's entry points may not.
    bool mayThrow;
};

const std::vector<Scenario>& scenarios();

} // namespace koine::torture
