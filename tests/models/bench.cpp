#include "bench.h"

#include "text/tokens.h"

#include <algorithm>

namespace koine::test {
namespace {

constexpr const char* kUser = "admin";
constexpr const char* kPassword = "secret";

sim::Options optionsOf(const std::string& model, sim::AuthKind auth) {
    sim::Options options(sim::builtinModel(model));
    options.auth = auth;
    options.username = kUser;
    options.password = kPassword;
    return options;
}

DeviceOptions hostOptions(const std::string& vendor, unsigned int connections) {
    DeviceOptions options;
    options.username = kUser;
    options.password = kPassword;
    options.vendor = vendor;
    options.connections = connections;
    return options;
}

} // namespace

Bench::Bench(const std::string& model, const std::string& vendor, sim::AuthKind auth,
             unsigned int connections)
    : device_(optionsOf(model, auth)),
      request_(openDevice(device_.url(), hostOptions(vendor, connections))) {}

Lines Bench::takeLines() {
    Lines lines;
    for (const sim::LoggedRequest& logged : device_.requests())
        lines.push_back(logged.status == 200 ? logged.line
                                             : std::to_string(logged.status) + " " + logged.line);
    device_.resetCounters();
    return lines;
}

Lines learningLines(const std::string& model) {
    Lines lines = {"Login.cgi"};
    if (model == "nocapability")
        lines.emplace_back("Machine.cgi?action=get_capability");
    else
        lines.emplace_back("Capability.cgi?action=get");
    if (model == "videoserver")
        lines.emplace_back("Capability.cgi?action=get&channel=1");
    // A device without the category answers with HTTP 404, which is no failure.
    lines.emplace_back((model == "noprofiles" ? "404 " : "") + getLine("Media.*") + "&ch=1");
    for (const char* category : {"Video.*", "Camera.*", "Notification.*", "Misc.*", "VideoAnalytics.*"})
        lines.push_back(getLine(category));
    return lines;
}

std::string modelOf(const testing::TestParamInfo<std::string>& info) { return info.param; }

std::string getLine(std::string_view category) {
    return std::string("Config.cgi?action=get&category=").append(category);
}

Lines linesOf(std::string_view text) {
    Lines lines;
    for (const std::string_view line : Tokens(text, "\n"))
        lines.emplace_back(line);
    return lines;
}

std::string changedLines(std::string_view before, std::string_view now) {
    const Lines known = linesOf(before);
    std::string text;
    for (const std::string& line : linesOf(now))
        if (std::find(known.begin(), known.end(), line) == known.end())
            text.append(line).append("\n");
    return text;
}

} // namespace koine::test
