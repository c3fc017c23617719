/// @file
/// From a request to what the device sends.
#pragma once

#include "simulator/authenticator.h"
#include "simulator/dialect.h"
#include "simulator/fault_effects.h"
#include "simulator/http_message.h"
#include "simulator/journal.h"

#include <functional>
#include <string>

namespace koine::sim {

class Responder : public RequestHandler {
public:
    Responder(const Options& options, Dialect dialect, Authenticator& authenticator, FaultList& faults,
              Journal& journal);

    Reply reply(const HttpRequest& request) override;
    Reply replyToGarbage() override;

private:
    HttpAnswer carriedOut(const HttpRequest& request, const RequestTarget& target, RequestFaults& faults);
    HttpAnswer unauthorized(Verdict verdict);
    Reply answered(const HttpRequest& request, const RequestTarget& target, RequestFaults& faults);
    void addCookie(const HttpRequest& request, HttpAnswer& answer);

    const std::string cookie_;
    const bool textRefusal_;
    const std::function<void(const LoggedRequest&)> onRequest_;
    const Dialect dialect_;
    Authenticator& authenticator_;
    FaultList& faults_;
    Journal& journal_;
};

} // namespace koine::sim
