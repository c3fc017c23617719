// The device that a command talks to.

#include "tools/connection.h"

#include "default_platform/host_settings.h"
#include "devices/prepare_media.h"
#include "text/scan.h"

#include <boost/make_shared.hpp>

#include <cmath>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace koine::tool {
namespace {

/// Why the last request failed, in the words of the HTTP client.
std::string g_reason;

/// Its traces look like "??#245 IHttpClient::Request: uid=1, err-3, REASON. ".
void keepReason(std::string_view line) {
    int code = 0;
    unsigned int uid = 0;
    const std::size_t begin = line.find("IHttpClient::Request: ");
    if (begin == std::string_view::npos)
        return;
    Cursor cursor(line.substr(begin));
    if (!cursor.literal("IHttpClient::Request: uid=") || !cursor.whole(uid) || !cursor.literal(", err") ||
        !cursor.integer(code) || !cursor.literal(", "))
        return;
    const std::string_view reason = cursor.rest();
    g_reason = reason.substr(0, reason.find_last_not_of(". ") + 1);
}

/// Before each trace line; ends with a blank unless it is empty.
std::string g_traceMark;

void takeTrace(const char* line, void* /*context*/) { keepReason(line); }

void showTrace(const char* line, void* /*context*/) {
    keepReason(line);
    // With one write, or lines of several processes would get into each other.
    const std::string text = g_traceMark + line + "\n";
    std::fwrite(text.data(), 1, text.size(), stderr);
}

/// The library writes some conditions to standard error itself. They are for those who ask for traces.
class QuietStandardError {
public:
    explicit QuietStandardError(bool quiet) {
        if (!quiet)
            return;
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        if (nowhere < 0)
            return;
        std::fflush(stderr);
        before_ = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
        if (before_ >= 0)
            dup2(nowhere, STDERR_FILENO);
        close(nowhere);
    }
    ~QuietStandardError() {
        if (before_ < 0)
            return;
        dup2(before_, STDERR_FILENO);
        close(before_);
    }
    QuietStandardError(const QuietStandardError&) = delete;
    QuietStandardError& operator=(const QuietStandardError&) = delete;

private:
    int before_ = -1;
};

void applyHostSettings(const ConnectionOptions& options) {
    g_traceMark = options.traceMark.empty() ? std::string() : options.traceMark + " ";
    traceToCallback(options.trace ? showTrace : takeTrace, nullptr);
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
    : uid_(options.uid), trace_(options.trace) {
    applyHostSettings(options);
    DeviceUrl url = parseDeviceUrl(arguments.withPassword(options.url));
    where_ = url.shown();
    device.vendor = options.vendor;
    device.username = options.user;
    device.connections = options.connections;
    const std::string& user = options.user.empty() ? url.username : options.user;
    if (!options.passwordFile.empty())
        device.password = readPasswordFile(options.passwordFile);
    else if (!user.empty() && url.password.empty() && device.password.empty() && canPrompt())
        device.password = promptPassword("Password of " + user + " at " + where_ + ": ");
    device_ = boost::make_shared<DialectRequest>();
    setUpDevice(*device_, url, device);
}

Answer Connection::ask(std::string_view line) {
    g_reason.clear();
    const QuietStandardError quiet(!trace_);
    return request(*device_, uid_, line);
}

Answer Connection::demand(std::string_view line, std::string_view what) {
    Answer answer = ask(line);
    if (!answer.ok() || answer.status() != 0)
        throw failure(answer.result, answer.status(), what);
    return answer;
}

void Connection::prepareMedia() {
    demand("Capability.cgi?action=get", "reading the capabilities");
    const QuietStandardError quiet(!trace_);
    koine::prepareMedia(*device_, uid_);
}

Failure Connection::failure(int result, int status, std::string_view what) const {
    const Meaning meaning = meaningOf(result, status);
    std::string text = where_ + ": " + std::string(what) + ": " + meaning.text;
    if (!g_reason.empty())
        text += " (" + g_reason + ")";
    return Failure(meaning.code, text, meaning.brief());
}

} // namespace koine::tool
