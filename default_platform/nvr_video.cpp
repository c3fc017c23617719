#include "platform/resolution.h"

#include "default_platform/characters.h"
#include "default_platform/resolution_table.h"
#include "text/numbers.h"
#include "text/owned_text.h"
#include "text/shortage.h"

#include <array>
#include <string>
#include <string_view>

namespace {

using koine::platform::Size;

/// The encoders of these devices; each keeps its own settings under "Video.I0.<name>.".
struct Encoder {
    std::string_view name;
    bool hasRateControl; ///< "BitRate" and "GovLength": single pictures have neither
};

constexpr std::array kEncoders = {Encoder{"H264", true}, Encoder{"JPEG", false}, Encoder{"MPEG4", true}};

// What "%g" prints without an exponent.
constexpr float kQualityEnd = 1e6F;

const Encoder* encoderOf(std::string_view encoding) {
    for (const Encoder& encoder : kEncoders)
        if (koine::platform::sameWord(encoder.name, encoding))
            return &encoder;
    return nullptr;
}

/// What the device calls the size; empty when it cannot be told of it.
std::string resolutionText(std::string_view list, bool anySize, Size size) {
    const std::string_view entry = koine::platform::entryOfSize(list, size);
    if (!entry.empty() || !anySize || size.width <= 0 || size.height <= 0)
        return std::string(entry);
    return koine::numberAsText(size.width) + 'x' + koine::numberAsText(size.height);
}

/// The items of one encoder, in the form in which they follow other items of a request line. One value that
/// cannot be expressed makes the whole record useless: half a setting would be worse than none.
class VideoKeys {
public:
    explicit VideoKeys(const Encoder& encoder) : encoder_(encoder) {}

    void addSize(std::string_view list, bool anySize, Size size) {
        if (size == Size{})
            return;
        const std::string resolution = resolutionText(list, anySize, size);
        add("Resolution", resolution, !resolution.empty());
    }

    void addQuality(float quality) {
        if (quality >= 0)
            add("Quality", koine::generalText(quality), quality < kQualityEnd);
    }

    void addNumber(std::string_view key, int value) {
        if (value != 0)
            add(key, koine::numberAsText(value), value > 0);
    }

    koine::OwnedText text() const { return usable_ && !text_.empty() ? koine::copyText(text_) : nullptr; }

private:
    void add(std::string_view key, std::string_view value, bool usable) {
        usable_ = usable_ && usable;
        text_.append("&Video.I0.").append(encoder_.name).append(1, '.').append(key);
        text_.append(1, '=').append(value);
    }

    const Encoder& encoder_;
    std::string text_;
    bool usable_ = true;
};

} // namespace

char* getConfigVideoStr_TovlinNVR(const char* resolutionList, int resoIndep, char* encoding, int width,
                                  int height, float quality, int frameRate, int bitrate, int govLength) {
    const Encoder* encoder = encoderOf(koine::viewOf(encoding));
    if (encoder == nullptr)
        return nullptr;
    return koine::orOnShortage<char*>(nullptr, [&] {
        VideoKeys keys(*encoder);
        keys.addSize(koine::viewOf(resolutionList), resoIndep != 0, {width, height});
        keys.addQuality(quality);
        keys.addNumber("FrameRate", frameRate);
        if (encoder->hasRateControl) {
            keys.addNumber("BitRate", bitrate);
            keys.addNumber("GovLength", govLength);
        }
        return keys.text().release();
    });
}
