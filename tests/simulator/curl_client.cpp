#include "curl_client.h"

#include "text/words.h"

namespace koine::test {
namespace {

std::size_t appendBody(char* bytes, std::size_t size, std::size_t count, void* into) {
    static_cast<std::string*>(into)->append(bytes, size * count);
    return size * count;
}

/// Remembers the "Authorization" line of the request that curl is about to send.
int rememberAuthorization(CURL*, curl_infotype type, char* bytes, std::size_t size, void* into) {
    if (type != CURLINFO_HEADER_OUT)
        return 0;
    constexpr std::string_view kName = "\r\nAuthorization: ";
    const std::string_view head(bytes, size);
    const std::size_t begin = head.find(kName);
    auto& authorization = *static_cast<std::string*>(into);
    authorization.clear();
    if (begin != std::string_view::npos) {
        const std::string_view value = head.substr(begin + kName.size());
        authorization = value.substr(0, value.find("\r\n"));
    }
    return 0;
}

} // namespace

CurlClient::CurlClient() : handle_(curl_easy_init()) {
    CURL* handle = handle_.get();
    curl_easy_setopt(handle, CURLOPT_PROXY, "");
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(handle, CURLOPT_TIMEOUT_MS, 5000L);
    curl_easy_setopt(handle, CURLOPT_COOKIEFILE, "");
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, appendBody);
    curl_easy_setopt(handle, CURLOPT_VERBOSE, 1L);
    curl_easy_setopt(handle, CURLOPT_DEBUGFUNCTION, rememberAuthorization);
}

void CurlClient::setCredentials(unsigned long kinds, const std::string& username,
                                const std::string& password) {
    curl_easy_setopt(handle_.get(), CURLOPT_HTTPAUTH, kinds);
    curl_easy_setopt(handle_.get(), CURLOPT_USERNAME, username.c_str());
    curl_easy_setopt(handle_.get(), CURLOPT_PASSWORD, password.c_str());
}

void CurlClient::trust(const std::string& certificateFile) {
    curl_easy_setopt(handle_.get(), CURLOPT_CAINFO, certificateFile.c_str());
}

CurlAnswer CurlClient::get(const std::string& url) {
    curl_easy_setopt(handle_.get(), CURLOPT_HTTPGET, 1L);
    return perform(url);
}

CurlAnswer CurlClient::post(const std::string& url, const std::string& form) {
    curl_easy_setopt(handle_.get(), CURLOPT_COPYPOSTFIELDS, form.c_str());
    return perform(url);
}

CurlAnswer CurlClient::perform(const std::string& url) {
    CURL* handle = handle_.get();
    CurlAnswer answer;
    curl_easy_setopt(handle, CURLOPT_URL, url.c_str());
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, &answer.body);
    curl_easy_setopt(handle, CURLOPT_DEBUGDATA, &answer.authorization);
    answer.code = curl_easy_perform(handle);
    curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &answer.status);
    return answer;
}

} // namespace koine::test
