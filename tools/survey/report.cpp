// What a survey found, as a table and for programs.

#include "tools/survey/report.h"

#include "tools/terminal.h"

#include <algorithm>

namespace koine::tool {
namespace {

using State = Finding::State;

const char* stateName(State state) {
    switch (state) {
    case State::answered:
        return "answered";
    case State::failed:
        return "failed";
    case State::interrupted:
        return "interrupted";
    case State::notAsked:
        break;
    }
    return "not asked";
}

std::string timeOf(const Finding& finding) {
    return finding.state == State::notAsked ? "" : timeText(finding.milliseconds);
}

Json asJson(const ListedDevice& device, const Finding& finding) {
    Json json = Json::object();
    json.set("url", device.shown);
    json.set("state", stateName(finding.state));
    json.set("milliseconds", Json::fraction(finding.milliseconds));
    json.set("exit_code", finding.state == State::answered || finding.state == State::failed
                              ? Json::number(static_cast<int>(finding.code))
                              : Json::null());
    json.set("error", finding.error);
    json.set("info", Json::copy(finding.summary));
    return json;
}

} // namespace

std::size_t SurveyReport::count(State state) const {
    return static_cast<std::size_t>(
        std::count_if(findings.begin(), findings.end(),
                      [state](const Finding& finding) { return finding.state == state; }));
}

ExitCode SurveyReport::code() const {
    if (interrupted)
        return ExitCode::interrupted;
    if (notAnswered() == 0)
        return ExitCode::answered;
    return notAnswered() == devices.size() ? ExitCode::noneAnswered : ExitCode::refused;
}

void showReport(const SurveyReport& report) {
    using Align = Table::Align;
    const Style style(stdout);
    Table table(
        {{"DEVICE"}, {"PRODUCT"}, {"KIND"}, {"PROFILES", Align::right}, {"TIME", Align::right}, {"ERROR"}});
    for (std::size_t i = 0; i < report.devices.size(); ++i) {
        const Finding& finding = report.findings[i];
        const bool answered = finding.state == State::answered;
        table.add({report.devices[i].shown, harmless(finding.summary.at("product").asText()),
                   harmless(finding.summary.at("device").asText()),
                   answered ? std::to_string(finding.summary.at("profiles").size()) : "", timeOf(finding),
                   answered ? "" : harmless(finding.brief)},
                  answered ? Tint::plain : Tint::red);
    }
    table.print(style, {}, true);
    printLine();
    printLine(std::to_string(report.count(State::answered)) + " of " +
              counted(report.devices.size(), "device") + " answered, " + timeText(report.milliseconds) +
              (report.interrupted ? ", interrupted" : "") + ".");
}

Json reportAsJson(const SurveyReport& report) {
    const auto number = [](std::size_t count) { return Json::number(static_cast<long long>(count)); };
    Json devices = Json::array();
    for (std::size_t i = 0; i < report.devices.size(); ++i)
        devices.add(asJson(report.devices[i], report.findings[i]));
    Json summary = Json::object();
    summary.set("devices", number(report.devices.size()));
    summary.set("answered", number(report.count(State::answered)));
    summary.set("failed", number(report.count(State::failed)));
    summary.set("not_asked", number(report.count(State::notAsked) + report.count(State::interrupted)));
    summary.set("interrupted", Json::boolean(report.interrupted));
    summary.set("milliseconds", Json::fraction(report.milliseconds));
    Json json = Json::object();
    json.set("devices", std::move(devices));
    json.set("summary", std::move(summary));
    return json;
}

} // namespace koine::tool
