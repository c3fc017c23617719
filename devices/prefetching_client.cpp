// The HTTP client of a request object that gets answers ahead.

#include "devices/prefetching_client.h"

#include "koine/types.h"
#include "text/owned_text.h"
#include "text/words.h"

#include <utility>

namespace koine {

void PrefetchingClient::begin(PrefetchPlan plan, Begin when) {
    plan.timeLimit = timeLimit_;
    auto fill = std::make_unique<Prefetch>(std::move(plan));
    {
        const std::lock_guard<std::mutex> guard(abortMutex_);
        fill_ = std::move(fill);
    }
    if (when == Begin::atOnce)
        fill_->start();
}

void PrefetchingClient::end() noexcept {
    std::unique_ptr<Prefetch> ended; // its helpers end without the mutex
    const std::lock_guard<std::mutex> guard(abortMutex_);
    ended.swap(fill_);
}

void PrefetchingClient::SetTimeout(unsigned int milliseconds) {
    timeLimit_ = milliseconds;
    own_.SetTimeout(milliseconds);
}

void PrefetchingClient::Abort() {
    own_.Abort();
    const std::lock_guard<std::mutex> guard(abortMutex_);
    if (fill_)
        fill_->abort();
}

int PrefetchingClient::Request(const char* url, const char* headers, const char* contentType,
                               const void* content, unsigned int contentLength, const char* username,
                               const char* password, char** body, unsigned int* bodyLength, int method,
                               int connection) {
    const bool isPlain = headers == nullptr && content == nullptr && method == 0 && connection == 0;
    answer_.reset();
    if (fill_ && isPlain)
        answer_ = fill_->take(viewOf(url), viewOf(username), viewOf(password));
    if (answer_)
        return handOut(body, bodyLength);
    const int result = own_.Request(url, headers, contentType, content, contentLength, username, password,
                                    body, bodyLength, method, connection);
    if (fill_ && result == kOk)
        fill_->start();
    return result;
}

int PrefetchingClient::handOut(char** body, unsigned int* bodyLength) {
    served_.fetch_add(1, std::memory_order_relaxed);
    if (answer_->body && body != nullptr)
        *body = answer_->body->data();
    if (answer_->body && bodyLength != nullptr)
        *bodyLength = static_cast<unsigned int>(answer_->body->size());
    return answer_->result;
}

const char* PrefetchingClient::GetHeader(const char* name) {
    if (!answer_)
        return own_.GetHeader(name);
    const std::string_view asked = viewOf(name);
    const std::string_view cookie = kCookieHeader;
    const bool isCookie = asked.size() == cookie.size() && startsWithIgnoreCase(asked, cookie);
    return isCookie && answer_->cookie ? answer_->cookie->c_str() : nullptr;
}

} // namespace koine
