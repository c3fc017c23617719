// Fits a stream user to its media profile and pushes the encoder settings to the device, once per user.

#include "cache/key_map.h"
#include "koine/BaseRequest.h"
#include "media/media_traces.h"
#include "media/profile_keys.h"
#include "media/profile_words.h"
#include "media/size_fit.h"
#include "stream/required_client.h"
#include "text/numbers.h"
#include "text/owned_text.h"
#include "text/work_text.h"

#include <array>

using namespace koine;

namespace {

constexpr const char* kSetLine = "Config.cgi?action=set";
constexpr std::size_t kLongestSettings = 2047;
constexpr std::size_t kRoomForAddress = 256;
constexpr int kAutoHeight = 720;
constexpr int kMobileHeight = 288;
constexpr const char* kH264 = "H264";
constexpr const char* kMpeg4 = "MPEG4";
constexpr int kQualityDecimals = 6;

/// A key that only a profile with this encoding has.
struct EncodingMark {
    EncoderKey key;
    const char* encoding;
};
constexpr std::array<EncodingMark, 2> kEncodingMarks = {
    {{EncoderKey::h264Profile, kH264}, {EncoderKey::mpeg4Profile, kMpeg4}}};

} // namespace

/// One synchronisation.
class BaseRequest::ProfileSync {
public:
    ProfileSync(BaseRequest& request, unsigned int uid, StreamIDClient& client)
        : request_(request), uid_(uid), client_(client) {}

    int run() {
        if (!takeModeDefaults())
            return kOk;
        FrameSize size = {0, 0};
        if (client_.getSettingH() != 0) {
            if (!takeEncodingOfProfile()) {
                media_trace::noEncoding(kRefused);
                return kRefused;
            }
            const std::string* offered = findValue(request_.media_.map, sizesKey());
            if (offered == nullptr) {
                media_trace::noSizes(kOk);
                return kOk;
            }
            size = fitSize(wantedSize(), *offered);
        }
        if (!reserveText(settings_, kLongestSettings + 1)) {
            media_trace::settingsFailed(2204, kNoResource);
            return kNoResource;
        }
        appendSettings(size);
        if (settings_.size() > kLongestSettings) {
            media_trace::settingsFailed(2243, kNoResource);
            return kNoResource;
        }
        return settings_.empty() ? kOk : send();
    }

private:
    ProfileKeys keys() const { return ProfileKeys(ProfileNumber{client_.profile_id()}); }

    EncodingKeys keysOf(std::string_view encoding) const {
        ProfileKeys profile = keys();
        return EncodingKeys(profile, encoding);
    }

    std::string sizesKey() const { return std::string(keysOf(client_.encoding()).of(EncodingKey::sizes)); }

    FrameSize wantedSize() const {
        return {static_cast<std::uint32_t>(client_.getSettingW()),
                static_cast<std::uint32_t>(client_.getSettingH())};
    }

    /// @return false when a mobile user finds no profile for it: nothing is changed then
    bool takeModeDefaults() {
        if (client_.profile_mode() == kModeAuto) {
            setDefaultHeight(kAutoHeight);
            setBestEncoding(kH264);
        } else if (client_.profile_mode() == kModeMobile) {
            if (request_.getHaveMobile() != 1)
                return false;
            setDefaultHeight(kMobileHeight);
            const bool isPlain = request_.getIsResoIndep() == 0 && request_.getIsONVIFProduct() == 0;
            setBestEncoding(isPlain ? kMpeg4 : kH264);
        }
        return true;
    }

    void setDefaultHeight(int height) {
        if (client_.getSettingH() == 0)
            client_.setSettingH(height);
    }

    /// Where the profile offers nothing known, the client falls back to its own default.
    void setBestEncoding(const char* wanted) {
        client_.setSettingEnc(request_.getAutoStrmEnc(wanted, client_.profile_id()));
    }

