// The capability cache: what the device can do, in one dialect whatever it answers in.

#include "cache/cache_traces.h"
#include "cache/key_map.h"
#include "cache/keys.h"
#include "koine/BaseRequest.h"
#include "platform/cgi_text.h"
#include "platform/classification.h"
#include "text/numbers.h"
#include "text/owned_text.h"
#include "text/shortage.h"
#include "text/tokens.h"
#include "text/words.h"

#include <new>

using namespace koine;

namespace {

constexpr const char* kRequestLine = "Capability.cgi?action=get";
constexpr const char* kChannelRequestLine = "Capability.cgi?action=get&channel=1";
constexpr const char* kMachineRequestLine = "Machine.cgi?action=get_capability";

constexpr std::string_view kVideoServer = "VIDEO SERVER";
constexpr std::string_view kProductIdMinor = "Product-ID-Minor";
constexpr std::string_view kPtzCapability = "Capability.PTZ";
constexpr std::string_view kEventTrigger = "Capability.Remote.Event.Trigger.Enabled";
constexpr std::string_view kId = "ID";
constexpr std::string_view kVideoAnalytics = "VA"; // as the beginning of a function's name

} // namespace

/// One fill. `raw` is left with the text of the device's last answer.
class BaseRequest::CapabilityFill {
public:
    CapabilityFill(BaseRequest& request, unsigned int uid, OwnedText& raw)
        : request_(request), uid_(uid), raw_(raw) {}

    /// A shortage of memory leaves the map as it was: to the next attempt, what half a conversion made would
    /// look as if the device had told it.
    int run(const char* url) {
        CgiMap before = request_.capability_.map; // mostly empty
        try {
            return fill(url);
        } catch (const std::bad_alloc&) {
            request_.capability_.map.swap(before);
            throw;
        }
    }

private:
    int fill(const char* url) {
        const std::string& productId = entry(request_.login_.map, kProductIdMinor);
        const int result = checkIfNoCapabilityProductId(productId.c_str()) != 0 ? fillFromMachine()
                                                                                : fillFromCapability(url);
        if (result != kOk)
            return result;
        takeFlags();
        request_.capability_.loaded = 1;
        return kOk;
    }

    cache_trace::User user() { return {static_cast<int>(uid_), request_.strm_setting_channel()}; }

    /// For products that do not have the capability request.
    int fillFromMachine() {
        if (const int result = request_.askDevice(uid_, kMachineRequestLine, OutText(raw_)); result != kOk) {
            cache_trace::machineFailed(__LINE__, user());
            return result;
        }
        CgiMap machine;
        if (const int result = createMapStr(raw_.get(), &machine); result != kOk) {
            cache_trace::capabilityNotConverted(__LINE__, user(), result);
            return result;
        }
        // The conversion leaves an empty map alone; on a first fill this entry makes it work.
        entry(request_.capability_.map, keys::kDevice);
        const int result =
            request_.convertCgiCapability(&request_.capability_.map, &machine, &request_.login_.map);
        if (result != kOk)
            cache_trace::capabilityNotConverted(__LINE__, user(), result);
        return result;
    }

    int fillFromCapability(const char* url) {
        if (const int result = fetch(url); result != kOk)
            return result;
        CgiMap& capability = request_.capability_.map;
        if (valueOr(capability, keys::kDevice) == kVideoServer)
            if (const int result = addVideoServerChannel(); result != kOk)
                return result;
        const int result = request_.convertCgiCapability(&capability, &request_.login_.map);
        if (result != kOk)
            cache_trace::capabilityNotConverted(__LINE__, user(), result);
        return result;
    }

    int fetch(const char* url) {
        const int asked =
            url == nullptr ? request_.askDevice(uid_, kRequestLine, OutText(raw_)) : fetchReady(url);
        if (asked != kOk) {
            cache_trace::capabilityFailed(__LINE__, user());
            return asked;
        }
        const int result = createMapStr(raw_.get(), &request_.capability_.map);
        if (result != kOk)
            cache_trace::notParsed(__LINE__, user(), result);
        return result;
    }

    int fetchReady(const char* url) {
        std::string line(url); // the request takes a text that it could change
        return request_.requestCgi(uid_, line.data(), OutText(raw_), REQCGI_METHOD_GET,
                                   REQCGI_CONNECTION_KEEP);
    }

    /// A video server tells about its channels in a second answer, whose keys win.
    int addVideoServerChannel() {
        raw_.reset();
        if (const int result = request_.askDevice(uid_, kChannelRequestLine, OutText(raw_)); result != kOk) {
            cache_trace::capabilityFailed(__LINE__, user());
            return result;
        }
        const int result = createMapStr(raw_.get(), &request_.capability_.map);
        if (result != kOk)
            cache_trace::capabilityNotConverted(__LINE__, user(), result);
        return result;
    }

    void takeFlags() {
        CgiMap& capability = request_.capability_.map;
        request_.set_which_slave(entry(capability, keys::kDevice).c_str());
        request_.setIsResoIndep(haveResoIndepInCapability(entry(capability, keys::kFunction).c_str()));
        request_.setIsTlProfile(haveProfileInCapability(entry(capability, keys::kFunction).c_str()));
        request_.setIsIDPTZ(haveIDPTZInCapability(entry(capability, kPtzCapability).c_str()));
        request_.paserCapabilitySupport();
        // These are told by devices that have them; without them nothing changes.
        if (startsWithIgnoreCase(valueOr(capability, kEventTrigger), "YES"))
            request_.setIsIsRemoteEventTrigger(1);
        if (const std::string* step = findValue(capability, keys::kQualityStep))
            request_.setQualityStep(readFloat(*step));
        if (const std::string* id = findValue(capability, kId))
            request_.set_model_name(id->c_str());
    }

    BaseRequest& request_;
    unsigned int uid_;
    OwnedText& raw_;
};

int BaseRequest::getCacheCapability(unsigned int uid, int refresh, const char* url, char** answer) {
    const auto user = [&] { return cache_trace::User{static_cast<int>(uid), strm_setting_channel()}; };
    // As with the login, the device is not asked again after a refresh.
    if (refresh == 1)
        capability_.map.clear();
    OwnedText raw;
    int result = getCacheLogin(uid, 0, nullptr, nullptr);
    if (result != kOk)
        cache_trace::loginFailed(__LINE__, user());
    else if (capability_.loaded == 0)
        result = orNoResource([&] { return CapabilityFill(*this, uid, raw).run(url); });

    if (answer == nullptr)
        return result;
    if (result != kOk) {
        *answer = raw.release();
        return result;
    }
    *answer = getCgiStr(&capability_.map, nullptr);
    if (*answer != nullptr)
        return kOk;
    cache_trace::capabilityEmpty(__LINE__, user(), kNoResource);
    return kNoResource;
}

void BaseRequest::paserCapabilitySupport() {
    for (const std::string_view function : Tokens(entry(capability_.map, keys::kFunction), "=,\n")) {
        if (!startsWithIgnoreCase(function, kVideoAnalytics))
            continue;
        setHasVA(1);
        return;
    }
}
