/// @file
/// What an object must still be good for after a shortage.
#pragma once

#include "scenarios.h"

#include <string>
#include <vector>

namespace koine::torture {

/// The answers of an object that never ran short, to hold those of others against.
class UsableAnswers {
public:
    /// Sends five lines: login, capabilities, media profiles and two categories.
    explicit UsableAnswers(BaseRequest& whole);

    /// Sends the same lines to an object that ran short.
    /// @return what is wrong with its answers, one text each; none when all are whole
    std::vector<std::string> faultsOf(BaseRequest& device, Decides decided) const;

private:
    std::vector<CgiMap> wholes_;
};

} // namespace koine::torture
