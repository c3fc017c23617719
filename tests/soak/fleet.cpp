#include "fleet.h"

#include <array>
#include <stdexcept>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace koine::soak {
namespace {

struct Pipe {
    Pipe() {
        if (::pipe2(ends.data(), O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe to the devices");
    }
    int reading() const { return ends[0]; }
    int writing() const { return ends[1]; }
    std::array<int, 2> ends{};
};

} // namespace

std::string Unit::markOf(unsigned int number) {
    const std::string digits = std::to_string(1000 + number).substr(1);
    return std::string(kMarkBegin) + digits;
}

Fleet::Fleet(unsigned int count, unsigned int seed) {
    const Pipe commands;
    const Pipe answers;
    process_ = ::fork();
    if (process_ < 0)
        throw std::runtime_error("no process for the devices");
    if (process_ == 0) {
        ::close(commands.writing());
        ::close(answers.reading());
        ::_exit(serveFleet(commands.reading(), answers.writing(), count, seed));
    }
    ::close(commands.reading());
    ::close(answers.writing());
    commands_ = commands.writing();
    answers_ = answers.reading();
    for (unsigned int number = 0; number < count; ++number)
        units_.push_back({number, static_cast<unsigned int>(std::stoul(readLine()))});
}

Fleet::~Fleet() { end(); }

bool Fleet::end() {
    if (process_ < 0)
        return true;
    ::close(commands_);
    ::close(answers_);
    int status = 0;
    ::waitpid(process_, &status, 0);
    process_ = -1;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

unsigned long Fleet::heal() {
    command('h');
    return std::stoul(readLine());
}

void Fleet::command(char what) const {
    if (::write(commands_, &what, 1) != 1)
        throw std::runtime_error("the devices are gone");
}

std::string Fleet::readLine() {
    std::string line;
    for (char c = 0; ::read(answers_, &c, 1) == 1;) {
        if (c == '\n')
            return line;
        line += c;
    }
    throw std::runtime_error("the devices are gone");
}

} // namespace koine::soak
