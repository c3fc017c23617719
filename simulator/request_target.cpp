#include "simulator/request_target.h"

#include "text/numbers.h"
#include "text/tokens.h"
#include "text/words.h"

namespace koine::sim {
namespace {

constexpr int hexDigit(char c) noexcept {
    if (isDigit(c))
        return c - '0';
    const char low = lowered(c);
    return low >= 'a' && low <= 'f' ? low - 'a' + 10 : -1;
}

/// As devices do it: what is no complete escape stays as it is.
std::string decoded(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int high = text[i] == '%' && i + 2 < text.size() ? hexDigit(text[i + 1]) : -1;
        const int low = high >= 0 ? hexDigit(text[i + 2]) : -1;
        if (low < 0) {
            result += text[i];
            continue;
        }
        result += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return result;
}

void appendItems(std::vector<QueryItem>& items, std::string_view query) {
    for (const std::string_view item : Tokens(query, "&")) {
        const std::size_t equals = item.find('=');
        const bool hasValue = equals != std::string_view::npos;
        items.push_back(
            {decoded(item.substr(0, equals)), hasValue ? decoded(item.substr(equals + 1)) : "", hasValue});
    }
}

/// "http://host/x" and "/x" both ask for "x".
std::string_view withoutOrigin(std::string_view target) {
    const std::size_t scheme = target.find("://");
    if (scheme != std::string_view::npos && scheme < target.find_first_of("/?")) {
        const std::size_t path = target.find('/', scheme + 3);
        target = path == std::string_view::npos ? std::string_view() : target.substr(path);
    }
    const std::size_t begin = target.find_first_not_of('/');
    return begin == std::string_view::npos ? std::string_view() : target.substr(begin);
}

} // namespace

std::string_view RequestTarget::valueOf(std::string_view key) const noexcept {
    for (const QueryItem& item : items)
        if (item.key.size() == key.size() && startsWithIgnoreCase(item.key, key))
            return item.value;
    return {};
}

RequestTarget parseTarget(std::string_view target, std::string_view form) {
    const std::string_view line = withoutOrigin(target);
    const std::size_t question = line.find('?');
    RequestTarget parsed;
    parsed.line = line;
    parsed.cgi = decoded(line.substr(0, question));
    if (question != std::string_view::npos)
        appendItems(parsed.items, line.substr(question + 1));
    appendItems(parsed.items, form);
    return parsed;
}

} // namespace koine::sim
