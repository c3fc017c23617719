/// @file
/// What faults make of an answer.
#pragma once

#include "simulator/fault_list.h"
#include "simulator/http_answer.h"
#include "simulator/http_message.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace koine::sim {

/// The faults that concern one request.
class RequestFaults {
public:
    RequestFaults(FaultList& faults, std::string_view target) : faults_(faults), target_(target) {}

    std::optional<Fault> take(FaultKind kind) {
        auto fault = faults_.take(kind, target_);
        if (fault)
            taken_.emplace_back(faultName(kind));
        return fault;
    }

    /// Words of those that were taken, in their order.
    std::vector<std::string> taken() const { return taken_; }

private:
    FaultList& faults_;
    std::string_view target_;
    std::vector<std::string> taken_;
};

/// The answer that a fault gives instead of carrying out the request; nothing when the request is carried
/// out.
std::optional<HttpAnswer> answerInstead(RequestFaults& faults);

/// Writes an answer out, with the faults that spoil an answer.
Reply spoiledReply(HttpAnswer answer, RequestFaults& faults);

/// Writes an answer out with the faults of the connection only: pace, silence and closing.
Reply pacedReply(HttpAnswer answer, RequestFaults& faults);

/// Writes an answer out as it is.
Reply plainReply(const HttpAnswer& answer);

} // namespace koine::sim
