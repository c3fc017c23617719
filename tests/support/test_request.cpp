#include "test_request.h"

#include "failing_allocations.h"

#include <cstdlib>
#include <ostream>

namespace koine::test {
namespace {

std::string shown(const char* text) { return shownText(text); }
std::string shown(char* text) { return shown(static_cast<const char*>(text)); }
std::string shown(char** answer) { return answer == nullptr ? "(null)" : "answer"; }
std::string shown(CgiMap* map) { return map == nullptr ? "(null)" : "map"; }
template <typename Number>
std::string shown(Number number) {
    return std::to_string(number);
}

/// Notes a step and its arguments, as "name(first, second)".
template <typename First, typename... More>
void note(const char* name, First first, More... more) {
    if (platform().quiet())
        return;
    const SpareAllocations spare;
    std::string text = std::string(name) + "(" + shown(first);
    ((text += ", " + shown(more)), ...);
    platform().note(text + ")");
}

} // namespace

Answer::~Answer() { std::free(raw_); }

char** Answer::out() {
    std::free(raw_);
    raw_ = nullptr;
    return &raw_;
}

std::ostream& operator<<(std::ostream& out, const Reply& reply) {
    return out << reply.result << " \"" << reply.text << '"';
}

void TestRequest::connect() {
    set_server_address("camera");
    set_username("admin");
    set_password("secret");
}

Reply TestRequest::ask(const std::string& line, unsigned int uid) {
    std::string copy = line;
    Answer answer;
    const int result = requestHttpStr(uid, copy.data(), nullptr, nullptr, answer.out());
    return {result, answer.text()};
}

int TestRequest::tell(const std::string& line, unsigned int uid) {
    std::string copy = line;
    return requestHttpStr(uid, copy.data(), nullptr, nullptr, nullptr);
}

int TestRequest::probe(unsigned int uid) {
    note("probe", uid);
    return steps.probe ? steps.probe(uid) : 1;
}

int TestRequest::handleParameter(unsigned int uid, char* url, char** answer) {
    note("handleParameter", uid, url, answer);
    return steps.handleParameter ? steps.handleParameter(uid, url, answer) : handleParameter_1(url, answer);
}

int TestRequest::syncProfileToken(unsigned int uid) {
    note("syncProfileToken", uid);
    return steps.syncProfileToken ? steps.syncProfileToken(uid) : syncProfileToken_1(uid);
}

int TestRequest::requestCgi(unsigned int uid, char* url, char** answer, _REQCGI_METHOD_DEF method,
                            _REQCGI_CONNECTION_DEF connection) {
    note("requestCgi", uid, url, answer, static_cast<int>(method), static_cast<int>(connection));
    return steps.requestCgi ? steps.requestCgi(uid, url, answer, method, connection)
                            : requestCgi_1(uid, url, answer, method, connection);
}

int TestRequest::buildStreamUri(unsigned int uid, const char* serverAddress, unsigned int serverPort,
                                const char* videoEncoding, const char* audioEncoding, int width, int height,
                                char** uri) {
    note("buildStreamUri", uid, serverAddress, serverPort, videoEncoding, audioEncoding, width, height, uri);
    if (steps.buildStreamUri)
        return steps.buildStreamUri(uid, serverAddress, serverPort, videoEncoding, audioEncoding, width,
                                    height, uri);
    *uri = mallocedText("rtsp://camera/live");
    return *uri == nullptr ? -8 : 1;
}

int TestRequest::requestHttpStr(unsigned int uid, char* url, char* username, char* password, char** answer) {
    note("requestHttpStr", uid, url, username, password, answer);
    return steps.requestHttpStr ? steps.requestHttpStr(uid, url, username, password, answer)
                                : BaseRequest::requestHttpStr(uid, url, username, password, answer);
}

int TestRequest::cacheCgi(unsigned int uid) {
    note("cacheCgi", uid);
    return steps.cacheCgi ? steps.cacheCgi(uid) : BaseRequest::cacheCgi(uid);
}

int TestRequest::getCacheLogin(unsigned int uid, int refresh, const char* key, char** answer) {
    note("getCacheLogin", uid, refresh, key, answer);
    return steps.getCacheLogin ? steps.getCacheLogin(uid, refresh, key, answer)
                               : BaseRequest::getCacheLogin(uid, refresh, key, answer);
}

int TestRequest::getCacheCapability(unsigned int uid, int refresh, const char* url, char** answer) {
    note("getCacheCapability", uid, refresh, url, answer);
    return steps.getCacheCapability ? steps.getCacheCapability(uid, refresh, url, answer)
                                    : BaseRequest::getCacheCapability(uid, refresh, url, answer);
}

int TestRequest::getCacheConfigMedia(unsigned int uid, int refresh, const char* url, const char* key,
                                     char** answer) {
    note("getCacheConfigMedia", uid, refresh, url, key, answer);
    return steps.getCacheConfigMedia ? steps.getCacheConfigMedia(uid, refresh, url, key, answer)
                                     : BaseRequest::getCacheConfigMedia(uid, refresh, url, key, answer);
}

int TestRequest::getCacheConfigVideo(unsigned int uid, int refresh, const char* extra, const char* key,
                                     char** answer) {
    note("getCacheConfigVideo", uid, refresh, extra, key, answer);
    return steps.getCacheConfigVideo ? steps.getCacheConfigVideo(uid, refresh, extra, key, answer)
                                     : BaseRequest::getCacheConfigVideo(uid, refresh, extra, key, answer);
}

int TestRequest::getCacheConfigCamera(unsigned int uid, int refresh, const char* extra, const char* key,
                                      char** answer) {
    note("getCacheConfigCamera", uid, refresh, extra, key, answer);
    return steps.getCacheConfigCamera ? steps.getCacheConfigCamera(uid, refresh, extra, key, answer)
                                      : BaseRequest::getCacheConfigCamera(uid, refresh, extra, key, answer);
}

int TestRequest::getCacheConfigNotification(unsigned int uid, int refresh, const char* extra, const char* key,
                                            char** answer) {
    note("getCacheConfigNotification", uid, refresh, extra, key, answer);
    return steps.getCacheConfigNotification
               ? steps.getCacheConfigNotification(uid, refresh, extra, key, answer)
               : BaseRequest::getCacheConfigNotification(uid, refresh, extra, key, answer);
}

int TestRequest::getCacheConfigMisc(unsigned int uid, int refresh, const char* extra, const char* key,
                                    char** answer) {
    note("getCacheConfigMisc", uid, refresh, extra, key, answer);
    return steps.getCacheConfigMisc ? steps.getCacheConfigMisc(uid, refresh, extra, key, answer)
                                    : BaseRequest::getCacheConfigMisc(uid, refresh, extra, key, answer);
}

int TestRequest::getCacheConfigVideoAnalytics(unsigned int uid, int refresh, const char* extra,
                                              const char* key, char** answer) {
    note("getCacheConfigVideoAnalytics", uid, refresh, extra, key, answer);
    return steps.getCacheConfigVideoAnalytics
               ? steps.getCacheConfigVideoAnalytics(uid, refresh, extra, key, answer)
               : BaseRequest::getCacheConfigVideoAnalytics(uid, refresh, extra, key, answer);
}

int TestRequest::getCacheConfigAll(unsigned int uid, int mode, char** answer) {
    note("getCacheConfigAll", uid, mode, answer);
    return steps.getCacheConfigAll ? steps.getCacheConfigAll(uid, mode, answer)
                                   : BaseRequest::getCacheConfigAll(uid, mode, answer);
}

int TestRequest::convertCgiCapability(CgiMap* capability, CgiMap* login) {
    note("convertCgiCapability", capability, login);
    maps.capability = capability;
    maps.login = login;
    return steps.convertCgiCapability ? steps.convertCgiCapability(capability, login)
                                      : BaseRequest::convertCgiCapability(capability, login);
}

int TestRequest::convertCgiCapability(CgiMap* capability, CgiMap* machine, CgiMap* login) {
    note("convertCgiCapability", capability, machine, login);
    maps.capability = capability;
    maps.login = login;
    return steps.convertCgiCapabilityByMachine
               ? steps.convertCgiCapabilityByMachine(capability, machine, login)
               : BaseRequest::convertCgiCapability(capability, machine, login);
}

int TestRequest::convertCgiMedia(unsigned int uid, CgiMap* media, CgiMap* login) {
    note("convertCgiMedia", uid, media, login);
    maps.media = media;
    maps.login = login;
    return steps.convertCgiMedia ? steps.convertCgiMedia(uid, media, login)
                                 : BaseRequest::convertCgiMedia(uid, media, login);
}

int TestRequest::convertCgiVideo(CgiMap* video) {
    note("convertCgiVideo", video);
    maps.video = video;
    return steps.convertCgiVideo ? steps.convertCgiVideo(video) : BaseRequest::convertCgiVideo(video);
}

int TestRequest::convertCgiCamera(CgiMap* camera) {
    note("convertCgiCamera", camera);
    maps.camera = camera;
    return steps.convertCgiCamera ? steps.convertCgiCamera(camera) : BaseRequest::convertCgiCamera(camera);
}

int TestRequest::convertCgiMisc(CgiMap* misc, CgiMap* notification) {
    note("convertCgiMisc", misc, notification);
    maps.misc = misc;
    maps.notification = notification;
    return steps.convertCgiMisc ? steps.convertCgiMisc(misc, notification)
                                : BaseRequest::convertCgiMisc(misc, notification);
}

int TestRequest::requestCgi_1(unsigned int uid, char* url, char** answer, _REQCGI_METHOD_DEF method,
                              _REQCGI_CONNECTION_DEF connection) {
    note("requestCgi_1", uid, url, answer, static_cast<int>(method), static_cast<int>(connection));
    return steps.requestCgi_1 ? steps.requestCgi_1(uid, url, answer, method, connection)
                              : BaseRequest::requestCgi_1(uid, url, answer, method, connection);
}

int TestRequest::HandleInit(unsigned int uid) {
    note("HandleInit", uid);
    return steps.HandleInit ? steps.HandleInit(uid) : BaseRequest::HandleInit(uid);
}

int TestRequest::searchAvailableProfileToken(unsigned int uid) {
    note("searchAvailableProfileToken", uid);
    return steps.searchAvailableProfileToken ? steps.searchAvailableProfileToken(uid)
                                             : BaseRequest::searchAvailableProfileToken(uid);
}

const char* TestRequest::getAutoStrmEnc(const char* encoding, int profileNo) {
    note("getAutoStrmEnc", encoding, profileNo);
    return steps.getAutoStrmEnc ? steps.getAutoStrmEnc(encoding, profileNo)
                                : BaseRequest::getAutoStrmEnc(encoding, profileNo);
}

int TestRequest::syncProfileToken_1(unsigned int uid) {
    note("syncProfileToken_1", uid);
    return steps.syncProfileToken_1 ? steps.syncProfileToken_1(uid) : BaseRequest::syncProfileToken_1(uid);
}

char* TestRequest::getConfigVideoStr(std::map<int, _tagProfileMap*>& profiles) {
    note("getConfigVideoStr", profiles.size());
    return steps.getConfigVideoStr ? steps.getConfigVideoStr(profiles)
                                   : BaseRequest::getConfigVideoStr(profiles);
}

int TestRequest::syncVideoConfigByMediaConfig(unsigned int uid, char* url) {
    note("syncVideoConfigByMediaConfig", uid, url);
    return steps.syncVideoConfigByMediaConfig ? steps.syncVideoConfigByMediaConfig(uid, url)
                                              : BaseRequest::syncVideoConfigByMediaConfig(uid, url);
}

int TestRequest::buildCgiStreamGet(unsigned int uid, char* url, char** answer) {
    note("buildCgiStreamGet", uid, url, answer);
    return steps.buildCgiStreamGet ? steps.buildCgiStreamGet(uid, url, answer)
                                   : BaseRequest::buildCgiStreamGet(uid, url, answer);
}

int TestRequest::buildCgiGetStreamUri(unsigned int uid, char* url, char** answer) {
    note("buildCgiGetStreamUri", uid, url, answer);
    return steps.buildCgiGetStreamUri ? steps.buildCgiGetStreamUri(uid, url, answer)
                                      : BaseRequest::buildCgiGetStreamUri(uid, url, answer);
}

int TestRequest::recoveryUrl(unsigned int uid, char* url, char** rewritten) {
    note("recoveryUrl", uid, url, rewritten);
    return steps.recoveryUrl ? steps.recoveryUrl(uid, url, rewritten)
                             : BaseRequest::recoveryUrl(uid, url, rewritten);
}

int TestRequest::checkCgiParameter(unsigned int uid, char* url) {
    note("checkCgiParameter", uid, url);
    return steps.checkCgiParameter ? steps.checkCgiParameter(uid, url)
                                   : BaseRequest::checkCgiParameter(uid, url);
}

int TestRequest::handleConfigGet(unsigned int uid, char* url, char** answer) {
    note("handleConfigGet", uid, url, answer);
    return steps.handleConfigGet ? steps.handleConfigGet(uid, url, answer)
                                 : BaseRequest::handleConfigGet(uid, url, answer);
}

int TestRequest::handleParameter_1(char* params, char** answer) {
    note("handleParameter_1", params, answer);
    return steps.handleParameter_1 ? steps.handleParameter_1(params, answer)
                                   : BaseRequest::handleParameter_1(params, answer);
}

int TestRequest::handleConfigSet(unsigned int uid, char* url) {
    note("handleConfigSet", uid, url);
    return steps.handleConfigSet ? steps.handleConfigSet(uid, url) : BaseRequest::handleConfigSet(uid, url);
}

int TestRequest::checkStreamSupport(unsigned int uid) {
    note("checkStreamSupport", uid);
    return steps.checkStreamSupport ? steps.checkStreamSupport(uid) : BaseRequest::checkStreamSupport(uid);
}

} // namespace koine::test
