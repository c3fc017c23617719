/// @file
/// How the command ends: exit codes and the one line that says why.
#pragma once

#include <stdexcept>
#include <string>

namespace koine::tool {

enum class ExitCode : int {
    answered = 0,
    refused = 1, ///< the device or the library refused; of `koine diff`: the device differs
    usage = 2,
    authentication = 3,
    unreachable = 4,
    notCompared = 5, ///< of `koine diff` alone, where 1 means something else
};

/// Ends the command. The text is one line: where, what, and what to do about it.
class Failure : public std::runtime_error {
public:
    Failure(ExitCode code, const std::string& text) : std::runtime_error(text), code_(code) {}
    ExitCode code() const { return code_; }

private:
    ExitCode code_;
};

/// What an operation's result means for the person at the terminal.
struct Meaning {
    ExitCode code;
    std::string text; ///< what happened; what to do
};

/// @param result of a request object
/// @param status in the first line of its answer
Meaning meaningOf(int result, int status);

} // namespace koine::tool
