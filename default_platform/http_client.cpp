#include "platform/http_client.h"

#include "default_platform/http_answer.h"
#include "default_platform/http_auth.h"
#include "default_platform/http_connection.h"
#include "default_platform/http_outcome.h"
#include "default_platform/http_request.h"
#include "default_platform/settings.h"
#include "platform/trace.h"
#include "platform/url.h"
#include "text/owned_text.h"
#include "text/shortage.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <climits>
#include <mutex>
#include <new>
#include <string>
#include <utility>

namespace koine::platform {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;

// Cookies that a device may set until the jar is looked into, and how many distinct ones may stay in it.
constexpr std::size_t kCookiesUntilCheck = 256;
constexpr int kMostCookies = 64;

long curlMilliseconds(Milliseconds time) {
    return static_cast<long>(std::clamp<Milliseconds::rep>(time.count(), 1, INT_MAX));
}

const char* nullIfEmpty(const std::string& text) { return text.empty() ? nullptr : text.c_str(); }

/// The client on libcurl: one easy handle for as long as it talks to one device, so that the nonce, the
/// cookies and the connection outlast a request.
class CurlClient final : public IHttpClient {
public:
    /// @throws CurlFailure, std::bad_alloc
    CurlClient();

    void Release() override { delete this; }
    int Request(const char* url, const char* headers, const char* contentType, const void* content,
                unsigned int contentLength, const char* username, const char* password, char** body,
                unsigned int* bodyLength, int method, int connection) override;
    void SetTimeout(unsigned int milliseconds) override { timeLimit_ = milliseconds; }
    int GetStatus() override { return status_; }
    const char* GetHeader(const char* name) override;
    void Abort() override { connection_.abort(); }
    void Close() override;
    void SetUid(unsigned int uid) override {
        uid_ = uid;
        hasUser_ = true;
    }

private:
    void configure(CurlEasy& easy);
    HttpResult serve(const HttpCall& call) noexcept;
    HttpResult exchange(const HttpCall& call);
    void enter(const std::string& origin);
    void applySettings(const Settings& settings);
    CURLcode attempt(const HttpCall& call, Clock::time_point deadline, std::size_t bodyLimit);
    void applyCredentials(const HttpCall& call);
    bool worthRepeating(const HttpCall& call, CURLcode code);
    HttpResult resultOf(CURLcode code);
    void trimCookies();
    void traceFailure(HttpResult result, const char* why) const;
    void publishAnswer() noexcept;
    void closeIfAsked();

    // The buffer and the reader are what the handle points to, so they go after it.
    std::array<char, CURL_ERROR_SIZE> errorText_{};
    AnswerReader reader_;
    CurlEasy easy_;
    std::string systemAuthorityFile_;
    std::string systemAuthorityFolder_;

    std::mutex requestMutex_; // one request at a time
    HttpConnection connection_;
    AuthMemory auth_;
    std::string origin_; ///< of the device that all of this was learned from
    bool answered_ = false;
    long lastStatus_ = 0;

    std::mutex answerMutex_; // for what `GetHeader` reads
    AnswerHeaders headers_;
    std::atomic<int> status_{0};

