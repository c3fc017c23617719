#include "simulator/fault_list.h"

#include "text/words.h"

#include <algorithm>

namespace koine::sim {

void FaultList::set(Fault fault) {
    const std::lock_guard lock(mutex_);
    const auto same = std::find_if(faults_.begin(), faults_.end(), [&fault](const Fault& other) {
        return other.kind == fault.kind && other.path == fault.path;
    });
    if (same == faults_.end())
        faults_.push_back(std::move(fault));
    else
        *same = std::move(fault);
}

void FaultList::clear() {
    const std::lock_guard lock(mutex_);
    faults_.clear();
}

void FaultList::clear(FaultKind kind) {
    const std::lock_guard lock(mutex_);
    const auto isOfKind = [kind](const Fault& fault) { return fault.kind == kind; };
    faults_.erase(std::remove_if(faults_.begin(), faults_.end(), isOfKind), faults_.end());
}

std::optional<Fault> FaultList::take(FaultKind kind, std::string_view target) {
    const std::lock_guard lock(mutex_);
    const auto found = std::find_if(faults_.begin(), faults_.end(), [kind, target](const Fault& fault) {
        return fault.kind == kind && contains(target, fault.path);
    });
    if (found == faults_.end())
        return std::nullopt;
    Fault fault = *found;
    if (found->count != 0 && --found->count == 0)
        faults_.erase(found);
    return fault;
}

} // namespace koine::sim
