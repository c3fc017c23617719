#include "host.h"

#include "tests/support/thread_time.h"

#include "devices/open_device.h"

#include <algorithm>

namespace koine::soak {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kMostLines = 12;
constexpr unsigned int kUsers = 6;
// A loaded machine may hold up the devices and the threads that ask ahead; a time limit that does not work
// would cost far more.
constexpr std::chrono::milliseconds kScheduling{1000};

} // namespace

boost::shared_ptr<DialectRequest> makeObject(const Unit& unit) {
    DeviceOptions options;
    options.username = kUser;
    options.password = kPassword;
    options.rtspPort = unit.rtspPort();
    return openDevice(unit.url(), options);
}

SharedObjects::SharedObjects(const std::vector<Unit>& units) {
    for (const Unit& unit : units)
        objects_.push_back(makeObject(unit));
}

boost::shared_ptr<DialectRequest> SharedObjects::get(const Unit& unit) {
    const std::lock_guard<std::mutex> guard(mutex_);
    return objects_[unit.number];
}

void SharedObjects::replace(const Unit& unit) {
    auto fresh = makeObject(unit);
    // The old one may die with this thread's reference, and outside the lock.
    const std::lock_guard<std::mutex> guard(mutex_);
    objects_[unit.number].swap(fresh);
}

void SharedObjects::clear() {
    const std::lock_guard<std::mutex> guard(mutex_);
    objects_.clear();
}

/// One host thread.
class Host::Worker {
public:
    Worker(Host& host, Crew::Member& member, unsigned int seed)
        : host_(host), member_(member), asking_(host.asking_[member.number()]), random_(seed) {}

    void run() {
        while (!member_.shouldEnd()) {
            useOneObject();
            host_.ledger_.add(tallies_); // what is stuck later takes nothing with it
            tallies_ = {};
        }
    }

private:
    unsigned int pick(std::size_t count) { return static_cast<unsigned int>(random_() % count); }

    void useOneObject() {
        const Unit& unit = host_.units_[pick(host_.units_.size())];
        const bool isShared = pick(2) == 0;
        if (isShared && pick(8) == 0) {
            host_.shared_.replace(unit);
            ++host_.objectsMade_;
        }
        const auto object = isShared ? host_.shared_.get(unit) : makeObject(unit);
        host_.objectsMade_ += isShared ? 0 : 1;
        const int lines = 1 + static_cast<int>(pick(kMostLines));
        for (int i = 0; i < lines && !member_.shouldEnd(); ++i)
            useOnce(*object, unit, isShared);
    }

    void useOnce(DialectRequest& object, const Unit& unit, bool isShared) {
        if (pick(40) == 0)
            object.close();
        const std::size_t number = pick(kKinds.size());
        const Kind& kind = kKinds[number];
        Tally& tally = tallies_[number];
        const std::uint64_t sentBefore = object.requestsSent();
        const auto waitedBefore = test::threadWaitingTime();
        const Clock::time_point start = Clock::now();
        member_.moves();
        asking_ = static_cast<int>(number);
        const Answer answer = send(object, unit, 1 + pick(kUsers), kind);
        asking_ = kNothing;
        member_.moves();
        const Duration took = Clock::now() - start;
        ++tally.ended;
        if (!count(tally, answer.result))
            complain(kind, unit, "result " + std::to_string(answer.result));
        tally.longest = std::max(tally.longest, took);
        if (const std::string fault = faultOf(answer, kind, unit); !fault.empty()) {
            ++(lacksItsText(answer, kind) ? tally.lost : tally.faults);
            complain(kind, unit,
                     fault + ": result " + std::to_string(answer.result) + ", \"" +
                         answer.text.substr(0, 300) + "\"");
        }
        // Who shares an object waits for the others too.
        if (!isShared)
            checkTime(tally, kind, unit, took - (test::threadWaitingTime() - waitedBefore),
                      object.requestsSent() - sentBefore);
    }

    /// @return whether it is one of the stated results
    static bool count(Tally& tally, int result) {
        const auto found = std::find(kResults.begin(), kResults.end(), result);
        const bool isStated = found != kResults.end();
        ++(isStated ? tally.results[static_cast<std::size_t>(found - kResults.begin())] : tally.otherResults);
        return isStated;
    }

    /// Each request that went to the device has its own limit, plus a tenth.
    void checkTime(Tally& tally, const Kind& kind, const Unit& unit, Duration took, std::uint64_t requests) {
        const Duration most = kTimeLimit * static_cast<int>(requests) * 11 / 10 + kScheduling;
        if (took <= most)
            return;
        ++tally.late;
        complain(kind, unit,
                 "took " +
                     std::to_string(std::chrono::duration_cast<std::chrono::milliseconds>(took).count()) +
                     " ms for " + std::to_string(requests) + " requests");
    }

    void complain(const Kind& kind, const Unit& unit, const std::string& what) {
        host_.ledger_.complain(unit.mark() + ", " + kind.name + ": " + what);
    }

    Host& host_;
    Crew::Member& member_;
    std::atomic<int>& asking_;
    std::mt19937 random_;
    std::array<Tally, kKinds.size()> tallies_{};
};

Host::Host(const std::vector<Unit>& units, Ledger& ledger, unsigned int threads, unsigned int seed)
    : units_(units),
      ledger_(ledger),
      shared_(units),
      objectsMade_(units.size()),
      asking_(threads),
      crew_("host thread", ledger, threads,
            [this, seed](Crew::Member& member) { Worker(*this, member, seed + 1 + member.number()).run(); }) {
}

bool Host::end() {
    const bool allEnded = crew_.end();
    for (const std::atomic<int>& kind : asking_)
        if (kind != kNothing)
            ledger_.lose(static_cast<std::size_t>(kind));
    if (allEnded)
        shared_.clear();
    return allEnded;
}

} // namespace koine::soak
