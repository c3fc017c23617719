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
        const std::size_t first = rest_.find_first_not_of(separators);
        if (first == std::string_view::npos) {
            rest_ = {};
            return std::nullopt;
        }
        const std::size_t end = rest_.find_first_of(separators, first);
        const std::string_view token = rest_.substr(first, end == std::string_view::npos ? end : end - first);
        // The separator that ends a token belongs to it: the next call may use other separators.
        rest_ = end == std::string_view::npos ? std::string_view() : rest_.substr(end + 1);
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
