#include "simulator/pair_list.h"

#include "text/words.h"

namespace koine::sim {

const std::string* PairList::find(std::string_view key) const {
    const auto place = places_.find(std::string(key));
    return place == places_.end() ? nullptr : &pairs_[place->second].second;
}

std::string_view PairList::valueOf(std::string_view key) const {
    const std::string* value = find(key);
    return value == nullptr ? std::string_view() : *value;
}

void PairList::set(std::string_view key, std::string_view value) {
    const auto [place, isNew] = places_.try_emplace(std::string(key), pairs_.size());
    if (isNew)
        pairs_.emplace_back(key, value);
    else
        pairs_[place->second].second = value;
}

std::string printed(const PairList& pairs) {
    std::string text;
    for (const auto& [key, value] : pairs)
        text.append(key).append("=").append(value).append("\n");
    return text;
}

bool matches(std::string_view pattern, std::string_view key) noexcept {
    // Remembering only the last star keeps this linear in practice: an earlier star never has to give back.
    std::size_t star = std::string_view::npos;
    std::size_t resume = 0;
    std::size_t p = 0;
    for (std::size_t k = 0; k < key.size();) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            resume = k;
        } else if (p < pattern.size() && lowered(pattern[p]) == lowered(key[k])) {
            ++p;
            ++k;
        } else if (star != std::string_view::npos) {
            p = star + 1;
            k = ++resume;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

} // namespace koine::sim
