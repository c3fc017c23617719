#include "raw_client.h"

#include "text/numbers.h"
#include "text/words.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

namespace koine::test {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::string_view kHeadEnd = "\r\n\r\n";

RawAnswer parted(std::string bytes, End end) {
    RawAnswer answer;
    answer.end = end;
    answer.bytes = std::move(bytes);
    const std::size_t headEnd = answer.bytes.find(kHeadEnd);
    answer.head = answer.bytes.substr(0, headEnd);
    if (headEnd != std::string::npos)
        answer.body = answer.bytes.substr(headEnd + kHeadEnd.size());
    return answer;
}

/// How long the answer in these bytes is, as far as it says so.
std::optional<std::size_t> declaredSize(const std::string& bytes) {
    const std::size_t headEnd = bytes.find(kHeadEnd);
    if (headEnd == std::string::npos)
        return std::nullopt;
    const std::string length = parted(bytes, End::complete).header("Content-Length");
    if (length.empty())
        return std::nullopt;
    return headEnd + kHeadEnd.size() + static_cast<std::size_t>(readLong(length));
}

} // namespace

int RawAnswer::status() const {
    const std::size_t space = head.find(' ');
    return startsWith(head, "HTTP/") && space != std::string::npos ? readInt(head.substr(space)) : 0;
}

std::string RawAnswer::header(std::string_view name) const {
    for (std::size_t at = head.find("\r\n"); at != std::string::npos; at = head.find("\r\n", at)) {
        at += 2;
        const std::string_view line = std::string_view(head).substr(at, head.find("\r\n", at) - at);
        if (startsWithIgnoreCase(line, name) && line.substr(name.size(), 1) == ":")
            return std::string(skipBlanks(line.substr(name.size() + 1)));
    }
    return {};
}

RawClient::RawClient(unsigned short port) : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
        ::close(socket_);
        socket_ = -1;
    }
}

RawClient::~RawClient() {
    if (socket_ >= 0)
        ::close(socket_);
}

bool RawClient::send(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t sent = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

std::optional<End> RawClient::readMore(Clock::time_point until) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(until - Clock::now());
    pollfd waiting{socket_, POLLIN, 0};
    if (left.count() <= 0 || ::poll(&waiting, 1, static_cast<int>(left.count())) <= 0)
        return End::timeLimit;
    std::array<char, 65536> bytes{};
    const ssize_t size = ::recv(socket_, bytes.data(), bytes.size(), 0);
    if (size <= 0)
        return size == 0 ? End::closed : End::reset;
    read_.append(bytes.data(), static_cast<std::size_t>(size));
    return std::nullopt;
}

RawAnswer RawClient::receive(std::chrono::milliseconds limit) {
    const auto until = Clock::now() + limit;
    for (;;) {
        const auto size = declaredSize(read_);
        if (size && read_.size() >= *size) {
            RawAnswer answer = parted(read_.substr(0, *size), End::complete);
            read_.erase(0, *size);
            return answer;
        }
        if (const auto end = readMore(until))
            return parted(std::exchange(read_, {}), *end);
    }
}

RawAnswer RawClient::receiveAll(std::chrono::milliseconds limit, std::size_t most) {
    const auto until = Clock::now() + limit;
    for (;;) {
        if (read_.size() >= most)
            return parted(std::exchange(read_, {}), End::complete);
        if (const auto end = readMore(until))
            return parted(std::exchange(read_, {}), *end);
    }
}

RawAnswer RawClient::get(std::string_view target, std::string_view headers) {
    std::string request = "GET ";
    request.append(target).append(" HTTP/1.1\r\nHost: device\r\n").append(headers).append("\r\n");
    send(request);
    return receive();
}

RawAnswer getOnce(unsigned short port, std::string_view target, std::string_view headers) {
    RawClient client(port);
    return client.get(target, headers);
}

} // namespace koine::test
