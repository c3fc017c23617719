/// @file
/// How the command ends: exit codes and the one line that says why.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace koine::tool {

enum class ExitCode : int {
    answered = 0,
    refused = 1, ///< the device or the library refused; of `koine diff`: the device differs
    usage = 2,
    authentication = 3,
    unreachable = 4,
    notCompared = 5,   ///< of `koine diff` alone, where 1 means something else
    noneAnswered = 5,  ///< of `koine survey` alone, where 1 means that some devices did not answer
    interrupted = 130, ///< of `koine survey` alone: by SIGINT or SIGTERM; what was gathered is shown
};

/// Ends the command. The text is one line: where, what, and what to do about it.
class Failure : public std::runtime_error {
public:
    /// @param brief what happened, for a cell of a table
    Failure(ExitCode code, const std::string& text, std::string brief = "not usable")
        : std::runtime_error(text), code_(code), brief_(std::move(brief)) {}
    ExitCode code() const { return code_; }
    const std::string& brief() const { return brief_; }

private:
    ExitCode code_;
    std::string brief_;
};

/// What an operation's result means for the person at the terminal.
struct Meaning {
    ExitCode code;
    std::string text; ///< what happened; what to do

    /// What happened alone, where it is plain whose answer it is.
    std::string brief() const;
};

/// @param result of a request object
/// @param status in the first line of its answer
Meaning meaningOf(int result, int status);

} // namespace koine::tool
