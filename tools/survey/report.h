/// @file
/// What a survey found, as a table and for programs.
#pragma once

#include "tools/survey/device_list.h"
#include "tools/survey/probe.h"

#include <vector>

namespace koine::tool {

struct SurveyReport {
    std::vector<ListedDevice> devices;
    std::vector<Finding> findings; ///< in the order of the devices
    bool interrupted = false;
    double milliseconds = 0;

    std::size_t count(Finding::State state) const;
    std::size_t notAnswered() const { return devices.size() - count(Finding::State::answered); }
    ExitCode code() const;
};

void showReport(const SurveyReport& report);
Json reportAsJson(const SurveyReport& report);

} // namespace koine::tool
