/// @file
/// Asks a device for answers ahead: while the library is busy with the first lines of a fill, the last ones
/// are on their way already.
#pragma once

#include "platform/http_client.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace koine {

/// The header whose value is handed out with an answer.
constexpr const char* kCookieHeader = "SET-COOKIE";

/// What is asked ahead.
struct PrefetchPlan {
    std::vector<std::string> urls; ///< in the order in which the library is going to ask
    std::string username;
    std::string password;
    unsigned int connections = 1; ///< besides the one that the library uses itself
    unsigned int timeLimit = 0;   ///< of a request in milliseconds; 0 is the HTTP clients' own
};

/// What an HTTP client said to a request.
struct ClientAnswer {
    int result = 0;
    int status = 0; ///< of HTTP
    std::optional<std::string> body;
    std::optional<std::string> cookie; ///< of the header "SET-COOKIE"
};

/// One fill. The library asks its lines one after the other as ever; helpers, each a thread with an HTTP
/// client of its own, begin at the other end. Where they meet, nothing is left to ask.
///
/// Only answers are handed out: a request that failed here is the library's to make, at its time and with all
/// that comes of it. The first failure ends the asking ahead.
///
/// Threads: one uses the object; the helpers are its own and have ended when it is destroyed.
class Prefetch {
public:
    explicit Prefetch(PrefetchPlan plan);

    /// Ends what is under way.
    ~Prefetch();

    /// Sends the helpers off; a second time does nothing. Without memory or threads there are fewer or none.
    void start() noexcept;

    /// The answer to a URL, once; waits for one that is nearly there. Nothing when the library has to ask
    /// itself: then no helper will.
    std::optional<ClientAnswer> take(std::string_view url, std::string_view username,
                                     std::string_view password);

    /// Ends the asking ahead, and whoever waits in `take` gets the result of an aborted request. Any thread.
    void abort();

private:
    using Clock = std::chrono::steady_clock;

    struct Item {
        enum class State { waiting, asked, answered, done };

        explicit Item(std::string itsUrl) : url(std::move(itsUrl)) {}

        std::string url;
        State state = State::waiting;
        Clock::time_point begun;
        std::optional<ClientAnswer> answer;
    };

    struct ReleaseClient {
        void operator()(IHttpClient* client) const { client->Release(); }
    };

    struct Helper {
        std::unique_ptr<IHttpClient, ReleaseClient> client;
        std::thread thread;
        bool isAsking = false;
        bool hasEnded = false;
    };

    bool addHelper();
    void work(Helper& helper) noexcept;
    Item* beginLast(Helper& helper);
    ClientAnswer ask(IHttpClient& client, const Item& item) const noexcept;
    void settle(Helper& helper, Item& item, ClientAnswer answer);
    bool comesInTime(const Item& item, std::unique_lock<std::mutex>& lock);
    void abortRequests();

    const std::string username_;
    const std::string password_;
    const unsigned int connections_;
    const unsigned int timeLimit_;
    bool isStarted_ = false;

    std::mutex mutex_; // for all below
    std::condition_variable changed_;
    std::vector<Item> items_;
    std::vector<std::unique_ptr<Helper>> helpers_;
    Clock::duration slowest_{};
    bool isAwaited_ = false; // somebody waits for an answer
    bool isAborted_ = false; // while somebody did
    bool isStopping_ = false;
};

} // namespace koine
