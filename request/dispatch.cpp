// The dispatch: who answers a request line, the caches, the stream records or the device.

#include "cache/keys.h"
#include "koine/BaseRequest.h"
#include "platform/url.h"
#include "request/checkpoint.h"
#include "request/dispatch_traces.h"
#include "request/object_lock.h"
#include "stream/required_client.h"
#include "text/owned_text.h"
#include "text/shortage.h"
#include "text/words.h"

#include <array>

using namespace koine;

namespace {

constexpr std::string_view kOperation = "requestHttpStr";

constexpr std::string_view kStreamSet = "Stream.cgi?action=set";
constexpr std::string_view kStreamGet = "Stream.cgi?action=get";
constexpr std::string_view kConfigSet = "Config.cgi?action=set";
constexpr std::string_view kConfigGet = "Config.cgi?action=get";
constexpr std::string_view kCapabilityGet = "Capability.cgi?action=get";
constexpr std::string_view kLogin = "Login.cgi";
constexpr std::string_view kGetStreamUri = "Onvif.cgi?action=GetStreamUri";

constexpr std::string_view kStreamOnlyCapability =
    "0\nOK\nCapability.Audio.Format=ULAW\nCapability.Audio.Input.Channel=1\n"
    "Capability.Audio.Output.Channel=1\nCapability.Function=AudioVolume\n"
    "Capability.Peripherals=AudioIn,AudioOut\n";

/// A line that names one of these asks for a stream to be set up.
constexpr std::array<std::string_view, 2> kSetupMarkers = {"StreamSetup.Transport.Protocol",
                                                           "StreamSetup.Setting.Channel"};

/// A step that answers lines without the device, and what its failure looks like.
struct LocalAnswer {
    std::string_view marker;
    int (*step)(BaseRequest& request, unsigned int uid, char* url, char** answer);
    int traceLine;
    bool failsAsNotBuilt; // a stream answer fails with 0, whatever its step said
};

constexpr std::array<LocalAnswer, 5> kLocalAnswers = {{
    {kStreamGet,
     [](BaseRequest& r, unsigned int uid, char* url, char** text) {
         return r.buildCgiStreamGet(uid, url, text);
     },
     3758, true},
    {kGetStreamUri,
     [](BaseRequest& r, unsigned int uid, char* url, char** text) {
         return r.buildCgiGetStreamUri(uid, url, text);
     },
     3765, true},
    {kConfigGet,
     [](BaseRequest& r, unsigned int uid, char* url, char** text) {
         return r.handleConfigGet(uid, url, text);
     },
     3772, false},
    {kLogin,
     [](BaseRequest& r, unsigned int uid, char* url, char** text) {
         return r.getCacheLogin(uid, 0, url, text);
     },
     3781, false},
    {kCapabilityGet,
     [](BaseRequest& r, unsigned int uid, char* url, char** text) {
         return r.getCacheCapability(uid, 0, url, text);
     },
     3790, false},
}};

} // namespace

/// One run of the dispatch. `text` is the answer produced so far.
class BaseRequest::Dispatch {
public:
    Dispatch(BaseRequest& request, unsigned int uid, const char* input, bool wantsAnswer, OwnedText& text)
        : request_(request),
          uid_(uid),
          input_(input == nullptr ? "(null)" : input),
          wantsAnswer_(wantsAnswer),
          isNull_(input == nullptr),
          text_(text) {}

    int run(const char* username, const char* password) {
        const boost::shared_ptr<StreamIDClient> client = request_.get_streamid_client(uid_);
        dispatch_trace::entered(asker(), &request_, input_);
        if (const int result = copyLine(); result != kOk)
            return result;
        if (const int result = learnAddress(); result != kOk)
            return result;
        learnCredentials(username, password);
        if (const int result = startPendingStream(required(client)); result != kOk)
            return result;
        mark(3708);
        if (startsWithIgnoreCase(viewOf(request_.getVendor()), kStreamOnlyVendor))
            return answerStreamOnly();
        if (const int result = answerLocally(); result != kOk)
            return result;
        mark(3796);
        if (const int result = prepareForDevice(); result != kOk)
            return result;
        mark(3854);
        if (const int result = askDevice(); result != kOk)
            return result;
        mark(3873);
        return finishConfigSet();
    }

private:
    static void mark(int line) { markCheckpoint(kOperation, line); }

    dispatch_trace::Asker asker() { return {static_cast<int>(uid_), request_.strm_setting_channel()}; }

    bool names(std::string_view marker) const { return contains(viewOf(url_.get()), marker); }

    int copyLine() {
        if (isNull_) {
            dispatch_trace::notCopied(asker(), input_, kRefused);
            return kRefused;
        }
        url_ = copyText(input_);
        if (url_)
            return kOk;
        dispatch_trace::notCopied(asker(), input_, kNoResource);
        return kNoResource;
    }

