// Adjustments of the configuration categories for the maker's own devices.

#include "cache/key_map.h"
#include "cache/keys.h"
#include "koine/BaseRequest.h"
#include "text/owned_text.h"
#include "text/words.h"

#include <array>

using namespace koine;

namespace {

struct Setting {
    std::string_view key;
    std::string_view value;
};

/// Picture settings of the Pell kind go from -5 to 5, whatever the device says.
constexpr std::array<Setting, 12> kPellPicture = {{
    {"Video.I0.BrightnessMax", "5"},
    {"Video.I0.BrightnessMin", "-5"},
    {"Video.I0.ContrastMax", "5"},
    {"Video.I0.ContrastMin", "-5"},
    {"Video.I0.SaturationMax", "5"},
    {"Video.I0.SaturationMin", "-5"},
    {"Video.I0.HueMax", "5"},
    {"Video.I0.HueMin", "-5"},
    {"Video.I0.BrightnessDefault", "0"},
    {"Video.I0.ContrastDefault", "0"},
    {"Video.I0.SaturationDefault", "0"},
    {"Video.I0.HueDefault", "0"},
}};

constexpr std::string_view kDisabled = "DISABLE";

bool isMakers(BaseRequest& request) {
    return startsWithIgnoreCase(viewOf(request.getVendor()), kMakerVendor);
}

} // namespace

int BaseRequest::convertCgiVideo(CgiMap* video) {
    if (video->empty() || !isMakers(*this) || getIsPellDevice() != 1)
        return kOk;
    for (const Setting& setting : kPellPicture)
        entry(*video, setting.key) = setting.value;
    return kOk;
}

int BaseRequest::convertCgiCamera(CgiMap* camera) {
    if (camera->empty() || !isMakers(*this) || getIsPellDevice() != 1)
        return kOk;
    const std::string sensitivity = entry(*camera, keys::kDetectionLs);
    entry(*camera, keys::kDetectionSensitivity) = sensitivity;
    return kOk;
}

int BaseRequest::convertCgiMisc(CgiMap* misc, CgiMap* notification) {
    if (misc->empty() || notification->empty() || !isMakers(*this))
        return kOk;
    const std::string& alarm = entry(*notification, keys::kTriggerAlarm);
    if (getIsPellDevice() == 1)
        entry(*misc, keys::kAlarmInputActive) = alarm;
    else if (alarm == kDisabled)
        entry(*misc, keys::kAlarmInputActive) = kDisabled;
    return kOk;
}
