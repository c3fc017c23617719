/// @file
/// The connection of a client and the request that runs over it.
#pragma once

#include "default_platform/curl_handle.h"

#include <atomic>
#include <mutex>

namespace koine::platform {

/// Runs transfers so that another thread can end them.
///
/// Threads: `abort` from any; everything else from the one that has the client for itself.
class HttpConnection {
public:
    /// While one lives, a request is running and `abort` means it.
    class Running {
    public:
        explicit Running(HttpConnection& connection);
        ~Running();
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;

    private:
        HttpConnection& connection_;
    };

    /// Runs the transfer that `easy` describes to its end.
    /// @return CURLE_ABORTED_BY_CALLBACK after an `abort`, otherwise how libcurl ended
    CURLcode run(CURL* easy);

    bool aborted() const noexcept { return aborted_.load(std::memory_order_relaxed); }

    /// Ends the running request; does nothing when none is running, so an abort that comes too late cannot
    /// hit the request after it.
    void abort();

    /// Closes the connection; the next transfer opens it again.
    void close();

private:
    CURLM* opened();
    CURLcode drive(CURLM* multi);

    std::mutex mutex_; // for what `abort` reads: that there is a request, and the handle to wake
    CurlMulti multi_;
    bool running_ = false;
    std::atomic<bool> aborted_{false};
};

} // namespace koine::platform
