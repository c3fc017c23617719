// koine simulate: a simulated device until it is told to stop.

#include "default_platform/host_settings.h"
#include "platform/trace.h"
#include "simulator/simulated_device.h"
#include "text/numbers.h"
#include "text/tokens.h"
#include "tools/commands/commands.h"
#include "tools/json.h"
#include "tools/stop_signals.h"
#include "tools/terminal.h"

#include <algorithm>
#include <stdexcept>

namespace koine::tool {
namespace {

/// The simulator tells what is wrong with its settings by exceptions; here they are usage errors.
template <typename Action>
auto orUsage(Action&& action) {
    try {
        return action();
    } catch (const std::exception& error) {
        throw Failure(ExitCode::usage, error.what());
    }
}

void listModels(const std::filesystem::path& folder, bool json) {
    Json all = Json::array();
    Table table({{"MODEL"}, {"CHANNELS", Table::Align::right}, {"DESCRIPTION"}});
    for (const std::string& name : sim::modelNames(folder)) {
        const sim::DeviceModel model = sim::builtinModel(name, folder);
        table.add({name, std::to_string(model.channels()), model.description()});
        Json one = Json::object();
        one.set("model", name);
        one.set("channels", Json::number(model.channels()));
        one.set("description", model.description());
        all.add(std::move(one));
    }
    if (json)
        print(all.dump());
    else
        table.print(Style(stdout));
}

/// The list of faults has a line for each: its word, blanks, what it does.
void listFaults(bool json) {
    const std::string help = sim::faultHelp();
    if (!json) {
        print(help);
        return;
    }
    Json all = Json::array();
    for (const std::string_view line : Tokens(help, "\n")) {
        const std::size_t word = std::min(line.find(' '), line.size());
        Json one = Json::object();
        one.set("fault", line.substr(0, word));
        one.set("description", skipBlanks(line.substr(word)));
        all.add(std::move(one));
    }
    print(all.dump());
}

/// Where the device is. Programs read it as soon as it stands there: it is one line.
void printStart(const SimulateCommand& command, const std::string& url) {
    if (command.json) {
        Json start = Json::object();
        start.set("model", command.model);
        start.set("url", url);
        start.set("auth", command.auth);
        start.set("user", command.auth == "none" ? "" : command.user);
        print(start.line());
    } else {
        printLine(command.model + " at " + url +
                  (command.auth == "none" ? "" : ", " + command.auth + ", user " + command.user));
    }
    std::fflush(stdout); // a script waits for this line
}

Json asJson(const sim::Counters& counters) {
    const auto number = [](std::uint64_t count) { return Json::number(static_cast<long long>(count)); };
    Json paths = Json::object();
    for (const auto& [path, count] : counters.perPath)
        paths.set(path, number(count));
    Json json = Json::object();
    json.set("connections", number(counters.connections));
    json.set("requests", number(counters.requests));
    json.set("unauthorized", number(counters.unauthorized));
    json.set("paths", std::move(paths));
    return json;
}

sim::Options optionsOf(const SimulateCommand& command, const std::filesystem::path& folder) {
    sim::Options options(sim::builtinModel(command.model, folder));
    options.auth = sim::parseAuthKind(command.auth);
    options.username = command.user;
    options.nonceLifetimeRequests = command.nonceLifetime;
    options.address = command.address;
    options.port = command.port;
    options.https = !command.certificate.empty();
    options.certificateFile = command.certificate;
    options.privateKeyFile = command.key;
    return options;
}

/// The password that the device wants.
std::string wantedPassword(const SimulateCommand& command) {
    if (!command.passwordFile.empty())
        return readPasswordFile(command.passwordFile);
    if (canPrompt())
        return promptPassword("Password that the device shall want: ");
    throw Failure(ExitCode::usage, "--auth " + command.auth + " needs a password; give --password-file");
}

/// "GET Login.cgi, 200, faults: delay", as a trace: these have no passwords and no control characters.
void showRequest(const sim::LoggedRequest& request) {
    std::string outcome = request.status == 0 ? "no HTTP status" : std::to_string(request.status);
    for (const std::string& fault : request.faults)
        outcome.append(&fault == request.faults.data() ? ", faults: " : " ").append(fault);
    dbg_trace("%s %s, %s", request.method.c_str(), request.line.c_str(), outcome.c_str());
}

void printCounters(const sim::Counters& counters) {
    const Style style(stdout);
    printLine();
    printLine(counted(counters.connections, "connection") + ", " + counted(counters.requests, "request") +
              ", of which " + std::to_string(counters.unauthorized) + " answered with 401");
    if (counters.perPath.empty())
        return;
    Table table({{"REQUESTS", Table::Align::right}, {"PATH"}});
    for (const auto& [path, count] : counters.perPath)
        table.add({std::to_string(count), harmless(path)});
    table.print(style);
}

} // namespace

ExitCode SimulateCommand::run() const {
    const std::filesystem::path folder =
        modelFolder.empty() ? sim::modelFolder() : std::filesystem::path(modelFolder);
    if (listModels) {
        orUsage([&] { tool::listModels(folder, json); });
        return ExitCode::answered;
    }
    if (listFaults) {
        tool::listFaults(json);
        return ExitCode::answered;
    }
    if (certificate.empty() != key.empty())
        throw Failure(ExitCode::usage, "https needs both --tls-certificate and --tls-key");
    sim::Options options = orUsage([&] { return optionsOf(*this, folder); });
    std::vector<sim::Fault> wanted;
    for (const std::string& fault : faults)
        wanted.push_back(orUsage([&] { return sim::parseFault(fault); }));
    if (options.auth != sim::AuthKind::none)
        options.password = wantedPassword(*this);

    if (verbose) {
        traceToStandardError();
        options.onRequest = showRequest;
    }

    const StopSignals stop;
    const auto device = orUsage([&] { return std::make_unique<sim::SimulatedDevice>(options); });
    for (const sim::Fault& fault : wanted)
        device->setFault(fault);
    printStart(*this, device->url());
    stop.wait();
    const sim::Counters counters = device->counters();
    device->stop();
    if (json)
        print(asJson(counters).line());
    else
        printCounters(counters);
    return ExitCode::answered;
}

} // namespace koine::tool
