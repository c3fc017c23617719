#include "simulator/session.h"

#include <algorithm>

namespace koine::sim {

namespace asio = boost::asio;

namespace {

constexpr std::chrono::milliseconds kFarewell{500};
constexpr std::chrono::milliseconds kDrainStep{1};
constexpr int kDrainAttempts = 200;

} // namespace

Session::Session(asio::io_context& io, std::unique_ptr<Link> link, RequestHandler& handler,
                 std::uint64_t number, Ended ended)
    : link_(std::move(link)), timer_(io), handler_(handler), number_(number), ended_(std::move(ended)) {}

Session::~Session() { ended_(this); }

void Session::start() {
    link_->open([self = shared_from_this()](const Failure& failure) {
        if (!failure)
            self->read();
    });
}

void Session::read() {
    link_->read(asio::buffer(input_), [self = shared_from_this()](const Failure& failure, std::size_t size) {
        if (failure)
            return self->link_->close();
        self->reader_.feed({self->input_.data(), size});
        self->takeRequest();
    });
}

void Session::takeRequest() {
    auto request = reader_.next();
    if (request) {
        request->connection = number_;
        begin(handler_.reply(*request));
    } else if (reader_.isBroken()) {
        begin(handler_.replyToGarbage());
    } else {
        read();
    }
}

void Session::begin(Reply reply) {
    reply_ = std::move(reply);
    sentBytes_ = 0;
    sentRepeated_ = 0;
    if (reply_.silent)
        awaitGoodbye();
    else if (reply_.delay.count() > 0)
        pause(reply_.delay, &Session::send);
    else
        send();
}

/// Answers nothing; only sees to it that a client that has left does not stay on the books.
void Session::awaitGoodbye() {
    link_->read(asio::buffer(input_), [self = shared_from_this()](const Failure& failure, std::size_t) {
        if (failure)
            self->link_->close();
        else
            self->awaitGoodbye();
    });
}

asio::const_buffer Session::nextBytes() const {
    const std::size_t most = reply_.drip ? 1 : SIZE_MAX;
    if (sentBytes_ < reply_.bytes.size())
        return asio::buffer(reply_.bytes.data() + sentBytes_,
                            std::min(most, reply_.bytes.size() - sentBytes_));
    if (reply_.repeated.empty() || sentRepeated_ >= reply_.repeatedBytes)
        return {};
    const std::size_t begin = reply_.drip ? sentRepeated_ % reply_.repeated.size() : 0;
    const std::uint64_t left = reply_.repeatedBytes - sentRepeated_;
    const std::size_t length = std::min(most, reply_.repeated.size() - begin);
    return asio::buffer(reply_.repeated.data() + begin, std::min<std::uint64_t>(length, left));
}

void Session::send() {
    const asio::const_buffer bytes = nextBytes();
    if (bytes.size() == 0)
        return end();
    link_->write(bytes, [self = shared_from_this()](const Failure& failure, std::size_t size) {
        if (failure)
            self->link_->close();
        else
            self->sent(size);
    });
}

void Session::sent(std::size_t bytes) {
    if (sentBytes_ < reply_.bytes.size())
        sentBytes_ += bytes;
    else
        sentRepeated_ += bytes;
    if (reply_.drip && reply_.drip->count() > 0)
        pause(*reply_.drip, &Session::send);
    else
        send();
}

void Session::end() {
    switch (reply_.ending) {
    case Reply::Ending::keep:
        return takeRequest();
    case Reply::Ending::reset:
        return resetWhenSent(kDrainAttempts);
    case Reply::Ending::close:
        break;
    }
    // A client that does not say goodbye is not waited for.
    pause(kFarewell, &Session::close);
    link_->finish([self = shared_from_this()](const Failure&) {
        self->timer_.cancel();
        self->link_->close();
    });
}

/// A reset throws away what is still on its way, and the client is to get every byte before it.
void Session::resetWhenSent(int attemptsLeft) {
    if (attemptsLeft == 0 || link_->unsent() == 0)
        return link_->reset();
    timer_.expires_after(kDrainStep);
    timer_.async_wait([self = shared_from_this(), attemptsLeft](const Failure& failure) {
        if (!failure)
            self->resetWhenSent(attemptsLeft - 1);
    });
}

void Session::pause(std::chrono::milliseconds time, void (Session::*then)()) {
    timer_.expires_after(time);
    timer_.async_wait([self = shared_from_this(), then](const Failure& failure) {
        if (!failure)
            (self.get()->*then)();
    });
}

} // namespace koine::sim
