// Fills of several caches at once: the device is asked for the independent answers at the same time.

#include "devices/dialect_request.h"
#include "devices/prefetching_client.h"
#include "platform/cgi_text.h"
#include "text/owned_text.h"
#include "text/shortage.h"

#include <algorithm>
#include <new>

namespace koine {
namespace {

// Devices are small: some serve no more than a handful of connections in all.
constexpr unsigned int kMostConnections = 8;

} // namespace

DialectRequest::DialectRequest() {
    IHttpClient* const own = exchangeHttpClient(nullptr);
    if (own == nullptr)
        return;
    client_ = new (std::nothrow) PrefetchingClient(*own);
    exchangeHttpClient(client_ != nullptr ? client_ : own);
}

void DialectRequest::setConnections(unsigned int most) {
    connections_ = std::clamp(most, 1U, kMostConnections);
}

std::uint64_t DialectRequest::requestsPrefetched() const {
    return client_ == nullptr ? 0 : client_->served();
}

/// One fill, with answers asked ahead where that is of use.
class DialectRequest::Fill {
public:
    Fill(DialectRequest& request, unsigned int uid, Configuration wanted) : request_(request) {
        if (request.client_ == nullptr || request.connections_ < 2 || request.client_->isFilling())
            return;
        // Without memory nothing is asked ahead.
        isAhead_ = orOnShortage<bool>(false, [&] { return begin(uid, wanted); });
    }
    ~Fill() {
        if (isAhead_)
            request_.client_->end();
    }
    Fill(const Fill&) = delete;
    Fill& operator=(const Fill&) = delete;

    int ended(int result) {
        request_.hasFillFailed_ = result != kOk;
        return result;
    }

private:
    bool begin(unsigned int uid, Configuration wanted) {
        PrefetchPlan plan;
        for (std::string& line : request_.linesToFill(uid, wanted))
            if (!addUrl(plan, line))
                return false;
        if (plan.urls.size() < 2)
            return false; // the library asks for a single one as quickly itself
        plan.username = request_.get_username();
        plan.password = request_.get_password();
        plan.connections = request_.connections_ - 1;
        // The first time everything sets out together. Once that went wrong, because of a wrong password or
        // because nobody is there, only a device that has answered is asked ahead.
        request_.client_->begin(std::move(plan), request_.hasFillFailed_
                                                     ? PrefetchingClient::Begin::afterAnAnswer
                                                     : PrefetchingClient::Begin::atOnce);
        return true;
    }

    bool addUrl(PrefetchPlan& plan, std::string& line) {
        const OwnedText url(getTovlinCgiUrl(request_.server_address(), request_.server_port(), line.data()));
        if (!url || !request_.isOwnUrl(url.get()))
            return false;
        plan.urls.emplace_back(url.get());
        return true;
    }

    DialectRequest& request_;
    bool isAhead_ = false;
};

int DialectRequest::cacheCgi(unsigned int uid) {
    Fill fill(*this, uid, Configuration::all);
    return fill.ended(BaseRequest::cacheCgi(uid));
}

int DialectRequest::getCacheConfigAll(unsigned int uid, int mode, char** answer) {
    Fill fill(*this, uid, Configuration::withoutAnalytics);
    return fill.ended(BaseRequest::getCacheConfigAll(uid, mode, answer));
}

} // namespace koine
