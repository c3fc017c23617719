/// @file
/// What was asked and what came back.
#pragma once

#include "kinds.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>
#include <vector>

namespace koine::soak {

using Duration = std::chrono::steady_clock::duration;

/// The results that a request may have; -11 is a device's own refusal.
inline constexpr std::array<int, 11> kResults = {1, 0, -1, -2, -3, -4, -5, -6, -8, -11, -14};

/// Of one kind.
struct Tally {
    std::uint64_t ended = 0;
    std::uint64_t lost = 0; ///< never ended, or without any text where one is due
    std::array<std::uint64_t, kResults.size()> results{};
    std::uint64_t otherResults = 0;
    std::uint64_t faults = 0; ///< answers that cannot be right
    std::uint64_t late = 0;
    Duration longest{0};

    void add(const Tally& other);
};

/// The whole run. Threads keep tallies of their own and add them now and then; what went wrong is told at
/// once.
class Ledger {
public:
    void add(const std::array<Tally, kKinds.size()>& tallies);
    /// A request of this kind is stuck.
    void lose(std::size_t kind);
    void complain(const std::string& what);

    const std::array<Tally, kKinds.size()>& tallies() const { return tallies_; }
    Tally total() const;
    std::uint64_t complaints() const;

    /// The table: one row per kind of request, one column per result.
    void print() const;

private:
    mutable std::mutex mutex_;
    std::array<Tally, kKinds.size()> tallies_{};
    std::uint64_t complaints_ = 0;
};

} // namespace koine::soak
