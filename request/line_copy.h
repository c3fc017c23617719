/// @file
/// What a step reserves before it walks a request line.
#pragma once

#include "text/owned_text.h"
#include "text/work_text.h"

#include <string>

namespace koine {

/// A copy of the line, so that what the steps called on the way do to the host's text cannot matter, and a
/// work text for the item at hand. Both are there before anything is changed: when memory is short, a line
/// is refused whole.
class LineCopy {
public:
    explicit LineCopy(const char* line) noexcept : text_(copyText(viewOf(line))) {
        hasWork_ = text_ != nullptr && reserveText(work, kWorkBytes);
    }

    bool hasText() const noexcept { return text_ != nullptr; }
    bool hasWork() const noexcept { return hasWork_; }
    std::string_view text() const noexcept { return viewOf(text_.get()); }

    std::string work;

private:
    static constexpr std::size_t kWorkBytes = 64;

    OwnedText text_;
    bool hasWork_ = false;
};

} // namespace koine
