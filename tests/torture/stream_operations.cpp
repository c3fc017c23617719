// The operations of a stream user's record and of the registry, each on its own.
#include "scenarios.h"

#include <boost/make_shared.hpp>

#include <string>

namespace koine::torture {
namespace {

constexpr OperationOn<StreamIDClient> kWrites[] = {
    [](StreamIDClient& c) { c.set_ibase_stream(boost::make_shared<Attached>()); },
    [](StreamIDClient& c) { c.set_strm_setting_channel(1); },
    [](StreamIDClient& c) { c.set_userid(1); },
    [](StreamIDClient& c) { c.set_userid_order(1); },
    [](StreamIDClient& c) { c.setVendor(kLong); },
    [](StreamIDClient& c) { c.set_profile_id(1); },
    [](StreamIDClient& c) { c.set_strm_setting_no(1); },
    [](StreamIDClient& c) { c.setInitStream("StreamSetup.Stream=RTP-Unicast&ProfileToken=ANOTHER-TOKEN"); },
    [](StreamIDClient& c) { c.ParseStreamInit(); },
    [](StreamIDClient& c) { c.setInitStream(""); },
    [](StreamIDClient& c) { c.setSettingStream(kLong); },
    [](StreamIDClient& c) { c.set_req_mode(TOVLIN_REQUEST_MODE_NONE); },
    [](StreamIDClient& c) { c.setStreamSettingCgiParam(kLong); },
    [](StreamIDClient& c) { c.setSettingStrmparam(kLong); },
    [](StreamIDClient& c) { c.setSettingStrmparam1(kLong); },
    [](StreamIDClient& c) { c.set_strmp_innrparam(kLong); },
    [](StreamIDClient& c) { c.set_strmp_pre_innrparam(kLong); },
    [](StreamIDClient& c) { c.setSettingTranPro(kLong); },
    [](StreamIDClient& c) { c.setSettingEnc(kLong); },
    [](StreamIDClient& c) { c.setSettingEnc(nullptr); },
    [](StreamIDClient& c) { c.setSettingW(1); },
    [](StreamIDClient& c) { c.setSettingH(1); },
    [](StreamIDClient& c) { c.setSettingMaxW(1); },
    [](StreamIDClient& c) { c.setSettingMaxH(1); },
    [](StreamIDClient& c) { c.setSettingMaxW_Ui(1); },
    [](StreamIDClient& c) { c.setSettingMaxH_Ui(1); },
    [](StreamIDClient& c) { c.setSettingMinW_Ui(1); },
    [](StreamIDClient& c) { c.setSettingMinH_Ui(1); },
    [](StreamIDClient& c) { c.setNowQuality(1.0F); },
    [](StreamIDClient& c) { c.setSettingQualitySrcMax(2.0F); },
    [](StreamIDClient& c) { c.setSettingQualitySrcMin(1.0F); },
    [](StreamIDClient& c) { c.setQualityStep(1.0F); },
    [](StreamIDClient& c) { c.setSettingQuality(1.0F); },
    [](StreamIDClient& c) { c.setSettingFramerateSrcMax(1); },
    [](StreamIDClient& c) { c.setSettingFramerateSrcMin(1); },
    [](StreamIDClient& c) { c.setSettingFramerate(1); },
    [](StreamIDClient& c) { c.setSettingBitrate(1); },
    [](StreamIDClient& c) { c.setSettingGovLength(1); },
    [](StreamIDClient& c) { c.set_audio_in_live(1); },
    [](StreamIDClient& c) { c.set_strm_nvr_subchannel(1); },
    [](StreamIDClient& c) { c.setHaveSyncProfileToken(1); },
    [](StreamIDClient& c) { c.get_temp_cgicache_map()[kLong] = kLong; },
    [](StreamIDClient& c) { c.setProfileMode_1(kLong); },
    [](StreamIDClient& c) { c.set_profile_token(kLong); },
};

constexpr OperationOn<StreamIDClient> kStreamReads[] = {
    [](StreamIDClient& c) { c.get_ibase_stream(); },
    [](StreamIDClient& c) { c.strm_setting_channel(); },
    [](StreamIDClient& c) { c.uid(); },
    [](StreamIDClient& c) { c.get_userid_order(); },
    [](StreamIDClient& c) { c.getVendor(); },
    [](StreamIDClient& c) { c.profile_id(); },
    [](StreamIDClient& c) { c.profile_token(); },
    [](StreamIDClient& c) { c.strm_setting_no(); },
    [](StreamIDClient& c) { c.getInitStream(); },
    [](StreamIDClient& c) { c.get_req_mode(); },
    [](StreamIDClient& c) { c.getSettingW(); },
    [](StreamIDClient& c) { c.getSettingH(); },
    [](StreamIDClient& c) { c.getSettingMaxW(); },
    [](StreamIDClient& c) { c.getSettingMaxH(); },
    [](StreamIDClient& c) { c.getSettingMaxW_Ui(); },
    [](StreamIDClient& c) { c.getSettingMaxH_Ui(); },
    [](StreamIDClient& c) { c.getSettingMinW_Ui(); },
    [](StreamIDClient& c) { c.getSettingMinH_Ui(); },
    [](StreamIDClient& c) { c.getNowQuality(); },
    [](StreamIDClient& c) { c.getSettingQualitySrcMax(); },
    [](StreamIDClient& c) { c.getSettingQualitySrcMin(); },
    [](StreamIDClient& c) { c.getQualityStep(); },
    [](StreamIDClient& c) { c.getSettingQuality(); },
    [](StreamIDClient& c) { c.getSettingFramerateSrcMax(); },
    [](StreamIDClient& c) { c.getSettingFramerateSrcMin(); },
    [](StreamIDClient& c) { c.getSettingFramerate(); },
    [](StreamIDClient& c) { c.getSettingBitrate(); },
    [](StreamIDClient& c) { c.getSettingGovLength(); },
    [](StreamIDClient& c) { c.audio_in_live(); },
    [](StreamIDClient& c) { c.strm_nvr_subchannel(); },
    [](StreamIDClient& c) { c.getHaveSyncProfileToken(); },
    [](StreamIDClient& c) { c.profile_mode(); },
    [](StreamIDClient& c) { c.setting_stream(); },
    [](StreamIDClient& c) { c.transport_protocol(); },
    [](StreamIDClient& c) { c.encoding(); },
    [](StreamIDClient& c) { c.stream_setup_map(); },
};

} // namespace

void streamUser(Subject& subject) { callEach(kWrites, *subject.device->get_streamid_client(kUid)); }
void streamUserReads(Subject& subject) { callEach(kStreamReads, *subject.device->get_streamid_client(kUid)); }

/// Standing alone: made, filled and ended while memory runs out.
void registry(Subject& /*subject*/) {
    StreamIDCenter center;
    const boost::shared_ptr<StreamIDClient> kept = center.get_streamid_client(5);
    center.get_streamid_client(4);
    center.get_streamid_client(5);
    center.get_first_streamid_client();
}

} // namespace koine::torture
