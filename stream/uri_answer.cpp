// "Onvif.cgi?action=GetStreamUri": where the host finds the stream.

#include "cache/key_map.h"
#include "cache/keys.h"
#include "koine/BaseRequest.h"
#include "media/profile_count.h"
#include "media/profile_keys.h"
#include "media/profile_words.h"
#include "stream/first_profile.h"
#include "stream/required_client.h"
#include "stream/stream_traces.h"
#include "text/numbers.h"
#include "text/owned_text.h"
#include "text/scan.h"
#include "text/tokens.h"
#include "text/work_text.h"

using namespace koine;

namespace {

constexpr std::size_t kUriAnswerBytes = 1024;
constexpr std::size_t kTokenBytes = 128;
constexpr const char* kAudioEncoding = "ULAW";
constexpr std::string_view kH264 = "H264";
constexpr const char* kMpeg4 = "MPEG4";

/// The last "ProfileToken" of the line. The first "?" ends the request's name.
void takeRequestedToken(std::string_view url, std::string& requested) {
    Tokens items(url);
    std::string_view token;
    for (auto item = items.next("?&\n"); item; item = items.next("&\n"))
        if (scan(*item, "ProfileToken=", into(token)))
            requested = token;
}

/// The first profile with the token asked for; without one, the first that encodes H264; else 0.
int selectProfile(CgiMap& media, std::string_view requested) {
    const int count = boundedProfileCount(entry(media, kProfileCountKey));
    return requested.empty() ? firstProfileWith(media, count, EncoderKey::encoding, kH264)
                             : firstProfileWith(media, count, ProfileKey::token, requested);
}

void appendUri(std::string& text, const char* uri) {
    text.append(answers::kOkHead)
        .append("\nGetStreamUriResponse.MediaUri.Uri=")
        .append(uri)
        .append("\nGetStreamUriResponse.MediaUri.InvalidAfterConnect=false"
                "\nGetStreamUriResponse.MediaUri.InvalidAfterReboot=true"
                "\nGetStreamUriResponse.MediaUri.Timeout=P1Y");
}

} // namespace

/// One answer.
class BaseRequest::UriAnswer {
public:
    UriAnswer(BaseRequest& request, unsigned int uid, const char* url, StreamIDClient& client)
        : request_(request), uid_(uid), url_(orEmpty(url)), client_(client) {}

    int run(char** answer) {
        const OwnedText copy = copyText(url_);
        std::string requested;
        if (!copy || !reserveText(requested, kTokenBytes)) {
            stream_trace::uriOutOfMemory(__LINE__, user(), channel(), kNoResource);
            return kNoResource;
        }
        const std::string& audioInputs = entry(request_.capability_.map, keys::kAudioInputChannel);
        const char* const audio = audioInputs != "0" ? kAudioEncoding : nullptr;
        if (request_.getMediaProfile() != 1)
            return answerWithoutProfiles(audio, answer);
        takeRequestedToken(copy.get(), requested);
        return answerForProfile(requested, audio, answer);
    }

private:
    int user() const { return static_cast<int>(uid_); }
    int channel() { return request_.strm_setting_channel(); }

    int answerWithoutProfiles(const char* audio, char** answer) {
        stream_trace::uriWithoutMedia(__LINE__, user(), channel(), url_);
        std::string text;
        if (!reserveText(text, kUriAnswerBytes)) {
            stream_trace::uriOutOfMemory(__LINE__, user(), channel(), kNoResource);
            return kNoResource;
        }
        const bool isMobile = client_.profile_mode() == kModeMobile;
        if (!build(isMobile ? kMpeg4 : kH264.data(), audio, 0, 0, text)) {
            stream_trace::uriNotBuilt(__LINE__, user(), channel(), url_, kRefused);
            return kRefused;
        }
        OwnedText copy = copyText(text);
        if (!copy) {
            stream_trace::uriOutOfMemory(__LINE__, user(), channel(), kNoResource);
            return kNoResource;
        }
        *answer = copy.release();
        return kOk;
    }

    int answerForProfile(std::string_view requested, const char* audio, char** answer) {
        CgiMap& media = request_.media_.map;
        if (const int selected = selectProfile(media, requested); selected != 0)
            client_.set_profile_id(selected);
        if (client_.profile_id() == 0) {
            stream_trace::uriWithoutProfile(__LINE__, user(), channel(), url_);
            return kRefused;
        }
        ProfileKeys keys(ProfileNumber{client_.profile_id()});
        client_.set_profile_token(entry(media, keys.of(ProfileKey::token)));
        const std::string encoding = entry(media, keys.of(EncoderKey::encoding));
        const int width = readInt(entry(media, keys.of(EncoderKey::width)));
        const int height = readInt(entry(media, keys.of(EncoderKey::height)));

        std::string text;
        OwnedText copy;
        if (reserveText(text, kUriAnswerBytes)) {
            if (!build(encoding.c_str(), audio, width, height, text)) {
                stream_trace::uriAnswerFailed(__LINE__, user(), channel(), url_, kRefused);
                return kRefused;
            }
            if (text.size() < kUriAnswerBytes)
                copy = copyText(text);
        }
        if (!copy) {
            stream_trace::uriAnswerFailed(__LINE__, user(), channel(), url_, kNoResource);
            return kNoResource;
        }
        *answer = copy.release();
        return kOk;
    }

    /// @return did the device class give a URI?
    bool build(const char* video, const char* audio, int width, int height, std::string& text) {
        OwnedText uri;
        const int result = request_.buildStreamUri(uid_, request_.server_address(), request_.server_port(),
                                                   video, audio, width, height, OutText(uri));
        if (result != kOk || !uri)
            return false;
        appendUri(text, uri.get());
        return true;
    }

    BaseRequest& request_;
    unsigned int uid_;
    const char* url_;
    StreamIDClient& client_;
};

int BaseRequest::buildCgiGetStreamUri(unsigned int uid, char* url, char** answer) {
    const boost::shared_ptr<StreamIDClient> client = get_streamid_client(uid);
    if (answer == nullptr) {
        stream_trace::uriNotBuilt(__LINE__, static_cast<int>(uid), strm_setting_channel(), orEmpty(url),
                                  kRefused);
        return kRefused;
    }
    *answer = nullptr;
    return UriAnswer(*this, uid, url, required(client)).run(answer);
}
