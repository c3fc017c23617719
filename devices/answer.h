/// @file
/// Request lines for C++ hosts: no `char*`, nothing to free.
#pragma once

#include "koine/IBaseRequest.h"

#include <string>
#include <string_view>

namespace koine {

/// What a request object said to one line.
struct Answer {
    int result = 0;   ///< 1 answered; the codes at `IBaseRequest` otherwise
    std::string text; ///< the answer; after a failure one of the two error answers

    bool ok() const { return result == kOk; }

    /// The status in the text's first line: 0 when all is well, and also when the text has no status.
    KOINE_EXPORT int status() const;

    /// The `key=value` lines; empty when the text carries a failing status.
    /// @throws std::bad_alloc when they do not fit into memory
    KOINE_EXPORT CgiMap values() const;
};

/// The status with which an answer text begins; 0 when its first line is no number.
KOINE_EXPORT int answerStatus(std::string_view text);

/// Sends one line. The object must know address and credentials, or learn them from the line.
/// @throws std::bad_alloc when the answer does not fit into memory
KOINE_EXPORT Answer request(IBaseRequest& device, unsigned int uid, std::string_view line);

} // namespace koine
