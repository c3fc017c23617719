// All caches of a device, in the order in which they build on each other.

#include "cache/keys.h"
#include "koine/BaseRequest.h"
#include "text/owned_text.h"
#include "text/words.h"

using namespace koine;

int BaseRequest::cacheCgi(unsigned int uid) {
    // Streams are set up on such a source too, but there is nobody who could answer.
    if (startsWithIgnoreCase(viewOf(getVendor()), kStreamOnlyVendor))
        return kOk;
    if (const int result = getCacheLogin(uid, 0, nullptr, nullptr); result != kOk)
        return result;
    if (const int result = getCacheCapability(uid, 0, nullptr, nullptr); result != kOk)
        return result;
    using Get = int (BaseRequest::*)(unsigned int, int, const char*, const char*, char**);
    constexpr Get kCategories[] = {
        &BaseRequest::getCacheConfigMedia,  &BaseRequest::getCacheConfigVideo,
        &BaseRequest::getCacheConfigCamera, &BaseRequest::getCacheConfigNotification,
        &BaseRequest::getCacheConfigMisc,   &BaseRequest::getCacheConfigVideoAnalytics,
    };
    for (const Get get : kCategories)
        if (const int result = (this->*get)(uid, 0, nullptr, nullptr, nullptr); result != kOk)
            return result;
    return kOk;
}
