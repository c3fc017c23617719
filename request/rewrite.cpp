// Rewriting of a request line into the device's dialect, item by item.

#include "cache/key_map.h"
#include "cache/keys.h"
#include "koine/BaseRequest.h"
#include "media/profile_keys.h"
#include "platform/resolution.h"
#include "request/line_copy.h"
#include "request/rewrite_traces.h"
#include "stream/required_client.h"
#include "text/numbers.h"
#include "text/scan.h"
#include "text/tokens.h"
#include "text/words.h"

#include <array>
#include <new>

using namespace koine;

namespace {

constexpr std::size_t kAllowance = 64; // what a rewritten line usually grows by
constexpr std::size_t kLongestResolutionName = 64;

constexpr std::string_view kSerial = "Serial.cgi";
constexpr std::string_view kPtz = "PTZ.cgi";
constexpr std::string_view kCameraDptz = "Camera.DPTZ";
constexpr std::string_view kEventQuality = "StreamSetup.Event.Quality";
constexpr std::string_view kEventResolution = "StreamSetup.Event.Resolution";

/// A line without any of these is sent as it is.
constexpr std::array<std::string_view, 7> kTriggers = {"Camera.Detection.",
                                                       "Misc.External.DI.Port1.Active",
                                                       "VideoEncoderConfiguration",
                                                       "StreamSetup.Event",
                                                       kSerial,
                                                       kPtz,
                                                       kCameraDptz};

bool needsRewriting(std::string_view url) {
    for (const std::string_view trigger : kTriggers)
        if (contains(url, trigger))
            return true;
    return contains(url, "Media.Profiles.") && contains(url, suffixOf(ProfileKey::dptz));
}

/// Words of an event's quality, by the upper end of their range; below 0 and above the last is the best.
struct QualityWord {
    float upTo;
    std::string_view word;
};
constexpr std::array<QualityWord, 3> kQualityWords = {{{2.0F, "BASIC"}, {5.0F, "NORMAL"}, {7.0F, "HIGH"}}};
constexpr std::string_view kBestQuality = "BEST";

std::string_view qualityWord(float quality) {
    if (quality >= 0.0F)
        for (const QualityWord& row : kQualityWords)
            if (quality <= row.upTo)
                return row.word;
    return kBestQuality;
}

} // namespace

/// One line being rewritten.
class BaseRequest::Rewrite {
public:
    /// `work` holds the digital-PTZ value, `output` the line so far.
    Rewrite(BaseRequest& request, std::string& work, std::string& output)
        : request_(request), digitalPtz_(work), output_(output) {}

    void item(std::string_view token) {
        for (const auto rule : kRules)
            if ((this->*rule)(token))
                return;
        output_.append(token).append("&");
    }

    void finish(std::string_view url, const boost::shared_ptr<StreamIDClient>& client) {
        if (contains(url, kSerial))
            appendNumberItem("profile", required(client).profile_id());
        else if (contains(url, kPtz))
            appendNumberItem("Profile", required(client).profile_id());
        appendDigitalPtz(client);
        if (!output_.empty())
            output_.pop_back();
    }

private:
    using Rule = bool (Rewrite::*)(std::string_view);
    static const std::array<Rule, 7> kRules; // the first that matches decides

    void appendItem(std::string_view key, std::string_view value) {
        output_.append(key).append("=").append(value).append("&");
    }

    void appendNumberItem(std::string_view key, long value) {
        output_.append(key).append("=");
        appendNumber(output_, value);
        output_.append("&");
    }

    bool detectionSensitivity(std::string_view token) {
        int sensitivity = 0;
        if (!scan(token, keys::kDetectionSensitivity, "=", into(sensitivity)))
            return false;
        if (request_.getIsPellDevice() != 0)
            appendNumberItem(keys::kDetectionLs, sensitivity);
        else
            output_.append(token).append("&");
        return true;
    }

    bool alarmInput(std::string_view token) {
        std::string_view value;
        if (!scan(token, keys::kAlarmInputActive, "=", into(value)))
            return false;
        if (request_.getIsPellDevice() != 0) {
            appendItem(keys::kTriggerAlarm, value);
            appendItem(keys::kAlarmInputActive, value);
        } else if (startsWithIgnoreCase(value, "DISABLE")) {
            appendItem(keys::kTriggerAlarm, value);
        } else if (startsWithIgnoreCase(value, "N.O.") || startsWithIgnoreCase(value, "N.C.")) {
            appendItem(keys::kTriggerAlarm, "ENABLE");
            appendItem(keys::kAlarmInputActive, value);
        }
        return true;
    }

