#include "simulator/server.h"

#include "simulator/session.h"

#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/address.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/steady_timer.hpp>
#include <future>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <unordered_set>

namespace koine::sim {

namespace asio = boost::asio;
using asio::ip::tcp;

namespace {

constexpr std::size_t kMostConnections = 512;
constexpr std::chrono::milliseconds kAcceptPause{50};

tcp::endpoint endpointOf(const Options& options) {
    Failure failure;
    const asio::ip::address address = asio::ip::make_address(options.address, failure);
    if (failure)
        throw std::runtime_error(
            "\"" + options.address +
            "\" is no IP address to listen on; write it in digits, for example 127.0.0.1");
    return {address, options.port};
}

} // namespace

class Server::Listener {
public:
    Listener(const Options& options, RequestHandler& handler, FaultList& faults, Journal& journal)
        : handler_(handler),
          faults_(faults),
          journal_(journal),
          links_(options),
          acceptor_(io_),
          pause_(io_) {
        listen(endpointOf(options));
        endpoint_ = acceptor_.local_endpoint();
        accept();
        thread_ = std::thread([this] { run(); });
    }

    unsigned short port() const noexcept { return endpoint_.port(); }

    void refuse(bool refusing) {
        const std::lock_guard lock(control_);
        if (!thread_.joinable())
            return;
        std::packaged_task<void()> task([this, refusing] { refusing ? closeDoor() : openDoor(); });
        std::future<void> done = task.get_future();
        asio::post(io_, [&task] { task(); });
        done.get();
    }

    void stop() {
        const std::lock_guard lock(control_);
        if (!thread_.joinable())
            return;
        io_.stop();
        thread_.join();
        Failure ignored;
        acceptor_.close(ignored);
        for (Session* session : sessions_)
            session->close();
    }

private:
    /// One connection may come to grief, by lack of memory for example; the device goes on.
    void run() {
        while (!io_.stopped()) {
            try {
                io_.run();
            } catch (const std::exception&) {
                continue;
            }
        }
    }

    void take(const tcp::endpoint& endpoint) {
        acceptor_.open(endpoint.protocol());
        acceptor_.set_option(tcp::acceptor::reuse_address(true));
        acceptor_.bind(endpoint);
    }

    void listen(const tcp::endpoint& endpoint) {
        try {
            take(endpoint);
            acceptor_.listen();
        } catch (const boost::system::system_error& failure) {
            throw std::runtime_error("cannot listen on " + endpoint.address().to_string() + " port " +
                                     std::to_string(endpoint.port()) + ": " + failure.code().message() +
                                     "; choose another address or port, or port 0 for a free one");
        }
    }

    /// Without a listener the system refuses connections. A socket that is only bound keeps the port ours.
    void closeDoor() {
        if (refusing_)
            return;
        refusing_ = true;
        for (Session* session : sessions_)
            session->reset();
        pause_.cancel();
        acceptor_.close();
        take(endpoint_);
    }

    void openDoor() {
        if (!refusing_)
            return;
        refusing_ = false;
        acceptor_.listen();
        accept();
    }

    void accept() {
        acceptor_.async_accept([this](const Failure& failure, tcp::socket socket) {
            if (failure == asio::error::operation_aborted)
                return;
            if (!failure)
                welcome(std::move(socket));
            failure ? acceptLater() : accept();
        });
    }

    /// No descriptor is free, for example: asking again at once would only burn time.
    void acceptLater() {
        pause_.expires_after(kAcceptPause);
        pause_.async_wait([this](const Failure& failure) {
            if (!failure && !refusing_)
                accept();
        });
    }

    void welcome(tcp::socket socket) {
        const std::uint64_t number = journal_.countConnection();
        Failure ignored;
        socket.set_option(tcp::no_delay(true), ignored);
        std::unique_ptr<Link> link = links_.link(std::move(socket));
        if (faults_.take(FaultKind::resetConnection, {}))
            return link->reset();
        if (sessions_.size() >= kMostConnections)
            return link->close();
        const auto session = std::make_shared<Session>(io_, std::move(link), handler_, number,
                                                       [this](Session* ended) { sessions_.erase(ended); });
        sessions_.insert(session.get());
        session->start();
    }

    RequestHandler& handler_;
    FaultList& faults_;
    Journal& journal_;
    LinkFactory links_;
    // Before io_: sessions that are still under way die with it and take themselves off.
    std::unordered_set<Session*> sessions_;
    asio::io_context io_{1};
    // While it refuses nothing is under way, and the thread still has to be there for the next command.
    asio::executor_work_guard<asio::io_context::executor_type> alive_ = asio::make_work_guard(io_);
    tcp::acceptor acceptor_;
    asio::steady_timer pause_;
    tcp::endpoint endpoint_;
    bool refusing_ = false;
    std::mutex control_;
    std::thread thread_;
};

Server::Server(const Options& options, RequestHandler& handler, FaultList& faults, Journal& journal)
    : listener_(std::make_unique<Listener>(options, handler, faults, journal)) {}

Server::~Server() { stop(); }

unsigned short Server::port() const noexcept { return listener_->port(); }

void Server::refuse(bool refusing) { listener_->refuse(refusing); }

void Server::stop() { listener_->stop(); }

} // namespace koine::sim
