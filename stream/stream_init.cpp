// The start of a stream: the caches are filled, the profile is chosen and synchronised.

#include "cache/key_map.h"
#include "cache/keys.h"
#include "koine/BaseRequest.h"
#include "media/profile_count.h"
#include "media/profile_keys.h"
#include "media/profile_words.h"
#include "stream/first_profile.h"
#include "stream/required_client.h"
#include "stream/stream_traces.h"
#include "text/numbers.h"
#include "text/owned_text.h"
#include "text/words.h"

#include <array>

using namespace koine;

namespace {

constexpr std::string_view kOnlyMeta = "ONLY_META";
constexpr std::string_view kOnlyStatus = "ONLY_STATUS";
constexpr std::string_view kFirstToken = "PROFILE-1";
constexpr std::string_view kMobileToken = "PROFILE-2";
constexpr int kFirstProfile = 1;
constexpr int kMobileProfile = 2;

/// Products whose streams come over TCP only, by a part of their name.
constexpr std::array<std::string_view, 2> kTcpProducts = {"ONVIF_Probe", "ONVIF_Samsung"};

bool needsTcp(std::string_view productName) {
    for (const std::string_view product : kTcpProducts)
        if (contains(productName, product))
            return true;
    return false;
}

/// The limits that the device taught the request hold for the user. The request's step comes after the
/// bounds, because setting those computes one.
void copyLimits(BaseRequest& request, StreamIDClient& client) {
    client.setSettingQualitySrcMax(request.getSettingQualitySrcMax());
    client.setSettingQualitySrcMin(request.getSettingQualitySrcMin());
    client.setQualityStep(request.getQualityStep());
    client.setSettingFramerateSrcMax(request.getSettingFramerateSrcMax());
    client.setSettingFramerateSrcMin(request.getSettingFramerateSrcMin());
}

void takeDefaultProfile(StreamIDClient& client, std::string_view token, int profile) {
    client.set_profile_token(token);
    client.set_profile_id(profile);
}

/// For a device without media profiles.
void takeDefaultProfile(StreamIDClient& client) {
    if (client.profile_mode() == kModeMobile)
        takeDefaultProfile(client, kMobileToken, kMobileProfile);
    else if (viewOf(client.profile_token()).empty())
        takeDefaultProfile(client, kFirstToken, kFirstProfile);
}

void takeQuality(const CgiMap& media, int count, StreamIDClient& client) {
    const int profile = client.profile_id();
    if (profile < 1 || profile > count)
        return;
    const std::string* quality =
        findValue(media, ProfileKeys(ProfileNumber{profile}).of(EncoderKey::quality));
    if (quality != nullptr)
        client.setNowQuality(readFloat(*quality));
}

} // namespace

/// One start.
class BaseRequest::StreamStart {
public:
    StreamStart(BaseRequest& request, unsigned int uid, StreamIDClient& client)
        : request_(request), uid_(uid), client_(client) {}

    int run() {
        request_.set_strm_setting_channel(client_.strm_setting_channel());
        request_.set_strm_nvr_subchannel(client_.strm_nvr_subchannel());
        if (const int result = request_.cacheCgi(uid_); result != kOk) {
            stream_trace::cachesNotFilled(__LINE__, user(), client_.strm_setting_channel(),
                                          client_.getInitStream().c_str());
            return result;
        }
        copyLimits(request_, client_);
        if (client_.setting_stream().empty())
            return kOk; // the user names no stream: nothing more to settle
        if (request_.checkStreamSupport(uid_) == 0) {
            stream_trace::notSupported(__LINE__, user(), channel());
            return kRefused;
        }
        if (needsTcp(entry(request_.login_.map, keys::kProductName)))
            client_.setSettingTranPro("TCP");
        if (request_.getMediaProfile() != 1) {
            stream_trace::noMedia(__LINE__);
            takeDefaultProfile(client_);
            return kOk;
        }
        if (const int result = request_.searchAvailableProfileToken(uid_); result != kOk) {
            stream_trace::profileNotFound(__LINE__, user(), channel());
            return result;
        }
        settleProfile();
        synchronise();
        return kOk;
    }

private:
    int user() const { return static_cast<int>(uid_); }
    int channel() { return request_.strm_setting_channel(); }

    void settleProfile() {
        CgiMap& media = request_.media_.map;
        const int count = boundedProfileCount(entry(media, kProfileCountKey));
        if (count <= 0)
            return;
        const int found = firstProfileWith(media, count, ProfileKey::token, viewOf(client_.profile_token()));
        const int profile = found != 0 ? found : count; // the last one serves who names none
        client_.set_profile_token(entry(media, ProfileKeys(ProfileNumber{profile}).of(ProfileKey::token)));
        client_.set_profile_id(profile);
        stream_trace::profileTaken(__LINE__, user(), channel(), client_.profile_token(), client_.profile_id(),
                                   count);
        takeQuality(media, count, client_);
    }

    /// A stream without pictures has nothing to synchronise; one that cannot be synchronised starts all the
    /// same, with what the device has.
    void synchronise() {
        if (client_.profile_mode() == kOnlyMeta)
            stream_trace::onlyMeta(__LINE__, user(), channel());
        else if (client_.profile_mode() == kOnlyStatus)
            stream_trace::onlyStatus(__LINE__, user(), channel());
        else if (request_.syncProfileToken(uid_) != kOk)
            stream_trace::notSynchronised(__LINE__, user(), channel());
    }

    BaseRequest& request_;
    unsigned int uid_;
    StreamIDClient& client_;
};

int BaseRequest::checkStreamSupport(unsigned int uid) {
    const boost::shared_ptr<StreamIDClient> client = get_streamid_client(uid);
    if (required(client).profile_mode() != kOnlyMeta)
        return 1;
    return getHasVA() != 0 ? 1 : 0;
}

int BaseRequest::HandleInit(unsigned int uid) {
    const boost::shared_ptr<StreamIDClient> client = get_streamid_client(uid);
    return StreamStart(*this, uid, required(client)).run();
}
