/// @file
/// Several answers in one text.
#pragma once

#include "text/owned_text.h"

#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>

namespace koine {

/// A text that grows part by part, the parts separated by line ends. Each part keeps its own status head.
class JoinedAnswer {
public:
    enum class Outcome { joined, notCreated, notResized };

    /// What a part must find before it to get a line end in between: any part, or a text that is not empty.
    enum class SeparatedFrom { parts, text };

    explicit JoinedAnswer(SeparatedFrom separatedFrom) noexcept : separatedFrom_(separatedFrom) {}

    /// Makes room before the first part comes; `append` does it by itself otherwise.
    bool create() {
        text_.reset(static_cast<char*>(std::malloc(kFirstCapacity)));
        if (!text_)
            return false;
        capacity_ = kFirstCapacity;
        put({});
        return true;
    }

    Outcome append(OwnedText part) {
        const std::string_view added = viewOf(part.get());
        required_ += added.size() + kRoomPerPart;
        if (!hasParts_ && required_ > kFirstCapacity)
            return begin(std::move(part), added.size());
        if (!text_ && !create())
            return Outcome::notCreated;
        if (required_ > capacity_ && !resize(text_))
            return Outcome::notResized;
        if (separatedFrom_ == SeparatedFrom::parts ? hasParts_ : length_ > 0)
            put("\n");
        put(added);
        hasParts_ = true;
        return Outcome::joined;
    }

    /// Hands the text out; null when nothing was created.
    char* release() { return text_.release(); }

private:
    static constexpr std::size_t kFirstCapacity = 4096;
    static constexpr std::size_t kRoomPerPart = 32; // the line end between parts and the final NUL fit

    /// A large first part is not copied: it becomes the text. Without memory for it nothing was created,
    /// unless `create` was called.
    Outcome begin(OwnedText part, std::size_t length) {
        if (!resize(part))
            return text_ ? Outcome::notResized : Outcome::notCreated;
        text_ = std::move(part);
        length_ = length;
        hasParts_ = true;
        return Outcome::joined;
    }

    /// Gives a text the room that is required.
    bool resize(OwnedText& text) {
        void* const larger = std::realloc(text.get(), required_);
        if (larger == nullptr)
            return false;
        static_cast<void>(text.release()); // realloc has taken it
        text.reset(static_cast<char*>(larger));
        capacity_ = required_;
        return true;
    }

    void put(std::string_view part) {
        if (!part.empty())
            std::memcpy(text_.get() + length_, part.data(), part.size());
        length_ += part.size();
        text_.get()[length_] = '\0';
    }

    SeparatedFrom separatedFrom_;
    bool hasParts_ = false;
    OwnedText text_;
    std::size_t length_ = 0;
    std::size_t required_ = 0;
    std::size_t capacity_ = 0;
};

} // namespace koine
