#include "bench/rows.h"

#include <cmath>

namespace koine::bench {
namespace {

const char* wordOf(Target::Sense sense) {
    switch (sense) {
    case Target::Sense::atMost:
        return "at most";
    case Target::Sense::atLeast:
        return "at least";
    case Target::Sense::exactly:
        return "exactly";
    case Target::Sense::report:
        break;
    }
    return "report";
}

nlohmann::json asJson(const Row& row) {
    nlohmann::json json = {{"group", row.group}, {"what", row.what}, {"value", row.value},
                           {"unit", row.unit},   {"note", row.note}, {"target", wordOf(row.target.sense)}};
    if (row.floor)
        json["floor"] = *row.floor;
    if (row.ratio)
        json["ratio"] = *row.ratio;
    if (row.target.sense == Target::Sense::report)
        return json;
    const double reached = row.ratio.value_or(row.value);
    json["limit"] = row.target.limit;
    json["met"] = row.target.met(reached);
    if (row.target.stretch) {
        json["stretch"] = *row.target.stretch;
        json["stretch met"] = reached <= *row.target.stretch;
    }
    return json;
}

} // namespace

bool Target::met(double reached) const {
    switch (sense) {
    case Sense::atMost:
        return reached <= limit;
    case Sense::atLeast:
        return reached >= limit;
    case Sense::exactly:
        return std::abs(reached - limit) < 0.5; // counts
    case Sense::report:
        break;
    }
    return true;
}

Row ratioRow(std::string group, std::string what, double value, double floor, std::string unit, Target target,
             std::string note) {
    return {std::move(group), std::move(what), value,          std::move(unit), floor,
            value / floor,    target,          std::move(note)};
}

Row valueRow(std::string group, std::string what, double value, std::string unit, Target target,
             std::string note) {
    return {std::move(group), std::move(what), value, std::move(unit), {}, {}, target, std::move(note)};
}

nlohmann::json asJson(const Rows& rows) {
    nlohmann::json all = nlohmann::json::array();
    for (const Row& row : rows)
        all.push_back(asJson(row));
    return all;
}

} // namespace koine::bench
