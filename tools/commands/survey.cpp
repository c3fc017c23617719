// koine survey: many devices at once.

#include "text/numbers.h"
#include "tools/commands/commands.h"
#include "tools/stop_signals.h"
#include "tools/survey/progress.h"
#include "tools/survey/report.h"
#include "tools/terminal.h"

#include <algorithm>
#include <cmath>
#include <deque>

#include <poll.h>

namespace koine::tool {
namespace {

using Clock = Probe::Clock;
using State = Finding::State;

constexpr double kDefaultSeconds = 30;

/// Some devices at a time, each in a process of its own.
class Survey {
public:
    Survey(const SurveyCommand& command, const Arguments& arguments, std::vector<ListedDevice> devices,
           std::string password)
        : command_(command),
          arguments_(arguments),
          password_(std::move(password)),
          seconds_(command.target.timeoutSeconds > 0 ? command.target.timeoutSeconds : kDefaultSeconds),
          progress_(devices.size(), !command.target.trace) {
        report_.findings.resize(devices.size());
        report_.devices = std::move(devices);
    }

    SurveyReport run() {
        const Clock::time_point start = Clock::now();
        progress_.show(0, 0, "");
        while (!report_.interrupted && (next_ < report_.devices.size() || !running_.empty())) {
            startMore();
            takeNews();
            endOverdue();
        }
        endAll();
        report_.milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        return std::move(report_);
    }

private:
    void startMore() {
        for (; next_ < report_.devices.size() && running_.size() < command_.jobs; ++next_)
            running_.push_back(probe(next_));
    }

    Probe probe(std::size_t index) const {
        const ListedDevice& device = report_.devices[index];
        ConnectionOptions options = command_.target;
        options.url = device.url;
        options.traceMark = device.shown;
        options.passwordFile.clear(); // its password has been read
        if (device.hasUser)
            options.user.clear();
        options.timeoutSeconds = seconds_ + 1; // the survey itself watches the limit
        DeviceOptions more;
        if (!device.hasPassword)
            more.password = password_;
        return Probe(index, options, more, arguments_);
    }

    Clock::time_point deadlineOf(const Probe& probe) const {
        return probe.start() +
               std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds_));
    }

    /// Until the oldest device is overdue; the oldest is the first.
    int patience() const {
        if (running_.empty())
            return 0;
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadlineOf(running_.front()) - Clock::now());
        return static_cast<int>(std::clamp<long long>(left.count(), 0, 60'000));
    }

    void takeNews() {
        std::vector<pollfd> watched = {{stop_.descriptor(), POLLIN, 0}};
        for (const Probe& probe : running_)
            watched.push_back({probe.descriptor(), POLLIN, 0});
        if (poll(watched.data(), watched.size(), patience()) <= 0)
            return;
        if (watched.front().revents != 0)
            report_.interrupted = true;
        // From the end: what is taken out does not move what is still to be looked at.
        for (std::size_t i = running_.size(); i-- > 0;)
            if (watched[i + 1].revents != 0 && !running_[i].read())
                take(i, running_[i].finish());
    }

    void endOverdue() {
        while (!running_.empty() && Clock::now() >= deadlineOf(running_.front())) {
            const std::string brief =
                "no answer within " + fixedText(seconds_, std::floor(seconds_) == seconds_ ? 0 : 1) + " s";
            take(0, running_.front().end(State::failed, ExitCode::unreachable, brief,
                                         report_.devices[running_.front().device()].shown + ": " + brief +
                                             "; try again with a longer --timeout"));
        }
    }

    /// After an interrupt: nothing is left running.
    void endAll() {
        while (!running_.empty())
            take(0, running_.front().end(State::interrupted, ExitCode::interrupted, "interrupted",
                                         "the survey was interrupted before the device had answered"));
        for (std::size_t i = next_; i < report_.findings.size(); ++i) {
            report_.findings[i].brief = "not asked";
            report_.findings[i].error = "the survey was interrupted before the device was asked";
        }
    }

    void take(std::size_t place, Finding finding) {
        const std::size_t device = running_[place].device();
        running_.erase(running_.begin() + static_cast<std::ptrdiff_t>(place));
        ++finished_;
        failed_ += finding.state == State::failed ? 1 : 0;
        report_.findings[device] = std::move(finding);
        progress_.show(finished_, failed_, report_.devices[device].shown);
    }

    const SurveyCommand& command_;
    const Arguments& arguments_;
    std::string password_;
    double seconds_;
    StopSignals stop_;
    Progress progress_;
    SurveyReport report_;
    std::size_t next_ = 0;
    std::size_t finished_ = 0;
    std::size_t failed_ = 0;
    std::deque<Probe> running_; ///< the oldest first
};

/// The password for devices whose URL has a user name, or gets the common one, but no password.
std::string commonPassword(const SurveyCommand& command, const std::vector<ListedDevice>& devices) {
    if (!command.target.passwordFile.empty())
        return readPasswordFile(command.target.passwordFile);
    const bool wanted = std::any_of(devices.begin(), devices.end(), [&](const ListedDevice& device) {
        return !device.hasPassword && (device.hasUser || !command.target.user.empty());
    });
    if (wanted && command.file != "-" && canPrompt())
        return promptPassword("Password of the devices whose URL has none: ");
    return {};
}

} // namespace

ExitCode SurveyCommand::run(const Arguments& arguments) const {
    if (file == "-" && target.passwordFile == "-")
        throw Failure(ExitCode::usage,
                      "standard input cannot be both the list and the password; give one a file");
    std::vector<ListedDevice> devices = readDeviceList(file);
    std::string password = commonPassword(*this, devices);
    const SurveyReport report = Survey(*this, arguments, std::move(devices), std::move(password)).run();
    if (json)
        print(reportAsJson(report).dump());
    else
        showReport(report);
    if (const std::size_t missing = report.notAnswered(); missing > 0)
        std::fprintf(stderr, "koine: %s did not answer; koine info URL tells more about one\n",
                     counted(missing, "device").c_str());
    return report.code();
}

} // namespace koine::tool
