// What the library sees is the same with and without prefetch: every step, every result, every trace and
// every call into the support library, in the same order. Only the HTTP clients work differently.

#include "devices/dialect_request.h"
#include "tests/support/failing_allocations.h"
#include "tests/support/test_request.h"
#include "text/owned_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <random>
#include <thread>

namespace koine::test {
namespace {

/// Notes every step that the prefetch could disturb.
class WatchedDialect : public DialectRequest {
public:
    int requestCgi(unsigned int uid, char* url, char** answer, _REQCGI_METHOD_DEF method,
                   _REQCGI_CONNECTION_DEF connection) override {
        return noted("requestCgi", url,
                     [&] { return DialectRequest::requestCgi(uid, url, answer, method, connection); });
    }
    int requestCgi_1(unsigned int uid, char* url, char** answer, _REQCGI_METHOD_DEF method,
                     _REQCGI_CONNECTION_DEF connection) override {
        const int result = noted("requestCgi_1", url, [&] {
            return DialectRequest::requestCgi_1(uid, url, answer, method, connection);
        });
        platform().note("answer " + std::string(answer == nullptr ? "(nowhere)" : orEmpty(*answer)));
        const char* const cookie = getCookie();
        platform().note("cookie " + std::string(orEmpty(cookie)));
        return result;
    }
    int HandleInit(unsigned int uid) override {
        return noted("HandleInit", "", [&] { return DialectRequest::HandleInit(uid); });
    }
    int cacheCgi(unsigned int uid) override {
        return noted("cacheCgi", "", [&] { return DialectRequest::cacheCgi(uid); });
    }
    int getCacheLogin(unsigned int uid, int refresh, const char* key, char** answer) override {
        return noted("getCacheLogin", key,
                     [&] { return DialectRequest::getCacheLogin(uid, refresh, key, answer); });
    }
    int getCacheCapability(unsigned int uid, int refresh, const char* url, char** answer) override {
        return noted("getCacheCapability", url,
                     [&] { return DialectRequest::getCacheCapability(uid, refresh, url, answer); });
    }
    int getCacheConfigMedia(unsigned int uid, int refresh, const char* url, const char* key,
                            char** answer) override {
        return noted("getCacheConfigMedia", key,
                     [&] { return DialectRequest::getCacheConfigMedia(uid, refresh, url, key, answer); });
    }
    int getCacheConfigVideo(unsigned int uid, int refresh, const char* extra, const char* key,
                            char** answer) override {
        return noted("getCacheConfigVideo", key,
                     [&] { return DialectRequest::getCacheConfigVideo(uid, refresh, extra, key, answer); });
    }
    int getCacheConfigMisc(unsigned int uid, int refresh, const char* extra, const char* key,
                           char** answer) override {
        return noted("getCacheConfigMisc", key,
                     [&] { return DialectRequest::getCacheConfigMisc(uid, refresh, extra, key, answer); });
    }
    int getCacheConfigAll(unsigned int uid, int mode, char** answer) override {
        return noted("getCacheConfigAll", "",
                     [&] { return DialectRequest::getCacheConfigAll(uid, mode, answer); });
    }
    int syncProfileToken(unsigned int uid) override {
        return noted("syncProfileToken", "", [&] { return DialectRequest::syncProfileToken(uid); });
    }

