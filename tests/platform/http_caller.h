/// @file
/// Calls an HTTP client as the library does and keeps what came back.
#pragma once

#include "platform/http_client.h"

#include <chrono>
#include <memory>
#include <string>

namespace koine::test {

struct HttpReply {
    int result = 0;
    bool hasBody = false;
    std::string body;
    std::chrono::milliseconds took{0};
};

struct ClientReleaser {
    void operator()(IHttpClient* client) const { client->Release(); }
};
using ClientPtr = std::unique_ptr<IHttpClient, ClientReleaser>;

/// A client and the arguments of its requests.
class HttpCaller {
public:
    HttpCaller() : client_(CreateIHttpClient()) {}

    IHttpClient& client() { return *client_; }

    HttpReply get(const std::string& url) { return request(url, 0, nullptr, nullptr); }
    HttpReply post(const std::string& url, const std::string& content, const char* type = "text/plain") {
        return request(url, 2, type, &content);
    }

    std::string username;
    std::string password;
    const char* headers = nullptr;
    int connection = 0;

private:
    HttpReply request(const std::string& url, int method, const char* type, const std::string* content) {
        char never = 'x';
        char* body = &never; // must be overwritten, also when the request fails
        unsigned int length = 77;
        const auto begin = std::chrono::steady_clock::now();
        HttpReply reply;
        reply.result =
            client_->Request(url.c_str(), headers, type, content == nullptr ? nullptr : content->data(),
                             content == nullptr ? 0 : static_cast<unsigned int>(content->size()),
                             username.c_str(), password.c_str(), &body, &length, method, connection);
        reply.took =
            std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - begin);
        reply.hasBody = body != nullptr;
        if (reply.hasBody)
            reply.body.assign(body, length);
        // The text must be ended, and a length without a body would be read.
        if (reply.hasBody ? body[length] != '\0' : length != 0)
            reply.result = 999;
        return reply;
    }

    ClientPtr client_;
};

} // namespace koine::test
