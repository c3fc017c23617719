// koine set: changes settings and shows what changed.

#include "cache/key_map.h"
#include "text/words.h"
#include "tools/categories.h"
#include "tools/commands/commands.h"
#include "tools/json.h"
#include "tools/secrets.h"
#include "tools/terminal.h"

#include <algorithm>
#include <set>

namespace koine::tool {
namespace {

struct Setting {
    std::string key;
    std::string value;
};

Setting parse(const std::string& text) {
    const std::size_t equals = text.find('=');
    const std::string key = text.substr(0, equals);
    if (equals == std::string::npos || key.empty() || lineValue(key) != key ||
        key.find('?') != std::string::npos)
        throw Failure(ExitCode::usage,
                      "no setting: " + withoutSecrets(text) + "; write it like Video.I0.Brightness=50");
    return {key, text.substr(equals + 1)};
}

std::string setLine(const std::vector<Setting>& settings) {
    std::string line = "Config.cgi?action=set";
    for (const Setting& setting : settings)
        line.append("&").append(setting.key).append("=").append(lineValue(setting.value));
    return line;
}

/// What the caches hold of every category that a setting belongs to.
CgiMap cached(Connection& connection, const std::vector<Setting>& settings) {
    std::set<std::string_view> categories;
    for (const Setting& setting : settings)
        categories.insert(categoryOf(setting.key));
    CgiMap values;
    for (const std::string_view category : categories) {
        if (category.empty())
            continue;
        const Answer answer = connection.ask(readingLine(category));
        if (meansAbsent(answer.result, answer.status()))
            continue;
        if (!answer.ok() || answer.status() != 0)
            throw connection.failure(answer.result, answer.status(),
                                     "reading " + std::string(category) + " before the change");
        values.merge(answer.values());
    }
    return values;
}

constexpr const char* kNotKept = "(not kept)";

void show(const std::vector<Setting>& settings, const CgiMap& before, const CgiMap& after) {
    Table table({{"KEY"}, {"OLD"}, {"NEW"}});
    for (const Setting& setting : settings)
        table.add({harmless(setting.key), harmless(valueOr(before, setting.key, kNotKept)),
                   harmless(valueOr(after, setting.key, kNotKept))});
    table.print(Style(stdout));
}

Json asJson(const std::vector<Setting>& settings, const CgiMap& before, const CgiMap& after) {
    Json all = Json::array();
    for (const Setting& setting : settings) {
        Json one = Json::object();
        one.set("key", setting.key);
        if (const std::string* value = findValue(before, setting.key))
            one.set("old", *value);
        if (const std::string* value = findValue(after, setting.key))
            one.set("new", *value);
        all.add(std::move(one));
    }
    return all;
}

} // namespace

ExitCode SetCommand::run(const Arguments& arguments) const {
    std::vector<Setting> wanted;
    for (const std::string& text : settings)
        wanted.push_back(parse(text));
    Connection connection(target, arguments);
    if (std::any_of(wanted.begin(), wanted.end(),
                    [](const Setting& setting) { return categoryOf(setting.key) == "Media"; }))
        connection.prepareMedia();
    const CgiMap before = cached(connection, wanted);
    const Answer answer = connection.demand(setLine(wanted), "changing the settings (nothing was changed)");
    const CgiMap after = cached(connection, wanted);
    const bool reconnect = contains(answer.text, "StreamSetup.Reconnect=1");
    if (json) {
        Json result = Json::object();
        result.set("changes", asJson(wanted, before, after));
        result.set("reconnect", Json::boolean(reconnect));
        print(result.dump());
        return ExitCode::answered;
    }
    show(wanted, before, after);
    if (reconnect)
        printLine("The picture size changed: streams of the device must be opened again.");
    return ExitCode::answered;
}

} // namespace koine::tool
