#include "tests/devices/scripted_client.h"

#include "platform/http_client.h"
#include "text/owned_text.h"

namespace koine::test {
namespace {

ScriptedDevice* g_device = nullptr;

class Client final : public IHttpClient {
public:
    void Release() override { delete this; }
    int Request(const char* url, const char* /*headers*/, const char* /*contentType*/,
                const void* /*content*/, unsigned int /*contentLength*/, const char* username,
                const char* password, char** body, unsigned int* bodyLength, int method,
                int connection) override {
        const std::string* text = nullptr;
        const int result =
            g_device == nullptr
                ? -3
                : g_device->take({url, orEmpty(username), orEmpty(password), method, connection}, text);
        if (text != nullptr && !text->empty()) {
            body_ = *text;
            *body = body_.data();
            *bodyLength = static_cast<unsigned int>(body_.size());
        }
        return result;
    }
    void SetTimeout(unsigned int /*milliseconds*/) override {}
    int GetStatus() override { return 0; }
    const char* GetHeader(const char* /*name*/) override { return nullptr; }
    void Abort() override {}
    void Close() override {}
    void SetUid(unsigned int /*uid*/) override {}

private:
    std::string body_;
};

} // namespace

ScriptedDevice::ScriptedDevice() { g_device = this; }
ScriptedDevice::~ScriptedDevice() { g_device = nullptr; }

std::vector<std::string> ScriptedDevice::urls() const {
    std::vector<std::string> urls;
    for (const SentRequest& request : sent_)
        urls.push_back(request.url);
    return urls;
}

int ScriptedDevice::take(const SentRequest& request, const std::string*& text) {
    sent_.push_back(request);
    const Reply* best = nullptr;
    std::size_t length = 0;
    for (const auto& [part, reply] : answers_)
        if (part.size() >= length && request.url.find(part) != std::string::npos) {
            best = &reply;
            length = part.size();
        }
    if (best == nullptr)
        return -14;
    text = &best->text;
    return best->result;
}

} // namespace koine::test

IHttpClient* CreateIHttpClient() { return new koine::test::Client; }
