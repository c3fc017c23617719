/// @file
/// Ways in which a simulated device can misbehave.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace koine::sim {

/// What goes wrong. The words for the command line, and what `amount` means, stand in simulator/README.md.
enum class FaultKind {
    delay,             ///< waits `amount` ms before the answer
    hang,              ///< reads the request and never answers
    refuse,            ///< nobody listens: connections are refused, open ones are reset
    resetConnection,   ///< a connection is accepted and reset at once
    resetBeforeBody,   ///< reset after the head of the answer
    resetWithinBody,   ///< reset after `amount` bytes of the body
    resetWithinAnswer, ///< reset after `amount` bytes of the answer, head included
    closeWithinAnswer, ///< clean close after `amount` bytes of the answer, head included
    truncatedBody,     ///< announces the whole body, sends `amount` bytes of it and closes cleanly
    shortLength,       ///< announces `amount` bytes and sends the whole body
    drip,              ///< sends a byte at a time, `amount` ms apart
    endlessBody,       ///< a body without length that goes on, at most `amount` bytes
    endlessChunks,     ///< the same in chunks
    chunked,           ///< sends the body in chunks of `amount` bytes; nothing is wrong with it
    emptyBody,         ///< HTTP 200 with no body
    garbage,           ///< `amount` bytes that are no HTTP
    wrongStatusLine,   ///< a status line that cannot be read
    status,            ///< HTTP status `amount` in place of the answer
    unauthorizedStorm, ///< HTTP 401 with a new challenge, whatever the client sends
    redirect,          ///< HTTP 302 to the place in `text`
    headerFlood,       ///< `amount` header lines before the body
    close,             ///< announces that the connection closes after the answer, and closes it
    closeSilently,     ///< closes the connection after the answer without a word
    answer,            ///< `text` in place of the answer text
    raw                ///< `text` in place of the whole HTTP answer; then closes
};

/// One misbehaviour. It lasts until it is cleared, or for `count` answers.
struct Fault {
    FaultKind kind = FaultKind::delay;
    std::uint64_t amount = 0;
    std::string text;
    std::string path;       ///< only for requests whose target contains this; empty for all
    unsigned int count = 0; ///< 0: until cleared

    Fault() = default;
    /// With the kind's usual amount.
    Fault(FaultKind chosen); // NOLINT(google-explicit-constructor): a kind is a fault
    Fault(FaultKind chosen, std::uint64_t chosenAmount) : kind(chosen), amount(chosenAmount) {}
    Fault(FaultKind chosen, std::string chosenText) : kind(chosen), text(std::move(chosenText)) {}

    Fault& onPath(std::string part) {
        path = std::move(part);
        return *this;
    }
    Fault& times(unsigned int number) {
        count = number;
        return *this;
    }
};

/// Reads "NAME", "NAME=VALUE", each with ";path=PART" and ";count=N" behind it, for example
/// "reset-within-body=100;path=Capability.cgi;count=2". In texts, "\n", "\r", "\0" and "\\" are escapes.
/// @throws std::invalid_argument that says what is wrong and lists the known faults
Fault parseFault(std::string_view text);

/// One line for each fault: its word, its value and what it does.
std::string faultHelp();

/// The word of a fault.
std::string_view faultName(FaultKind kind) noexcept;

} // namespace koine::sim
