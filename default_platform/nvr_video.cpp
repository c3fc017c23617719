#include "platform/resolution.h"

#include "default_platform/resolution_table.h"
#include "default_platform/shortage.h"
#include "text/numbers.h"
#include "text/owned_text.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace {

using koine::platform::Size;

constexpr int kQualityDecimals = 2;

/// The keys of one encoder: "&Video.I0.<key>", with the encoding in between where the device keeps a value
/// per encoding.
class VideoKeys {
public:
    explicit VideoKeys(std::string_view encoding) : encoding_(encoding) {}

    void add(std::string_view key, std::string_view value) {
        text_ += "&Video.I0.";
        if (!encoding_.empty()) {
            text_ += encoding_;
            text_ += '.';
        }
        text_ += key;
        text_ += '=';
        text_ += value;
    }

    void addGiven(std::string_view key, int value) {
        if (value != 0)
            add(key, koine::numberAsText(value));
    }

    const std::string& text() const { return text_; }

private:
    std::string_view encoding_;
    std::string text_;
};

/// What the device calls the size; nothing when it cannot be told of it.
std::optional<std::string> resolutionText(std::string_view list, bool anySize, Size size) {
    const std::string_view entry = koine::platform::entryOfSize(list, size);
    if (!entry.empty())
        return std::string(entry);
    if (!anySize || size.width <= 0 || size.height <= 0)
        return std::nullopt;
    return koine::numberAsText(size.width) + 'x' + koine::numberAsText(size.height);
}

struct Record {
    std::string_view encoding;
    Size size;
    float quality;
    int frameRate;
    int bitrate;
    int govLength;
};

std::optional<std::string> videoKeys(std::string_view list, bool anySize, const Record& record) {
    VideoKeys keys(record.encoding);
    if (record.size.width != 0 || record.size.height != 0) {
        const std::optional<std::string> resolution = resolutionText(list, anySize, record.size);
        if (!resolution)
            return std::nullopt;
        keys.add("Resolution", *resolution);
    }
    if (record.quality >= 0)
        keys.add("Quality", koine::fixedText(static_cast<double>(record.quality), kQualityDecimals));
    keys.addGiven("FrameRate", record.frameRate);
    keys.addGiven("BitRate", record.bitrate);
    keys.addGiven("GovLength", record.govLength);
    return keys.text();
}

koine::OwnedText videoText(std::string_view list, bool anySize, const Record& record) {
    const std::optional<std::string> keys = videoKeys(list, anySize, record);
    return keys && !keys->empty() ? koine::copyText(*keys) : nullptr;
}

} // namespace

char* getConfigVideoStr_TovlinNVR(const char* resolutionList, int resoIndep, char* encoding, int width,
                                  int height, float quality, int frameRate, int bitrate, int govLength) {
    const Record record{koine::viewOf(encoding), {width, height}, quality, frameRate, bitrate, govLength};
    return koine::platform::orOnShortage<char*>(
        nullptr, [&] { return videoText(koine::viewOf(resolutionList), resoIndep != 0, record).release(); });
}