    /// @return is there an encoding now?
    bool takeEncodingOfProfile() {
        if (!client_.encoding().empty())
            return true;
        CgiMap& media = request_.media_.map;
        for (const EncodingMark& mark : kEncodingMarks) {
            if (!hasKey(media, keys().of(mark.key)))
                continue;
            entry(media, keys().of(EncoderKey::encoding)) = mark.encoding;
            break;
        }
        client_.setSettingEnc(entry(media, keys().of(EncoderKey::encoding)).c_str());
        return !client_.encoding().empty();
    }

    void appendSettings(FrameSize size) {
        if (!client_.encoding().empty())
            append(keys().of(EncoderKey::encoding), client_.encoding());
        if (client_.getSettingFramerate() > 0) {
            limitFrameRate();
            append(keys().of(EncoderKey::frameRateLimit), client_.getSettingFramerate());
        }
        if (size.width != 0 && size.height != 0)
            appendSize(size);
        if (client_.getSettingQuality() >= 0.0F)
            append(keys().of(EncoderKey::quality),
                   fixedText(static_cast<double>(client_.getSettingQuality()), kQualityDecimals));
        if (client_.getSettingBitrate() > 0)
            append(keys().of(EncoderKey::bitrateLimit), client_.getSettingBitrate());
        if (client_.getSettingGovLength() > 0) {
            const std::string_view encoding = client_.encoding();
            append(keysOf(encoding.empty() ? kH264 : encoding).of(EncodingKey::govLength),
                   client_.getSettingGovLength());
        }
    }

    void limitFrameRate() {
        if (client_.getSettingFramerate() < client_.getSettingFramerateSrcMin())
            client_.setSettingFramerate(client_.getSettingFramerateSrcMin());
        if (client_.getSettingFramerate() > client_.getSettingFramerateSrcMax())
            client_.setSettingFramerate(client_.getSettingFramerateSrcMax());
    }

    void appendSize(FrameSize size) {
        media_trace::newSize(static_cast<int>(uid_), request_.strm_setting_channel(), size.width,
                             size.height);
        client_.setSettingW(static_cast<int>(size.width));
        client_.setSettingH(static_cast<int>(size.height));
        append(keys().of(EncoderKey::width), std::to_string(size.width));
        append(keys().of(EncoderKey::height), std::to_string(size.height));
    }

    void append(std::string_view key, std::string_view value) {
        settings_.append("&").append(key).append("=").append(value);
    }

    void append(std::string_view key, int value) { append(key, numberAsText(value)); }

    /// The line goes the way of a line of the host, so that the caches follow it. A refusal is the device's
    /// business: the stream then comes as the device has it.
    int send() {
        std::string url;
        if (!reserveText(url, settings_.size() + kRoomForAddress)) {
            media_trace::settingsNotSent(2252, kNoResource);
            return kNoResource;
        }
        const OwnedText address(request_.deviceUrl(kSetLine));
        if (!address || !sendLine(url.append(address.get()).append(settings_)))
            media_trace::settingsNotSent(2260, kOk);
        return kOk;
    }

    bool sendLine(std::string& url) {
        std::string username = request_.get_username();
        std::string password = request_.get_password();
        OwnedText answer;
        return request_.requestHttpStr(uid_, url.data(), username.data(), password.data(), OutText(answer)) ==
               kOk;
    }

    BaseRequest& request_;
    unsigned int uid_;
    StreamIDClient& client_;
    std::string settings_;
};

int BaseRequest::syncProfileToken_1(unsigned int uid) {
    const boost::shared_ptr<StreamIDClient> held = get_streamid_client(uid);
    StreamIDClient& client = required(held);
    if (getMediaProfile() != 1) {
        media_trace::nothingToSynchronise();
        return kOk;
    }
    if (getIsTovlinNVRDevice() != 0 || client.getHaveSyncProfileToken() == 1)
        return kOk;
    // Noted before anything else: the set line below comes back here through the dispatch.
    client.setHaveSyncProfileToken(1);
    return ProfileSync(*this, uid, client).run();
}
