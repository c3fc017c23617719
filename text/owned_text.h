/// @file
/// Owner of the `malloc`ed texts that cross the C boundary.
#pragma once

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

namespace koine {

struct FreeDeleter {
    void operator()(char* text) const noexcept { std::free(text); }
};

/// A text from `malloc`. `release()` stands only on the line that hands the text out.
using OwnedText = std::unique_ptr<char, FreeDeleter>;

/// A `malloc`ed, NUL-terminated copy; empty when memory runs out.
inline OwnedText copyText(std::string_view text) noexcept {
    OwnedText copy(static_cast<char*>(std::malloc(text.size() + 1)));
    if (!copy)
        return copy;
    if (!text.empty())
        std::memcpy(copy.get(), text.data(), text.size());
    copy.get()[text.size()] = '\0';
    return copy;
}

/// Lends an `OwnedText` to an operation that takes `char**`: it sees the text owned so far and may replace
/// it (having freed the old one); the owner takes over what it finds there afterwards.
class OutText {
public:
    explicit OutText(OwnedText& owner) noexcept : owner_(owner), raw_(owner.release()) {}
    ~OutText() { owner_.reset(raw_); }
    OutText(const OutText&) = delete;
    OutText& operator=(const OutText&) = delete;

    // Implicit: the object exists only as the argument of one call.
    operator char**() noexcept { return &raw_; } // NOLINT(google-explicit-constructor)

private:
    OwnedText& owner_;
    char* raw_;
};

/// The view of a C text; null counts as empty.
inline std::string_view viewOf(const char* text) noexcept {
    return text == nullptr ? std::string_view() : std::string_view(text);
}

/// The C text itself; null counts as empty. For traces and calls that need a terminator.
inline const char* orEmpty(const char* text) noexcept { return text == nullptr ? "" : text; }

} // namespace koine
