#include "crew.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace koine::soak {
namespace {

using Clock = std::chrono::steady_clock;

// Every thread may wait for all others at one lock, each with a line of ten requests.
constexpr std::chrono::seconds kStuck{60};
constexpr std::chrono::milliseconds kLook{10};

} // namespace

bool Crew::Member::isStuck() const {
    const Clock::duration moved(movedAt_);
    return !hasEnded_ && Clock::now().time_since_epoch() - moved > kStuck;
}

Crew::Crew(std::string name, Ledger& ledger, unsigned int count, std::function<void(Member&)> work)
    : name_(std::move(name)), ledger_(ledger), work_(std::move(work)), members_(count) {
    for (Member& member : members_) {
        member.number_ = static_cast<unsigned int>(threads_.size());
        member.shouldEnd_ = &shouldEnd_;
        member.moves();
        threads_.emplace_back([this, &member] { run(member); });
    }
}

void Crew::run(Member& member) const {
    work_(member);
    member.hasEnded_ = true;
}

bool Crew::moves() const {
    return std::none_of(members_.begin(), members_.end(),
                        [](const Member& member) { return member.isStuck(); });
}

bool Crew::end() {
    shouldEnd_ = true;
    const auto isAtWork = [](const Member& member) { return !member.hasEnded_ && !member.isStuck(); };
    while (std::any_of(members_.begin(), members_.end(), isAtWork))
        std::this_thread::sleep_for(kLook);
    bool allEnded = true;
    for (const Member& member : members_)
        if (!member.hasEnded_) {
            allEnded = false;
            ledger_.complain(name_ + " " + std::to_string(member.number_) + " is stuck");
        }
    for (std::thread& thread : threads_)
        if (allEnded && thread.joinable())
            thread.join();
    return allEnded;
}

void giveUp(const Ledger& ledger) {
    ledger.print();
    std::printf("\n  BAD  every thread came to an end\n");
    std::fflush(stdout);
    std::_Exit(1);
}

} // namespace koine::soak
