#include "bench/device_texts.h"

#include "koine/types.h"

#include <algorithm>
#include <array>

namespace koine::bench {
namespace {

constexpr std::array<const char*, 3> kEncodings = {"H264", "MPEG4", "JPEG"};

/// "007": numbers that sort like texts.
std::string digits(int number, std::size_t width) {
    std::string text = std::to_string(number);
    text.insert(0, width - std::min(width, text.size()), '0');
    return text;
}

std::string answerText(const CgiMap& pairs) {
    std::string text = "0\nOK\n";
    for (const auto& [key, value] : pairs)
        text.append(key).append("=").append(value).append("\n");
    return text;
}

/// Keys and values as long as those of real devices, until there are so many.
void fillUp(CgiMap& pairs, const std::string& prefix, int keys) {
    for (int number = 0; static_cast<int>(pairs.size()) < keys; ++number)
        pairs[prefix + ".Group" + digits(number / 16, 3) + ".Setting" + digits(number, 4)] =
            "Value-" + digits(number, 4);
}

/// From "1920x1080" downwards, all different.
std::string sizeList(int sizes) {
    std::string list;
    for (int number = 0; number < sizes; ++number) {
        const int step = sizes - number;
        if (!list.empty())
            list += ",";
        list += std::to_string(160 + step * 16) + "x" + std::to_string(120 + step * 9);
    }
    return list;
}

std::string encodingList(int encodings) {
    std::string list;
    for (int number = 0; number < encodings; ++number)
        list.append(list.empty() ? "" : ",").append(kEncodings.at(static_cast<std::size_t>(number)));
    return list;
}

void addProfile(CgiMap& pairs, int number, int encodings, const std::string& sizes) {
    const std::string profile = "Media.Profiles.Profile" + std::to_string(number);
    const std::string encoder = profile + ".VideoEncoderConfiguration";
    pairs[profile + ".token"] = "PROFILE-" + std::to_string(number);
    pairs[profile + ".Name"] = "Profile " + std::to_string(number);
    pairs[profile + ".VideoSourceConfiguration.token"] = "VSC-0";
    pairs[profile + ".VideoSourceConfiguration.SourceToken"] = "VS-0";
    pairs[encoder + ".token"] = "VEC-" + std::to_string(number);
    pairs[encoder + ".Encoding"] = kEncodings.front();
    pairs[encoder + ".EncodingList"] = encodingList(encodings);
    pairs[encoder + ".Resolution.Width"] = "176";
    pairs[encoder + ".Resolution.Height"] = "129";
    pairs[encoder + ".Quality"] = "60";
    pairs[encoder + ".RateControl.FrameRateLimit"] = "25";
    pairs[encoder + ".RateControl.BitrateLimit"] = "4000";
    for (int at = 0; at < encodings; ++at) {
        const std::string encoding = encoder + "." + kEncodings.at(static_cast<std::size_t>(at));
        pairs[encoding + ".Resolution.NxN.List"] = sizes;
        pairs[encoding + ".GovLength"] = "25";
    }
}

} // namespace

DeviceShape withKeys(int keys) {
    DeviceShape shape;
    shape.loginKeys = keys;
    shape.capabilityKeys = keys;
    shape.categoryKeys = keys;
    return shape;
}

std::string loginText(int keys) {
    CgiMap pairs = {{"Product-ID", "IPCAM-400"}, {"Product-Name", "Camera 400"}, {"Video-System", "NTSC"}};
    fillUp(pairs, "Login", keys);
    return answerText(pairs);
}

std::string capabilityText(int keys, int sizes) {
    CgiMap pairs = {{"Capability.Audio.Input.Channel", "1"},
                    {"Capability.Function", "AudioVolume"},
                    {"Capability.Video.Format", encodingList(3)},
                    {"Capability.Video.Resolution", sizeList(sizes)},
                    {"Device", "IPCAM"},
                    {"ID", "IPCAM-400"}};
    fillUp(pairs, "Capability", keys);
    return answerText(pairs);
}

std::string categoryText(const std::string& category, int keys) {
    CgiMap pairs;
    fillUp(pairs, category, keys);
    return answerText(pairs);
}

std::string mediaText(int profiles, int encodings, int sizes) {
    CgiMap pairs = {{"Media.Profiles.Count", std::to_string(profiles)}};
    const std::string list = sizeList(sizes);
    for (int number = 1; number <= profiles; ++number)
        addProfile(pairs, number, encodings, list);
    return answerText(pairs);
}

std::shared_ptr<const DeviceTexts> deviceTexts(const DeviceShape& shape) {
    DeviceTexts texts = {
        {"Login.cgi", loginText(shape.loginKeys)},
        {"Capability.cgi", capabilityText(shape.capabilityKeys, shape.sizes)},
        {"category=Media.", mediaText(shape.profiles, shape.encodings, shape.sizes)},
        {"Config.cgi?action=set", "0\nOK\n"},
        {"PTZ.cgi", "0\nOK\n"},
    };
    for (const char* category : {"Video", "Camera", "Notification", "Misc", "VideoAnalytics"})
        texts["category=" + std::string(category) + "."] = categoryText(category, shape.categoryKeys);
    return std::make_shared<const DeviceTexts>(std::move(texts));
}

} // namespace koine::bench
