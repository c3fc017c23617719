/// @file
/// Many simulated devices in a process of their own, so that what this process uses is the library's alone.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace koine::soak {

inline constexpr const char* kUser = "admin";
inline constexpr const char* kPassword = "s0ak-s3cret";

/// One device. Whatever it answers, right or wrong, carries its mark.
struct Unit {
    unsigned int number = 0;
    unsigned int port = 0;

    std::string url() const { return "http://127.0.0.1:" + std::to_string(port); }
    std::string mark() const { return markOf(number); }
    /// A number of its own, so that a stream URI tells whose it is.
    unsigned int rtspPort() const { return 20000 + number; }

    static std::string markOf(unsigned int number);
};

/// How every mark begins.
inline constexpr std::string_view kMarkBegin = "unit-";

/// The devices. They are well until they are told otherwise.
class Fleet {
public:
    /// Starts the process; to be called before this one has threads.
    /// @throws std::runtime_error
    Fleet(unsigned int count, unsigned int seed);
    ~Fleet();
    Fleet(const Fleet&) = delete;
    Fleet& operator=(const Fleet&) = delete;

    const std::vector<Unit>& units() const { return units_; }

    /// From now on faults come and go at random.
    void misbehave() { command('m'); }

    /// Ends all faults; returns when they are gone.
    /// @return how many faults were shown so far
    /// @throws std::runtime_error when the devices are gone
    unsigned long heal();

    /// Ends the devices. @return whether their process ended well
    bool end();

private:
    void command(char what) const;
    std::string readLine();

    pid_t process_ = -1;
    int commands_ = -1;
    int answers_ = -1;
    std::vector<Unit> units_;
};

/// What the process of the devices does: serves until it is told to end or the other side is gone.
/// @return the exit code of the process
int serveFleet(int commands, int answers, unsigned int count, unsigned int seed);

} // namespace koine::soak
