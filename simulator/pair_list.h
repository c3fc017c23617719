/// @file
/// The "key=value" pairs of a device, in the order in which the device sends them.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace koine::sim {

/// Pairs with unique keys that keep their first place when their value changes.
class PairList {
public:
    using Pair = std::pair<std::string, std::string>;

    /// The value of a key; null when the device does not hold it. Valid until the next `set`.
    const std::string* find(std::string_view key) const;

    /// The value of a key; empty when the device does not hold it.
    std::string_view valueOf(std::string_view key) const;

    void set(std::string_view key, std::string_view value);

    std::size_t size() const noexcept { return pairs_.size(); }
    bool empty() const noexcept { return pairs_.empty(); }
    std::vector<Pair>::const_iterator begin() const noexcept { return pairs_.begin(); }
    std::vector<Pair>::const_iterator end() const noexcept { return pairs_.end(); }

private:
    std::vector<Pair> pairs_;
    std::unordered_map<std::string, std::size_t> places_;
};

/// "key=value\n" for every pair.
std::string printed(const PairList& pairs);

/// Whether a key matches a pattern in which "*" stands for any run of characters; case is ignored.
bool matches(std::string_view pattern, std::string_view key) noexcept;

} // namespace koine::sim
