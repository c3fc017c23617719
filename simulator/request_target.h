/// @file
/// The target of an HTTP request, taken apart.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace koine::sim {

/// "key=value" of a query, percent-decoded.
struct QueryItem {
    std::string key;
    std::string value;
    bool hasValue = false; ///< whether there was an "="
};

struct RequestTarget {
    std::string line;             ///< as the client sent it, without the leading "/"
    std::string cgi;              ///< the path, for example "Config.cgi"
    std::vector<QueryItem> items; ///< in their order

    /// The value of the first item with this key, any case; empty when there is none.
    std::string_view valueOf(std::string_view key) const noexcept;
};

/// Takes a request target apart; `form` holds further items (the body of a posted form).
RequestTarget parseTarget(std::string_view target, std::string_view form = {});

} // namespace koine::sim
