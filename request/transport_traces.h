/// @file
/// Trace lines of the device transport.
#pragma once

#include "platform/trace.h"

namespace koine::transport_trace {

/// The constructor could not get an HTTP client. The format has one number more than there is to say.
inline void noClientMade(int channel) {
    dbg_trace("??? #%d BaseRequest::requestCgi_1, uid=%d:%d. \n", 193, channel, 0);
}

inline void sending(int uid, int channel, const char* url) {
    dbg_trace("#%d BaseRequest::requestCgi_1: 0, uid=%d:%d, pchUrl=%s. \n", 3513, uid, channel, url);
}

inline void noUrl(int uid, int channel, const char* url, int error) {
    dbg_trace("???#%d BaseRequest.requestCgi_1: uid=%d:%d, pchUrl=%s, err%d. \n", 3517, uid, channel, url,
              error);
}

inline void noClient(int uid, int channel, const char* url, int error) {
    dbg_trace("???#%d BaseRequest.requestCgi_1: uid=%d:%d, pchUrl=%s, err%d. will break\n", 3537, uid,
              channel, url, error);
}

inline void failed(int uid, int channel, const char* url, int error) {
    dbg_trace("??#%d BaseRequest.requestCgi: uid=%d:%d, pchUrl=%s, err%d. \n", 3547, uid, channel, url,
              error);
}

inline void answerNotParsed(int uid, int channel, int error) {
    dbg_trace("??#%d ParsingCGIData: uid=%d:%d, err%d. \n", 3589, uid, channel, error);
}

} // namespace koine::transport_trace
