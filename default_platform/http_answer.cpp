#include "default_platform/http_answer.h"

#include "default_platform/characters.h"
#include "text/shortage.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace koine::platform {
namespace {

// Real devices send well below one KiB of headers.
constexpr std::size_t kHeaderLimit = std::size_t{256} << 10;

constexpr std::size_t kSmallestBody = std::size_t{4} << 10;

// Up to this size a body's room is doubled; beyond it the next room is all that the limit allows, or four
// times as much where that is too much at once. So a small body is moved a few times, and a large one is
// never held twice: room that is not written to takes no memory.
constexpr std::size_t kDoubledBody = std::size_t{256} << 10;
constexpr std::size_t kMostAtOnce = std::size_t{64} << 20;

// The last body of a device is kept for as long as nothing else is asked, which may be months: no more room
// than this is left unused.
constexpr std::size_t kSpareRoom = std::size_t{1} << 10;

// A body above this size does not stay allocated for the next one.
constexpr std::size_t kKeptBody = std::size_t{64} << 10;

std::size_t roomAfter(std::size_t room, std::size_t limit) noexcept {
    if (room < kDoubledBody)
        return std::max(std::min(2 * room, limit + 1), kSmallestBody);
    return limit < kMostAtOnce ? limit + 1 : std::min(4 * room, limit + 1);
}

} // namespace

void AnswerBody::clear() noexcept {
    size_ = 0;
    if (capacity_ > kKeptBody) {
        bytes_.reset();
        capacity_ = 0;
    }
    if (bytes_)
        bytes_.get()[0] = '\0';
}

bool AnswerBody::append(std::string_view bytes, std::size_t limit) noexcept {
    const std::size_t needed = size_ + bytes.size() + 1;
    if (needed > capacity_ && !resize(std::max(needed, roomAfter(capacity_, limit))) && !resize(needed))
        return false;
    std::memcpy(bytes_.get() + size_, bytes.data(), bytes.size());
    size_ += bytes.size();
    bytes_.get()[size_] = '\0';
    return true;
}

void AnswerBody::trim() noexcept {
    if (capacity_ - size_ > kSpareRoom)
        static_cast<void>(resize(size_ + 1)); // else it stays as large as it is
}

bool AnswerBody::resize(std::size_t room) noexcept {
    char* resized = static_cast<char*>(std::realloc(bytes_.get(), room));
    if (resized == nullptr)
        return false;
    static_cast<void>(bytes_.release());
    bytes_.reset(resized);
    capacity_ = room;
    return true;
}

void AnswerHeaders::add(std::string_view line) {
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos || isBlank(line.front()))
        return;
    lines_.append(trimmed(line.substr(0, colon))).append(1, '\0');
    lines_.append(trimmed(line.substr(colon + 1))).append(1, '\0');
}

const char* AnswerHeaders::find(std::string_view name) const noexcept {
    for (const char* at = lines_.data(); at != lines_.data() + lines_.size();) {
        const std::string_view found(at);
        const char* value = at + found.size() + 1;
        if (sameWord(found, name))
            return value;
        at = value + std::strlen(value) + 1;
    }
    return nullptr;
}

void AnswerReader::attach(CurlEasy& easy) {
    easy.set(CURLOPT_WRITEFUNCTION, &onBody);
    easy.set(CURLOPT_WRITEDATA, this);
    easy.set(CURLOPT_HEADERFUNCTION, &onHeader);
    easy.set(CURLOPT_HEADERDATA, this);
    easy.set(CURLOPT_XFERINFOFUNCTION, &onProgress);
    easy.set(CURLOPT_XFERINFODATA, this);
    easy.set(CURLOPT_NOPROGRESS, 0L);
}

void AnswerReader::begin(std::size_t bodyLimit) noexcept {
    body_.clear();
    headers_.clear();
    bodyLimit_ = bodyLimit;
    headerBytes_ = 0;
    headEnded_ = false;
    fault_ = CURLE_OK;
}

CURLcode AnswerReader::fault() const noexcept {
    // libcurl takes a connection that ends within the headers for the end of an answer without a body.
    return fault_ == CURLE_OK && !headEnded_ ? CURLE_PARTIAL_FILE : fault_;
}

std::size_t AnswerReader::onBody(char* bytes, std::size_t size, std::size_t count, void* self) noexcept {
    return static_cast<AnswerReader*>(self)->takeBody({bytes, size * count}) ? size * count : 0;
}

std::size_t AnswerReader::onHeader(char* bytes, std::size_t size, std::size_t count, void* self) noexcept {
    auto& reader = *static_cast<AnswerReader*>(self);
    const bool taken = orOnShortage(false, [&] { return reader.takeHeader({bytes, size * count}); });
    if (!taken && reader.fault_ == CURLE_OK)
        reader.fault_ = CURLE_OUT_OF_MEMORY;
    return taken ? size * count : 0;
}

int AnswerReader::onProgress(void* self, curl_off_t, curl_off_t received, curl_off_t, curl_off_t) noexcept {
    // Also counts a body that is only skipped, before a request is repeated with credentials.
    auto& reader = *static_cast<AnswerReader*>(self);
    if (received < 0 || static_cast<unsigned long long>(received) <= reader.bodyLimit_)
        return 0;
    reader.fault_ = CURLE_FILESIZE_EXCEEDED;
    return 1;
}

bool AnswerReader::takeBody(std::string_view bytes) noexcept {
    if (bytes.size() > bodyLimit_ - body_.size())
        fault_ = CURLE_FILESIZE_EXCEEDED;
    else if (!body_.append(bytes, bodyLimit_))
        fault_ = CURLE_OUT_OF_MEMORY;
    return fault_ == CURLE_OK;
}

bool AnswerReader::takeHeader(std::string_view line) {
    headerBytes_ += line.size();
    if (headerBytes_ > kHeaderLimit) {
        fault_ = CURLE_FILESIZE_EXCEEDED;
        return false;
    }
    // A status line begins another answer: only the last one counts.
    if (startsWithIgnoreCase(line, "HTTP/")) {
        headers_.clear();
        headEnded_ = false;
        return true;
    }
    headEnded_ = headEnded_ || line == "\r\n" || line == "\n";
    if (startsWithIgnoreCase(line, "Set-Cookie:"))
        ++cookies_;
    headers_.add(line);
    return true;
}

} // namespace koine::platform
