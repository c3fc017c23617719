/// @file
/// An HTTP client that answers from a table and notes what it was asked.
#pragma once

#include <condition_variable>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace koine::test {

struct SentRequest {
    std::string url;
    std::string username;
    std::string password;
    int method = 0;
    int connection = 0;
    int client = 0;                                       ///< which one sent it, counted from 1
    std::optional<unsigned int> uid;                      ///< nothing when the client was never given one
    std::optional<unsigned int> timeLimit = std::nullopt; ///< likewise
};

/// What a client says to a request.
struct ScriptedReply {
    int result = -14;
    std::string text;
    std::string cookie;
};

/// The device behind every client of this program. One at a time; it is empty at the start of each. Any
/// thread may use it.
class ScriptedDevice {
public:
    ScriptedDevice();
    ~ScriptedDevice();
    ScriptedDevice(const ScriptedDevice&) = delete;
    ScriptedDevice& operator=(const ScriptedDevice&) = delete;

    /// What it answers to URLs that contain `part`; the longest part that fits is taken.
    void answers(const std::string& part, const std::string& text, const std::string& cookie = {});
    /// A request that fails in the client.
    void fails(const std::string& part, int result);
    /// The same for one client only, before all other answers.
    void failsOn(int client, const std::string& part, int result);
    /// A request that ends in an exception.
    void throwsAt(const std::string& part);
    /// It has no more clients to make than these; no limit unless called.
    void makesClients(int most);

    /// Requests whose URL contains `part` stay without an answer until `letGo`, or until their client is
    /// aborted.
    void hold(const std::string& part);
    void letGo(const std::string& part);
    /// Whether so many requests arrive before a long time has passed.
    bool awaits(std::size_t requests);

    /// From now on answers are given in rounds: when `clients` requests are there, or one that none can be
    /// asked beside. The first request of a client takes two, as with a device that wants credentials.
    void answersInRounds(std::size_t clients);
    int rounds() const;

    std::vector<SentRequest> sent() const;
    std::vector<std::string> urls() const;
    int clientsAlive() const;
    int clientsMade() const;
    int aborted() const;             ///< requests that were ended by an abort
    std::size_t mostAtATime() const; ///< requests that were under way together

    // ---- For the client
    int addClient();
    void removeClient();
    ScriptedReply take(const SentRequest& request);
    void abort(int client);

private:
    ScriptedReply replyTo(const SentRequest& request) const;
    bool isHeld(const std::string& url) const;
    void awaitRound(std::unique_lock<std::mutex>& lock);

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    std::map<std::string, ScriptedReply> answers_;
    std::map<std::pair<int, std::string>, int> failures_;
    std::vector<SentRequest> sent_;
    std::set<std::string> held_;
    std::set<std::string> throwing_;
    std::set<int> running_;
    std::set<int> aborts_;
    std::set<int> introduced_;
    std::size_t roundSize_ = 0;
    std::size_t inRound_ = 0;
    int rounds_ = 0;
    std::size_t mostAtATime_ = 0;
    int clientsMade_ = 0;
    int clientsAlive_ = 0;
    std::optional<int> mostClients_;
    int aborted_ = 0;
};

} // namespace koine::test
