#include "ledger.h"

#include <algorithm>
#include <cstdio>

namespace koine::soak {
namespace {

// The rest is only counted.
constexpr std::uint64_t kMostComplaintsTold = 40;

double milliseconds(Duration time) { return std::chrono::duration<double, std::milli>(time).count(); }

void printRow(const char* name, const Tally& tally) {
    std::printf("%-26s %9llu", name, static_cast<unsigned long long>(tally.ended));
    for (const std::uint64_t count : tally.results)
        std::printf(" %8llu", static_cast<unsigned long long>(count));
    std::printf(" %6llu %6llu %6llu %6llu %8.0f\n", static_cast<unsigned long long>(tally.otherResults),
                static_cast<unsigned long long>(tally.lost), static_cast<unsigned long long>(tally.faults),
                static_cast<unsigned long long>(tally.late), milliseconds(tally.longest));
}

} // namespace

void Tally::add(const Tally& other) {
    ended += other.ended;
    lost += other.lost;
    for (std::size_t i = 0; i < results.size(); ++i)
        results[i] += other.results[i];
    otherResults += other.otherResults;
    faults += other.faults;
    late += other.late;
    longest = std::max(longest, other.longest);
}

void Ledger::add(const std::array<Tally, kKinds.size()>& tallies) {
    const std::lock_guard<std::mutex> guard(mutex_);
    for (std::size_t i = 0; i < tallies.size(); ++i)
        tallies_[i].add(tallies[i]);
}

void Ledger::lose(std::size_t kind) {
    const std::lock_guard<std::mutex> guard(mutex_);
    ++tallies_.at(kind).lost;
}

void Ledger::complain(const std::string& what) {
    const std::lock_guard<std::mutex> guard(mutex_);
    if (++complaints_ <= kMostComplaintsTold)
        std::printf("BAD: %s\n", what.c_str());
}

std::uint64_t Ledger::complaints() const {
    const std::lock_guard<std::mutex> guard(mutex_);
    return complaints_;
}

Tally Ledger::total() const {
    Tally total;
    for (const Tally& tally : tallies_)
        total.add(tally);
    return total;
}

void Ledger::print() const {
    std::printf("%-26s %9s", "REQUESTS", "ENDED");
    for (const int result : kResults)
        std::printf(" %8d", result);
    std::printf(" %6s %6s %6s %6s %8s\n", "OTHER", "LOST", "WRONG", "LATE", "LONGEST");
    for (std::size_t i = 0; i < kKinds.size(); ++i)
        printRow(kKinds[i].name, tallies_[i]);
    printRow("all", total());
}

} // namespace koine::soak
