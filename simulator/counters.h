/// @file
/// What a simulated device counts and logs.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace koine::sim {

/// Counted since the device was made or the counters were reset.
struct Counters {
    std::uint64_t connections = 0;
    std::uint64_t requests = 0;
    std::uint64_t unauthorized = 0;    ///< answers with HTTP 401
    std::uint64_t cookiesReturned = 0; ///< requests that sent the device's cookie back
    /// Requests by path without the leading "/", for example "Config.cgi"; after some hundred different paths
    /// the rest is counted under "(other)".
    std::map<std::string, std::uint64_t, std::less<>> perPath;
};

/// One request, as it was answered.
struct LoggedRequest {
    std::string method;
    std::string line;                ///< target without the leading "/"; cut when very long
    unsigned int status = 0;         ///< HTTP status of the answer; 0 when none was sent
    std::uint64_t connection = 0;    ///< which connection it came on, counted from 1
    std::vector<std::string> faults; ///< words of the faults that the answer had
};

} // namespace koine::sim
