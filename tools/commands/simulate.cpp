// koine simulate: a simulated device until it is told to stop.

#include "simulator/simulated_device.h"
#include "tools/commands/commands.h"
#include "tools/terminal.h"

#include <csignal>
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

void listModels(const std::filesystem::path& folder) {
    Table table({{"MODEL"}, {"CHANNELS", Table::Align::right}, {"DESCRIPTION"}});
    for (const std::string& name : sim::modelNames(folder)) {
        const sim::DeviceModel model = sim::builtinModel(name, folder);
        table.add({name, std::to_string(model.channels()), model.description()});
    }
    table.print(Style(stdout));
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

/// SIGINT and SIGTERM are waited for instead of acted on. Made before the device starts its thread, which
/// takes the mask over.
class StopSignals {
public:
    StopSignals() {
        sigemptyset(&set_);
        sigaddset(&set_, SIGINT);
        sigaddset(&set_, SIGTERM);
        pthread_sigmask(SIG_BLOCK, &set_, nullptr);
    }
    void wait() const {
        int signal = 0;
        sigwait(&set_, &signal);
    }

private:
    sigset_t set_{};
};

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
        orUsage([&] { tool::listModels(folder); });
        return ExitCode::answered;
    }
    if (listFaults) {
        print(sim::faultHelp());
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

    const StopSignals stop;
    const auto device = orUsage([&] { return std::make_unique<sim::SimulatedDevice>(options); });
    for (const sim::Fault& fault : wanted)
        device->setFault(fault);
    printLine(model + " at " + device->url() + (auth == "none" ? "" : ", " + auth + ", user " + user));
    std::fflush(stdout); // a script waits for this line
    stop.wait();
    const sim::Counters counters = device->counters();
    device->stop();
    printCounters(counters);
    return ExitCode::answered;
}

} // namespace koine::tool
