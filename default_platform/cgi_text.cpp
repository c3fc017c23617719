#include "platform/cgi_text.h"

#include "text/nearby_search.h"
#include "text/numbers.h"
#include "text/owned_text.h"
#include "text/shortage.h"
#include "text/words.h"

#include <cstring>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>

namespace {

using koine::NearbySearch;
using koine::OwnedText;

constexpr std::string_view kHead = "0\nOK\n";
constexpr int kDeviceRefusedCredentials = -35;

// A recorder of 64 channels with four profiles each sends less than half as many. A pair takes some twenty
// times the memory of its shortest line, so the limit on an answer's bytes alone would not keep a hostile
// device from filling the host's.
constexpr std::size_t kMostPairs = std::size_t{64} << 10;

/// Takes the next line off the text, without its line end.
std::string_view takeLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
    if (!line.empty() && line.back() == '\r')
        line.remove_suffix(1);
    return line;
}

/// The status, when the line is a number and nothing else.
std::optional<int> statusOf(std::string_view line) {
    const koine::LeadingLong number = koine::leadingLong(line);
    if (number.length == 0 || !koine::skipBlanks(line.substr(number.length)).empty())
        return std::nullopt;
    return koine::readInt(line);
}

int resultOf(int status) {
    if (status == kDeviceRefusedCredentials)
        return koine::kAuthFailed;
    // A refusal must not read as success, whatever number the device gives it.
    return status == koine::kOk ? koine::kRefused : status;
}

/// Nothing when there are more than any device has.
std::optional<CgiMap> readPairs(std::string_view text) {
    CgiMap pairs;
    while (!text.empty()) {
        const std::string_view line = takeLine(text);
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos)
            continue;
        // Devices send their keys in order, mostly: then the hint makes an insertion cheap.
        pairs.insert_or_assign(pairs.end(), std::string(line.substr(0, equals)),
                               std::string(line.substr(equals + 1)));
        if (pairs.size() > kMostPairs)
            return std::nullopt;
    }
    return pairs;
}

/// Moves every pair over; what is there already gives way. Allocates nothing, so it is done wholly.
void moveInto(CgiMap& target, CgiMap& pairs) noexcept {
    if (target.empty()) {
        target.swap(pairs);
        return;
    }
    NearbySearch<CgiMap> search(target);
    for (auto pair = pairs.begin(); pair != pairs.end();) {
        const auto next = std::next(pair);
        if (search.moveTo(pair->first))
            search.place()->second.swap(pair->second);
        else
            target.insert(search.place(), pairs.extract(pair));
        pair = next;
    }
}

int parse(const char* text, CgiMap* map) {
    std::string_view rest = koine::viewOf(text);
    const std::optional<int> status = statusOf(takeLine(rest));
    if (map == nullptr || !status)
        return koine::kRefused;
    if (*status != 0)
        return resultOf(*status);
    takeLine(rest); // the message line
    std::optional<CgiMap> pairs = readPairs(rest);
    if (!pairs)
        return koine::kRefused;
    moveInto(*map, *pairs);
    return koine::kOk;
}

/// Which keys a request names: null for all, "*" for any run of characters.
class KeyPattern {
public:
    explicit KeyPattern(const char* pattern) : all_(pattern == nullptr) {
        const std::string_view text = koine::viewOf(pattern);
        beginning_ = text.substr(0, text.find('*'));
        pattern_ = text.substr(beginning_.size());
    }

    /// Most requests name a whole category ("Video.*") of a map that holds nothing else. The keys are in byte
    /// order: when the first and the last begin like that, so do all between them.
    bool matchesAll(const CgiMap& map) const {
        if (all_ || map.empty())
            return true;
        return pattern_ == "*" && koine::startsWith(map.begin()->first, beginning_) &&
               koine::startsWith(map.rbegin()->first, beginning_);
    }

    bool matches(std::string_view key) const {
        if (all_)
            return true;
        return koine::startsWithIgnoreCase(key, beginning_) &&
               (pattern_ == "*" || matchesPattern(key.substr(beginning_.size())));
    }

private:
    // Only the last "*" is ever tried again, so the time is bounded by key length times pattern length.
    bool matchesPattern(std::string_view key) const {
        std::size_t at = 0;
        std::size_t star = std::string_view::npos;
        std::size_t resume = 0;
        for (std::size_t i = 0; i < key.size();) {
            if (at < pattern_.size() && pattern_[at] == '*') {
                star = at++;
                resume = i;
            } else if (at < pattern_.size() && koine::lowered(pattern_[at]) == koine::lowered(key[i])) {
                ++at;
                ++i;
            } else if (star != std::string_view::npos) {
                at = star + 1;
                i = ++resume;
            } else {
                return false;
            }
        }
        return pattern_.find_first_not_of('*', at) == std::string_view::npos;
    }

    bool all_;
    std::string_view beginning_; // up to the first "*"
    std::string_view pattern_;   // from there on
};

/// The entries of a map that a request names.
class Selection {
public:
    Selection(const CgiMap& map, const KeyPattern& wanted)
        : map_(map), wanted_(wanted), isWhole_(wanted.matchesAll(map)) {}

    template <typename Visit>
    void forEach(Visit visit) const {
        for (const auto& [key, value] : map_)
            if (isWhole_ || wanted_.matches(key))
                visit(key, value);
    }

private:
    const CgiMap& map_;
    const KeyPattern& wanted_;
    bool isWhole_;
};

std::size_t printedSize(const Selection& entries) {
    std::size_t size = 0;
    entries.forEach([&](const std::string& key, const std::string& value) {
        size += key.size() + value.size() + std::strlen("=\n");
    });
    return size;
}

char* put(char* at, std::string_view text) {
    std::memcpy(at, text.data(), text.size());
    return at + text.size();
}

OwnedText print(const Selection& entries) {
    const std::size_t size = printedSize(entries);
    if (size == 0)
        return nullptr;
    OwnedText text(static_cast<char*>(std::malloc(kHead.size() + size + 1)));
    if (!text)
        return nullptr;
    char* at = put(text.get(), kHead);
    entries.forEach([&](const std::string& key, const std::string& value) {
        at = put(at, key);
        *at++ = '=';
        at = put(at, value);
        *at++ = '\n';
    });
    *at = '\0';
    return text;
}

} // namespace

int createMapStr(const char* text, CgiMap* map) {
    return koine::orOnShortage<int>(koine::kNoResource, [&] { return parse(text, map); });
}

int createMapstrFromCgi(const char* text, CgiMap* map) { return createMapStr(text, map); }

char* getCgiStr(CgiMap* map, const char* key) {
    if (map == nullptr)
        return nullptr;
    const KeyPattern wanted(key);
    return print(Selection(*map, wanted)).release();
}
