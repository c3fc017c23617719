/// @file
/// What was measured, line by line, and what was to be reached.
#pragma once

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <vector>

namespace koine::bench {

/// What a ratio is to be.
struct Target {
    enum class Sense { report, atMost, atLeast, exactly };

    Sense sense = Sense::report;
    double limit = 0.0;
    std::optional<double> stretch; ///< reported beside it, never missed

    static Target report() { return {}; }
    static Target atMost(double limit) { return {Sense::atMost, limit, {}}; }
    static Target atMost(double limit, double stretch) { return {Sense::atMost, limit, stretch}; }
    static Target atLeast(double limit) { return {Sense::atLeast, limit, {}}; }
    static Target exactly(double count) { return {Sense::exactly, count, {}}; }

    bool met(double reached) const;
};

/// One line of the table. With a floor the target holds for their ratio, without one for the value.
struct Row {
    std::string group;
    std::string what;
    double value = 0.0;
    std::string unit;            ///< "ns", "ms", "B", "requests", ...
    std::optional<double> floor; ///< in the same unit
    std::optional<double> ratio;
    Target target;
    std::string note;
};

/// A row whose ratio is value by floor.
Row ratioRow(std::string group, std::string what, double value, double floor, std::string unit, Target target,
             std::string note = "");

/// A row that has a value only.
Row valueRow(std::string group, std::string what, double value, std::string unit, Target target,
             std::string note = "");

using Rows = std::vector<Row>;

nlohmann::json asJson(const Rows& rows);

} // namespace koine::bench
