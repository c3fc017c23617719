#include "simulator/set_check.h"

#include "text/numbers.h"
#include "text/tokens.h"
#include "text/words.h"

#include <algorithm>
#include <array>

namespace koine::sim {
namespace {

constexpr std::array<std::string_view, 7> kSettableParts = {
    "Media.", "Video.", "Camera.", "Notification.", "Misc.", "VideoAnalytics.", "StreamSetup."};

constexpr std::string_view kProfilePrefix = "Media.Profiles.Profile";
constexpr std::string_view kEncoder = ".VideoEncoderConfiguration";
constexpr std::string_view kFrameRate = ".FrameRateLimit";

// Keys of an encoder that take numbers also while the device holds nothing under them.
constexpr std::array<std::string_view, 6> kNumericEndings = {
    ".Resolution.Width", ".Resolution.Height", ".Quality", kFrameRate, ".BitrateLimit", ".GovLength"};
constexpr std::array<std::string_view, 3> kSizeEndings = {".Encoding", ".Resolution.Width",
                                                          ".Resolution.Height"};

bool endsWith(std::string_view text, std::string_view ending) {
    return text.size() >= ending.size() && text.substr(text.size() - ending.size()) == ending;
}

template <std::size_t Count>
bool endsWithOneOf(std::string_view text, const std::array<std::string_view, Count>& endings) {
    return std::any_of(endings.begin(), endings.end(),
                       [text](std::string_view e) { return endsWith(text, e); });
}

/// Digits, perhaps with a sign and a fraction.
bool isNumber(std::string_view text) {
    if (!text.empty() && (text.front() == '-' || text.front() == '+'))
        text.remove_prefix(1);
    const std::size_t point = std::min(text.find('.'), text.size());
    const std::string_view fraction = text.substr(std::min(point + 1, text.size()));
    return point > 0 &&
           std::all_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(point), isDigit) &&
           std::all_of(fraction.begin(), fraction.end(), isDigit) &&
           (point == text.size() || !fraction.empty());
}

bool fitsOnALine(std::string_view text) {
    return std::none_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; });
}

/// The number in "Media.Profiles.Profile<number>."; 0 when there is none.
long profileOf(std::string_view key) {
    if (!startsWith(key, kProfilePrefix))
        return 0;
    const std::string_view rest = key.substr(kProfilePrefix.size());
    const LeadingLong number = leadingLong(rest);
    return isDigit(rest.empty() ? ' ' : rest.front()) && rest.substr(number.length, 1) == "." ? number.value
                                                                                              : 0;
}

bool profileExists(const PairList& media, std::string_view key) {
    const long profile = profileOf(key);
    return profile >= 1 && profile <= readLong(media.valueOf("Media.Profiles.Count"));
}

bool takesNumber(const DeviceModel& model, const PairList& list, std::string_view key) {
    if (model.takesAnyText(key))
        return false;
    const std::string* held = list.find(key);
    const bool isEncoderNumber = contains(key, kEncoder) && endsWithOneOf(key, kNumericEndings);
    return isEncoderNumber || (held != nullptr && isNumber(*held));
}

bool listHolds(std::string_view list, std::string_view entry) {
    for (const std::string_view offered : Tokens(list, ",; \n"))
        if (offered == entry)
            return true;
    return false;
}

std::string_view learned(const DeviceModel& model, std::string_view key) {
    for (const std::string_view name : {"capability", "machine"})
        if (const PairList* answer = model.answer(name))
            if (const std::string* value = answer->find(key))
                return *value;
    return {};
}

/// The sizes of an encoding: the profile's own list, else what the capabilities say of the encoding, else of
/// all of them.
std::string sizesOf(const DeviceModel& model, const PairList& media, const std::string& encoder,
                    const std::string& encoding) {
    const std::string ownList = encoder + "." + encoding + ".Resolution.NxN.List";
    for (const std::string_view list :
         {media.valueOf(ownList), learned(model, "Capability.Video." + encoding + ".Resolution.NxN"),
          learned(model, "Capability.Video.Resolution.NxN")})
        if (!list.empty())
            return std::string(list);
    return {};
}

bool profileSizeIsOffered(const DeviceModel& model, const PairList& media, const std::string& encoder) {
    const std::string encoding(media.valueOf(encoder + ".Encoding"));
    const std::string_view encodings = media.valueOf(encoder + ".EncodingList");
    if (!encoding.empty() && !encodings.empty() && !listHolds(encodings, encoding))
        return false;
    const std::string_view width = media.valueOf(encoder + ".Resolution.Width");
    const std::string_view height = media.valueOf(encoder + ".Resolution.Height");
    if (width.empty() || height.empty())
        return true;
    const std::string offered = sizesOf(model, media, encoder, encoding);
    return offered.empty() || listHolds(offered, std::string(width).append("x").append(height));
}

/// "Video.I0.H264.Resolution" takes a name that the capabilities list.
bool namedSizeIsOffered(const DeviceModel& model, std::string_view size) {
    const std::string_view names = learned(model, "Capability.Video.Resolution");
    const std::string_view machineNames = learned(model, "Video.Resolution");
    const std::string_view sizes = learned(model, "Capability.Video.Resolution.NxN");
    return (names.empty() && machineNames.empty() && sizes.empty()) || listHolds(names, size) ||
           listHolds(machineNames, size) || listHolds(sizes, size);
}

} // namespace

bool isSettable(std::string_view key) noexcept {
    return std::any_of(kSettableParts.begin(), kSettableParts.end(),
                       [key](std::string_view part) { return startsWithIgnoreCase(key, part); });
}

bool isAcceptable(const DeviceModel& model, const Settings& held, unsigned int channel,
                  const QueryItem& item) {
    if (!fitsOnALine(item.key) || !fitsOnALine(item.value) || contains(item.key, "="))
        return false;
    const PairList& list = held.listOf(item.key, channel);
    if (startsWith(item.key, kProfilePrefix) && !profileExists(list, item.key))
        return false;
    if (!item.hasValue)
        return true;
    if (takesNumber(model, list, item.key) && !isNumber(item.value))
        return false;
    return !contains(item.key, kEncoder) || !endsWith(item.key, kFrameRate) || readDouble(item.value) >= 1;
}

bool sizeIsOffered(const DeviceModel& model, const Settings& held, unsigned int channel,
                   std::string_view key) {
    const PairList& list = held.listOf(key, channel);
    const std::size_t encoder = key.find(kEncoder);
    if (encoder != std::string_view::npos)
        return !endsWithOneOf(key, kSizeEndings) ||
               profileSizeIsOffered(model, list, std::string(key.substr(0, encoder + kEncoder.size())));
    if (!startsWith(key, "Video.") || !endsWith(key, ".Resolution"))
        return true;
    return namedSizeIsOffered(model, list.valueOf(key));
}

} // namespace koine::sim
