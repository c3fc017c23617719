/// @file
/// Trace lines and standard error messages of the media profiles. Their numbers are fixed.
#pragma once

#include "platform/trace.h"

#include <cstdio>

namespace koine::media_trace {

// ---- The media cache

inline void fillFailed(int line, int uid) {
    dbg_trace("??#%d getCacheConfigMedia: error, uid=%d. \n", line, uid);
}

inline void notAnswered(int error, int uid) {
    std::fprintf(stderr, "Error : %s-%d call requestCgi() error %d, uid %d\n", "getCacheConfigMedia", 544,
                 error, uid);
}

inline void notParsed(int error, int uid) {
    std::fprintf(stderr, "Error : %s-%d with createMapStr error %d, uid=%d\n", "getCacheConfigMedia", 556,
                 error, uid);
}

inline void notConverted(int uid, int error) {
    dbg_trace("??#%d getCacheConfigMedia: uid=%d, err%d. \n", 567, uid, error);
}

inline void notFound(int uid, int error) {
    dbg_trace("???#%d getCacheConfigMedia: uid=%d, err%d. \n", 579, uid, error);
}

/// `index` counts from 0.
inline void profileHasNoToken(int index) {
    std::fprintf(stderr,
                 "Warning : BaseRequest::%s-%d with i %d, can't find VideoEncoderConfiguration.token\n",
                 "convertCgiMedia", 1520, index);
}

// ---- The choice of a profile

inline void mobileRefused(int error) {
    dbg_trace("?#%d searchAvailableProfileToken: err%d. \n", 1928, error);
}

inline void noMedia(int line) { dbg_trace("?#%d no Media. \n", line); }

inline void noProfileForMobile(int error) {
    dbg_trace("???#%d searchAvailableProfileToken: err%d. \n", 2005, error);
}

// ---- The synchronisation of a profile

inline void nothingToSynchronise() { dbg_trace("?#%d BaseRequest.syncProfileToken_1, no Media. \n", 2095); }

inline void noEncoding(int error) {
    dbg_trace("???#%d BaseRequest.syncProfileToken_1, err%d. \n", 2152, error);
}

inline void noSizes(int result) { dbg_trace("?#%d BaseRequest.syncProfileToken_1, err%d. \n", 2196, result); }

/// The settings do not fit into memory or into the line.
inline void settingsFailed(int line, int error) {
    dbg_trace("???#%d BaseRequest.syncProfileToken_1: err%d. \n", line, error);
}

inline void newSize(int uid, int channel, unsigned int width, unsigned int height) {
    dbg_trace("#%d BaseRequest.syncProfileToken_1: uid=%d:%d, set new width=%u, new height=%u. \n", 2220, uid,
              channel, width, height);
}

/// The set line could not be sent, or the device refused it.
inline void settingsNotSent(int line, int error) {
    dbg_trace("??#%d BaseRequest.syncProfileToken_1: err%d. \n", line, error);
}

// ---- The video keys derived from profiles

inline void noUrlForVideo() { dbg_trace("???#%d getConfigVideoStr: error. \n", 2376); }

inline void noProfileNamed(int uid) {
    dbg_trace("???#%d handleCgiConfigSetMedia: error, uid=%d. \n", 2514, uid);
}

inline void videoNotSet(int uid) { dbg_trace("??#%d handleCgiConfigSetMedia: error, uid=%d. \n", 2525, uid); }

} // namespace koine::media_trace
