// A support library as a device maker would bring it, reduced to what a login needs: one device that lives in
// memory, a product table without rows.

#include "platform/TlGlobalLib.h"

#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <sstream>

namespace {

class StubClient final : public IHttpClient {
public:
    void Release() override { delete this; }
    int Request(const char* url, const char*, const char*, const void*, unsigned int, const char*,
                const char*, char** body, unsigned int* bodyLength, int, int) override {
        const bool known = std::strstr(url, "/Login.cgi") != nullptr;
        answer_ = known ? "0\nOK\nProduct-Name=Stub\n" : "";
        *body = answer_.data();
        *bodyLength = static_cast<unsigned int>(answer_.size());
        return known ? 1 : -14;
    }
    void SetTimeout(unsigned int) override {}
    int GetStatus() override { return 200; }
    const char* GetHeader(const char*) override { return nullptr; }
    void Abort() override {}
    void Close() override {}
    void SetUid(unsigned int) override {}

private:
    std::string answer_;
};

} // namespace

char g_login_debug_function_name[64];
int g_login_debug_line;

void dbg_trace(const char*, ...) {}

IHttpClient* CreateIHttpClient() { return new StubClient; }

int createMapStr(const char* text, CgiMap* map) {
    std::istringstream lines(text == nullptr ? "" : text);
    for (std::string line; std::getline(lines, line);)
        if (const auto at = line.find('='); at != std::string::npos)
            (*map)[line.substr(0, at)] = line.substr(at + 1);
    return 1;
}

int createMapstrFromCgi(const char* text, CgiMap* map) { return createMapStr(text, map); }

char* getCgiStr(CgiMap* map, const char*) {
    std::string text = "0\nOK\n";
    for (const auto& [key, value] : *map)
        text += key + "=" + value + "\n";
    return ::strdup(text.c_str());
}

char* getTovlinCgiUrl(const char* address, unsigned int, char* requestLine) {
    return ::strdup(("http://" + std::string(address) + "/" + requestLine).c_str());
}

int checkIfONVIFProductName(const char*) { return 0; }
int checkIf331_578ProductName(const char*) { return 0; }
int checkIf5240ProductName(const char*) { return 0; }
int checkIfPellProductId(const char*) { return 0; }
int checkIfNoCapabilityProductId(const char*) { return 0; }
int haveResoIndepInCapability(const char*) { return 0; }
int haveProfileInCapability(const char*) { return 0; }
int haveIDPTZInCapability(const char*) { return 0; }

int getResolutionByStr(const char*, _VIDEO_SYSTEM_DEF, int*, int*) { return -2; }
int getResolutionStrByValue2(const char*, int, int, char*, unsigned int) { return -2; }
char* getConfigVideoStr_TovlinNVR(const char*, int, char*, int, int, float, int, int, int) { return nullptr; }

Url::Url(const char* text) : text_(text == nullptr ? "" : text) {}
Url::parse_error::~parse_error() = default;
void Url::parse_url() {
    const auto begin = text_.find("://") + 3;
    host_ = text_.substr(begin, text_.find_first_of("/:", begin) - begin);
    port_ = 80;
}
const std::string& Url::host() const { return host_; }
unsigned int Url::port() const { return port_; }

void vm_mutex_set_invalid(vm_mutex* mutex) { mutex->is_valid = 0; }
int vm_mutex_init(vm_mutex* mutex) {
    pthread_mutexattr_t recursive;
    pthread_mutexattr_init(&recursive);
    pthread_mutexattr_settype(&recursive, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(&mutex->handle, &recursive);
    pthread_mutexattr_destroy(&recursive);
    mutex->is_valid = 1;
    return 1;
}
int vm_mutex_lock(vm_mutex* mutex) { return pthread_mutex_lock(&mutex->handle) == 0 ? 1 : -2; }
int vm_mutex_unlock(vm_mutex* mutex) { return pthread_mutex_unlock(&mutex->handle) == 0 ? 1 : -2; }
void vm_mutex_destroy(vm_mutex* mutex) { pthread_mutex_destroy(&mutex->handle); }
