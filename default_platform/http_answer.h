/// @file
/// Takes in an answer while it arrives.
#pragma once

#include "default_platform/curl_handle.h"
#include "text/owned_text.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace koine::platform {

/// A body that grows in place, always ended by a NUL.
class AnswerBody {
public:
    void clear() noexcept;

    /// False when memory runs out.
    bool append(std::string_view bytes, std::size_t limit) noexcept;

    /// Gives back the room that the whole body did not need.
    void trim() noexcept;

    std::size_t size() const noexcept { return size_; }
    char* data() const noexcept { return bytes_.get(); }

private:
    bool resize(std::size_t room) noexcept;

    OwnedText bytes_;
    std::size_t size_ = 0;
    std::size_t capacity_ = 0;
};

/// The header lines of one answer.
class AnswerHeaders {
public:
    void clear() noexcept { lines_.clear(); }

    /// Keeps a line "name: value"; any other line is passed over.
    void add(std::string_view line);

    /// Value of the first header of this name, whatever its case; null if there is none.
    const char* find(std::string_view name) const noexcept;

    void swap(AnswerHeaders& other) noexcept { lines_.swap(other.lines_); }

private:
    std::string lines_; // name, NUL, value, NUL and so on
};

/// libcurl's callbacks for one client and what they gather.
class AnswerReader {
public:
    /// Makes `easy` deliver to this object for the rest of its life.
    /// @throws CurlFailure
    void attach(CurlEasy& easy);

    /// Begins a new answer; a body larger than `bodyLimit` ends it.
    void begin(std::size_t bodyLimit) noexcept;

    /// What is wrong with the answer, as far as libcurl does not see it; CURLE_OK when nothing is.
    CURLcode fault() const noexcept;

    AnswerBody& body() noexcept { return body_; }
    AnswerHeaders& headers() noexcept { return headers_; }

    /// How many cookies the device has set since `forgetCookies`.
    std::size_t cookies() const noexcept { return cookies_; }
    void forgetCookies() noexcept { cookies_ = 0; }

private:
    static std::size_t onBody(char* bytes, std::size_t size, std::size_t count, void* self) noexcept;
    static std::size_t onHeader(char* bytes, std::size_t size, std::size_t count, void* self) noexcept;
    static int onProgress(void* self, curl_off_t, curl_off_t received, curl_off_t, curl_off_t) noexcept;

    bool takeBody(std::string_view bytes) noexcept;
    bool takeHeader(std::string_view line);

    AnswerBody body_;
    AnswerHeaders headers_;
    std::size_t bodyLimit_ = 0;
    std::size_t headerBytes_ = 0;
    std::size_t cookies_ = 0;
    bool headEnded_ = false;
    CURLcode fault_ = CURLE_OK;
};

} // namespace koine::platform
