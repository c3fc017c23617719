// koine get: configuration categories.

#include "text/words.h"
#include "tools/categories.h"
#include "tools/commands/commands.h"
#include "tools/json.h"
#include "tools/terminal.h"

#include <algorithm>

namespace koine::tool {

ExitCode GetCommand::run(const Arguments& arguments) const {
    std::vector<std::string> lines;
    for (const std::string& category : categories)
        lines.push_back(readingLine(category)); // all are looked at before anything is sent
    Connection connection(target, arguments);
    if (std::any_of(lines.begin(), lines.end(),
                    [](const std::string& line) { return contains(line, "=Media."); }))
        connection.prepareMedia();
    const Style style(stdout);
    Json all = Json::object();
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const Answer answer = connection.demand(lines[i], "reading " + categories[i]);
        for (const auto& [key, value] : answer.values()) {
            if (json) {
                all.set(key, value);
                continue;
            }
            const std::string text = std::string(key).append("=").append(value);
            printLine(style.isTerminal() ? harmless(text) : text);
        }
    }
    if (json)
        print(all.dump());
    return ExitCode::answered;
}

} // namespace koine::tool
