#include "default_platform/http_connection.h"

#include <utility>

namespace koine::platform {
namespace {

// `abort` wakes the wait; this is only how long a lost wake-up could hide.
constexpr int kWaitMilliseconds = 1000;

CURLcode codeOf(CURLMcode code) {
    switch (code) {
    case CURLM_OK:
        return CURLE_OK;
    case CURLM_OUT_OF_MEMORY:
        return CURLE_OUT_OF_MEMORY;
    default:
        return CURLE_FAILED_INIT;
    }
}

void check(CURLMcode code) { platform::check(codeOf(code)); }

/// The transfer's place in the multi handle.
class Attached {
public:
    Attached(CURLM* multi, CURL* easy) : multi_(multi), easy_(easy) {
        check(curl_multi_add_handle(multi, easy));
    }
    ~Attached() { curl_multi_remove_handle(multi_, easy_); }
    Attached(const Attached&) = delete;
    Attached& operator=(const Attached&) = delete;

private:
    CURLM* multi_;
    CURL* easy_;
};

/// How the one transfer ended.
CURLcode ending(CURLM* multi) {
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(multi, &left))
        if (message->msg == CURLMSG_DONE)
            return message->data.result;
    return CURLE_FAILED_INIT;
}

} // namespace

HttpConnection::Running::Running(HttpConnection& connection) : connection_(connection) {
    const std::lock_guard<std::mutex> guard(connection_.mutex_);
    connection_.running_ = true;
    connection_.aborted_.store(false, std::memory_order_relaxed);
}

HttpConnection::Running::~Running() {
    const std::lock_guard<std::mutex> guard(connection_.mutex_);
    connection_.running_ = false;
}

CURLcode HttpConnection::run(CURL* easy) {
    CURLM* multi = opened();
    const Attached attached(multi, easy);
    return drive(multi);
}

CURLcode HttpConnection::drive(CURLM* multi) {
    int running = 0;
    do {
        check(curl_multi_perform(multi, &running));
        if (aborted())
            return CURLE_ABORTED_BY_CALLBACK;
        if (running != 0)
            check(curl_multi_poll(multi, nullptr, 0, kWaitMilliseconds, nullptr));
    } while (running != 0);
    return ending(multi);
}

CURLM* HttpConnection::opened() {
    if (multi_)
        return multi_.get();
    CurlMulti multi(curl_multi_init());
    if (!multi)
        throw CurlFailure{CURLE_OUT_OF_MEMORY};
    check(curl_multi_setopt(multi.get(), CURLMOPT_MAXCONNECTS, 1L));
    const std::lock_guard<std::mutex> guard(mutex_);
    multi_ = std::move(multi);
    return multi_.get();
}

void HttpConnection::abort() {
    const std::lock_guard<std::mutex> guard(mutex_);
    if (!running_)
        return;
    aborted_.store(true, std::memory_order_relaxed);
    if (multi_)
        curl_multi_wakeup(multi_.get());
}

void HttpConnection::close() {
    CurlMulti closing;
    const std::lock_guard<std::mutex> guard(mutex_);
    closing.swap(multi_);
}

} // namespace koine::platform
