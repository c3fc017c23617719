#include "tests/tools/run_tool.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <fstream>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace koine::test {
namespace {

constexpr int kPatienceMilliseconds = 60'000;

struct Pipe {
    Pipe() { EXPECT_EQ(pipe2(ends.data(), O_CLOEXEC), 0); }
    std::array<int, 2> ends{};
};

[[noreturn]] void become(const std::vector<std::string>& arguments, int in, int out, int err) {
    dup2(in, STDIN_FILENO);
    dup2(out, STDOUT_FILENO);
    dup2(err, STDERR_FILENO);
    std::vector<char*> texts;
    std::string tool = KOINE_TOOL;
    texts.push_back(tool.data());
    for (const std::string& argument : arguments)
        texts.push_back(const_cast<char*>(argument.c_str()));
    texts.push_back(nullptr);
    execv(KOINE_TOOL, texts.data());
    _exit(127);
}

/// Reads what there is; false at the end.
bool readSome(int descriptor, std::string& text) {
    std::array<char, 65536> bytes{};
    const ssize_t count = read(descriptor, bytes.data(), bytes.size());
    if (count > 0)
        text.append(bytes.data(), static_cast<std::size_t>(count));
    return count > 0;
}

} // namespace

RunningTool::RunningTool(const std::vector<std::string>& arguments, const std::string& input) {
    const Pipe in;
    const Pipe out;
    const Pipe err;
    id_ = fork();
    if (id_ == 0)
        become(arguments, in.ends[0], out.ends[1], err.ends[1]);
    close(in.ends[0]);
    close(out.ends[1]);
    close(err.ends[1]);
    out_ = out.ends[0];
    err_ = err.ends[0];
    EXPECT_EQ(write(in.ends[1], input.data(), input.size()), static_cast<ssize_t>(input.size()));
    close(in.ends[1]);
}

RunningTool::~RunningTool() {
    if (id_ > 0) {
        kill(id_, SIGKILL);
        waitpid(id_, nullptr, 0);
    }
    close(out_);
    close(err_);
}

std::string RunningTool::readLine() {
    while (read_.find('\n') == std::string::npos)
        if (!readSome(out_, read_))
            return {};
    const std::size_t end = read_.find('\n');
    std::string line = read_.substr(0, end);
    read_.erase(0, end + 1);
    return line;
}

void RunningTool::signal(int number) const { kill(id_, number); }

Outcome RunningTool::finish() {
    Outcome outcome;
    outcome.out = std::move(read_);
    std::array<pollfd, 2> streams = {pollfd{out_, POLLIN, 0}, pollfd{err_, POLLIN, 0}};
    std::array<std::string*, 2> texts = {&outcome.out, &outcome.err};
    for (int open = 2; open > 0;) {
        if (poll(streams.data(), streams.size(), kPatienceMilliseconds) <= 0) {
            ADD_FAILURE() << "the command does not end";
            kill(id_, SIGKILL);
            break;
        }
        for (std::size_t i = 0; i < streams.size(); ++i)
            if (streams[i].revents != 0 && !readSome(streams[i].fd, *texts[i])) {
                streams[i].fd = -1;
                --open;
            }
    }
    int status = 0;
    waitpid(id_, &status, 0);
    id_ = -1;
    outcome.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return outcome;
}

Outcome runTool(const std::vector<std::string>& arguments, const std::string& input) {
    Outcome outcome = RunningTool(arguments, input).finish();
    for (const char* secret : {kPassword, kCookie})
        EXPECT_FALSE(contains(outcome.out + outcome.err, secret)) << outcome.out << outcome.err;
    return outcome;
}

namespace {

sim::Options guarded(sim::AuthKind auth) {
    sim::Options options(sim::builtinModel("dome"));
    options.auth = auth;
    options.username = kUser;
    options.password = kPassword;
    options.cookie = std::string("session=") + kCookie;
    return options;
}

} // namespace

GuardedDome::GuardedDome(sim::AuthKind auth) : device_(guarded(auth)) {}

std::string GuardedDome::urlFor(const std::string& password) const {
    return "http://" + std::string(kUser) + ":" + password + "@127.0.0.1:" + std::to_string(device_.port());
}

TemporaryFile::TemporaryFile(const std::string& content) : path_("/tmp/koine-test-XXXXXX") {
    close(mkstemp(path_.data()));
    std::ofstream(path_) << content;
}

TemporaryFile::~TemporaryFile() { unlink(path_.c_str()); }

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

} // namespace koine::test
