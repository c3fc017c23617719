/// @file
/// Owners of libcurl's resources. What libcurl refuses becomes an exception here, so that no call goes
/// unchecked.
#pragma once

#include <curl/curl.h>

#include <memory>

namespace koine::platform {

/// A call into libcurl that failed.
struct CurlFailure {
    CURLcode code;
};

inline void check(CURLcode code) {
    if (code != CURLE_OK)
        throw CurlFailure{code};
}

/// Makes libcurl ready for the process, once. False when it cannot be.
bool curlReady();

struct CurlDeleter {
    void operator()(char* text) const noexcept { curl_free(text); }
    void operator()(CURLU* url) const noexcept { curl_url_cleanup(url); }
    void operator()(CURLM* multi) const noexcept { curl_multi_cleanup(multi); }
};
using CurlText = std::unique_ptr<char, CurlDeleter>;
using CurlUrl = std::unique_ptr<CURLU, CurlDeleter>;
using CurlMulti = std::unique_ptr<CURLM, CurlDeleter>;

struct EasyDeleter {
    void operator()(CURL* easy) const noexcept { curl_easy_cleanup(easy); }
};

/// One easy handle.
class CurlEasy {
public:
    /// Empty when libcurl has no handle to give.
    CurlEasy() : handle_(curl_easy_init()) {}

    explicit operator bool() const noexcept { return handle_ != nullptr; }
    CURL* get() const noexcept { return handle_.get(); }

    /// @throws CurlFailure
    template <typename Value>
    void set(CURLoption option, Value value) {
        check(curl_easy_setopt(handle_.get(), option, value));
    }

    /// 0 when libcurl does not know.
    long info(CURLINFO what) const noexcept {
        long value = 0;
        curl_easy_getinfo(handle_.get(), what, &value);
        return value;
    }

    /// Null when libcurl does not know; owned by it.
    const char* textInfo(CURLINFO what) const noexcept {
        const char* value = nullptr;
        curl_easy_getinfo(handle_.get(), what, &value);
        return value;
    }

private:
    std::unique_ptr<CURL, EasyDeleter> handle_;
};

/// Header lines or other texts.
class CurlList {
public:
    CurlList() = default;
    explicit CurlList(curl_slist* list) noexcept : list_(list) {}

    /// @throws CurlFailure
    void add(const char* text) {
        curl_slist* longer = curl_slist_append(list_.get(), text);
        if (longer == nullptr)
            throw CurlFailure{CURLE_OUT_OF_MEMORY};
        static_cast<void>(list_.release());
        list_.reset(longer);
    }
    curl_slist* get() const noexcept { return list_.get(); }

private:
    struct Deleter {
        void operator()(curl_slist* list) const noexcept { curl_slist_free_all(list); }
    };
    std::unique_ptr<curl_slist, Deleter> list_;
};

} // namespace koine::platform
