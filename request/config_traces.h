/// @file
/// Trace lines of configuration get and set.
#pragma once

#include "platform/trace.h"

namespace koine::config_trace {

inline void noAnswerPointer(int error) { dbg_trace("??#%d handleConfigGet: err%d. \n", 3288, error); }

/// Memory ran out in a get.
inline void getOutOfMemory(int line, int uid, int channel, int error) {
    dbg_trace("???#%d BaseRequest::handleConfigGet: uid=%d:%d, err%d. \n", line, uid, channel, error);
}

inline void categoryFailed(int line, const char* url, int error) {
    dbg_trace("??#%d BaseRequest.requestHttp: pchInputUrl=%s, error%d. \n", line, url, error);
}

/// Memory ran out in a set.
inline void setOutOfMemory(int line, int error) {
    dbg_trace("???#%d BaseRequest::handleConfigSet: err%d. \n", line, error);
}

inline void mediaNotSynchronised(const char* url, int result) {
    dbg_trace("??#%d BaseRequest.handleConfigSet: pchUrl=%s, ret%d. \n", 3482, url, result);
}

} // namespace koine::config_trace
