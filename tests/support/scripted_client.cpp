// The HTTP client of the scripted support library: asks the scripted device.
#include "failing_allocations.h"
#include "scripted_platform.h"

#include <string>
#include <vector>

namespace {

using koine::test::DeviceAnswer;
using koine::test::DeviceRequest;
using koine::test::platform;
using koine::test::shownText;
using koine::test::SpareAllocations;

class ScriptedClient final : public IHttpClient {
public:
    ScriptedClient() { platform().noteClient(1); }

    void Release() override {
        platform().note("client.Release");
        platform().noteClient(-1);
        delete this;
    }

    int Request(const char* url, const char* headers, const char* contentType, const void* content,
                unsigned int contentLength, const char* username, const char* password, char** body,
                unsigned int* bodyLength, int method, int connection) override {
        const SpareAllocations spare;
        DeviceRequest request;
        request.url = shownText(url);
        request.line = koine::test::lineOfUrl(request.url);
        request.uid = uid_;
        request.username = shownText(username);
        request.password = shownText(password);
        request.method = method;
        request.connection = connection;
        request.plain =
            headers == nullptr && contentType == nullptr && content == nullptr && contentLength == 0;
        request.cleared = body != nullptr && *body == nullptr && bodyLength != nullptr && *bodyLength == 0;
        platform().noteRequest(request);
        const DeviceAnswer answer = platform().device.answerTo(request);
        if (answer.body && body != nullptr && bodyLength != nullptr)
            hand(*answer.body, *body, *bodyLength);
        return answer.result;
    }

    void SetTimeout(unsigned int milliseconds) override {
        platform().note("client.SetTimeout(" + std::to_string(milliseconds) + ")");
    }
    int GetStatus() override {
        platform().note("client.GetStatus");
        return 0;
    }

    const char* GetHeader(const char* name) override {
        const SpareAllocations spare;
        platform().noteHeader(shownText(name));
        const std::string* value = platform().device.findHeader(shownText(name));
        return value == nullptr ? nullptr : value->c_str();
    }

    void Abort() override { platform().note("client.Abort"); }
    void Close() override { platform().note("client.Close"); }

    void SetUid(unsigned int uid) override {
        uid_ = uid;
        const SpareAllocations spare;
        if (!platform().quiet())
            platform().note("client.SetUid(" + std::to_string(uid) + ")");
    }

private:
    ~ScriptedClient() = default;

    /// A buffer of exactly the body's size for each answer, so that a reader that goes on too long or keeps
    /// the pointer is found out by the address sanitizer.
    void hand(const std::string& text, char*& body, unsigned int& bodyLength) {
        body_.assign(text.c_str(), text.c_str() + text.size() + 1);
        body_.shrink_to_fit();
        body = body_.data();
        bodyLength = static_cast<unsigned int>(text.size());
    }

    unsigned int uid_ = 0;
    std::vector<char> body_;
};

} // namespace

IHttpClient* CreateIHttpClient() {
    platform().note("CreateIHttpClient");
    return platform().clientsCanBeMade ? new ScriptedClient : nullptr;
}
