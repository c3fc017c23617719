// The device that a command talks to.

#include "tools/connection.h"

#include "default_platform/host_settings.h"

#include <boost/make_shared.hpp>

#include <cmath>

namespace koine::tool {
namespace {

void applyHostSettings(const ConnectionOptions& options) {
    if (options.trace)
        traceToStandardError();
    if (options.timeoutSeconds > 0) {
        const auto milliseconds = static_cast<unsigned int>(std::ceil(options.timeoutSeconds * 1000));
        setRequestTimeLimit(milliseconds);
        setConnectTimeLimit(milliseconds);
    }
    setTlsVerification(!options.insecure);
    if (setTlsAuthorityFile(options.caFile.c_str()) != kOk)
        throw Failure(ExitCode::refused, "out of memory");
}

} // namespace

Connection::Connection(const ConnectionOptions& options, const Arguments& arguments, DeviceOptions device)
    : uid_(options.uid) {
    applyHostSettings(options);
    DeviceUrl url = parseDeviceUrl(arguments.withPassword(options.url));
    where_ = url.shown();
    device.vendor = options.vendor;
    device.username = options.user;
    const std::string& user = options.user.empty() ? url.username : options.user;
    if (!options.passwordFile.empty())
        device.password = readPasswordFile(options.passwordFile);
    else if (!user.empty() && url.password.empty() && canPrompt())
        device.password = promptPassword("Password of " + user + " at " + where_ + ": ");
    device_ = boost::make_shared<DialectRequest>();
    setUpDevice(*device_, url, device);
}

Answer Connection::demand(std::string_view line, std::string_view what) {
    Answer answer = ask(line);
    if (!answer.ok() || answer.status() != 0)
        throw failure(answer.result, answer.status(), what);
    return answer;
}

Failure Connection::failure(int result, int status, std::string_view what) const {
    const Meaning meaning = meaningOf(result, status);
    return Failure(meaning.code, where_ + ": " + std::string(what) + ": " + meaning.text);
}

} // namespace koine::tool
