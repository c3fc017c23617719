#include "bench/device_process.h"

#include "bench/wire_device.h"

#include <array>
#include <cstdlib>
#include <exception>
#include <stdexcept>

#include <sys/wait.h>
#include <unistd.h>

namespace koine::bench {
namespace {

struct Pipe {
    Pipe() {
        std::array<int, 2> ends{};
        if (pipe(ends.data()) != 0)
            throw std::runtime_error("the system has no pipe to give");
        reading = ends[0];
        writing = ends[1];
    }
    int reading = -1;
    int writing = -1;
};

/// The other process: tells its address and serves until the lifeline is closed.
[[noreturn]] void serve(const sim::DeviceModel& model, int telling, int lifeline) noexcept {
    try {
        const WireDevice device(model);
        const std::string url = device.url();
        if (write(telling, url.data(), url.size()) == static_cast<ssize_t>(url.size()) &&
            close(telling) == 0) {
            char nothing = 0;
            static_cast<void>(!read(lifeline, &nothing, 1));
        }
    } catch (const std::exception&) {
        // the address is missing then, which the other side tells
    }
    _exit(0);
}

std::string readAll(int from) {
    std::string text;
    std::array<char, 64> piece{};
    for (ssize_t count = 0; (count = read(from, piece.data(), piece.size())) > 0;)
        text.append(piece.data(), static_cast<std::size_t>(count));
    return text;
}

} // namespace

DeviceProcess::DeviceProcess(const sim::DeviceModel& model) {
    const Pipe address;
    const Pipe life;
    child_ = fork();
    if (child_ == 0) {
        close(address.reading);
        close(life.writing);
        serve(model, address.writing, life.reading);
    }
    close(address.writing);
    close(life.reading);
    lifeline_ = life.writing;
    url_ = child_ < 0 ? "" : readAll(address.reading);
    close(address.reading);
    if (url_.empty())
        throw std::runtime_error("a simulated device in another process does not serve");
}

DeviceProcess::~DeviceProcess() {
    close(lifeline_);
    waitpid(child_, nullptr, 0);
}

} // namespace koine::bench
