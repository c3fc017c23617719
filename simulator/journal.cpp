#include "simulator/journal.h"

namespace koine::sim {
namespace {

constexpr std::size_t kMostLogged = 10000;
constexpr std::size_t kMostLogBytes = 16U << 20U;
constexpr std::size_t kLongestLine = 16U << 10U;
constexpr std::size_t kMostPaths = 256;
constexpr std::string_view kOtherPaths = "(other)";
constexpr unsigned int kUnauthorized = 401;

} // namespace

std::uint64_t Journal::countConnection() {
    const std::lock_guard lock(mutex_);
    ++counters_.connections;
    return ++lastConnection_;
}

void Journal::countCookie() {
    const std::lock_guard lock(mutex_);
    ++counters_.cookiesReturned;
}

void Journal::log(LoggedRequest request, std::string_view path) {
    const std::lock_guard lock(mutex_);
    ++counters_.requests;
    if (request.status == kUnauthorized)
        ++counters_.unauthorized;
    const bool hasRoom = counters_.perPath.size() < kMostPaths || counters_.perPath.count(path) != 0;
    ++counters_.perPath[std::string(hasRoom ? path : kOtherPaths)];
    if (request.line.size() > kLongestLine)
        request.line.resize(kLongestLine);
    logBytes_ += request.line.size();
    log_.push_back(std::move(request));
    while (log_.size() > kMostLogged || logBytes_ > kMostLogBytes) {
        logBytes_ -= log_.front().line.size();
        log_.pop_front();
    }
}

Counters Journal::counters() const {
    const std::lock_guard lock(mutex_);
    return counters_;
}

std::vector<LoggedRequest> Journal::requests() const {
    const std::lock_guard lock(mutex_);
    return {log_.begin(), log_.end()};
}

void Journal::reset() {
    const std::lock_guard lock(mutex_);
    counters_ = {};
    log_.clear();
    logBytes_ = 0;
}

} // namespace koine::sim
