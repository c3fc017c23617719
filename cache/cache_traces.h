/// @file
/// Trace lines of the login and capability caches and of the joined configuration. `line` is the source line
/// of the call.
#pragma once

#include "platform/trace.h"

namespace koine::cache_trace {

/// Whose fill it was: printed as "uid=%d:%d".
struct User {
    int uid;
    int channel;
};

/// The login could not be fetched; also told by the caches that need it first.
inline void loginFailed(int line, User user) {
    dbg_trace("??#%d getCacheLogin: error, uid=%d:%d. \n", line, user.uid, user.channel);
}

inline void notParsed(int line, User user, int error) {
    dbg_trace("??#%d ParsingCGIData: uid=%d:%d, err%d. \n", line, user.uid, user.channel, error);
}

inline void loginEmpty(int line, int error) { dbg_trace("???#%d BaseRequest, err%d. \n", line, error); }

inline void machineFailed(int line, User user) {
    dbg_trace("??#%d cacheCapability: error, uid=%d:%d. \n", line, user.uid, user.channel);
}

inline void capabilityFailed(int line, User user) {
    dbg_trace("??#%d getCacheCapability: error, uid=%d:%d. \n", line, user.uid, user.channel);
}

inline void capabilityNotConverted(int line, User user, int error) {
    dbg_trace("??#%d getCacheCapability: uid=%d:%d, err%d. \n", line, user.uid, user.channel, error);
}

inline void capabilityEmpty(int line, User user, int error) {
    dbg_trace("???#%d getCacheCapability, uid=%d:%d, err%d. \n", line, user.uid, user.channel, error);
}

inline void notJoined(int line, int error, int uid) {
    dbg_trace("??#%d BaseRequest.getCacheConfigAll, error%d, uid=%d. \n", line, error, uid);
}

} // namespace koine::cache_trace
