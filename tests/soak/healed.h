/// @file
/// What well devices answer, to be compared before and after the faults.
#pragma once

#include "fleet.h"
#include "kinds.h"
#include "ledger.h"

#include <array>
#include <vector>

namespace koine::soak {

/// The result of every kind of request to every device.
using Results = std::vector<std::array<int, kKinds.size()>>;

/// Asks every device everything, each with an object of its own. What cannot be right is told the ledger.
Results askAll(const std::vector<Unit>& units, Ledger& ledger);

/// Tells the ledger where the devices answer otherwise than before.
void compare(const Results& before, const Results& after, Ledger& ledger);

} // namespace koine::soak
