#include "scripted_platform.h"

#include "default_rules.h"
#include "failing_allocations.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace koine::test {
namespace {

bool beginsWith(const std::string& text, const std::string& beginning) {
    return text.compare(0, beginning.size(), beginning) == 0;
}

std::string checkpointFunction() {
    std::string name;
    for (char& place : g_login_debug_function_name) {
        const char c = __atomic_load_n(&place, __ATOMIC_RELAXED);
        if (c == '\0')
            break;
        name += c;
    }
    return name;
}

} // namespace

ScriptedPlatform& platform() {
    static ScriptedPlatform one;
    return one;
}

Event ScriptedPlatform::eventNow(std::string_view text) const {
    return {std::string(text), checkpointFunction(), __atomic_load_n(&g_login_debug_line, __ATOMIC_RELAXED),
            totalDepth()};
}

int ScriptedPlatform::totalDepth() const {
    int depth = 0;
    for (const auto& [mutex, lock] : locks_)
        depth += lock.depth;
    return depth;
}

void ScriptedPlatform::note(std::string_view text) {
    if (quiet_)
        return;
    const SpareAllocations spare;
    const std::lock_guard<std::mutex> guard(guard_);
    events_.push_back(eventNow(text));
}

void ScriptedPlatform::noteTrace(const char* format, int line, std::string text) {
    const std::lock_guard<std::mutex> guard(guard_);
    events_.push_back(eventNow("trace " + text));
    traces_.push_back({format, line, std::move(text)});
}

void ScriptedPlatform::noteRequest(const DeviceRequest& request) {
    if (quiet_)
        return;
    const SpareAllocations spare;
    const std::lock_guard<std::mutex> guard(guard_);
    events_.push_back(eventNow("client.Request(" + request.url + ", " + request.username + ", " +
                               request.password + ", " + std::to_string(request.method) + ", " +
                               std::to_string(request.connection) + ")"));
    requests_.push_back(request);
}

void ScriptedPlatform::noteHeader(const std::string& name) {
    if (quiet_)
        return;
    const SpareAllocations spare;
    const std::lock_guard<std::mutex> guard(guard_);
    events_.push_back(eventNow("client.GetHeader(" + name + ")"));
    headersAsked_.push_back(name);
}

void ScriptedPlatform::noteClient(int change) { clientsAlive_.fetch_add(change, std::memory_order_relaxed); }

int ScriptedPlatform::lock(vm_mutex* mutex) {
    const int result = default_vm_mutex_lock(mutex);
    if (quiet_)
        return result;
    const SpareAllocations spare;
    const std::lock_guard<std::mutex> guard(guard_);
    events_.push_back(eventNow("lock"));
    if (result == 1) {
        Lock& lock = locks_[mutex];
        ++lock.depth;
        lock.owner = std::this_thread::get_id();
    } else {
        ++lockMisuses_;
    }
    return result;
}

int ScriptedPlatform::unlock(vm_mutex* mutex) {
    if (quiet_)
        return default_vm_mutex_unlock(mutex);
    const SpareAllocations spare;
    const std::lock_guard<std::mutex> guard(guard_);
    events_.push_back(eventNow("unlock"));
    const auto found = locks_.find(mutex);
    const bool held =
        found != locks_.end() && found->second.depth > 0 && found->second.owner == std::this_thread::get_id();
    if (held)
        --found->second.depth;
    else
        ++lockMisuses_;
    return default_vm_mutex_unlock(mutex);
}

int ScriptedPlatform::initialise(vm_mutex* mutex) {
    const int result = default_vm_mutex_init(mutex);
    if (quiet_)
        return result;
    const SpareAllocations spare;
    const std::lock_guard<std::mutex> guard(guard_);
    events_.push_back(eventNow("vm_mutex_init"));
    locks_[mutex] = Lock();
    return result;
}

