// The media cache: the device's profiles, completed, and how many there are.

#include "cache/key_map.h"
#include "cache/keys.h"
#include "cache/media_line.h"
#include "koine/BaseRequest.h"
#include "media/media_traces.h"
#include "media/profile_keys.h"
#include "platform/cgi_text.h"
#include "stream/required_client.h"
#include "text/numbers.h"
#include "text/owned_text.h"
#include "text/shortage.h"

using namespace koine;

/// Everything that must be there before the cache can answer. `raw` is left with the device's text.
class BaseRequest::MediaFill {
public:
    MediaFill(BaseRequest& request, unsigned int uid, const boost::shared_ptr<StreamIDClient>& client,
              OwnedText& raw)
        : request_(request), uid_(uid), client_(client), raw_(raw) {}

    int run(const char* url) {
        if (const int result = request_.getCacheCapability(uid_, 0, nullptr, nullptr); result != kOk) {
            media_trace::fillFailed(519, user());
            return result;
        }
        if (request_.media_.loaded == 0) {
            if (const int result = fetch(url); result != kOk)
                return result;
            request_.media_.loaded = 1;
        }
        const int result = request_.convertCgiMedia(uid_, &request_.media_.map, &request_.login_.map);
        if (result != kOk)
            media_trace::notConverted(user(), result);
        return result;
    }

private:
    int user() const { return static_cast<int>(uid_); }

    int fetch(const char* url) {
        if (const int result = url == nullptr ? ask() : askReady(url); result != kOk)
            return result;
        const int result = createMapStr(raw_.get(), &request_.media_.map);
        if (result != kOk)
            media_trace::notParsed(result, user());
        return result;
    }

    int askReady(const char* url) {
        std::string line(url); // the request takes a text that it could change
        const int result =
            request_.requestCgi(uid_, line.data(), OutText(raw_), REQCGI_METHOD_GET, REQCGI_CONNECTION_KEEP);
        if (result != kOk)
            media_trace::fillFailed(533, user());
        return result;
    }

    int ask() {
        const std::string line = mediaLine(required(client_).strm_nvr_subchannel());
        const int result = request_.askDevice(uid_, line.c_str(), OutText(raw_));
        if (result != kOk)
            media_trace::notAnswered(result, user());
        return result;
    }

    BaseRequest& request_;
    unsigned int uid_;
    const boost::shared_ptr<StreamIDClient>& client_;
    OwnedText& raw_;
};

int BaseRequest::getCacheConfigMedia(unsigned int uid, int refresh, const char* url, const char* key,
                                     char** answer) {
    const boost::shared_ptr<StreamIDClient> client = get_streamid_client(uid);
    // The device is not asked again after a refresh: what was fetched once counts as known.
    if (refresh == 1)
        media_.map.clear();
    OwnedText text;
    int result = orNoResource([&] { return MediaFill(*this, uid, client, text).run(url); });
    if (result == kOk && answer != nullptr) {
        text.reset(getCgiStr(&media_.map, key));
        if (!text) {
            media_trace::notFound(static_cast<int>(uid), kNoResource);
            result = kNoResource;
        }
    }
    // A device without media profiles is as good as one with none.
    if (result == kOk || result == kNoFunction)
        result = orNoResource([&] {
            setProfileCount(readInt(entry(media_.map, kProfileCountKey)));
            if (getProfileCount() > 0)
                setMediaProfile(1);
            return kOk;
        });
    if (answer != nullptr) {
        if (!text)
            text = copyText(answers::kUnknownParameter);
        *answer = text.release();
    }
    return result;
}