    bool encoding(std::string_view token) {
        int profile = 0;
        std::string_view value;
        if (!scanEncoderItem(token, profile, EncoderKey::encoding, into(value)))
            return false;
        appendItem(ProfileKeys(ProfileNumber{profile}).of(EncoderKey::encoding), value);
        return true;
    }

    /// The host's scale is 0 to 10, the device's starts at its minimum and goes in its steps.
    bool quality(std::string_view token) {
        int profile = 0;
        float value = 0.0F;
        if (!scanEncoderItem(token, profile, EncoderKey::quality, into(value)))
            return false;
        const float scaled = request_.getQualityStep() * value;
        const float onDevice = scaled + request_.getSettingQualitySrcMin();
        appendItem(ProfileKeys(ProfileNumber{profile}).of(EncoderKey::quality),
                   fixedText(static_cast<double>(onDevice), 2));
        return true;
    }

    /// Only the maker's own devices know event qualities, and by word.
    bool eventQuality(std::string_view token) {
        float value = 0.0F;
        if (!scan(token, kEventQuality, "=", into(value)))
            return false;
        if (startsWithIgnoreCase(viewOf(request_.getVendor()), kMakerVendor))
            appendItem(kEventQuality, qualityWord(value));
        return true;
    }

    bool eventResolution(std::string_view token) {
        int width = 0;
        int height = 0;
        if (!scan(token, kEventResolution, "=", into(width), "x", into(height)))
            return false;
        const std::string& offered = entry(request_.capability_.map, keys::kVideoResolutionNxN);
        std::array<char, kLongestResolutionName> name{};
        if (getResolutionStrByValue2(offered.c_str(), width, height, name.data(), name.size()) == 1)
            appendItem(kEventResolution, name.data());
        output_.append(kEventResolution).append("_NxN=");
        appendNumber(output_, width);
        output_.append("x");
        appendNumber(output_, height);
        output_.append("&");
        return true;
    }

    /// Goes to the end of the line, under a key that depends on the device.
    bool digitalPtz(std::string_view token) {
        std::string_view value;
        if (!scan(token, kCameraDptz, "=", into(value)))
            return false;
        digitalPtz_ = value;
        return true;
    }

    void appendDigitalPtz(const boost::shared_ptr<StreamIDClient>& client) {
        if (digitalPtz_.empty())
            return;
        if (request_.getIsIDPTZ() == 0)
            return appendItem(kCameraDptz, digitalPtz_);
        ProfileKeys keys(ProfileNumber{required(client).profile_id()});
        appendItem(keys.of(ProfileKey::dptz), digitalPtz_);
    }

    BaseRequest& request_;
    std::string& digitalPtz_;
    std::string& output_;
};

const std::array<BaseRequest::Rewrite::Rule, 7> BaseRequest::Rewrite::kRules = {
    &Rewrite::detectionSensitivity, &Rewrite::alarmInput,      &Rewrite::encoding,   &Rewrite::quality,
    &Rewrite::eventQuality,         &Rewrite::eventResolution, &Rewrite::digitalPtz,
};

int BaseRequest::recoveryUrl(unsigned int uid, char* url, char** rewritten) {
    if (getIsTovlinNVRDevice() == 1 || !needsRewriting(viewOf(url)))
        return kOk;
    const boost::shared_ptr<StreamIDClient> client = get_streamid_client(uid);
    LineCopy line(url);
    if (!line.hasText()) {
        rewrite_trace::notRewritten(3061, kNoResource);
        return kNoResource;
    }
    if (!line.hasWork()) {
        rewrite_trace::notRewritten(3068, kNoResource);
        return kNoResource;
    }

    OwnedText result;
    try {
        std::string output;
        output.reserve(line.text().size() + kAllowance);
        Rewrite rewrite(*this, line.work, output);
        for (const std::string_view token : Tokens(line.text(), "&\n"))
            rewrite.item(token);
        rewrite.finish(line.text(), client);
        result = copyText(output);
    } catch (const std::bad_alloc&) {
        // told below, like a result that could not be copied
    }
    if (!result) {
        rewrite_trace::notRewritten(3075, kNoResource);
        return kNoResource;
    }
    *rewritten = result.release();
    return kOk;
}
