/// @file
/// The HTTP client of a request object that gets answers ahead.
#pragma once

#include "devices/prefetch.h"
#include "platform/http_client.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>

namespace koine {

/// Stands before the client that the support library made, and passes everything on to it. During a fill it
/// gives the answers that came ahead in place of asking again; whoever asks cannot tell the difference.
class PrefetchingClient final : public IHttpClient {
public:
    /// When the helpers of a fill set out.
    enum class Begin {
        atOnce,
        afterAnAnswer ///< as soon as the device has answered a request of the library
    };

    /// @param own released with this one
    explicit PrefetchingClient(IHttpClient& own) noexcept : own_(own) {}

    /// A fill begins. @throws std::bad_alloc
    void begin(PrefetchPlan plan, Begin when);
    /// It is over: what was not used is forgotten.
    void end() noexcept;
    bool isFilling() const noexcept { return fill_ != nullptr; }

    /// How many requests were answered from what came ahead. Any thread.
    std::uint64_t served() const noexcept { return served_.load(std::memory_order_relaxed); }

    void Release() override { delete this; }
    int Request(const char* url, const char* headers, const char* contentType, const void* content,
                unsigned int contentLength, const char* username, const char* password, char** body,
                unsigned int* bodyLength, int method, int connection) override;
    /// Counts for the helpers of the fills that begin later too.
    void SetTimeout(unsigned int milliseconds) override;
    int GetStatus() override { return answer_ ? answer_->status : own_.GetStatus(); }
    const char* GetHeader(const char* name) override;
    void Abort() override;
    /// The helpers close their connections themselves, at the end of the fill.
    void Close() override { own_.Close(); }
    void SetUid(unsigned int uid) override { own_.SetUid(uid); }

private:
    ~PrefetchingClient() { own_.Release(); }

    int handOut(char** body, unsigned int* bodyLength);

    IHttpClient& own_;
    std::mutex abortMutex_;              ///< held while `fill_` changes or is aborted
    std::unique_ptr<Prefetch> fill_;     ///< set and reset by the thread that fills
    unsigned int timeLimit_ = 0;         ///< in milliseconds; 0 is the default
    std::optional<ClientAnswer> answer_; ///< the last one, if it came ahead
    std::atomic<std::uint64_t> served_{0};
};

} // namespace koine
