#include "tests/support/raw_server.h"

#include "text/numbers.h"
#include "text/words.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace koine::test {
namespace {

constexpr std::string_view kHeadEnd = "\r\n\r\n";
constexpr auto kStep = std::chrono::milliseconds(5);

class SocketStream : public ByteStream {
public:
    explicit SocketStream(int socket) : socket_(socket) {}
    long read(char* bytes, std::size_t size) override { return ::recv(socket_, bytes, size, 0); }
    long write(const char* bytes, std::size_t size) override {
        return ::send(socket_, bytes, size, MSG_NOSIGNAL);
    }

private:
    int socket_;
};

std::size_t declaredLength(const std::string& head) {
    return static_cast<std::size_t>(readLong(headerOf(head, "Content-Length")));
}

struct AddressFree {
    void operator()(addrinfo* address) const { ::freeaddrinfo(address); }
};

bool isOfVersion6(std::string_view host) { return host.find(':') != std::string_view::npos; }

/// A socket that listens on a port of the system's choice; -1 when there is none to be had.
int listenOn(const std::string& host) {
    addrinfo hints{};
    hints.ai_flags = AI_NUMERICHOST;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (::getaddrinfo(host.c_str(), nullptr, &hints, &found) != 0)
        return -1;
    const std::unique_ptr<addrinfo, AddressFree> address(found);
    const int listener = ::socket(address->ai_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (listener >= 0 && ::bind(listener, address->ai_addr, address->ai_addrlen) == 0 &&
        ::listen(listener, 64) == 0)
        return listener;
    if (listener >= 0)
        ::close(listener);
    return -1;
}

unsigned int portOf(int listener) {
    sockaddr_storage address{};
    socklen_t size = sizeof address;
    ::getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size);
    // The port stands at the same place in both kinds of addresses.
    return ntohs(reinterpret_cast<const sockaddr_in*>(&address)->sin_port);
}

} // namespace

RawConnection::RawConnection(RawServer& server, int socket) : server_(server), socket_(socket) {}

RawConnection::~RawConnection() { stream_.reset(); }

std::string RawConnection::readRequest() {
    for (;;) {
        const std::size_t head = read_.find(kHeadEnd);
        if (head != std::string::npos) {
            const std::size_t size = head + kHeadEnd.size() + declaredLength(read_.substr(0, head + 2));
            if (read_.size() >= size) {
                const std::string request = read_.substr(0, size);
                read_.erase(0, size);
                server_.record(request);
                return request;
            }
        }
        std::array<char, 4096> bytes{};
        const long count = stream_->read(bytes.data(), bytes.size());
        if (count <= 0)
            return {};
        read_.append(bytes.data(), static_cast<std::size_t>(count));
    }
}

bool RawConnection::send(std::string_view bytes) {
    while (!bytes.empty()) {
        const long count = stream_->write(bytes.data(), bytes.size());
        if (count <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

void RawConnection::sendAgainAndAgain(std::string_view bytes, std::chrono::microseconds pause,
                                      std::size_t most) {
    for (std::size_t i = 0; i < most && !server_.ending() && send(bytes); ++i)
        if (pause.count() != 0)
            std::this_thread::sleep_for(pause);
}

bool RawConnection::wait(std::chrono::milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (std::chrono::steady_clock::now() < end && !server_.ending())
        std::this_thread::sleep_for(kStep);
    return !server_.ending();
}

void RawConnection::reset() {
    const linger discard{1, 0};
    ::setsockopt(socket_, SOL_SOCKET, SO_LINGER, &discard, sizeof discard);
}

RawServer::RawServer(Script script, Layer layer, std::string host)
    : script_(std::move(script)),
      layer_(std::move(layer)),
      host_(std::move(host)),
      listener_(listenOn(host_)) {
    if (listener_ < 0)
        throw std::runtime_error("no listening socket on " + host_);
    port_ = portOf(listener_);
    accepting_ = std::thread([this] { accept(); });
}

RawServer::~RawServer() {
    ending_ = true;
    accepting_.join();
    ::close(listener_);
    {
        const std::lock_guard<std::mutex> guard(mutex_);
        for (const int socket : open_)
            ::shutdown(socket, SHUT_RDWR);
    }
    for (std::thread& thread : serving_)
        thread.join();
}

std::string RawServer::url(std::string_view target) const {
    const std::string host = isOfVersion6(host_) ? "[" + host_ + "]" : host_;
    return "http://" + host + ":" + std::to_string(port_) + std::string(target);
}

std::vector<std::string> RawServer::requests() const {
    const std::lock_guard<std::mutex> guard(mutex_);
    return requests_;
}

void RawServer::record(const std::string& request) {
    const std::lock_guard<std::mutex> guard(mutex_);
    requests_.push_back(request);
}

void RawServer::accept() {
    while (!ending_) {
        pollfd waiting{listener_, POLLIN, 0};
        if (::poll(&waiting, 1, static_cast<int>(kStep.count())) <= 0)
            continue;
        const int socket = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket < 0)
            continue;
        ++connections_;
        {
            const std::lock_guard<std::mutex> guard(mutex_);
            open_.push_back(socket);
        }
        serving_.emplace_back([this, socket] { serve(socket); });
    }
}

void RawServer::serve(int socket) {
    {
        RawConnection connection(*this, socket);
        connection.stream_ = layer_ ? layer_(socket) : std::make_unique<SocketStream>(socket);
        if (connection.stream_)
            script_(connection);
    }
    ++ended_;
    const std::lock_guard<std::mutex> guard(mutex_);
    open_.erase(std::find(open_.begin(), open_.end(), socket));
    ::close(socket);
}

RawServer::Script answering(std::function<std::string(const std::string& request)> answer) {
    return [answer = std::move(answer)](RawConnection& connection) {
        for (;;) {
            const std::string request = connection.readRequest();
            if (request.empty() || !connection.send(answer(request)))
                return;
        }
    };
}

RawServer::Script always(const std::string& text) {
    return answering([text](const std::string&) { return text; });
}

std::string answerText(std::string_view status, std::string_view body, std::string_view headers) {
    std::string text = "HTTP/1.1 ";
    text.append(status).append("\r\n").append(headers);
    text.append("Content-Length: ").append(std::to_string(body.size())).append(kHeadEnd);
    return text.append(body);
}

std::string headerOf(const std::string& request, std::string_view name) {
    const std::string_view head = std::string_view(request).substr(0, request.find(kHeadEnd));
    for (std::size_t line = head.find("\r\n"); line != std::string_view::npos;
         line = head.find("\r\n", line)) {
        line += 2;
        const std::string_view rest = head.substr(line);
        if (!startsWithIgnoreCase(rest, name) || rest.substr(name.size(), 1) != ":")
            continue;
        const std::string_view value = rest.substr(name.size() + 1);
        return std::string(skipBlanks(value.substr(0, value.find("\r\n"))));
    }
    return {};
}

std::string firstLine(const std::string& request) { return request.substr(0, request.find("\r\n")); }

} // namespace koine::test
