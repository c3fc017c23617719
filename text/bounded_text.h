/// @file
/// A text that is put together in place, up to a bound.
#pragma once

#include <array>
#include <charconv>
#include <string_view>

namespace koine {

/// Room for less than `Bytes` characters. What goes beyond makes the text useless, and it says so.
template <std::size_t Bytes>
class BoundedText {
public:
    BoundedText& append(std::string_view part) noexcept {
        isWhole_ = isWhole_ && part.size() < Bytes - length_;
        if (isWhole_)
            length_ += part.copy(text_.data() + length_, part.size());
        return *this;
    }

    BoundedText& append(long number) noexcept {
        std::array<char, 24> digits;
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        return append({digits.data(), static_cast<std::size_t>(end - digits.data())});
    }

    /// Did everything fit?
    bool isWhole() const noexcept { return isWhole_; }
    std::string_view view() const noexcept { return {text_.data(), length_}; }

private:
    std::array<char, Bytes> text_;
    std::size_t length_ = 0;
    bool isWhole_ = true;
};

} // namespace koine
