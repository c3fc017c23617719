// The five configuration categories: one piece of code, and a table of how they differ.

#include "cache/category_traces.h"
#include "cache/keys.h"
#include "cache/media_line.h"
#include "koine/BaseRequest.h"
#include "platform/cgi_text.h"
#include "text/owned_text.h"
#include "text/shortage.h"
#include "text/words.h"

#include <new>

using namespace koine;

namespace koine {

/// The family. A struct of its own so that the table can name the caches.
struct CategoryFamily {
    struct Member {
        const char* requestLine;
        DeviceCache BaseRequest::*cache;
        int (*prepare)(BaseRequest& request, unsigned int uid); ///< caches that must be filled first
        int (*convert)(BaseRequest& request);
        std::string_view fallback; ///< answer when the cache has nothing to say
        bool refreshAsksAgain;     ///< otherwise a refreshed cache stays empty
        CategoryTraces traces;
    };

    static const Member video;
    static const Member camera;
    static const Member notification;
    static const Member misc;
    static const Member videoAnalytics;

    static int prepareNothing(BaseRequest& /*request*/, unsigned int /*uid*/) { return kOk; }
    static int prepareLogin(BaseRequest& request, unsigned int uid) {
        return request.getCacheLogin(uid, 0, nullptr, nullptr);
    }
    static int prepareNotification(BaseRequest& request, unsigned int uid) {
        const int result = prepareLogin(request, uid);
        return result == kOk ? request.getCacheConfigNotification(uid, 0, nullptr, nullptr, nullptr) : result;
    }

    static int convertNothing(BaseRequest& /*request*/) { return kOk; }
    static int convertVideo(BaseRequest& request) { return request.convertCgiVideo(&request.video_.map); }
    static int convertCamera(BaseRequest& request) { return request.convertCgiCamera(&request.camera_.map); }
    static int convertMisc(BaseRequest& request) {
        return request.convertCgiMisc(&request.misc_.map, &request.notification_.map);
    }
};

const CategoryFamily::Member CategoryFamily::video = {
    "Config.cgi?action=get&category=Video.*",
    &BaseRequest::video_,
    prepareLogin,
    convertVideo,
    answers::kUnknownParameter,
    false,
    category_trace::kVideo,
};

const CategoryFamily::Member CategoryFamily::camera = {
    "Config.cgi?action=get&category=Camera.*",
    &BaseRequest::camera_,
    prepareLogin,
    convertCamera,
    answers::kOk,
    true,
    category_trace::kCamera,
};

const CategoryFamily::Member CategoryFamily::notification = {
    "Config.cgi?action=get&category=Notification.*",
    &BaseRequest::notification_,
    prepareLogin,
    convertNothing,
    answers::kUnknownParameter,
    false,
    category_trace::kNotification,
};

const CategoryFamily::Member CategoryFamily::misc = {
    "Config.cgi?action=get&category=Misc.*",
    &BaseRequest::misc_,
    prepareNotification,
    convertMisc,
    answers::kOk,
    false,
    category_trace::kMisc,
};

const CategoryFamily::Member CategoryFamily::videoAnalytics = {
    "Config.cgi?action=get&category=VideoAnalytics.*",
    &BaseRequest::videoAnalytics_,
    prepareNothing,
    convertNothing,
    answers::kUnknownParameter,
    false,
    category_trace::kVideoAnalytics,
};

} // namespace koine

/// One request to one category.
class BaseRequest::CategoryAnswer {
public:
    using Member = CategoryFamily::Member;

    CategoryAnswer(BaseRequest& request, unsigned int uid, const Member& member)
        : request_(request), uid_(uid), member_(member), cache_(request.*member.cache) {}

    int give(int refresh, const char* key, char** answer) {
        OwnedText text;
        const int result = orNoResource([&] { return find(refresh, key, answer != nullptr, text); });
        // One attempt decides: a device that could not be reached is not asked for this category again.
        cache_.loaded = 1;
        if (answer == nullptr)
            return result;
        if (!text)
            text = copyText(member_.fallback);
        *answer = text.release();
        return result;
    }

private:
    int uid() const { return static_cast<int>(uid_); }
    int channel() { return request_.strm_setting_channel(); }

