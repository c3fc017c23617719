#include "stream/quoted_value.h"

namespace koine {

std::string_view quotedValue(std::string_view text, std::string_view key, ClosingQuote closing) {
    const std::size_t at = text.find(key);
    if (at == std::string_view::npos)
        return {};
    const std::string_view rest = text.substr(at);
    const std::size_t opening = rest.find('"');
    if (opening == std::string_view::npos)
        return rest;
    const std::string_view value = rest.substr(opening + 1);
    return value.substr(0, closing == ClosingQuote::last ? value.rfind('"') : value.find('"'));
}

} // namespace koine
