#include "tests/devices/scripted_client.h"

#include "platform/http_client.h"
#include "text/owned_text.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>

namespace koine::test {
namespace {

// Nothing waits so long but a test that fails.
constexpr std::chrono::seconds kForEver{10};

ScriptedDevice* g_device = nullptr;

class Client final : public IHttpClient {
public:
    explicit Client(int number) : number_(number) {}

    void Release() override {
        if (g_device != nullptr)
            g_device->removeClient();
        delete this;
    }
    int Request(const char* url, const char* /*headers*/, const char* /*contentType*/,
                const void* /*content*/, unsigned int /*contentLength*/, const char* username,
                const char* password, char** body, unsigned int* bodyLength, int method,
                int connection) override {
        if (g_device == nullptr)
            return -3;
        reply_ = g_device->take(
            {url, orEmpty(username), orEmpty(password), method, connection, number_, uid_, timeLimit_});
        if (!reply_.text.empty()) {
            *body = reply_.text.data();
            *bodyLength = static_cast<unsigned int>(reply_.text.size());
        }
        return reply_.result;
    }
    void SetTimeout(unsigned int milliseconds) override { timeLimit_ = milliseconds; }
    int GetStatus() override { return reply_.result == 1 ? 200 : 404; }
    const char* GetHeader(const char* /*name*/) override {
        return reply_.cookie.empty() ? nullptr : reply_.cookie.c_str();
    }
    void Abort() override { g_device->abort(number_); }
    void Close() override {}
    void SetUid(unsigned int uid) override { uid_ = uid; }

private:
    ~Client() = default;

    int number_;
    std::optional<unsigned int> uid_;
    std::optional<unsigned int> timeLimit_;
    ScriptedReply reply_;
};

bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

} // namespace

ScriptedDevice::ScriptedDevice() { g_device = this; }
ScriptedDevice::~ScriptedDevice() { g_device = nullptr; }

void ScriptedDevice::answers(const std::string& part, const std::string& text, const std::string& cookie) {
    const std::lock_guard guard(mutex_);
    answers_[part] = {1, text, cookie};
}

void ScriptedDevice::fails(const std::string& part, int result) {
    const std::lock_guard guard(mutex_);
    answers_[part] = {result, "", ""};
}

void ScriptedDevice::failsOn(int client, const std::string& part, int result) {
    const std::lock_guard guard(mutex_);
    failures_[{client, part}] = result;
}

void ScriptedDevice::throwsAt(const std::string& part) {
    const std::lock_guard guard(mutex_);
    throwing_.insert(part);
}

void ScriptedDevice::makesClients(int most) {
    const std::lock_guard guard(mutex_);
    mostClients_ = most;
}

void ScriptedDevice::hold(const std::string& part) {
    const std::lock_guard guard(mutex_);
    held_.insert(part);
}

void ScriptedDevice::letGo(const std::string& part) {
    const std::lock_guard guard(mutex_);
    held_.erase(part);
    changed_.notify_all();
}

bool ScriptedDevice::awaits(std::size_t requests) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, kForEver, [&] { return sent_.size() >= requests; });
}

void ScriptedDevice::answersInRounds(std::size_t clients) {
    const std::lock_guard guard(mutex_);
    roundSize_ = clients;
}

int ScriptedDevice::rounds() const {
    const std::lock_guard guard(mutex_);
    return rounds_;
}

std::vector<SentRequest> ScriptedDevice::sent() const {
    const std::lock_guard guard(mutex_);
    return sent_;
}

std::vector<std::string> ScriptedDevice::urls() const {
    std::vector<std::string> urls;
    for (const SentRequest& request : sent())
        urls.push_back(request.url);
    return urls;
}

int ScriptedDevice::clientsAlive() const {
    const std::lock_guard guard(mutex_);
    return clientsAlive_;
}

int ScriptedDevice::clientsMade() const {
    const std::lock_guard guard(mutex_);
    return clientsMade_;
}

int ScriptedDevice::aborted() const {
    const std::lock_guard guard(mutex_);
    return aborted_;
}

std::size_t ScriptedDevice::mostAtATime() const {
    const std::lock_guard guard(mutex_);
    return mostAtATime_;
}

int ScriptedDevice::addClient() {
    const std::lock_guard guard(mutex_);
    if (mostClients_ && clientsMade_ >= *mostClients_)
        return 0;
    ++clientsAlive_;
    return ++clientsMade_;
}

void ScriptedDevice::removeClient() {
    const std::lock_guard guard(mutex_);
    --clientsAlive_;
}

ScriptedReply ScriptedDevice::take(const SentRequest& request) {
    std::unique_lock lock(mutex_);
    sent_.push_back(request);
    running_.insert(request.client);
    mostAtATime_ = std::max(mostAtATime_, running_.size());
    changed_.notify_all();
    if (roundSize_ != 0) {
        if (introduced_.insert(request.client).second)
            awaitRound(lock);
        awaitRound(lock);
    }
    changed_.wait_for(lock, kForEver,
                      [&] { return !isHeld(request.url) || aborts_.count(request.client) != 0; });
    running_.erase(request.client);
    for (const std::string& part : throwing_)
        if (has(request.url, part))
            throw std::length_error("a client's own");
    if (aborts_.erase(request.client) != 0) {
        ++aborted_;
        return {-7, "", ""};
    }
    return replyTo(request);
}

void ScriptedDevice::awaitRound(std::unique_lock<std::mutex>& lock) {
    const int mine = rounds_;
    if (++inRound_ < roundSize_)
        changed_.wait_for(lock, kForEver, [&] { return rounds_ != mine; });
    if (rounds_ != mine)
        return;
    inRound_ = 0;
    ++rounds_;
    changed_.notify_all();
}

void ScriptedDevice::abort(int client) {
    const std::lock_guard guard(mutex_);
    if (running_.count(client) != 0)
        aborts_.insert(client);
    changed_.notify_all();
}

bool ScriptedDevice::isHeld(const std::string& url) const {
    return std::any_of(held_.begin(), held_.end(), [&](const std::string& part) { return has(url, part); });
}

ScriptedReply ScriptedDevice::replyTo(const SentRequest& request) const {
    for (const auto& [where, result] : failures_)
        if (where.first == request.client && has(request.url, where.second))
            return {result, "", ""};
    ScriptedReply best;
    std::size_t length = 0;
    for (const auto& [part, reply] : answers_)
        if (part.size() >= length && has(request.url, part)) {
            best = reply;
            length = part.size();
        }
    return best;
}

} // namespace koine::test

IHttpClient* CreateIHttpClient() {
    using koine::test::g_device;
    const int number = g_device == nullptr ? 1 : g_device->addClient();
    return number == 0 ? nullptr : new koine::test::Client(number);
}
