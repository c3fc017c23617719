/// @file
/// Types that the library, its support library and the host share.
#pragma once

#include <functional>
#include <map>
#include <string>

/// One parsed CGI answer or one cache: keys in byte order, each once.
///
/// The comparison is transparent, so a look-up by `std::string_view` or by a literal allocates nothing.
/// A subscript read inserts an empty value for a key that is absent; several steps rely on that.
using CgiMap = std::map<std::string, std::string, std::less<>>;

/// Method of a request to the device.
enum _REQCGI_METHOD_DEF : int {
    REQCGI_METHOD_GET = 0,  ///< the plain method; everything the library sends itself
    REQCGI_METHOD_POST = 1, ///< any value other than 0 selects the other method
};

/// Connection mode of a request to the device.
enum _REQCGI_CONNECTION_DEF : int {
    REQCGI_CONNECTION_KEEP = 0,  ///< the connection is kept and used again
    REQCGI_CONNECTION_CLOSE = 1, ///< a fresh connection that is closed after the answer
};

/// What kind of stream a stream user asks for.
enum _TOVLIN_REQUEST_MODE_DEF : int {
    TOVLIN_REQUEST_MODE_NONE = -1,          ///< not asked for yet
    TOVLIN_REQUEST_MODE_STREAM = 0,         ///< an ordinary stream
    TOVLIN_REQUEST_MODE_NETWORK_BACKUP = 1, ///< a network-backup stream
};

/// Video system of the device: decides the heights behind resolution names.
enum _VIDEO_SYSTEM_DEF : int {
    VIDEO_SYSTEM_NTSC = 0,
    VIDEO_SYSTEM_PAL = 1,
};

/// Transport error that a host passes along with a PTZ callback.
enum __QaHttpErr : int {
    QA_HTTP_ERR_NONE = 0,
};

namespace koine {

/// Results of the operations. Any other value comes unchanged from the device transport or the support
/// library.
enum Result : int {
    kOk = 1,           ///< success
    kNotBuilt = 0,     ///< an answer could not be built
    kAuthFailed = -1,  ///< the device refused the credentials
    kRefused = -2,     ///< bad or refused input
    kNoResource = -8,  ///< out of memory, no HTTP client, a key absent from a cache, an answer too long
    kNoFunction = -14, ///< the device does not have the function that was asked for
};

} // namespace koine
