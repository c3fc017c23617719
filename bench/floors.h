/// @file
/// The least that each kind of answer can cost: what is measured is held against these.
#pragma once

#include "koine/types.h"
#include "platform/mutex.h"

#include <string>
#include <string_view>
#include <vector>

namespace koine::bench {

/// An answer text copied once under an uncontended recursive lock, after look-ups with keys made beforehand.
class CopyFloor {
public:
    CopyFloor(const CgiMap& map, std::vector<std::string> keys, std::string text);
    ~CopyFloor();
    CopyFloor(const CopyFloor&) = delete;
    CopyFloor& operator=(const CopyFloor&) = delete;

    void run();

private:
    const CgiMap& map_;
    std::vector<std::string> keys_;
    std::string text_;
    vm_mutex lock_{};
};

/// A whole map printed in two passes into one allocation. @return a `malloc`ed text
char* printInTwoPasses(const CgiMap& map);

/// The pairs of an answer text.
CgiMap splitIntoMap(std::string_view text);

} // namespace koine::bench
