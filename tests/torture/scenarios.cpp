#include "scenarios.h"

#include <cstdlib>

namespace koine::torture {
namespace {

using fuzz::Device;
using Results = std::vector<int>;

constexpr unsigned int kUid = 1;
constexpr unsigned int kOther = 2;

/// Request lines live outside the shortage: a host has them before it calls.
void ask(Device& device, Results& results, unsigned int uid, const char* line) {
    char* answer = nullptr;
    results.push_back(device.requestHttpStr(uid, const_cast<char*>(line), nullptr, nullptr, &answer));
    device.freeData(answer);
}

constexpr const char* kFirstStream =
    "http://camera:8080/"
    "Stream.cgi?action=set&StreamSetup.Transport.Protocol=UDP&StreamSetup.Stream=RTP-Unicast&"
    "ProfileMode=AUTO&StreamSetup.VideoEncoderConfiguration.Resolution.NxN=1280x720&"
    "StreamSetup.VideoEncoderConfiguration.Quality=5&StreamSetup.VideoEncoderConfiguration.GovLength=30";
constexpr const char* kSecondStream =
    "Stream.cgi?action=set&StreamSetup.Setting.Channel=0&StreamSetup.Stream=RTP-Multicast&ProfileMode=MOBILE";
constexpr const char* kSetConfig =
    "Config.cgi?action=set&Media.Profiles.Profile1.VideoEncoderConfiguration.Quality=5&"
    "Media.Profiles.Profile1.VideoEncoderConfiguration.Resolution.Width=640&Video.I0.Brightness=2&"
    "Camera.Detection.Sensitivity=3&Misc.External.DI.Port1.Active=N.O.&VideoAnalytics.Count=1";

void cold(Device& device) { device.set_server_address("camera"); }
void unknown(Device& /*device*/) {}

void warm(Device& device) {
    cold(device);
    Results results;
    ask(device, results, kUid, kFirstStream);
}

void maker(Device& device) {
    device.setVendor("TOVLIN");
    warm(device);
}

void firstStream(Device& device, Results& results) {
    ask(device, results, kUid, kFirstStream);
    ask(device, results, kUid, "Stream.cgi?action=get");
    ask(device, results, kUid, "Onvif.cgi?action=GetStreamUri&ProfileToken=ONE");
}

void secondStream(Device& device, Results& results) { ask(device, results, kOther, kSecondStream); }

void configGet(Device& device, Results& results) {
    ask(device, results, kUid, "Config.cgi?action=get&category=Video.*,Camera.*,VideoAnalytics.*");
    ask(device, results, kUid, "Config.cgi?action=get&category=*");
}

void configSet(Device& device, Results& results) { ask(device, results, kUid, kSetConfig); }

void learn(Device& device, Results& results) {
    ask(device, results, kUid, "Login.cgi");
    ask(device, results, kUid, "Capability.cgi?action=get");
}

void passThrough(Device& device, Results& results) {
    ask(device, results, kUid, "PTZ.cgi?action=set&Camera.DPTZ=ON&StreamSetup.Event.Resolution=704x480");
}

void data(Device& device, Results& results) {
    results.push_back(device.requestHttpData(kUid, const_cast<char*>("Login.cgi"), nullptr, nullptr));
}

void users(Device& device, Results& results) {
    device.GetCgiMapStr(kOther, "Product-Name");
    device.init(kOther, "StreamSetup.Stream=X&ProfileToken=TWO");
    results.push_back(device.audio_in_live(kOther) == 1 ? kOk : kNotBuilt);
}

template <typename Step>
void step(Results& results, Step call) {
    char* text = nullptr;
    try {
        results.push_back(call(&text));
    } catch (...) {
        std::free(text);
        throw;
    }
    std::free(text);
}

void rewriting(Device& device, Results& results) {
    char* const line = const_cast<char*>(kSetConfig);
    step(results, [&](char** /*text*/) { return device.checkCgiParameter(kUid, line); });
    step(results, [&](char** text) { return device.recoveryUrl(kUid, line, text); });
    step(results, [&](char** text) { return device.handleParameter_1(line, text); });
    step(results, [&](char** /*text*/) { return device.handleConfigSet(kUid, line); });
}

void caches(Device& device, Results& results) {
    step(results, [&](char** text) { return device.getCacheLogin(kUid, 0, nullptr, text); });
    step(results, [&](char** text) { return device.getCacheCapability(kUid, 0, nullptr, text); });
    step(results, [&](char** text) { return device.getCacheConfigMedia(kUid, 0, nullptr, "Media.*", text); });
    step(results,
         [&](char** text) { return device.getCacheConfigCamera(kUid, 1, nullptr, "Camera.*", text); });
    step(results, [&](char** text) { return device.getCacheConfigAll(kUid, 0, text); });
    step(results,
         [&](char** text) { return device.handleConfigGet(kUid, const_cast<char*>("a=Video.*"), text); });
}

void streams(Device& device, Results& results) {
    step(results, [&](char** /*text*/) { return device.HandleInit(kUid); });
    step(results, [&](char** /*text*/) { return device.searchAvailableProfileToken(kUid); });
    step(results, [&](char** /*text*/) { return device.syncProfileToken_1(kOther); });
    step(results, [&](char** text) { return device.buildCgiStreamGet(kUid, nullptr, text); });
    step(results,
         [&](char** text) { return device.buildCgiGetStreamUri(kUid, const_cast<char*>("x"), text); });
    step(results, [&](char** /*text*/) {
        return device.syncVideoConfigByMediaConfig(kUid, const_cast<char*>(kSetConfig));
    });
}

} // namespace

const std::vector<Scenario>& scenarios() {
    static const std::vector<Scenario> all = {
        {"first stream", unknown, firstStream, false},
        {"second stream", warm, secondStream, false},
        {"learn the device", cold, learn, false},
        {"config get, cold", cold, configGet, false},
        {"config get, warm", warm, configGet, false},
        {"config set", warm, configSet, false},
        {"config set, maker's device", maker, configSet, false},
        {"pass-through", warm, passThrough, false},
        {"answer as a map", cold, data, false},
        {"a new user", cold, users, true},
        {"rewriting steps", warm, rewriting, true},
        {"cache steps, cold", cold, caches, true},
        {"cache steps, warm", warm, caches, true},
        {"stream steps", warm, streams, true},
    };
    return all;
}

} // namespace koine::torture