    /// Leaves the printed keys in `text`, or the raw device text of a failed fill, or nothing.
    int find(int refresh, const char* key, bool wanted, OwnedText& text) {
        if (request_.getIsTovlinNVRDevice() != 0)
            return kOk; // a recorder has no configuration of its own to give
        if (refresh == 1) {
            cache_.map.clear();
            if (member_.refreshAsksAgain)
                cache_.loaded = 0;
        }
        if (const int result = member_.prepare(request_, uid_); result != kOk) {
            member_.traces.failed(__LINE__, uid(), channel());
            return result;
        }
        if (cache_.loaded == 0) {
            if (const int result = fill(text); result != kOk)
                return result;
            text.reset();
        }
        if (!wanted)
            return kOk;
        text.reset(getCgiStr(&cache_.map, key));
        if (text)
            return kOk;
        member_.traces.notFound(__LINE__, uid(), channel(), kNoResource);
        return kNoResource;
    }

    /// A category that runs out of memory is given up: half of it would pass for the whole from then on.
    int fill(OwnedText& raw) {
        try {
            return learn(raw);
        } catch (const std::bad_alloc&) {
            cache_.map.clear();
            throw;
        }
    }

    int learn(OwnedText& raw) {
        int result = request_.askDevice(uid_, member_.requestLine, OutText(raw));
        if (result != kOk) {
            member_.traces.failed(__LINE__, uid(), channel());
            return result;
        }
        result = createMapStr(raw.get(), &cache_.map);
        if (result == kOk)
            result = member_.convert(request_);
        if (result != kOk)
            member_.traces.notConverted(__LINE__, uid(), channel(), result);
        return result;
    }

    BaseRequest& request_;
    unsigned int uid_;
    const Member& member_;
    DeviceCache& cache_;
};

int BaseRequest::getCacheConfigVideo(unsigned int uid, int refresh, const char* /*extra*/, const char* key,
                                     char** answer) {
    return CategoryAnswer(*this, uid, CategoryFamily::video).give(refresh, key, answer);
}

int BaseRequest::getCacheConfigCamera(unsigned int uid, int refresh, const char* /*extra*/, const char* key,
                                      char** answer) {
    return CategoryAnswer(*this, uid, CategoryFamily::camera).give(refresh, key, answer);
}

int BaseRequest::getCacheConfigNotification(unsigned int uid, int refresh, const char* /*extra*/,
                                            const char* key, char** answer) {
    return CategoryAnswer(*this, uid, CategoryFamily::notification).give(refresh, key, answer);
}

int BaseRequest::getCacheConfigMisc(unsigned int uid, int refresh, const char* /*extra*/, const char* key,
                                    char** answer) {
    return CategoryAnswer(*this, uid, CategoryFamily::misc).give(refresh, key, answer);
}

int BaseRequest::getCacheConfigVideoAnalytics(unsigned int uid, int refresh, const char* /*extra*/,
                                              const char* key, char** answer) {
    return CategoryAnswer(*this, uid, CategoryFamily::videoAnalytics).give(refresh, key, answer);
}

std::vector<std::string> BaseRequest::linesToFill(unsigned int uid, Configuration wanted) {
    std::vector<std::string> lines;
    if (startsWithIgnoreCase(viewOf(getVendor()), kStreamOnlyVendor))
        return lines;
    if (media_.loaded == 0)
        if (const boost::shared_ptr<StreamIDClient> client = get_streamid_client(uid))
            lines.push_back(mediaLine(client->strm_nvr_subchannel()));
    if (getIsTovlinNVRDevice() != 0)
        return lines; // a recorder is asked for its profiles only
    const auto add = [&](const CategoryFamily::Member& member) {
        if ((this->*member.cache).loaded == 0)
            lines.emplace_back(member.requestLine);
    };
    add(CategoryFamily::video);
    add(CategoryFamily::camera);
    add(CategoryFamily::notification);
    add(CategoryFamily::misc);
    if (wanted == Configuration::all)
        add(CategoryFamily::videoAnalytics);
    return lines;
}