void ScriptedPlatform::destroy(vm_mutex* mutex) {
    default_vm_mutex_destroy(mutex);
    const SpareAllocations spare;
    const std::lock_guard<std::mutex> guard(guard_);
    if (!quiet_)
        events_.push_back(eventNow("vm_mutex_destroy"));
    const auto found = locks_.find(mutex);
    if (found == locks_.end())
        return;
    if (found->second.depth > 0)
        ++lockMisuses_;
    locks_.erase(found);
}

std::vector<Trace> ScriptedPlatform::traces() const {
    const std::lock_guard<std::mutex> guard(guard_);
    return traces_;
}

std::vector<Event> ScriptedPlatform::events() const {
    const std::lock_guard<std::mutex> guard(guard_);
    return events_;
}

std::vector<std::string> ScriptedPlatform::transcript() const {
    std::vector<std::string> texts;
    for (const Event& event : events())
        texts.push_back(event.text);
    return texts;
}

std::vector<DeviceRequest> ScriptedPlatform::requests() const {
    const std::lock_guard<std::mutex> guard(guard_);
    return requests_;
}

std::vector<std::string> ScriptedPlatform::requestLines() const {
    std::vector<std::string> lines;
    for (const DeviceRequest& request : requests())
        lines.push_back(request.line);
    return lines;
}

Event ScriptedPlatform::eventOf(const std::string& beginning) const {
    const std::vector<Event> all = events();
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&](const Event& event) { return beginsWith(event.text, beginning); });
    if (found != all.end())
        return *found;
    ADD_FAILURE() << "no event begins with: " << beginning;
    return {"", "", 0, 0};
}

int ScriptedPlatform::countOf(const std::string& beginning) const {
    const std::vector<Event> all = events();
    return static_cast<int>(std::count_if(
        all.begin(), all.end(), [&](const Event& event) { return beginsWith(event.text, beginning); }));
}

int ScriptedPlatform::lockDepth() const {
    const std::lock_guard<std::mutex> guard(guard_);
    return totalDepth();
}

int ScriptedPlatform::lockMisuses() const {
    const std::lock_guard<std::mutex> guard(guard_);
    return lockMisuses_;
}

int ScriptedPlatform::locksInUse() const {
    const std::lock_guard<std::mutex> guard(guard_);
    return static_cast<int>(locks_.size());
}

int ScriptedPlatform::clientsAlive() const { return clientsAlive_.load(std::memory_order_relaxed); }

std::vector<std::string> ScriptedPlatform::headersAsked() const {
    const std::lock_guard<std::mutex> guard(guard_);
    return headersAsked_;
}

void ScriptedPlatform::forget() {
    const std::lock_guard<std::mutex> guard(guard_);
    traces_.clear();
    events_.clear();
    requests_.clear();
    headersAsked_.clear();
}

void ScriptedPlatform::reset() {
    forget();
    device = ScriptedDevice();
    hooks = PlatformHooks();
    clientsCanBeMade = true;
    quiet_ = false;
    locks_.clear();
    lockMisuses_ = 0;
    clientsAlive_ = 0;
    std::memset(g_login_debug_function_name, 0, sizeof g_login_debug_function_name);
    g_login_debug_line = 0;
}

std::vector<std::string> traces() {
    std::vector<std::string> texts;
    for (const Trace& trace : platform().traces())
        texts.push_back(trace.text);
    return texts;
}

void forgetTraces() { platform().forget(); }

std::string shownText(const char* text) { return text == nullptr ? "(null)" : text; }

std::string shortAddress(const void* object) {
    const auto low = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(object));
    char text[16];
    std::snprintf(text, sizeof text, "%#x", low);
    return text;
}

char* mallocedText(const std::string& text) {
    char* copy = static_cast<char*>(std::malloc(text.size() + 1));
    if (copy != nullptr)
        std::memcpy(copy, text.c_str(), text.size() + 1);
    return copy;
}

} // namespace koine::test
