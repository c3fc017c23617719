// koine dump: the whole configuration, for a file.

#include "cache/key_map.h"
#include "tools/commands/commands.h"
#include "tools/json.h"
#include "tools/saved_configuration.h"
#include "tools/terminal.h"

namespace koine::tool {
namespace {

Json asJson(const Configuration& configuration) {
    Json values = Json::object();
    for (const auto& [key, value] : configuration.values)
        values.set(key, value);
    return values;
}

/// The head says which device it was, and nothing that changes from run to run: two dumps of the same
/// configuration are the same file.
void write(const Configuration& configuration, Connection& connection) {
    const Answer login = connection.ask("Login.cgi");
    const std::string product(valueOr(login.values(), "Product-Name", "unnamed product"));
    printLine("# configuration of " + connection.where() + " (" + product + ")");
    for (const std::string& category : configuration.absent)
        printLine("# the device has no " + category);
    for (const auto& [key, value] : configuration.values)
        printLine(std::string(key).append("=").append(value));
}

} // namespace

ExitCode DumpCommand::run(const Arguments& arguments) const {
    Connection connection(target, arguments);
    const Configuration configuration = readConfiguration(connection);
    if (json)
        print(asJson(configuration).dump());
    else
        write(configuration, connection);
    return ExitCode::answered;
}

} // namespace koine::tool
