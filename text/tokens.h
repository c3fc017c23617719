/// @file
/// The one tokeniser: splits as `strtok_r` does, without touching the text.
#pragma once

#include <optional>
#include <string_view>

namespace koine {

/// Walks the tokens of a text. Runs of separators count once and empty tokens do not occur.
///
/// For one set of separators use it in a range-for; where the first split differs from the later ones, call
/// `next` with the separators of each step.
class Tokens {
public:
    explicit Tokens(std::string_view text, std::string_view separators = {}) noexcept
        : rest_(text), separators_(separators) {}

    std::optional<std::string_view> next(std::string_view separators) noexcept {
        const auto separates = [separators](char c) {
            for (const char separator : separators)
                if (c == separator)
                    return true;
            return false;
        };
        const char* first = rest_.data();
        const char* const last = first + rest_.size();
        while (first != last && separates(*first))
            ++first;
        const char* end = first;
        while (end != last && !separates(*end))
            ++end;
        const std::string_view token(first, static_cast<std::size_t>(end - first));
        // The separator that ends a token belongs to it: the next call may use other separators.
        rest_ = end == last ? std::string_view()
                            : std::string_view(end + 1, static_cast<std::size_t>(last - end - 1));
        if (token.empty())
            return std::nullopt;
        return token;
    }

    struct End {};

    class Iterator {
    public:
        explicit Iterator(Tokens& owner) noexcept : owner_(owner), token_(owner.next(owner.separators_)) {}
        std::string_view operator*() const noexcept { return *token_; }
        Iterator& operator++() noexcept {
            token_ = owner_.next(owner_.separators_);
            return *this;
        }
        bool operator!=(End) const noexcept { return token_.has_value(); }

    private:
        Tokens& owner_;
        std::optional<std::string_view> token_;
    };

    Iterator begin() noexcept { return Iterator(*this); }
    static End end() noexcept { return {}; }

private:
    std::string_view rest_;
    std::string_view separators_;
};

} // namespace koine
