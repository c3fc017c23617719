// The way to the device: one HTTP client per request object.

#include "koine/BaseRequest.h"
#include "platform/cgi_text.h"
#include "request/object_lock.h"
#include "request/transport_traces.h"
#include "stream/required_client.h"
#include "text/owned_text.h"
#include "text/shortage.h"

#include <utility>

using namespace koine;

namespace {

// Codes of the HTTP client; it has more methods than the dialect uses.
constexpr int kClientGet = 0;
constexpr int kClientPost = 2;

} // namespace

int BaseRequest::requestCgi_1(unsigned int uid, char* url, char** answer, _REQCGI_METHOD_DEF method,
                              _REQCGI_CONNECTION_DEF connection) {
    const ObjectLock lock(*this);
    const int user = static_cast<int>(uid);
    const char* const shownUrl = url == nullptr ? "(null)" : url;
    transport_trace::sending(user, strm_setting_channel(), shownUrl);
    if (url == nullptr) {
        transport_trace::noUrl(user, strm_setting_channel(), shownUrl, kRefused);
        return kRefused;
    }
    if (httpClient_ == nullptr) {
        transport_trace::noClient(user, strm_setting_channel(), shownUrl, kNoResource);
        return kNoResource;
    }

    httpClient_->SetUid(uid);
    const std::string username = get_username();
    const std::string password = get_password();
    char* body = nullptr; // stays the client's
    unsigned int bodyLength = 0;
    int result =
        httpClient_->Request(url, nullptr, nullptr, nullptr, 0, username.c_str(), password.c_str(), &body,
                             &bodyLength, method == 0 ? kClientGet : kClientPost, connection == 0 ? 0 : 1);
    if (result == kOk && answer != nullptr && body != nullptr) {
        OwnedText copy = copyText(body);
        if (copy)
            *answer = copy.release();
        else
            result = kNoResource;
    }
    if (result != kOk)
        transport_trace::failed(user, strm_setting_channel(), shownUrl, result);
    return result;
}

int BaseRequest::requestHttpData(unsigned int uid, char* url, char* username, char* password) {
    const ObjectLock lock(*this);
    OwnedText text;
    return orNoResource([&]() -> int {
        const boost::shared_ptr<StreamIDClient> client = get_streamid_client(uid);
        int result = requestHttpStr(uid, url, username, password, OutText(text));
        if (result != kOk)
            return result;
        result = createMapstrFromCgi(text.get(), &required(client).get_temp_cgicache_map());
        if (result != kOk)
            transport_trace::answerNotParsed(static_cast<int>(uid), strm_setting_channel(), result);
        return result;
    });
}

const char* BaseRequest::getCookie() {
    return httpClient_ == nullptr ? nullptr : httpClient_->GetHeader("SET-COOKIE");
}

void BaseRequest::close() {
    if (httpClient_ != nullptr)
        httpClient_->Close();
}

IHttpClient* BaseRequest::exchangeHttpClient(IHttpClient* client) {
    return std::exchange(httpClient_, client);
}

char* BaseRequest::deviceUrl(const char* requestLine) {
    std::string line(requestLine); // the platform takes a text that it could change
    return getTovlinCgiUrl(server_address(), server_port(), line.data());
}

int BaseRequest::askDevice(unsigned int uid, const char* requestLine, char** raw) {
    const OwnedText url(deviceUrl(requestLine));
    return requestCgi(uid, url.get(), raw, REQCGI_METHOD_GET, REQCGI_CONNECTION_KEEP);
}
