// Stream URIs from a pattern.

#include "devices/uri_pattern.h"

#include <algorithm>

namespace koine {
namespace {

/// In the order of UriField.
constexpr std::array<std::string_view, 8> kNames = {"credentials", "address", "rtsp_port", "token",
                                                    "encoding",    "audio",   "width",     "height"};
constexpr int kDeepestGroup = 8;

/// One walk over a pattern; it both checks and expands.
class Walk {
public:
    Walk(std::string_view pattern, const UriValues& values) : pattern_(pattern), values_(values) {}

    std::string run() {
        std::string text;
        part(text, 0);
        return text;
    }

private:
    [[noreturn]] static void fail(const std::string& what, std::size_t at, const std::string& hint = {}) {
        throw UriPatternError("stream URI pattern: " + what + " at character " + std::to_string(at + 1) +
                              hint);
    }

    /// Everything up to the end of the group, or of the pattern.
    /// @return every placeholder directly in it had a value
    bool part(std::string& text, int depth) {
        const std::size_t start = at_;
        bool complete = true;
        while (at_ < pattern_.size()) {
            const char c = pattern_[at_++];
            if (c == '{')
                complete = placeholder(text) && complete;
            else if (c == '[')
                group(text, depth + 1);
            else if (c == ']' && depth > 0)
                return complete;
            else if (c == ']' || c == '}')
                fail(std::string("'") + c + "' without its beginning", at_ - 1);
            else
                text += c == '\\' ? escaped() : c;
        }
        if (depth > 0)
            fail("'[' without its ']'", start - 1);
        return complete;
    }

    bool placeholder(std::string& text) {
        const std::size_t end = pattern_.find('}', at_);
        if (end == std::string_view::npos)
            fail("'{' without its '}'", at_ - 1);
        const std::string_view name = pattern_.substr(at_, end - at_);
        const auto known = std::find(kNames.begin(), kNames.end(), name);
        if (known == kNames.end())
            fail("unknown placeholder {" + std::string(name) + "}", at_ - 1, "; known are " + knownNames());
        at_ = end + 1;
        const std::string& value = values_[static_cast<UriField>(known - kNames.begin())];
        text += value;
        return !value.empty();
    }

    void group(std::string& text, int depth) {
        if (depth > kDeepestGroup)
            fail("groups nested too deeply", at_ - 1);
        std::string inner;
        if (part(inner, depth))
            text += inner;
    }

    char escaped() {
        if (at_ == pattern_.size())
            fail("a backslash with nothing after it", at_ - 1);
        return pattern_[at_++];
    }

    static std::string knownNames() {
        std::string names;
        for (const std::string_view name : kNames)
            names.append(names.empty() ? "" : ", ").append(name);
        return names;
    }

    std::string_view pattern_;
    const UriValues& values_;
    std::size_t at_ = 0;
};

} // namespace

UriPattern::UriPattern(std::string_view text) : text_(text) { static_cast<void>(expand(UriValues())); }

std::string UriPattern::expand(const UriValues& values) const { return Walk(text_, values).run(); }

} // namespace koine
