/// @file
/// A support library that follows a script and records every call. The program's functions of `platform/`
/// are part of it; tests/README.md tells how to use it.
#pragma once

#include "platform/TlGlobalLib.h"
#include "tests/support/scripted_device.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace koine::test {

/// Request lines, in the order in which they were sent.
using Lines = std::vector<std::string>;

/// One diagnostic line.
struct Trace {
    std::string format; ///< as passed
    int line;           ///< the first number
    std::string text;   ///< as printed, with its line end
};

/// One call into the support library, or one step of the request object, with the situation it met.
struct Event {
    std::string text;     ///< "lock", "client.Request(...)", "recoveryUrl(7, Login.cgi, answer)", ...
    std::string function; ///< `g_login_debug_function_name`
    int checkpoint;       ///< `g_login_debug_line`
    int lockDepth;        ///< how often the locks are held, this call not counted
};

/// Functions that take the place of the default rules. Empty: the default rule.
struct PlatformHooks {
    using Question = std::function<int(const char*)>;

    std::function<int(const char*, CgiMap*)> createMapStr;
    std::function<int(const char*, CgiMap*)> createMapstrFromCgi;
    std::function<char*(CgiMap*, const char*)> getCgiStr;
    std::function<char*(const char*, unsigned int, char*)> getTovlinCgiUrl;
    Question checkIfONVIFProductName;
    Question checkIf331_578ProductName;
    Question checkIf5240ProductName;
    Question checkIfPellProductId;
    Question checkIfNoCapabilityProductId;
    Question haveResoIndepInCapability;
    Question haveProfileInCapability;
    Question haveIDPTZInCapability;
    std::function<int(const char*, _VIDEO_SYSTEM_DEF, int*, int*)> getResolutionByStr;
    std::function<int(const char*, int, int, char*, unsigned int)> getResolutionStrByValue2;
    std::function<char*(const char*, int, char*, int, int, float, int, int, int)> getConfigVideoStr_TovlinNVR;
};

/// The one support library of the test program. Before each test it is as new; after each test it must hold
/// no lock and no HTTP client, or the test fails.
class ScriptedPlatform {
public:
    // ---- The script
    ScriptedDevice device;
    PlatformHooks hooks;
    bool clientsCanBeMade = true; ///< false: `CreateIHttpClient` gives null

    /// From now on nothing is recorded, so that the recorder orders no threads: a thread checker then sees
    /// what only the library's own locks order. Set up the script before, without `once`.
    void beQuiet() { quiet_ = true; }

    // ---- What was recorded
    std::vector<Trace> traces() const;
    std::vector<Event> events() const;
    std::vector<std::string> transcript() const; ///< the events' texts
    std::vector<DeviceRequest> requests() const;
    std::vector<std::string> requestLines() const; ///< the requests' lines
    /// The first event whose text begins like this; fails the test when there is none.
    Event eventOf(const std::string& beginning) const;
    /// How many events begin like this.
    int countOf(const std::string& beginning) const;
    int lockDepth() const;    ///< how often all locks together are held
    int lockMisuses() const;  ///< failed operations on locks
    int locksInUse() const;   ///< locks that were made and not ended
    int clientsAlive() const; ///< HTTP clients that were made and not released
    std::vector<std::string> headersAsked() const;

    /// Forgets what was recorded; the script stays.
    void forget();
    /// Forgets the script too.
    void reset();

    // ---- For the test support itself
    bool quiet() const { return quiet_; }
    void note(std::string_view text);
    void noteTrace(const char* format, int line, std::string text);
    void noteRequest(const DeviceRequest& request);
    void noteHeader(const std::string& name);
    void noteClient(int change);
    int lock(vm_mutex* mutex);
    int unlock(vm_mutex* mutex);
    int initialise(vm_mutex* mutex);
    void destroy(vm_mutex* mutex);

private:
    struct Lock {
        int depth = 0;
        std::thread::id owner;
    };

    Event eventNow(std::string_view text) const;
    int totalDepth() const;

    mutable std::mutex guard_;
    bool quiet_ = false;
    std::vector<Trace> traces_;
    std::vector<Event> events_;
    std::vector<DeviceRequest> requests_;
    std::vector<std::string> headersAsked_;
    std::map<const vm_mutex*, Lock> locks_;
    int lockMisuses_ = 0;
    std::atomic<int> clientsAlive_{0};
};

ScriptedPlatform& platform();
inline ScriptedDevice& device() { return platform().device; }

/// The trace lines as printed, since the test began or since `forgetTraces`.
std::vector<std::string> traces();
void forgetTraces();

/// The text as a recorded call shows it: "(null)" for none.
std::string shownText(const char* text);

/// As "%#x" of an object's address prints it in a trace: its low 32 bits.
std::string shortAddress(const void* object);

/// A text from `malloc`, for hooks that hand one out.
char* mallocedText(const std::string& text);

} // namespace koine::test
