/// @file
/// What a request costs: time, processor time of its thread, memory.
#pragma once

#include "devices/answer.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>

namespace koine::test {

struct Cost {
    Answer answer;
    std::chrono::milliseconds took{0}; ///< without the time that the thread had to wait for a processor
    std::chrono::milliseconds processor{0};
    std::size_t memory = 0; ///< at most, beyond what there was; 0 when it cannot be measured
};

Cost costOf(const std::function<Answer()>& request);

/// Time limit of a request: short where it is what ends the request; elsewhere no loaded machine may reach
/// it.
inline constexpr std::chrono::milliseconds kShortLimit{400};
inline constexpr std::chrono::milliseconds kLongLimit{20'000};

inline constexpr std::size_t kBodyLimit = std::size_t{1} << 20;
inline constexpr std::size_t kMostMemory = kBodyLimit + (std::size_t{1} << 20);

/// A thread's account holds all of a line's memory only where the line has no helpers that ask ahead: what
/// one of them took, the asking thread may give back.
inline constexpr std::array<unsigned int, 2> kConnections = {1, 2};
inline constexpr std::size_t kAnyMemory = SIZE_MAX;

/// What the caches of a device may take that claims more media profiles than any device has.
inline constexpr std::size_t kMostCacheMemory = std::size_t{16} << 20;

/// The same for lists of a megabyte.
inline constexpr std::size_t kMostListMemory = std::size_t{32} << 20;

/// Waiting costs next to nothing, and so does refusing what is too much. Sanitizers make everything dearer.
std::chrono::milliseconds mostProcessorTime();

/// The limits of all requests, for as long as it lives.
class Limits {
public:
    explicit Limits(std::chrono::milliseconds time);
    ~Limits();
    Limits(const Limits&) = delete;
    Limits& operator=(const Limits&) = delete;

    std::chrono::milliseconds time() const { return time_; }

private:
    std::chrono::milliseconds time_;
};

/// The requests that a line made of the device.
struct Requests {
    std::uint64_t sent = 0;
    std::uint64_t failed = 0;
};

/// Compares a cost with the limits; `what` stands in the complaint. Each request that failed may have taken
/// the time limit and a tenth, each that was answered a tenth.
void expectCheap(const Cost& cost, const std::string& what, std::chrono::milliseconds limit,
                 const Requests& requests, std::size_t mostMemory = kMostMemory);

} // namespace koine::test
