/// @file
/// Trace lines of the dispatch.
#pragma once

#include "platform/trace.h"
#include "text/owned_text.h"

#include <cstdint>

namespace koine::dispatch_trace {

/// Who asked: printed as "uid=%d:%d".
struct Asker {
    int uid;
    int channel;
};

/// The low half of an address is enough to tell request objects apart in a log.
inline unsigned int shortAddress(const void* object) {
    return static_cast<unsigned int>(reinterpret_cast<std::uintptr_t>(object));
}

inline void entered(Asker who, const void* object, const char* url) {
    dbg_trace("#%d BaseRequest::requestHttpStr: 0, uid=%d:%d, this=%#x, pchUrl=%s. \n", 3627, who.uid,
              who.channel, shortAddress(object), url);
}

inline void notCopied(Asker who, const char* url, int error) {
    dbg_trace("???#%d BaseRequest.requestHttpStr: uid=%d:%d, pchUrl=%s, err%d. \n", 3632, who.uid,
              who.channel, url, error);
}

inline void notParsed(Asker who, const char* url, int error, const char* reason) {
    dbg_trace("???#%d BaseRequest.requestHttpStr: uid=%d:%d, pchUrl=%s, err%d, %s. \n", 3648, who.uid,
              who.channel, url, error, reason);
}

inline void setupNotParsed(Asker who, int error) {
    dbg_trace("??#%d BaseRequest.requestHttpStr: uid=%d:%d, parseStreamInit error%d. \n", 3690, who.uid,
              who.channel, error);
}

inline void streamNotStarted(Asker who, int error) {
    dbg_trace("??#%d BaseRequest.requestHttpStr: uid=%d:%d, HandleInit error%d. \n", 3698, who.uid,
              who.channel, error);
}

/// A step that answers lines itself, or the cache update after a set, failed.
inline void stepFailed(int line, Asker who, const char* url, int error) {
    dbg_trace("??#%d BaseRequest.requestHttpStr: uid=%d:%d, pchInputUrl=%s, err%d. \n", line, who.uid,
              who.channel, url, error);
}

inline void parameterRefused(Asker who, const char* url, int error) {
    dbg_trace("??#%d BaseRequest.requestHttpStr: uid=%d:%d, pchInputUrl=%s, checkCgiParameter err%d. \n",
              3810, who.uid, who.channel, url, error);
}

inline void notRewritten(int line, Asker who, const char* url, int error) {
    dbg_trace("??#%d BaseRequest.requestHttpStr: uid=%d:%d, pchInputUrl=%s, recoveryUrl err%d. \n", line,
              who.uid, who.channel, url, error);
}

inline void streamSetReached(Asker who, const void* object, const char* url) {
    dbg_trace("#%d BaseRequest::HandleInit: 0, uid=%d:%d, this=%#x, pchUrl=%s. \n", 3827, who.uid,
              who.channel, shortAddress(object), url);
}

inline void parameterNotHandled(int line, Asker who, const char* url, int error) {
    dbg_trace("??#%d BaseRequest.requestHttpStr: uid=%d:%d, pchInputUrl=%s, handleParameter err%d. \n", line,
              who.uid, who.channel, url, error);
}

inline void deviceFailed(Asker who, const char* url, int error) {
    dbg_trace("??#%d BaseRequest.requestHttpStr: uid=%d:%d, pchInputUrl=%s, error%d. \n", 3868, who.uid,
              who.channel, url, error);
}

} // namespace koine::dispatch_trace
