// Asks a device for answers ahead.

#include "devices/prefetch.h"

#include "koine/types.h"

#include <algorithm>
#include <exception>
#include <utility>

#include <pthread.h>
#include <signal.h>

namespace koine {

/// Our own support library has it; another one need not.
[[gnu::weak]] unsigned int requestTimeLimit();

namespace {

constexpr int kClientGet = 0;
constexpr int kKeepConnection = 0;
constexpr int kAborted = -7; // what HTTP clients say then

/// An answer that is on its way is waited for as long as twice the slowest one took, but at least so long.
/// A device that serves one connection at a time would keep the second one waiting for ever.
constexpr std::chrono::milliseconds kLeastPatience{1000};

/// What is not there by then is asked for anew, with the whole time limit of a request. Both together are to
/// stay close to that limit, so waiting may cost a twentieth of it.
constexpr unsigned int kPatienceInLimit = 20;

/// Of a support library that does not tell, as the customary one.
constexpr unsigned int kUsualTimeLimit = 30'000;

constexpr std::chrono::milliseconds kAbortAgain{2};

/// Whether the library may be told this: that the device has no such function is an answer too. Everything
/// else may have come of there being a second connection.
bool isAnswer(int result) { return result == kOk || result == kNoFunction; }

/// Threads that are started meanwhile leave the host's signals to the host's own.
class SignalsBlocked {
public:
    SignalsBlocked() {
        sigset_t all;
        sigfillset(&all);
        isBlocked_ = pthread_sigmask(SIG_SETMASK, &all, &before_) == 0;
    }
    ~SignalsBlocked() {
        if (isBlocked_)
            pthread_sigmask(SIG_SETMASK, &before_, nullptr);
    }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;

private:
    sigset_t before_{};
    bool isBlocked_ = false;
};

unsigned int timeLimitOfClients() {
    return requestTimeLimit != nullptr ? requestTimeLimit() : kUsualTimeLimit;
}

} // namespace

Prefetch::Prefetch(PrefetchPlan plan)
    : username_(std::move(plan.username)),
      password_(std::move(plan.password)),
      connections_(plan.connections),
      timeLimit_(plan.timeLimit) {
    items_.reserve(plan.urls.size());
    for (std::string& url : plan.urls)
        items_.emplace_back(std::move(url));
}

Prefetch::~Prefetch() {
    {
        std::unique_lock<std::mutex> lock(mutex_);
        isStopping_ = true;
        const auto haveEnded = [this] {
            return std::all_of(helpers_.begin(), helpers_.end(),
                               [](const std::unique_ptr<Helper>& helper) { return helper->hasEnded; });
        };
        // An abort misses a request that is only about to begin; hence again and again.
        while (!haveEnded()) {
            abortRequests();
            changed_.wait_for(lock, kAbortAgain);
        }
    }
    for (const std::unique_ptr<Helper>& helper : helpers_)
        helper->thread.join();
}

void Prefetch::start() noexcept {
    if (std::exchange(isStarted_, true))
        return;
    try {
        helpers_.reserve(connections_);
        while (helpers_.size() < connections_ && addHelper())
            continue;
    } catch (const std::exception&) {
        // No memory or no thread to be had. Whatever is not asked ahead is asked later.
    }
}

bool Prefetch::addHelper() {
    auto helper = std::make_unique<Helper>();
    // It is given no user id: the support library's client then traces nothing.
    helper->client.reset(CreateIHttpClient());
    if (!helper->client)
        return false;
    if (timeLimit_ != 0)
        helper->client->SetTimeout(timeLimit_);
    const std::lock_guard<std::mutex> guard(mutex_);
    const SignalsBlocked blocked;
    helper->thread = std::thread([this, &own = *helper] { work(own); });
    helpers_.push_back(std::move(helper)); // there is room for it
    return true;
}

void Prefetch::work(Helper& helper) noexcept {
    while (Item* const item = beginLast(helper))
        settle(helper, *item, ask(*helper.client, *item));
    const std::lock_guard<std::mutex> guard(mutex_);
    helper.hasEnded = true;
    changed_.notify_all();
}

Prefetch::Item* Prefetch::beginLast(Helper& helper) {
    const std::lock_guard<std::mutex> guard(mutex_);
    const auto last = std::find_if(items_.rbegin(), items_.rend(),
                                   [](const Item& item) { return item.state == Item::State::waiting; });
    if (isStopping_ || last == items_.rend())
        return nullptr;
    last->state = Item::State::asked;
    last->begun = Clock::now();
    helper.isAsking = true;
    return &*last;
}

ClientAnswer Prefetch::ask(IHttpClient& client, const Item& item) const noexcept {
    ClientAnswer answer;
    try {
        char* body = nullptr; // stays the client's
        unsigned int length = 0;
        answer.result = client.Request(item.url.c_str(), nullptr, nullptr, nullptr, 0, username_.c_str(),
                                       password_.c_str(), &body, &length, kClientGet, kKeepConnection);
        if (body != nullptr)
            answer.body.emplace(body, length);
        answer.status = client.GetStatus();
        if (const char* const cookie = client.GetHeader(kCookieHeader))
            answer.cookie.emplace(cookie);
    } catch (const std::exception&) {
        answer.result = kNoResource; // whatever it was, the library asks again itself
    }
    return answer;
}

void Prefetch::settle(Helper& helper, Item& item, ClientAnswer answer) {
    const std::lock_guard<std::mutex> guard(mutex_);
    helper.isAsking = false;
    slowest_ = std::max(slowest_, Clock::now() - item.begun);
    if (!isAnswer(answer.result))
        isStopping_ = true;
    else if (item.state == Item::State::asked)
        item.answer = std::move(answer);
    if (item.state == Item::State::asked)
        item.state = Item::State::answered;
    changed_.notify_all();
}

std::optional<ClientAnswer> Prefetch::take(std::string_view url, std::string_view username,
                                           std::string_view password) {
    std::unique_lock<std::mutex> lock(mutex_);
    const auto item = std::find_if(items_.begin(), items_.end(), [&](const Item& each) {
        return each.state != Item::State::done && each.url == url;
    });
    if (item == items_.end())
        return std::nullopt;
    const bool isInTime = comesInTime(*item, lock);
    if (std::exchange(isAborted_, false)) {
        item->state = Item::State::done;
        return ClientAnswer{kAborted, 0, std::nullopt, std::nullopt};
    }
    if (!isInTime) {
        isStopping_ = true;
        abortRequests();
    }
    item->state = Item::State::done;
    std::optional<ClientAnswer> answer = std::exchange(item->answer, std::nullopt);
    // Somebody has changed them meanwhile.
    if (username != username_ || password != password_)
        answer.reset();
    return answer;
}

/// False when an answer was waited for in vain.
bool Prefetch::comesInTime(const Item& item, std::unique_lock<std::mutex>& lock) {
    const std::chrono::milliseconds timeLimit{timeLimit_ != 0 ? timeLimit_ : timeLimitOfClients()};
    const auto patience = std::min<Clock::duration>(std::max<Clock::duration>(kLeastPatience, 2 * slowest_),
                                                    timeLimit / kPatienceInLimit);
    isAwaited_ = true;
    const bool isInTime = changed_.wait_until(lock, item.begun + patience,
                                              [&] { return item.state != Item::State::asked || isAborted_; });
    isAwaited_ = false;
    return isInTime;
}

void Prefetch::abort() {
    const std::lock_guard<std::mutex> guard(mutex_);
    isStopping_ = true;
    isAborted_ = isAwaited_;
    abortRequests();
    changed_.notify_all();
}

void Prefetch::abortRequests() {
    for (const std::unique_ptr<Helper>& helper : helpers_)
        if (helper->isAsking)
            helper->client->Abort();
}

} // namespace koine
