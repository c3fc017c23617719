// koine diff: a device against a saved configuration.

#include "tools/commands/commands.h"
#include "tools/json.h"
#include "tools/saved_configuration.h"
#include "tools/terminal.h"

#include <optional>

namespace koine::tool {
namespace {

struct Difference {
    std::string key;
    std::optional<std::string> saved;
    std::optional<std::string> device;
};

std::vector<Difference> compare(const CgiMap& saved, const CgiMap& device) {
    std::vector<Difference> differences;
    auto left = saved.begin();
    auto right = device.begin();
    while (left != saved.end() || right != device.end()) {
        if (right == device.end() || (left != saved.end() && left->first < right->first)) {
            differences.push_back({left->first, left->second, std::nullopt});
            ++left;
        } else if (left == saved.end() || right->first < left->first) {
            differences.push_back({right->first, std::nullopt, right->second});
            ++right;
        } else {
            if (left->second != right->second)
                differences.push_back({left->first, left->second, right->second});
            ++left;
            ++right;
        }
    }
    return differences;
}

void show(const std::vector<Difference>& differences, const std::string& file, const std::string& where) {
    const Style style(stdout);
    if (differences.empty()) {
        printLine("No difference between " + file + " and " + where + ".");
        return;
    }
    printLine(style.paint(Tint::bold, "- " + file));
    printLine(style.paint(Tint::bold, "+ " + where));
    for (const Difference& difference : differences) {
        const std::string key = harmless(difference.key) + "=";
        if (difference.saved)
            printLine(style.paint(Tint::red, "- " + key + harmless(*difference.saved)));
        if (difference.device)
            printLine(style.paint(Tint::green, "+ " + key + harmless(*difference.device)));
    }
    const std::size_t count = differences.size();
    printLine(std::to_string(count) + (count == 1 ? " key differs." : " keys differ."));
}

Json asJson(const std::vector<Difference>& differences) {
    Json all = Json::array();
    for (const Difference& difference : differences) {
        Json one = Json::object();
        one.set("key", difference.key);
        if (difference.saved)
            one.set("file", *difference.saved);
        if (difference.device)
            one.set("device", *difference.device);
        all.add(std::move(one));
    }
    return all;
}

/// A script must tell "differs" from "could not be compared".
CgiMap deviceValues(Connection& connection) {
    try {
        return readConfiguration(connection).values;
    } catch (const Failure& failure) {
        if (failure.code() != ExitCode::refused)
            throw;
        throw Failure(ExitCode::notCompared, failure.what());
    }
}

} // namespace

ExitCode DiffCommand::run(const Arguments& arguments) const {
    const CgiMap saved = readConfigurationFile(file);
    Connection connection(target, arguments);
    const std::vector<Difference> differences = compare(saved, deviceValues(connection));
    if (json)
        print(asJson(differences).dump());
    else
        show(differences, file, connection.where());
    return differences.empty() ? ExitCode::answered : ExitCode::refused;
}

} // namespace koine::tool
