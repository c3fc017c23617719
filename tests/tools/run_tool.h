/// @file
/// Runs the command as a process.
#pragma once

#include "simulator/simulated_device.h"

#include <string>
#include <vector>

#include <sys/types.h>

namespace koine::test {

inline constexpr const char* kUser = "admin";
inline constexpr const char* kPassword = "can4ry-s3cret"; ///< no output may ever hold it
inline constexpr const char* kCookie = "can4ry-c00kie";   ///< nor this, which devices give and want back

struct Outcome {
    int exitCode = -1; ///< -1 when a signal ended it
    std::string out;
    std::string err;
};

/// The command while it runs. Its environment has neither colours nor a terminal.
class RunningTool {
public:
    explicit RunningTool(const std::vector<std::string>& arguments, const std::string& input = {});
    ~RunningTool();
    RunningTool(const RunningTool&) = delete;
    RunningTool& operator=(const RunningTool&) = delete;

    pid_t id() const { return id_; }

    /// The next line of its output; empty at the end.
    std::string readLine();

    void signal(int number) const;

    /// Waits for its end, half a minute at most.
    Outcome finish();

private:
    pid_t id_ = -1;
    int out_ = -1;
    int err_ = -1;
    std::string read_;
};

/// Runs it to its end. Fails the test when an output holds the password or the cookie.
Outcome runTool(const std::vector<std::string>& arguments, const std::string& input = {});

/// A dome that wants Digest, and its URL with user name and password.
class GuardedDome {
public:
    explicit GuardedDome(sim::AuthKind auth = sim::AuthKind::digestMd5);

    sim::SimulatedDevice& device() { return device_; }
    std::string url() const { return urlFor(kPassword); }
    std::string urlFor(const std::string& password) const;
    std::string plainUrl() const { return device_.url(); }

private:
    sim::SimulatedDevice device_;
};

/// A file that is removed at the end.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& content);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    const std::string& path() const { return path_; }

private:
    std::string path_;
};

bool contains(const std::string& text, const std::string& part);

/// What stands at a place of a JSON text ("/0/values/A"): a text as it is, anything else as JSON; for what is
/// not there "(absent)", for a text that is no JSON "(no JSON)".
std::string jsonAt(const std::string& text, const std::string& place);

/// The names of the members there, in their order, with a blank between.
std::string jsonMembers(const std::string& text, const std::string& place);

/// How many elements or members the value there has.
std::size_t jsonSize(const std::string& text, const std::string& place = {});

} // namespace koine::test
