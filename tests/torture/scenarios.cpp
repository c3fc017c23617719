// Whole scenarios of a host, and the steps of the request object.
#include "scenarios.h"

#include <cstdlib>
#include <string_view>

namespace koine::torture {
namespace {

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

/// The first line still has to teach where the device is.
void unknown(Subject& subject) { subject.device->set_server_address(""); }

void maker(Subject& subject) {
    subject.device->setVendor("TOVLIN");
    warm(subject);
}

void firstStream(Subject& subject) {
    subject.ask(kUid, kFirstStream);
    subject.ask(kUid, "Stream.cgi?action=get");
    subject.ask(kUid, "Onvif.cgi?action=GetStreamUri&ProfileToken=ONE");
}

void secondStream(Subject& subject) { subject.ask(kOther, kSecondStream); }

void configGet(Subject& subject) {
    subject.ask(kUid, "Config.cgi?action=get&category=Video.*,Camera.*,VideoAnalytics.*");
    subject.ask(kUid, "Config.cgi?action=get&category=*");
}

void configSet(Subject& subject) { subject.ask(kUid, kSetConfig); }

void learn(Subject& subject) {
    subject.ask(kUid, "Login.cgi");
    subject.ask(kUid, "Capability.cgi?action=get");
}

void passThrough(Subject& subject) {
    subject.ask(kUid, "PTZ.cgi?action=set&Camera.DPTZ=ON&StreamSetup.Event.Resolution=704x480");
}

void data(Subject& subject) {
    subject.results.push_back(
        subject.device->requestHttpData(kUid, const_cast<char*>("Login.cgi"), nullptr, nullptr));
}

void users(Subject& subject) {
    subject.device->GetCgiMapStr(kOther, "Product-Name");
    subject.device->init(kOther, "StreamSetup.Stream=X&ProfileToken=TWO");
    subject.results.push_back(subject.device->audio_in_live(kOther) == 1 ? kOk : kNotBuilt);
}

/// One step; the text it hands out is given back.
template <typename Step>
void step(Subject& subject, Step call) {
    char* text = nullptr;
    try {
        subject.results.push_back(call(&text));
    } catch (...) {
        std::free(text);
        throw;
    }
    std::free(text);
}

void rewriting(Subject& subject) {
    char* const line = const_cast<char*>(kSetConfig);
    step(subject, [&](char** /*text*/) { return subject.device->checkCgiParameter(kUid, line); });
    step(subject, [&](char** text) { return subject.device->recoveryUrl(kUid, line, text); });
    step(subject, [&](char** text) { return subject.device->handleParameter_1(line, text); });
    step(subject, [&](char** /*text*/) { return subject.device->handleConfigSet(kUid, line); });
}

void caches(Subject& subject) {
    step(subject, [&](char** text) { return subject.device->getCacheLogin(kUid, 0, nullptr, text); });
    step(subject, [&](char** text) { return subject.device->getCacheCapability(kUid, 0, nullptr, text); });
    step(subject,
         [&](char** text) { return subject.device->getCacheConfigMedia(kUid, 0, nullptr, "Media.*", text); });
    step(subject, [&](char** text) {
        return subject.device->getCacheConfigCamera(kUid, 1, nullptr, "Camera.*", text);
    });
    step(subject,
         [&](char** text) { return subject.device->getCacheConfigVideo(kUid, 1, nullptr, nullptr, text); });
    step(subject, [&](char** text) {
        return subject.device->getCacheConfigNotification(kUid, 1, nullptr, "*", text);
    });
    step(subject,
         [&](char** text) { return subject.device->getCacheConfigMisc(kUid, 1, nullptr, nullptr, text); });
    step(subject, [&](char** text) {
        return subject.device->getCacheConfigVideoAnalytics(kUid, 1, nullptr, nullptr, text);
    });
    step(subject, [&](char** text) { return subject.device->getCacheConfigAll(kUid, 0, text); });
    step(subject, [&](char** /*text*/) { return subject.device->cacheCgi(kUid); });
    step(subject, [&](char** text) {
        return subject.device->handleConfigGet(kUid, const_cast<char*>("a=Video.*"), text);
    });
}

void streams(Subject& subject) {
    step(subject, [&](char** /*text*/) { return subject.device->HandleInit(kUid); });
    step(subject, [&](char** /*text*/) { return subject.device->searchAvailableProfileToken(kUid); });
    step(subject, [&](char** /*text*/) { return subject.device->syncProfileToken_1(kOther); });
    step(subject, [&](char** text) { return subject.device->buildCgiStreamGet(kUid, nullptr, text); });
    step(subject, [&](char** text) {
        return subject.device->buildCgiGetStreamUri(kUid, const_cast<char*>("x"), text);
    });
    step(subject, [&](char** /*text*/) {
        return subject.device->syncVideoConfigByMediaConfig(kUid, const_cast<char*>(kSetConfig));
    });
}

/// The last host lets go.
void destroying(Subject& subject) { subject.device.reset(); }

/// Does the text belong to the result?
bool belongsTo(int result, std::string_view text) {
    if (result == kOk)
        return !text.empty();
    return text == "-11\nERROR: Unknown parameter.\n";
}

} // namespace

void Subject::ask(unsigned int uid, const char* line) {
    char* answer = nullptr;
    const int result = device->requestHttpStr(uid, const_cast<char*>(line), nullptr, nullptr, &answer);
    results.push_back(result);
    if (answer == nullptr)
        ++missingTexts;
    else if (!belongsTo(result, answer))
        ++wrongTexts;
    device->freeData(answer);
}

void nothing(Subject& /*subject*/) {}
void warm(Subject& subject) { subject.ask(kUid, kFirstStream); }

const std::vector<Scenario>& scenarios() {
    constexpr Decides kCategories = Decides::categories;
    static const std::vector<Scenario> all = {
        {"first stream", makeTabled, unknown, firstStream, false, kCategories},
        {"second stream", makeTabled, warm, secondStream, false},
        {"learn the device", makeTabled, nothing, learn, false},
        {"learn a Pell device", makePell, nothing, learn, false},
        {"learn a machine", makeMachine, nothing, learn, false},
        {"learn a video server", makeVideoServer, nothing, learn, false},
        {"config get, cold", makeTabled, nothing, configGet, false, kCategories},
        {"config get, cold, Pell device", makePell, nothing, configGet, false, kCategories},
        {"config get, cold, machine", makeMachine, nothing, configGet, false, kCategories},
        {"config get, cold, video server", makeVideoServer, nothing, configGet, false, kCategories},
        {"config get, warm", makeTabled, warm, configGet, false},
        {"config set", makeTabled, warm, configSet, false},
        {"config set, maker's device", makeTabled, maker, configSet, false},
        {"config set, Pell device", makePell, warm, configSet, false},
        {"config set, machine", makeMachine, warm, configSet, false},
        {"pass-through", makeTabled, warm, passThrough, false},
        {"answer as a map", makeTabled, nothing, data, false},
        {"destruction", makeTabled, warm, destroying, false},
        {"a new user", makeTabled, nothing, users, true},
        {"rewriting steps", makeTabled, warm, rewriting, true},
        {"cache steps, cold", makeTabled, nothing, caches, true, kCategories},
        {"cache steps, cold, Pell device", makePell, nothing, caches, true, kCategories},
        {"cache steps, warm", makeTabled, warm, caches, true, kCategories},
        {"stream steps", makeTabled, warm, streams, true},
        {"settings of an object", makeTabled, warm, settings, false, Decides::qualityBounds},
        {"reads of an object", makeTabled, warm, reads, false},
        {"host's other operations", makeTabled, warm, hostOperations, false},
        {"conversions", makeTabled, warm, conversions, false},
        {"settings of a stream user", makeTabled, warm, streamUser, false},
        {"reads of a stream user", makeTabled, warm, streamUserReads, false},
        {"registry", makeTabled, nothing, registry, true},
        {"openDevice", makeDialect, nothing, opening, true},
        {"DialectRequest's operations", makeDialect, warm, dialectOperations, false},
        {"koine::request", makeDialect, nothing, requestHelper, true, kCategories},
        {"interface for C", makeDialect, nothing, cInterface, false},
        {"first stream, DialectRequest", makeDialect, nothing, firstStream, false, kCategories},
        {"config set, DialectRequest", makeDialect, warm, configSet, false},
        {"config get, DialectRequest", makeDialect, nothing, configGet, false, kCategories},
    };
    return all;
}

} // namespace koine::torture
