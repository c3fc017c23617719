/// @file
/// The parts of an absolute URL.
#pragma once

#include <string>
#include <string_view>

namespace koine::platform {

struct UrlParts {
    bool secure = false;     ///< https
    std::string host;        ///< as written in a URL: an IPv6 address without brackets
    unsigned int port = 0;   ///< 1 to 65535
    std::string_view target; ///< path, query and fragment as written; a view into the URL

    /// Two URLs with equal origins lead to the same device.
    std::string origin() const;
};

/// Takes an absolute `http` or `https` URL apart. User information is dropped.
/// @throws Url::parse_error naming what is wrong and the character where; never quotes the URL, which may
///         hold a password
UrlParts splitUrl(std::string_view url);

/// Where an absolute URL's path, query or fragment begins, for a text that begins with "http://" or
/// "https://" (any case); npos for any other text.
std::size_t targetOffset(std::string_view text) noexcept;

/// A host as URLs write it: an IPv6 address gets its brackets and a zone its "%25".
std::string bracketed(std::string_view host);

} // namespace koine::platform
