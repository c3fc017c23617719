/// @file
/// Threads that show that they get on, so that whoever waits for them can tell when they do not.
#pragma once

#include "ledger.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace koine::soak {

/// Threads that work until they are told to end.
class Crew {
public:
    /// One of them, for the thread itself.
    class Member {
    public:
        unsigned int number() const { return number_; }
        bool shouldEnd() const { return *shouldEnd_; }
        /// To be called at each step: what takes longer than a minute is stuck.
        void moves() { movedAt_ = std::chrono::steady_clock::now().time_since_epoch().count(); }

    private:
        friend class Crew;
        bool isStuck() const;

        unsigned int number_ = 0;
        const std::atomic<bool>* shouldEnd_ = nullptr;
        std::atomic<bool> hasEnded_{false};
        std::atomic<std::int64_t> movedAt_{0};
    };

    /// `name` stands in complaints. Must end, or the process must, before anything that `work` uses is gone.
    Crew(std::string name, Ledger& ledger, unsigned int count, std::function<void(Member&)> work);
    ~Crew() { end(); }
    Crew(const Crew&) = delete;
    Crew& operator=(const Crew&) = delete;

    /// Whether all of them move.
    bool moves() const;

    /// Tells them to end and looks on until each has ended or is stuck; complains about those that are.
    /// @return whether all have ended. If not, only the process can end: the others are still at work
    bool end();

private:
    void run(Member& member) const;

    const std::string name_;
    Ledger& ledger_;
    const std::function<void(Member&)> work_;
    std::atomic<bool> shouldEnd_{false};
    std::vector<Member> members_;
    std::vector<std::thread> threads_;
};

/// Prints what there is and ends the process as a failure: threads that are stuck leave nothing else to do.
[[noreturn]] void giveUp(const Ledger& ledger);

} // namespace koine::soak
