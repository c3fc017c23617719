#include "simulator/link.h"

#include <boost/asio/ssl/context.hpp>
#include <boost/asio/ssl/stream.hpp>
#include <boost/asio/write.hpp>
#include <linux/sockios.h>
#include <stdexcept>
#include <sys/ioctl.h>

namespace koine::sim {

namespace asio = boost::asio;
using asio::ip::tcp;

namespace {

class PlainLink : public Link {
public:
    explicit PlainLink(tcp::socket&& socket) : Link(std::move(socket)) {}

    void open(Opened done) override { done({}); }
    void read(asio::mutable_buffer into, Moved done) override {
        socket_.async_read_some(into, std::move(done));
    }
    void write(asio::const_buffer bytes, Moved done) override {
        asio::async_write(socket_, bytes, std::move(done));
    }
    void finish(Opened done) override {
        Failure failure;
        socket_.shutdown(tcp::socket::shutdown_send, failure);
        done(failure);
    }
};

class TlsLink : public Link {
public:
    TlsLink(tcp::socket&& socket, asio::ssl::context& context)
        : Link(std::move(socket)), stream_(socket_, context) {}

    void open(Opened done) override {
        stream_.async_handshake(asio::ssl::stream_base::server, std::move(done));
    }
    void read(asio::mutable_buffer into, Moved done) override {
        stream_.async_read_some(into, std::move(done));
    }
    void write(asio::const_buffer bytes, Moved done) override {
        asio::async_write(stream_, bytes, std::move(done));
    }
    void finish(Opened done) override { stream_.async_shutdown(std::move(done)); }

private:
    asio::ssl::stream<tcp::socket&> stream_;
};

} // namespace

void Link::close() {
    Failure ignored;
    socket_.close(ignored);
}

void Link::reset() {
    Failure ignored;
    socket_.set_option(asio::socket_base::linger(true, 0), ignored);
    socket_.close(ignored);
}

std::size_t Link::unsent() {
    int bytes = 0;
    return ::ioctl(socket_.native_handle(), SIOCOUTQ, &bytes) == 0 && bytes > 0
               ? static_cast<std::size_t>(bytes)
               : 0;
}

struct LinkFactory::Tls {
    asio::ssl::context context{asio::ssl::context::tls_server};
};

LinkFactory::LinkFactory(const Options& options) {
    if (!options.https)
        return;
    tls_ = std::make_unique<Tls>();
    Failure failure;
    tls_->context.use_certificate_chain_file(options.certificateFile.string(), failure);
    if (failure)
        throw std::runtime_error("cannot use the certificate " + options.certificateFile.string() + ": " +
                                 failure.message() + "; give a PEM file");
    tls_->context.use_private_key_file(options.privateKeyFile.string(), asio::ssl::context::pem, failure);
    if (failure)
        throw std::runtime_error("cannot use the private key " + options.privateKeyFile.string() + ": " +
                                 failure.message() + "; give the PEM file that belongs to the certificate");
}

LinkFactory::~LinkFactory() = default;

std::unique_ptr<Link> LinkFactory::link(tcp::socket&& socket) {
    if (tls_)
        return std::make_unique<TlsLink>(std::move(socket), tls_->context);
    return std::make_unique<PlainLink>(std::move(socket));
}

} // namespace koine::sim
