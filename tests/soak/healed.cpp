#include "healed.h"

#include "host.h"

namespace koine::soak {

Results askAll(const std::vector<Unit>& units, Ledger& ledger) {
    Results results;
    for (const Unit& unit : units) {
        const auto object = makeObject(unit);
        auto& ofUnit = results.emplace_back();
        for (std::size_t i = 0; i < kKinds.size(); ++i) {
            const Answer answer = send(*object, unit, 1, kKinds[i]);
            ofUnit[i] = answer.result;
            if (const std::string fault = faultOf(answer, kKinds[i], unit); !fault.empty())
                ledger.complain(unit.mark() + " while all is well, " + kKinds[i].name + ": " + fault);
        }
    }
    return results;
}

void compare(const Results& before, const Results& after, Ledger& ledger) {
    for (std::size_t unit = 0; unit < before.size(); ++unit)
        for (std::size_t i = 0; i < kKinds.size(); ++i)
            if (before[unit][i] != after[unit][i])
                ledger.complain(Unit::markOf(static_cast<unsigned int>(unit)) + ", healed, " +
                                kKinds[i].name + ": result " + std::to_string(after[unit][i]) +
                                ", before the faults " + std::to_string(before[unit][i]));
}

} // namespace koine::soak