    Reply ask(const std::string& line, unsigned int uid) {
        std::string url = line;
        OwnedText text;
        const int result = requestHttpStr(uid, url.data(), nullptr, nullptr, OutText(text));
        return {result, text ? text.get() : "(null)"};
    }

private:
    template <typename Step>
    int noted(const char* name, const char* argument, Step step) {
        platform().note(std::string(name) + "(" + orEmpty(argument) + ")");
        const int result = step();
        platform().note(std::string(name) + " = " + std::to_string(result));
        return result;
    }
};

using Random = std::mt19937;

std::size_t below(Random& random, std::size_t bound) {
    return std::uniform_int_distribution<std::size_t>(0, bound - 1)(random);
}

/// A device that answers each line of a fill in some way, always the same one. Most lines are answered well,
/// or few fills would come far.
void scriptSomeDevice(Random& random) {
    device().answerAsCamera();
    const std::array<const char*, 4> logins = {
        "0\nOK\nProduct-Name=CAM\nProduct-ID=CAM\n", "0\nOK\nProduct-Name=X\nProduct-ID-Minor=NOCAP1\n",
        "0\nOK\nProduct-Name=ONVIF_Probe\nProduct-ID=PELL\n", "0\nOK\n"};
    device().on("Login.cgi", logins[below(random, logins.size())]);
    if (below(random, 4) == 0)
        device().on("Capability.cgi?action=get",
                    "0\nOK\nDevice=VIDEO SERVER\nCapability.Function=VA,Profile\n");
    device().on("Capability.cgi?action=get&channel=1", "0\nOK\nCapability.Channel=4\n");
    device().on("Machine.cgi?action=get_capability", "0\nOK\nDevice=IPCAM\nID=Machine\n");
    if (below(random, 3) == 0)
        device().header("SET-COOKIE", "session=7");
    const std::array<const char*, 8> lines = {"Login.cgi",
                                              "Capability.cgi?action=get",
                                              "Config.cgi?action=get&category=Media.*&ch=1",
                                              "Config.cgi?action=get&category=Video.*",
                                              "Config.cgi?action=get&category=Camera.*",
                                              "Config.cgi?action=get&category=Notification.*",
                                              "Config.cgi?action=get&category=Misc.*",
                                              "Config.cgi?action=get&category=VideoAnalytics.*"};
    for (std::size_t faults = below(random, 3); faults > 0; --faults) {
        const std::string line = lines[below(random, lines.size())];
        const std::array<DeviceAnswer, 14> answers = {-1,         -2,
                                                      -3,         -4,
                                                      -5,         -6,
                                                      -7,         -8,
                                                      -14,        DeviceAnswer(1),
                                                      "",         "-7\nERROR: Busy.\n",
                                                      "<html>\n", DeviceAnswer(-14, "<h1>404</h1>")};
        device().on(line, answers[below(random, answers.size())]);
    }
}

/// Gives the helpers something to do: a device that answers at once has told all before they are on their
/// way.
void takeSomeTime() {
    device().handler = [camera = device()](const DeviceRequest& asked) mutable {
        std::this_thread::sleep_for(std::chrono::microseconds(100));
        return camera.answerTo(asked);
    };
}

/// What a host may send in some order; what does not fill caches is between what does.
const std::array<const char*, 9> kLines = {
    "Stream.cgi?action=set&StreamSetup.Stream=RTP-Unicast&StreamSetup.Transport.Protocol=TCP&ProfileMode=AUTO"
    "&StreamSetup.VideoEncoderConfiguration.Resolution.NxN=640x480",
    "Stream.cgi?action=set&StreamSetup.Stream=RTP-Unicast&StreamSetup.Transport.Protocol=UDP&ProfileMode="
    "MOBILE",
    "Config.cgi?action=get&category=*",
    "Config.cgi?action=get&category=Misc.*",
    "Config.cgi?action=set&Camera.Name=new",
    "Stream.cgi?action=get",
    "Onvif.cgi?action=GetStreamUri&ProfileToken=ONE",
    "Login.cgi",
    "PTZ.cgi?stop=1"};

struct Situation {
    std::vector<std::string> lines;
    const char* vendor = "";
    int recorder = 0;
};

Situation someSituation(Random& random) {
    Situation situation;
    const std::array<const char*, 6> vendors = {"", "", "", "", "TOVLIN", "ONLY_STREAM"};
    situation.vendor = vendors[below(random, vendors.size())];
    situation.recorder = below(random, 8) == 0 ? 1 : 0;
    for (std::size_t count = 1 + below(random, 6); count > 0; --count)
        situation.lines.emplace_back(kLines[below(random, below(random, 2) == 0 ? 3 : kLines.size())]);
    return situation;
}

/// What one run left behind.
struct Seen {
    std::vector<std::string> events;   ///< all but those of the clients, with lock depth and checkpoint
    std::vector<std::string> requests; ///< sorted
    std::uint64_t prefetched = 0;
};

/// The clients' own doings, and the URLs that are made ahead, are what may differ.
bool mayDiffer(const std::string& event) {
    for (const char* part : {"client.", "CreateIHttpClient", "getTovlinCgiUrl("})
        if (event.rfind(part, 0) == 0)
            return true;
    return false;
}

Seen whatWasSeen(const void* object) {
    Seen seen;
    const std::string address = shortAddress(object);
    for (const Event& event : platform().events()) {
        if (mayDiffer(event.text))
            continue;
        std::string text = event.text;
        for (std::size_t at = text.find(address); at != std::string::npos; at = text.find(address, at))
            text.replace(at, address.size(), "OBJECT");
        seen.events.push_back(text + " @" + event.function + ":" + std::to_string(event.checkpoint) + " x" +
                              std::to_string(event.lockDepth));
    }
    for (const DeviceRequest& request : platform().requests())
        seen.requests.push_back(request.url + " " + request.username + ":" + request.password + " " +
                                std::to_string(request.method) + std::to_string(request.connection) +
                                (request.plain && request.cleared ? "" : " unusual"));
    std::sort(seen.requests.begin(), seen.requests.end());
    return seen;
}

/// One host's talk with one device.
Seen run(unsigned int seed, unsigned int connections) {
    platform().reset();
    Random random(seed);
    scriptSomeDevice(random);
    takeSomeTime();
    const Situation situation = someSituation(random);
    WatchedDialect request;
    request.setConnections(connections);
    request.set_server_address("camera");
    request.set_username("admin");
    request.set_password("secret");
    request.setVendor(situation.vendor);
    request.setIsTovlinNVRDevice(situation.recorder);
    unsigned int uid = 0;
    for (const std::string& line : situation.lines) {
        const Reply reply = request.ask(line, uid++ % 2 + 1);
        platform().note(line + " -> " + std::to_string(reply.result) + " " + reply.text);
    }
    Seen seen = whatWasSeen(&request);
    seen.prefetched = request.requestsPrefetched();
    return seen;
}

bool allSucceeded(const Seen& seen) {
    return std::none_of(seen.events.begin(), seen.events.end(), [](const std::string& event) {
        return event.find("cacheCgi = -") == 0 || event.find("getCacheConfigAll = -") == 0;
    });
}

TEST(PrefetchTranscript, IsTheSameForEveryDevice) {
    int successes = 0;
    int failures = 0;
    std::uint64_t prefetched = 0;
    for (unsigned int seed = 0; seed < 400; ++seed) {
        const Seen plain = run(seed, 1);
        const Seen ahead = run(seed, 2 + seed % 3);
        ASSERT_EQ(ahead.events, plain.events) << "seed " << seed;
        ASSERT_EQ(plain.prefetched, 0U);
        prefetched += ahead.prefetched;
        // Nothing may be missing; and when all goes well, nothing may be asked that was not asked before.
        ASSERT_TRUE(std::includes(ahead.requests.begin(), ahead.requests.end(), plain.requests.begin(),
                                  plain.requests.end()))
            << "seed " << seed;
        if (allSucceeded(plain)) {
            ++successes;
            ASSERT_EQ(ahead.requests, plain.requests) << "seed " << seed;
        } else {
            ++failures;
        }
    }
    EXPECT_GT(successes, 100);
    EXPECT_GT(failures, 100);
    EXPECT_GT(prefetched, 400U);
}

TEST(PrefetchTranscript, OfAFillHoldsAllThatTheDeviceSaid) {
    const Seen seen = run(7, 1);
    const auto has = [&](const char* part) {
        return std::any_of(seen.events.begin(), seen.events.end(),
                           [&](const std::string& event) { return event.find(part) != std::string::npos; });
    };
    EXPECT_TRUE(has("lock"));
    EXPECT_TRUE(has("trace #3513 BaseRequest::requestCgi_1"));
    EXPECT_TRUE(has("answer 0\nOK\n"));
    EXPECT_FALSE(has("client."));
}

constexpr const char* kFirstStream =
    "http://camera/Stream.cgi?action=set&StreamSetup.Stream=RTP-Unicast&StreamSetup.Transport.Protocol=TCP"
    "&ProfileMode=AUTO&StreamSetup.VideoEncoderConfiguration.Resolution.NxN=640x480";

// Whatever allocation of the host's thread fails, the line is answered or fails with -8, nothing stays
// behind, and the next line works.
TEST(PrefetchMemory, MayRunOutAnywhere) {
    int unharmed = 0;
    const unsigned int runs = failEachAllocation([&](unsigned int n) {
        platform().reset();
        device().answerAsCamera();
        DialectRequest request;
        std::string line = kFirstStream;
        OwnedText text;
        FailAllocations fail(n);
        const int result = request.requestHttpStr(1, line.data(), nullptr, nullptr, OutText(text));
        const bool failed = fail.stop();
        EXPECT_TRUE(result == kOk || failed) << result;
        unharmed += failed && result == kOk ? 1 : 0;
        text.reset();
        EXPECT_EQ(request.requestHttpStr(1, line.data(), nullptr, nullptr, OutText(text)), kOk) << n;
        return failed;
    });
    EXPECT_GT(runs, 100U);
    EXPECT_LT(runs, 10000U);
    EXPECT_GT(unharmed, 10) << "what is asked ahead can be done without";
}

} // namespace
} // namespace koine::test
