// A device's configuration as a file.

#include "tools/saved_configuration.h"

#include "tools/categories.h"
#include "tools/named_input.h"

namespace koine::tool {
namespace {

CgiMap readPairs(std::istream& stream, const std::string& name) {
    CgiMap values;
    std::string line;
    for (int number = 1; std::getline(stream, line); ++number) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (line.empty() || line.front() == '#')
            continue;
        const std::size_t equals = line.find('=');
        if (equals == std::string::npos || equals == 0)
            throw Failure(ExitCode::usage,
                          name + ": line " + std::to_string(number) +
                              " is no key=value; give a file that koine dump wrote without --json");
        values[line.substr(0, equals)] = line.substr(equals + 1);
    }
    if (values.empty())
        throw Failure(ExitCode::usage,
                      name + ": holds no key=value; give a file that koine dump wrote without --json");
    return values;
}

} // namespace

Configuration readConfiguration(Connection& connection) {
    connection.prepareMedia();
    Configuration configuration;
    for (const std::string_view category : kConfiguration) {
        const Answer answer = connection.ask(readingLine(category));
        if (meansAbsent(answer.result, answer.status()))
            configuration.absent.emplace_back(category);
        else if (!answer.ok() || answer.status() != 0)
            throw connection.failure(answer.result, answer.status(), "reading " + std::string(category));
        else
            configuration.values.merge(answer.values());
    }
    return configuration;
}

CgiMap readConfigurationFile(const std::string& path) { return readNamedInput(path, readPairs); }

} // namespace koine::tool
