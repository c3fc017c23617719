// A request object whose talk with the device can be watched.

#include "tools/demo/watched_device.h"

#include "text/owned_text.h"

#include <chrono>

namespace koine::tool {
namespace {

/// "http://host:port/Login.cgi" is "Login.cgi" to a reader.
std::string withoutHost(std::string_view url) {
    const std::size_t scheme = url.find("://");
    if (scheme == std::string_view::npos)
        return std::string(url);
    const std::size_t path = url.find('/', scheme + 3);
    return std::string(path == std::string_view::npos ? url : url.substr(path + 1));
}

} // namespace

int WatchedDevice::requestCgi(unsigned int uid, char* url, char** answer, _REQCGI_METHOD_DEF method,
                              _REQCGI_CONNECTION_DEF connection) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point start = Clock::now();
    DeviceRequest made;
    made.line = withoutHost(viewOf(url));
    made.result = DialectRequest::requestCgi(uid, url, answer, method, connection);
    made.milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    requests_.push_back(made);
    return made.result;
}

} // namespace koine::tool
