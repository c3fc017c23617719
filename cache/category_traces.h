/// @file
/// Trace lines of the five configuration categories. Each category has its own texts, so that a log shows
/// which one failed; a table row picks its set.
#pragma once

#include "platform/trace.h"

namespace koine {

struct CategoryTraces {
    void (*failed)(int line, int uid, int channel);                  ///< prerequisite or request
    void (*notConverted)(int line, int uid, int channel, int error); ///< parse or conversion
    void (*notFound)(int line, int uid, int channel, int error);     ///< no such key
};

namespace category_trace {

inline constexpr CategoryTraces kVideo = {
    [](int line, int uid, int channel) {
        dbg_trace("??#%d getCacheConfigVideo: error, uid=%d:%d. \n", line, uid, channel);
    },
    [](int line, int uid, int channel, int error) {
        dbg_trace("??#%d getCacheConfigVideo: uid=%d:%d, err%d. \n", line, uid, channel, error);
    },
    [](int line, int uid, int channel, int error) {
        dbg_trace("???#%d getCacheConfigVideo, uid=%d:%d, err%d. \n", line, uid, channel, error);
    },
};

inline constexpr CategoryTraces kCamera = {
    [](int line, int uid, int channel) {
        dbg_trace("??#%d getCacheConfigCamera: error, uid=%d:%d. \n", line, uid, channel);
    },
    [](int line, int uid, int channel, int error) {
        dbg_trace("??#%d getCacheConfigCamera: uid=%d:%d, err%d. \n", line, uid, channel, error);
    },
    [](int line, int uid, int channel, int error) {
        dbg_trace("???#%d getCacheConfigCamera, uid=%d:%d, err%d. \n", line, uid, channel, error);
    },
};

inline constexpr CategoryTraces kNotification = {
    [](int line, int uid, int channel) {
        dbg_trace("??#%d getCacheConfigNotification: error, uid=%d:%d. \n", line, uid, channel);
    },
    [](int line, int uid, int channel, int error) {
        dbg_trace("??#%d getCacheConfigNotification: uid=%d:%d, err%d. \n", line, uid, channel, error);
    },
    [](int line, int uid, int channel, int error) {
        dbg_trace("???#%d getCacheConfigNotification, uid=%d:%d, err%d. \n", line, uid, channel, error);
    },
};

inline constexpr CategoryTraces kMisc = {
    [](int line, int uid, int channel) {
        dbg_trace("??#%d getCacheConfigMisc: error, uid=%d:%d. \n", line, uid, channel);
    },
    [](int line, int uid, int channel, int error) {
        dbg_trace("??#%d getCacheConfigMisc: uid=%d:%d, err%d. \n", line, uid, channel, error);
    },
    [](int line, int uid, int channel, int error) {
        dbg_trace("???#%d getCacheConfigMisc, uid=%d:%d, err%d. \n", line, uid, channel, error);
    },
};

inline constexpr CategoryTraces kVideoAnalytics = {
    [](int line, int uid, int channel) {
        dbg_trace("??#%d getCacheConfigVideoAnalytics: error, uid=%d:%d. \n", line, uid, channel);
    },
    [](int line, int uid, int channel, int error) {
        dbg_trace("??#%d getCacheConfigVideoAnalytics: uid=%d:%d, err%d. \n", line, uid, channel, error);
    },
    [](int line, int uid, int channel, int error) {
        dbg_trace("???#%d getCacheConfigVideoAnalytics, uid=%d:%d, err%d. \n", line, uid, channel, error);
    },
};

} // namespace category_trace
} // namespace koine
