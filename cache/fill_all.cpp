// All caches of a device, in the order in which they build on each other.

#include "cache/keys.h"
#include "cache/request_lines.h"
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

std::vector<std::string> BaseRequest::linesToFill(unsigned int uid, Configuration wanted) {
    std::vector<std::string> lines;
    if (startsWithIgnoreCase(viewOf(getVendor()), kStreamOnlyVendor))
        return lines;
    if (media_.loaded == 0)
        if (const boost::shared_ptr<StreamIDClient> client = get_streamid_client(uid))
            lines.push_back(request_lines::media(client->strm_nvr_subchannel()));
    if (getIsTovlinNVRDevice() != 0)
        return lines; // a recorder is asked for its profiles only
    const auto add = [&](const DeviceCache& cache, const char* line) {
        if (cache.loaded == 0)
            lines.emplace_back(line);
    };
    add(video_, request_lines::kVideo);
    add(camera_, request_lines::kCamera);
    add(notification_, request_lines::kNotification);
    add(misc_, request_lines::kMisc);
    if (wanted == Configuration::all)
        add(videoAnalytics_, request_lines::kVideoAnalytics);
    return lines;
}
