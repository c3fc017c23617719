/// @file
/// The stream client that must be there.
#pragma once

#include "koine/StreamIDClient.h"

#include <cstdio>
#include <cstdlib>

namespace koine {

/// The client itself. A missing one is a broken invariant of the registry: going on would serve somebody
/// else's stream, so the process stops, in every build.
inline StreamIDClient& required(const boost::shared_ptr<StreamIDClient>& client) {
    if (!client) {
        std::fputs("koine: the registry gave no stream client\n", stderr);
        std::abort();
    }
    return *client;
}

} // namespace koine
