#include "bench_request.h"

#include "tests/support/failing_allocations.h"

#include <cstdlib>

namespace koine::test {
namespace {

std::string orNull(const char* text) { return text == nullptr ? "(null)" : text; }

} // namespace

AnswerText::~AnswerText() { std::free(raw_); }

BenchRequest::BenchRequest(Caches caches) {
    set_server_address("camera");
    set_username("admin");
    set_password("secret");
    device = [](const std::string&, char** answer) {
        *answer = mallocedText("0\nOK\nSeed=1\n");
        return 1;
    };
    if (caches == Caches::unfilled)
        return;
    getCacheConfigMedia(kUid, 0, nullptr, nullptr, nullptr);
    login().clear();
    capability().clear();
    media().clear();
    sent.clear();
}

void BenchRequest::useProfiles(int count) {
    setMediaProfile(1);
    setProfileCount(count);
    media()["Media.Profiles.Count"] = std::to_string(count);
    for (int number = 1; number <= count; ++number)
        profile(number, ".token", "T" + std::to_string(number));
}

void BenchRequest::profile(int number, const std::string& suffix, const std::string& value) {
    media()["Media.Profiles.Profile" + std::to_string(number) + suffix] = value;
}

void BenchRequest::encoder(int number, const std::string& suffix, const std::string& value) {
    profile(number, ".VideoEncoderConfiguration" + suffix, value);
}

std::string BenchRequest::encoderValue(int number, const std::string& suffix) {
    const auto found = media().find("Media.Profiles.Profile" + std::to_string(number) +
                                    ".VideoEncoderConfiguration" + suffix);
    return found == media().end() ? "(absent)" : found->second;
}

std::vector<std::string> BenchRequest::sentLines() const {
    std::vector<std::string> all;
    for (const Sent& one : sent)
        all.push_back(lineOfUrl(one.url));
    return all;
}

int BenchRequest::probe(unsigned int uid) { return getCacheLogin(uid, 0, nullptr, nullptr); }

int BenchRequest::handleParameter(unsigned int, char* url, char** answer) {
    return handleParameter_1(url, answer);
}

int BenchRequest::syncProfileToken(unsigned int uid) {
    syncs.push_back(uid);
    return sync ? sync(uid) : syncProfileToken_1(uid);
}

int BenchRequest::requestCgi(unsigned int uid, char* url, char** answer, _REQCGI_METHOD_DEF method,
                             _REQCGI_CONNECTION_DEF connection) {
    const SpareAllocations notes; // memory runs out for the library, not for the bench
    sent.push_back({uid, orNull(url), method, connection});
    return device(lineOfUrl(orNull(url)), answer);
}

int BenchRequest::buildStreamUri(unsigned int, const char* serverAddress, unsigned int serverPort,
                                 const char* videoEncoding, const char* audioEncoding, int width, int height,
                                 char** uriText) {
    const SpareAllocations notes;
    uriOrders.push_back(
        {orNull(serverAddress), serverPort, orNull(videoEncoding), orNull(audioEncoding), width, height});
    if (uri)
        return uri(uriText);
    *uriText = mallocedText("rtsp://camera/live");
    return 1;
}

int BenchRequest::requestHttpStr(unsigned int uid, char* url, char* username, char* password, char** answer) {
    {
        const SpareAllocations notes;
        lines.push_back({uid, orNull(url), orNull(username), orNull(password), answer != nullptr});
    }
    return dispatch ? dispatch(lines.back(), answer)
                    : BaseRequest::requestHttpStr(uid, url, username, password, answer);
}

int BenchRequest::convertCgiCapability(CgiMap* capability, CgiMap* login) {
    capability_ = capability;
    login_ = login;
    return converts ? BaseRequest::convertCgiCapability(capability, login) : 1;
}

int BenchRequest::convertCgiMedia(unsigned int uid, CgiMap* media, CgiMap* login) {
    media_ = media;
    login_ = login;
    return converts ? BaseRequest::convertCgiMedia(uid, media, login) : 1;
}

} // namespace koine::test