    std::atomic<unsigned int> timeLimit_{0};
    std::atomic<unsigned int> uid_{0};
    std::atomic<bool> hasUser_{false};
    std::atomic<bool> closeAsked_{false};
};

CurlClient::CurlClient() {
    configure(easy_);
    systemAuthorityFile_ = orEmpty(easy_.textInfo(CURLINFO_CAINFO));
    systemAuthorityFolder_ = orEmpty(easy_.textInfo(CURLINFO_CAPATH));
}

void CurlClient::configure(CurlEasy& easy) {
    if (!easy)
        throw CurlFailure{CURLE_OUT_OF_MEMORY};
    reader_.attach(easy);
    easy.set(CURLOPT_ERRORBUFFER, errorText_.data());
    easy.set(CURLOPT_NOSIGNAL, 1L);
    easy.set(CURLOPT_QUICK_EXIT, 1L); // or a name server that hangs would outlast every limit
    easy.set(CURLOPT_PROTOCOLS_STR, "http,https");
    easy.set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    easy.set(CURLOPT_PATH_AS_IS, 1L);
    // A redirect could lead to another host, and devices have no need of any.
    easy.set(CURLOPT_FOLLOWLOCATION, 0L);
    easy.set(CURLOPT_PROXY, "");
    easy.set(CURLOPT_NOPROXY, "*");
    easy.set(CURLOPT_TCP_KEEPALIVE, 1L);
    easy.set(CURLOPT_TCP_NODELAY, 1L);
    easy.set(CURLOPT_COOKIEFILE, ""); // switches the cookie engine on; no file is read
}

int CurlClient::Request(const char* url, const char* headers, const char* contentType, const void* content,
                        unsigned int contentLength, const char* username, const char* password, char** body,
                        unsigned int* bodyLength, int method, int connection) {
    HttpCall call;
    call.url = viewOf(url);
    call.headers = viewOf(headers);
    call.contentType = viewOf(contentType);
    call.content = content;
    call.contentLength = contentLength;
    call.username = orEmpty(username);
    call.password = orEmpty(password);
    call.method = method;
    call.freshConnection = connection != 0;

    HttpResult result = kNoMemory;
    {
        const std::lock_guard<std::mutex> guard(requestMutex_);
        result = serve(call);
        const std::size_t length = answered_ ? reader_.body().size() : 0;
        if (body != nullptr)
            *body = length != 0 ? reader_.body().data() : nullptr;
        if (bodyLength != nullptr)
            *bodyLength = static_cast<unsigned int>(length);
    }
    // A close that was asked for while the request ran found the client busy.
    if (closeAsked_)
        Close();
    return result;
}

/// The edge where everything inside becomes a result.
HttpResult CurlClient::serve(const HttpCall& call) noexcept {
    const HttpConnection::Running running(connection_);
    closeIfAsked();
    answered_ = false;
    lastStatus_ = 0;
    reader_.begin(0);
    HttpResult result = kNoMemory;
    try {
        result = exchange(call);
    } catch (const Url::parse_error& error) {
        result = kUnusableUrl;
        traceFailure(result, error.what());
    } catch (const CurlFailure& failure) {
        result = resultOfFailure(failure.code);
        traceFailure(result, curl_easy_strerror(failure.code));
    } catch (const std::bad_alloc&) {
        traceFailure(result, "out of memory");
    }
    publishAnswer();
    return result;
}

HttpResult CurlClient::exchange(const HttpCall& call) {
    const Settings settings = currentSettings();
    const HttpRequest request(call);
    enter(request.origin());
    request.applyTo(easy_);
    applySettings(settings);

    const unsigned int ownLimit = timeLimit_;
    const Clock::time_point deadline =
        Clock::now() + Milliseconds(ownLimit != 0 ? ownLimit : settings.requestMilliseconds);
    auth_.beginRequest();
    CURLcode code = attempt(call, deadline, settings.bodyLimit);
    for (int made = 1; worthRepeating(call, code) && made < AuthMemory::kMostAttempts; ++made)
        code = attempt(call, deadline, settings.bodyLimit);
    trimCookies();
    return resultOf(code);
}

/// Nothing that one device said may reach another one: neither a cookie nor credentials in the form that the
/// first one wanted.
void CurlClient::enter(const std::string& origin) {
    if (origin_ == origin)
        return;
    std::string entered = origin;
    if (!origin_.empty()) {
        CurlEasy fresh;
        configure(fresh);
        connection_.close();
        easy_ = std::move(fresh);
        auth_ = AuthMemory();
    }
    origin_.swap(entered);
}

void CurlClient::applySettings(const Settings& settings) {
    easy_.set(CURLOPT_CONNECTTIMEOUT_MS, curlMilliseconds(Milliseconds(settings.connectMilliseconds)));
    easy_.set(CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(settings.bodyLimit));
    easy_.set(CURLOPT_SSL_VERIFYPEER, settings.verifyTls ? 1L : 0L);
    easy_.set(CURLOPT_SSL_VERIFYHOST, settings.verifyTls ? 2L : 0L);
    const bool ownAuthorities = !settings.authorityFile.empty();
    easy_.set(CURLOPT_CAINFO, nullIfEmpty(ownAuthorities ? settings.authorityFile : systemAuthorityFile_));
    easy_.set(CURLOPT_CAPATH, ownAuthorities ? nullptr : nullIfEmpty(systemAuthorityFolder_));
    easy_.set(CURLOPT_PINNEDPUBLICKEY, nullIfEmpty(settings.pinnedKey));
}

CURLcode CurlClient::attempt(const HttpCall& call, Clock::time_point deadline, std::size_t bodyLimit) {
    const auto left = std::chrono::duration_cast<Milliseconds>(deadline - Clock::now());
    if (left.count() <= 0)
        return CURLE_OPERATION_TIMEDOUT;
    easy_.set(CURLOPT_TIMEOUT_MS, curlMilliseconds(left));
    applyCredentials(call);
    reader_.begin(bodyLimit);
    errorText_.front() = '\0';
    const CURLcode code = connection_.run(easy_.get());
    lastStatus_ = easy_.info(CURLINFO_RESPONSE_CODE);
    const bool stopped =
        code == CURLE_WRITE_ERROR || (code == CURLE_ABORTED_BY_CALLBACK && !connection_.aborted());
    // Success, or the reader's own veto: then it is the reader who knows what happened.
    return (code == CURLE_OK || stopped) && reader_.fault() != CURLE_OK ? reader_.fault() : code;
}

void CurlClient::applyCredentials(const HttpCall& call) {
    easy_.set(CURLOPT_USERNAME, call.anonymous() ? nullptr : call.username);
    easy_.set(CURLOPT_PASSWORD, call.anonymous() ? nullptr : call.password);
    easy_.set(CURLOPT_HTTPAUTH, auth_.schemes());
    // A repetition with credentials counts as a redirect in libcurl; there are no others.
    easy_.set(CURLOPT_MAXREDIRS, auth_.repetitions());
}

bool CurlClient::worthRepeating(const HttpCall& call, CURLcode code) {
    AuthOutcome outcome;
    outcome.offered = easy_.info(CURLINFO_HTTPAUTH_AVAIL);
    outcome.refused = lastStatus_ == 401;
    outcome.stopped = code == CURLE_TOO_MANY_REDIRECTS;
    outcome.anonymous = call.anonymous();
    return auth_.learn(outcome) && (code == CURLE_OK || outcome.stopped);
}

HttpResult CurlClient::resultOf(CURLcode code) {
    if (code == CURLE_OK) {
        answered_ = true;
        reader_.body().trim();
        return resultOfStatus(lastStatus_);
    }
    const HttpResult result = resultOfFailure(code);
    // Neither is a fault: the one was asked for, the other is the device's plain answer.
    if (result != kAborted && result != kCredentialsRefused)
        traceFailure(result, errorText_.front() != '\0' ? errorText_.data() : curl_easy_strerror(code));
    return result;
}

/// A device that invents a new cookie with every answer must not fill the memory.
void CurlClient::trimCookies() {
    if (reader_.cookies() < kCookiesUntilCheck)
        return;
    reader_.forgetCookies();
    curl_slist* kept = nullptr;
    check(curl_easy_getinfo(easy_.get(), CURLINFO_COOKIELIST, &kept));
    const CurlList owner(kept);
    int count = 0;
    for (; kept != nullptr; kept = kept->next)
        ++count;
    if (count > kMostCookies)
        easy_.set(CURLOPT_COOKIELIST, "ALL");
}

void CurlClient::traceFailure(HttpResult result, const char* why) const {
    if (!hasUser_)
        return; // nobody waits for this answer
    dbg_trace("??#%d IHttpClient::Request: uid=%u, err%d, %s. \n", __LINE__, uid_.load(),
              static_cast<int>(result), why);
}

void CurlClient::publishAnswer() noexcept {
    const std::lock_guard<std::mutex> guard(answerMutex_);
    headers_.swap(reader_.headers());
    status_ = static_cast<int>(lastStatus_);
}

const char* CurlClient::GetHeader(const char* name) {
    const std::lock_guard<std::mutex> guard(answerMutex_);
    return headers_.find(viewOf(name));
}

void CurlClient::Close() {
    closeAsked_ = true;
    const std::unique_lock<std::mutex> guard(requestMutex_, std::try_to_lock);
    if (guard.owns_lock())
        closeIfAsked();
}

void CurlClient::closeIfAsked() {
    if (closeAsked_.exchange(false))
        connection_.close();
}

IHttpClient* makeClient() {
    try {
        return curlReady() ? new CurlClient : nullptr;
    } catch (const CurlFailure&) {
        return nullptr;
    }
}

} // namespace
} // namespace koine::platform

IHttpClient* CreateIHttpClient() {
    using koine::platform::makeClient;
    return koine::orOnShortage<IHttpClient*>(nullptr, makeClient);
}
