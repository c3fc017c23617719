/// @file
/// Memory that runs out when told to.
#pragma once

#include <cstddef>

namespace koine::test {

/// Makes an allocation of this thread fail: the `n`-th from now on, counted from 1, with `malloc`, `calloc`,
/// `realloc`, `strdup` or `operator new`. What the C++ library allocates for itself counts too where it uses
/// `operator new`; the test support's own records do not count.
///
/// Keep the scope around the one call under test: everything allocates, also an assertion.
class FailAllocations {
public:
    enum class Then {
        recover, ///< only that one fails
        stayOut, ///< all further ones fail as well
    };
    enum class Which {
        all,
        texts, ///< only `malloc`, `calloc`, `realloc` and `strdup`
    };

    explicit FailAllocations(unsigned int n, Then then = Then::recover, Which which = Which::all) noexcept;
    ~FailAllocations();
    FailAllocations(const FailAllocations&) = delete;
    FailAllocations& operator=(const FailAllocations&) = delete;

    /// Ends it early.
    /// @return whether an allocation failed: false when there were fewer than `n`
    bool stop() noexcept;

private:
    bool failed_ = false;
    bool running_ = true;
};

/// How many allocations of the program were not given back yet, those of the test support included.
std::ptrdiff_t liveAllocations() noexcept;

/// Allocations in its scope neither count nor fail.
class SpareAllocations {
public:
    SpareAllocations() noexcept;
    ~SpareAllocations();
    SpareAllocations(const SpareAllocations&) = delete;
    SpareAllocations& operator=(const SpareAllocations&) = delete;
};

/// Calls `attempt(n)` with a `FailAllocations` for the first allocation, then the second and so on, until one
/// run gets by without a failure. `attempt` gets the number and returns whether an allocation failed
/// (`FailAllocations::stop`).
/// @return the number of the run without a failure; `limit` when there was none
template <typename Attempt>
unsigned int failEachAllocation(Attempt&& attempt, unsigned int limit = 10000) {
    unsigned int n = 1;
    while (n < limit && attempt(n))
        ++n;
    return n;
}

} // namespace koine::test
