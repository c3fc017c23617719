// Both capability dialects of devices, brought into one.

#include "cache/key_map.h"
#include "cache/keys.h"
#include "koine/BaseRequest.h"
#include "platform/resolution.h"
#include "text/numbers.h"
#include "text/tokens.h"

#include <array>

using namespace koine;

namespace {

constexpr std::string_view kId = "ID";
constexpr std::string_view kNetworkId = "NetworkID";
constexpr std::string_view kDeviceId = "DeviceID";
constexpr std::string_view kUserLevel = "User-Level";
constexpr std::string_view kHighestUserLevel = "SUPERVISOR";
constexpr std::string_view kVideoServer = "VIDEO SERVER";
constexpr std::string_view kPal = "PAL";
constexpr std::string_view kResolutionUse = "Capability.Video.Resolution.Use";

/// Lists per codec that start as copies of the general one.
constexpr std::array<std::string_view, 3> kCodecLists = {"Capability.Video.H264.Resolution.NxN",
                                                         "Capability.Video.MPEG4.Resolution.NxN",
                                                         "Capability.Video.JPEG.Resolution.NxN"};

struct KeyPair {
    std::string_view from;
    std::string_view to;
};

/// Codec lists that a device gives by resolution names.
constexpr std::array<KeyPair, 2> kNamedCodecLists = {{
    {"Capability.Video.Mpeg4.Resolution", "Capability.Video.MPEG4.Resolution.NxN"},
    {"Capability.Video.Jpeg.Resolution", "Capability.Video.JPEG.Resolution.NxN"},
}};

/// Product-style keys and what they are called here.
constexpr std::array<KeyPair, 10> kMachineKeys = {{
    {"Product.Type", keys::kDevice},
    {"Product.ID", kId},
    {"Product.ID", kNetworkId},
    {"Video.Input.Num", "Capability.Video.Input.Channel"},
    {"Video.Format", keys::kVideoFormat},
    {"Video.Format.Default", "Capability.Video.MobileFormat"},
    {"Video.Resolution", keys::kVideoResolution},
    {"Audio.Input.Num", keys::kAudioInputChannel},
    {"Audio.Output.Num", "Capability.Audio.Output.Channel"},
    {"Audio.Format", "Capability.Audio.Format"},
}};

struct Default {
    std::string_view key;
    std::string_view value;
};

constexpr std::array<Default, 2> kQualityBounds = {{{keys::kQualityMax, "10"}, {keys::kQualityMin, "0"}}};

_VIDEO_SYSTEM_DEF systemNamed(std::string_view name) {
    return name == kPal ? VIDEO_SYSTEM_PAL : VIDEO_SYSTEM_NTSC;
}

/// The resolution lists of one conversion call.
///
/// A list that yields nothing repeats the one written before it in the same call: hosts have come to rely on
/// that, so the text is emptied only when a list gets its first entry.
class ResolutionLists {
public:
    explicit ResolutionLists(std::string_view separator) : separator_(separator) {}

    /// Translates resolution names into sizes; unknown names are skipped.
    const std::string& translate(std::string_view names, _VIDEO_SYSTEM_DEF system) {
        isFirst_ = true;
        for (const std::string_view token : Tokens(names, ",\n")) {
            int width = 0;
            int height = 0;
            if (getResolutionByStr(std::string(token).c_str(), system, &width, &height) == 0)
                continue;
            startEntry();
            appendNumber(text_, width);
            text_ += 'x';
            appendNumber(text_, height);
        }
        return text_;
    }

    /// Takes the entries as they are.
    const std::string& join(std::string_view entries) {
        isFirst_ = true;
        for (const std::string_view token : Tokens(entries, ",;\n")) {
            startEntry();
            text_ += token;
        }
        return text_;
    }

private:
    void startEntry() {
        if (isFirst_)
            text_.clear();
        else
            text_ += separator_;
        isFirst_ = false;
    }

    std::string_view separator_;
    std::string text_;
    bool isFirst_ = true;
};

/// The general list in sizes, for a device that gives none itself.
void translateGeneralList(CgiMap& capability, ResolutionLists& lists, _VIDEO_SYSTEM_DEF system) {
    if (hasKey(capability, keys::kVideoResolutionNxN))
        return;
    if (const std::string* names = findValue(capability, keys::kVideoResolution))
        setIfAbsent(capability, keys::kVideoResolutionNxN, lists.translate(*names, system));
}

void convertResolutionLists(CgiMap& capability, _VIDEO_SYSTEM_DEF system) {
    ResolutionLists lists(",");
    if (const std::string* used = findValue(capability, kResolutionUse))
        entry(capability, keys::kVideoResolutionNxN) = lists.join(*used);
    else
        translateGeneralList(capability, lists, system);
    if (const std::string* general = findValue(capability, keys::kVideoResolutionNxN))
        for (const std::string_view codecList : kCodecLists)
            setIfAbsent(capability, codecList, *general);
    for (const KeyPair& list : kNamedCodecLists)
        if (const std::string* names = findValue(capability, list.from))
            entry(capability, list.to) = lists.translate(*names, system);
}

void takeUserLevelAndSystem(CgiMap& capability, const CgiMap& login) {
    entry(capability, kUserLevel) = valueOr(login, kUserLevel, kHighestUserLevel);
    if (const std::string* system = findValue(login, keys::kVideoSystem))
        entry(capability, keys::kVideoSystem) = *system;
}

/// A bound of the source that the device does not tell is the host's bound.
float sourceBound(CgiMap& capability, std::string_view sourceKey, std::string_view hostKey) {
    setIfAbsent(capability, sourceKey, entry(capability, hostKey));
    return readFloat(valueOr(capability, sourceKey));
}

} // namespace

int BaseRequest::convertCgiCapability(CgiMap* capability, CgiMap* login) {
    if (capability->empty() || login->empty())
        return kOk;
    const _VIDEO_SYSTEM_DEF system = systemNamed(valueOr(*login, keys::kVideoSystem));
    if (!hasKey(*capability, kNetworkId))
        setIfAbsent(*capability, kNetworkId, entry(*capability, kId));
    convertResolutionLists(*capability, system);
    for (const Default& bound : kQualityBounds)
        setIfAbsent(*capability, bound.key, bound.value);
    setSettingQualitySrcMax(sourceBound(*capability, keys::kQualitySrcMax, keys::kQualityMax));
    setSettingQualitySrcMin(sourceBound(*capability, keys::kQualitySrcMin, keys::kQualityMin));
    takeUserLevelAndSystem(*capability, *login);
    if (valueOr(capability_.map, keys::kDevice) == kVideoServer)
        capability->erase(std::string(kDeviceId));
    return kOk;
}

int BaseRequest::convertCgiCapability(CgiMap* capability, CgiMap* machine, CgiMap* login) {
    if (capability->empty() || machine->empty() || login->empty())
        return kOk;
    for (const KeyPair& pair : kMachineKeys)
        if (const std::string* value = findValue(*machine, pair.from))
            entry(*capability, pair.to) = *value;
    // This dialect's answer always names a video system, be it an empty one.
    const _VIDEO_SYSTEM_DEF system = systemNamed(entry(*login, keys::kVideoSystem));
    ResolutionLists lists(", ");
    translateGeneralList(*capability, lists, system);
    takeUserLevelAndSystem(*capability, *login);
    return kOk;
}
