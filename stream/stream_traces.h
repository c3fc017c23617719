/// @file
/// Trace lines of the stream users. `line` is the source line of the call.
#pragma once

#include "platform/trace.h"

namespace koine::stream_trace {

// ---- The registry

inline void clientMade(int line, int uid) {
    dbg_trace("######%d StreamIDCenter::get_streamid_client, uid=%d, new StreamIDClient. \n", line, uid);
}

// ---- The reconnect decision. It does not know the user: 0 is printed instead.

inline void reconnectOutOfMemory(int line, int channel, int error) {
    dbg_trace("???#%d BaseRequest::handleParameter_1: uid=%d:%d, err%d. \n", line, 0, channel, error);
}

inline void widthChanges(int line, int channel, int cached, int asked) {
    dbg_trace("#%d BaseRequest.handleParameter2: uid=%d:%d, NeedReconnect, nGetWidth=%d, nWidth=%d. \n", line,
              0, channel, cached, asked);
}

inline void heightChanges(int line, int channel, int cached, int asked) {
    dbg_trace("#%d BaseRequest.handleParameter2: uid=%d:%d, NeedReconnect, nGetHeight=%d, nHeight=%d. \n",
              line, 0, channel, cached, asked);
}

// ---- The start of a stream

inline void cachesNotFilled(int line, int uid, int channel, const char* setup) {
    dbg_trace("??#%d HandleInit: cacheCgi, uid=%d:%d, pchUrl=%s. \n", line, uid, channel, setup);
}

inline void notSupported(int line, int uid, int channel) {
    dbg_trace("??#%d HandleInit: uid=%d:%d, stream not support. \n", line, uid, channel);
}

inline void noMedia(int line) { dbg_trace("?#%d no Media. \n", line); }

inline void profileNotFound(int line, int uid, int channel) {
    dbg_trace("???#%d HandleInit: error, uid=%d:%d. \n", line, uid, channel);
}

inline void profileTaken(int line, int uid, int channel, const char* token, int profile, int count) {
    dbg_trace("#%d BaseRequest.HandleInit, uid=%d:%d, pchProfileToken=%s, ProfileId=%d, count=%d. \n", line,
              uid, channel, token, profile, count);
}

inline void onlyMeta(int line, int uid, int channel) {
    dbg_trace("#%d HandleInit: uid=%d:%d, only meta stream. \n", line, uid, channel);
}

inline void onlyStatus(int line, int uid, int channel) {
    dbg_trace("#%d HandleInit: uid=%d:%d, only status stream. \n", line, uid, channel);
}

inline void notSynchronised(int line, int uid, int channel) {
    dbg_trace("??#%d BaseRequest.HandleInit: uid=%d:%d, syncProfileToken error. \n", line, uid, channel);
}

// ---- The stream answers

inline void streamNotBuilt(int line, int uid, int channel, int error) {
    dbg_trace("???#%d buildCgiStreamGet: uid=%d:%d, err%d. \n", line, uid, channel, error);
}

/// No place for the answer, or the device class built no URI on a device without profiles.
inline void uriNotBuilt(int line, int uid, int channel, const char* url, int error) {
    dbg_trace("??#%d buildCgiOnvifGetStreamUri: uid=%d:%d, pchUrl=%s, err%d. \n", line, uid, channel, url,
              error);
}

inline void uriOutOfMemory(int line, int uid, int channel, int error) {
    dbg_trace("???#%d buildCgiGetStreamUri: uid=%d:%d, err%d. \n", line, uid, channel, error);
}

inline void uriWithoutMedia(int line, int uid, int channel, const char* url) {
    dbg_trace("?#%d buildCgiOnvifGetStreamUri: uid=%d:%d, pchUrl=%s, no Media. \n", line, uid, channel, url);
}

inline void uriWithoutProfile(int line, int uid, int channel, const char* url) {
    dbg_trace("??#%d buildCgiOnvifGetStreamUri: uid=%d:%d, pchUrl=%s, error. \n", line, uid, channel, url);
}

/// On a device with profiles: out of memory, the answer is too long, or the device class built no URI.
inline void uriAnswerFailed(int line, int uid, int channel, const char* url, int error) {
    dbg_trace("???#%d buildCgiOnvifGetStreamUri: uid=%d:%d, pchUrl=%s, err%d. \n", line, uid, channel, url,
              error);
}

} // namespace koine::stream_trace
