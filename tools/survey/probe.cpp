// One device of a survey, asked in a process of its own.

#include "tools/survey/probe.h"

#include "tools/learned.h"
#include "tools/summary.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace koine::tool {
namespace {

Json failed(ExitCode code, const std::string& brief, const std::string& error) {
    Json json = Json::object();
    json.set("code", Json::number(static_cast<int>(code)));
    json.set("brief", brief);
    json.set("error", error);
    return json;
}

/// What the process tells.
Json ask(const ConnectionOptions& options, const DeviceOptions& deviceOptions, const Arguments& arguments) {
    try {
        Connection connection(options, arguments, deviceOptions);
        Json json = Json::object();
        json.set("summary", summaryAsJson(learn(connection), connection.where()));
        return json;
    } catch (const Failure& failure) {
        return failed(failure.code(), failure.brief(), failure.what());
    } catch (const std::exception& error) {
        return failed(ExitCode::refused, "failed", error.what());
    }
}

void writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(descriptor, text.data(), text.size());
        if (written < 0 && errno != EINTR)
            return; // nobody listens any more
        if (written > 0)
            text.remove_prefix(static_cast<std::size_t>(written));
    }
}

/// Nothing is asked of a person, and the process does not outlive the survey.
void leaveTheTerminal() {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int nowhere = open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (nowhere >= 0)
        dup2(nowhere, STDIN_FILENO);
}

} // namespace

Probe::Probe(std::size_t device, const ConnectionOptions& options, const DeviceOptions& deviceOptions,
             const Arguments& arguments)
    : device_(device) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        throw Failure(ExitCode::refused, "too many files are open; try again with fewer --jobs");
    std::fflush(nullptr); // or what waits to be written is written twice
    id_ = fork();
    if (id_ == 0) {
        close(ends[0]);
        leaveTheTerminal();
        writeAll(ends[1], ask(options, deviceOptions, arguments).line());
        _exit(0);
    }
    close(ends[1]);
    descriptor_ = ends[0];
    if (id_ < 0)
        throw Failure(ExitCode::refused, "no further process can be started; try again with fewer --jobs");
}

Probe::~Probe() {
    if (id_ > 0) {
        kill(id_, SIGKILL);
        wait();
    }
    if (descriptor_ >= 0)
        close(descriptor_);
}

Probe::Probe(Probe&& other) noexcept
    : device_(other.device_),
      start_(other.start_),
      id_(std::exchange(other.id_, -1)),
      descriptor_(std::exchange(other.descriptor_, -1)),
      text_(std::move(other.text_)) {}

Probe& Probe::operator=(Probe&& other) noexcept {
    // What this one held ends with the other.
    std::swap(device_, other.device_);
    std::swap(start_, other.start_);
    std::swap(id_, other.id_);
    std::swap(descriptor_, other.descriptor_);
    std::swap(text_, other.text_);
    return *this;
}

bool Probe::read() {
    std::array<char, 65536> bytes{};
    const ssize_t count = ::read(descriptor_, bytes.data(), bytes.size());
    if (count > 0)
        text_.append(bytes.data(), static_cast<std::size_t>(count));
    return count > 0 || (count < 0 && errno == EINTR);
}

int Probe::wait() {
    int status = 0;
    while (waitpid(id_, &status, 0) < 0 && errno == EINTR) {
    }
    id_ = -1;
    return status;
}

double Probe::milliseconds() const {
    return std::chrono::duration<double, std::milli>(Clock::now() - start_).count();
}

Finding Probe::finish() {
    const int status = wait();
    const Json told = Json::parse(text_);
    Finding finding;
    finding.milliseconds = milliseconds();
    finding.summary = told.at("summary");
    if (!finding.summary.isNull()) {
        finding.state = Finding::State::answered;
        return finding;
    }
    finding.state = Finding::State::failed;
    if (told.isNull()) {
        finding.code = ExitCode::refused;
        finding.brief =
            WIFSIGNALED(status) ? "ended by signal " + std::to_string(WTERMSIG(status)) : "failed";
        finding.error = "asking this device ended the process; run koine info on it with --trace";
        return finding;
    }
    finding.code = static_cast<ExitCode>(told.at("code").asNumber());
    finding.brief = told.at("brief").asText();
    finding.error = told.at("error").asText();
    return finding;
}

Finding Probe::end(Finding::State state, ExitCode code, const std::string& brief, const std::string& error) {
    Finding finding;
    finding.state = state;
    finding.code = code;
    finding.brief = brief;
    finding.error = error;
    finding.milliseconds = milliseconds();
    kill(id_, SIGKILL);
    wait();
    return finding;
}

} // namespace koine::tool