    /// The first line tells where the device is. A known address is never replaced.
    int learnAddress() {
        if (!request_.server_address_2().empty())
            return kOk;
        try {
            Url parsed(url_.get());
            parsed.parse_url();
            request_.set_server_address(parsed.host().c_str());
            request_.set_server_port(parsed.port());
        } catch (const Url::parse_error& error) {
            dispatch_trace::notParsed(asker(), input_, kRefused, error.what());
            return kRefused;
        }
        return kOk;
    }

    void learnCredentials(const char* username, const char* password) {
        if (request_.get_username().empty())
            request_.set_username(username);
        if (request_.get_password().empty())
            request_.set_password(password);
    }

    bool asksForStream() const {
        if (!names(kStreamSet))
            return false;
        for (const std::string_view marker : kSetupMarkers)
            if (names(marker))
                return true;
        return false;
    }

    /// A stored set-up text is acted on once; after a failure it stays, so that the next line tries again.
    int startPendingStream(StreamIDClient& client) {
        if (asksForStream())
            client.setInitStream(url_.get());
        mark(3683);
        if (client.getInitStream().empty())
            return kOk;
        if (const int result = client.ParseStreamInit(); result != kOk) {
            dispatch_trace::setupNotParsed(asker(), result);
            return result;
        }
        if (const int result = request_.HandleInit(uid_); result != kOk) {
            dispatch_trace::streamNotStarted(asker(), result);
            return result;
        }
        client.setInitStream("");
        return kOk;
    }

    /// A stream-only source has no configuration and is never contacted.
    int answerStreamOnly() {
        if (names(kStreamGet)) {
            if (request_.buildCgiStreamGet(uid_, url_.get(), OutText(text_)) == kOk)
                return kOk;
            dispatch_trace::stepFailed(3717, asker(), input_, kNotBuilt);
            return kNotBuilt;
        }
        text_ = copyText(names(kCapabilityGet) ? kStreamOnlyCapability : answers::kOk);
        return text_ ? kOk : kNoResource;
    }

    int answerLocally() {
        if (!wantsAnswer_)
            return kOk;
        for (const LocalAnswer& local : kLocalAnswers) {
            if (!names(local.marker))
                continue;
            const int result = local.step(request_, uid_, url_.get(), OutText(text_));
            if (result == kOk)
                return kOk;
            const int reported = local.failsAsNotBuilt ? static_cast<int>(kNotBuilt) : result;
            dispatch_trace::stepFailed(local.traceLine, asker(), input_, reported);
            return reported;
        }
        return kOk;
    }

    int prepareForDevice() {
        if (!names(kStreamSet) && !names(kConfigSet))
            return rewrite(3842);
        if (const int result = request_.checkCgiParameter(uid_, url_.get()); result != kOk) {
            dispatch_trace::parameterRefused(asker(), input_, result);
            return result;
        }
        if (const int result = rewrite(3818); result != kOk)
            return result;
        if (!names(kStreamSet))
            return kOk;
        dispatch_trace::streamSetReached(asker(), &request_, input_);
        return handleParameter(3831);
    }

    int rewrite(int traceLine) {
        OwnedText rewritten;
        const int result = request_.recoveryUrl(uid_, url_.get(), OutText(rewritten));
        if (result != kOk) {
            dispatch_trace::notRewritten(traceLine, asker(), input_, result);
            return result;
        }
        if (rewritten)
            url_ = std::move(rewritten);
        return kOk;
    }

    int handleParameter(int traceLine) {
        const int result = request_.handleParameter(uid_, url_.get(), OutText(text_));
        if (result != kOk)
            dispatch_trace::parameterNotHandled(traceLine, asker(), input_, result);
        return result;
    }

    int askDevice() {
        if (text_)
            return kOk;
        const int result =
            request_.requestCgi(uid_, url_.get(), OutText(text_), REQCGI_METHOD_GET, REQCGI_CONNECTION_KEEP);
        if (result != kOk)
            dispatch_trace::deviceFailed(asker(), input_, result);
        return result;
    }

    /// The device has accepted new settings: the caches follow.
    int finishConfigSet() {
        if (!names(kConfigSet))
            return kOk;
        if (const int result = handleParameter(3883); result != kOk)
            return result;
        const int result = request_.handleConfigSet(uid_, url_.get());
        if (result != kOk)
            dispatch_trace::stepFailed(3892, asker(), input_, result);
        return result;
    }

    BaseRequest& request_;
    unsigned int uid_;
    const char* input_; // as the host passed it; traces print it, whatever the line became
    bool wantsAnswer_;
    bool isNull_;
    OwnedText& text_;
    OwnedText url_;
};

int BaseRequest::requestHttpStr(unsigned int uid, char* url, char* username, char* password, char** answer) {
    const ObjectLock lock(*this);
    OwnedText text;
    int result = orNoResource(
        [&] { return Dispatch(*this, uid, url, answer != nullptr, text).run(username, password); });
    markCheckpoint(kOperation, 3920);

    if (result == kOk && !text) {
        text = copyText(answers::kOk);
        if (!text)
            result = kNoResource;
    }
    if (result != kOk)
        text = copyText(result == kAuthFailed ? answers::kAuthError : answers::kUnknownParameter);
    if (answer != nullptr)
        *answer = text.release();
    return result;
}
