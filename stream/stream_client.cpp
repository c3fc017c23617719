// The record of one stream user: plain fields, and the texts that are also kept in the stream set-up map.

#include "koine/StreamIDClient.h"

#include "cache/key_map.h"
#include "text/owned_text.h"

using namespace koine;

namespace {

constexpr std::string_view kDefaultQualityKey = "StreamSetup.VideoEncoderConfiguration.Quality";
constexpr std::string_view kDefaultQuality = "5";
constexpr const char* kDefaultEncoding = "H264";
constexpr float kTenth = 0.1F; // the host's scale has ten units

/// A text that hosts read both from the field and from the map.
void setBoth(std::string& field, CgiMap& map, std::string_view key, const char* text) {
    field = viewOf(text);
    entry(map, key) = field;
}

} // namespace

StreamIDClient::StreamIDClient() { entry(streamSetup_, kDefaultQualityKey) = kDefaultQuality; }

StreamIDClient::~StreamIDClient() = default;

boost::shared_ptr<IBase> StreamIDClient::get_ibase_stream() { return stream_.lock(); }
// NOLINTNEXTLINE(performance-unnecessary-value-param): hosts are linked against this signature
void StreamIDClient::set_ibase_stream(boost::shared_ptr<IBase> stream) { stream_ = stream; }

// ---- Texts

const char* StreamIDClient::getVendor() { return vendor_.c_str(); }
void StreamIDClient::setVendor(const char* vendor) { vendor_ = viewOf(vendor); }
std::string StreamIDClient::getInitStream() { return initStream_; }
void StreamIDClient::setInitStream(const char* text) { initStream_ = viewOf(text); }
const char* StreamIDClient::profile_token() const { return profileToken_.c_str(); }

void StreamIDClient::setSettingEnc(const char* encoding) {
    encoding_ = encoding == nullptr ? kDefaultEncoding : encoding;
}

void StreamIDClient::setProfileMode_1(const char* mode) {
    setBoth(profileMode_, streamSetup_, "ProfileMode", mode);
}

void StreamIDClient::setSettingStream(const char* text) {
    setBoth(settingStream_, streamSetup_, "StreamSetup.Stream", text);
}

void StreamIDClient::setStreamSettingCgiParam(const char* text) {
    setBoth(streamCgiParameter_, streamSetup_, "StreamSetup.Param", text);
}

void StreamIDClient::setSettingStrmparam(const char* text) {
    setBoth(streamParameter_, streamSetup_, "StreamSetup.Stream.Param", text);
}

void StreamIDClient::setSettingStrmparam1(const char* text) {
    setBoth(streamParameter1_, streamSetup_, "StreamSetup.Stream.Param1", text);
}

void StreamIDClient::set_strmp_innrparam(const char* text) {
    setBoth(innerParameter_, streamSetup_, "StreamSetup.Stream.InnrParam", text);
}

void StreamIDClient::set_strmp_pre_innrparam(const char* text) {
    setBoth(previousInnerParameter_, streamSetup_, "StreamSetup.Stream.PreInnrParam", text);
}

void StreamIDClient::setSettingTranPro(const char* protocol) {
    setBoth(transportProtocol_, streamSetup_, "StreamSetup.Transport.Protocol", protocol);
}

// ---- The source's quality scale: the step follows its bounds

void StreamIDClient::setSettingQualitySrcMax(float quality) {
    qualitySrcMax_ = quality;
    recomputeQualityStep();
}

void StreamIDClient::setSettingQualitySrcMin(float quality) {
    qualitySrcMin_ = quality;
    recomputeQualityStep();
}

void StreamIDClient::recomputeQualityStep() {
    setQualityStep((getSettingQualitySrcMax() - getSettingQualitySrcMin()) * kTenth);
}

// ---- Numbers

void StreamIDClient::set_strm_nvr_subchannel(int channel) { nvrSubchannel_ = channel < 1 ? 1 : channel; }
int StreamIDClient::strm_nvr_subchannel() { return nvrSubchannel_; }
int StreamIDClient::strm_setting_channel() { return settingChannel_; }
void StreamIDClient::set_strm_setting_channel(int channel) { settingChannel_ = channel; }
unsigned int StreamIDClient::uid() const { return userId_; }
void StreamIDClient::set_userid(unsigned int uid) { userId_ = uid; }
int StreamIDClient::get_userid_order() const { return userIdOrder_; }
void StreamIDClient::set_userid_order(int order) { userIdOrder_ = order; }
int StreamIDClient::profile_id() const { return profileId_; }
void StreamIDClient::set_profile_id(int id) { profileId_ = id; }
int StreamIDClient::strm_setting_no() { return settingStreamNumber_; }
void StreamIDClient::set_strm_setting_no(int number) { settingStreamNumber_ = number; }
_TOVLIN_REQUEST_MODE_DEF StreamIDClient::get_req_mode() const { return requestMode_; }
void StreamIDClient::set_req_mode(_TOVLIN_REQUEST_MODE_DEF mode) { requestMode_ = mode; }
int StreamIDClient::audio_in_live() const { return audioInLive_; }
void StreamIDClient::set_audio_in_live(int live) { audioInLive_ = live; }
int StreamIDClient::getHaveSyncProfileToken() { return haveSyncProfileToken_; }
void StreamIDClient::setHaveSyncProfileToken(int synchronised) { haveSyncProfileToken_ = synchronised; }
int StreamIDClient::getSettingW() { return width_; }
void StreamIDClient::setSettingW(int width) { width_ = width; }
int StreamIDClient::getSettingH() { return height_; }
void StreamIDClient::setSettingH(int height) { height_ = height; }
int StreamIDClient::getSettingMaxW() { return maxWidth_; }
void StreamIDClient::setSettingMaxW(int width) { maxWidth_ = width; }
int StreamIDClient::getSettingMaxH() { return maxHeight_; }
void StreamIDClient::setSettingMaxH(int height) { maxHeight_ = height; }
int StreamIDClient::getSettingMaxW_Ui() { return maxWidthUi_; }
void StreamIDClient::setSettingMaxW_Ui(int width) { maxWidthUi_ = width; }
int StreamIDClient::getSettingMaxH_Ui() { return maxHeightUi_; }
void StreamIDClient::setSettingMaxH_Ui(int height) { maxHeightUi_ = height; }
int StreamIDClient::getSettingMinW_Ui() { return minWidthUi_; }
void StreamIDClient::setSettingMinW_Ui(int width) { minWidthUi_ = width; }
int StreamIDClient::getSettingMinH_Ui() { return minHeightUi_; }
void StreamIDClient::setSettingMinH_Ui(int height) { minHeightUi_ = height; }
float StreamIDClient::getNowQuality() { return nowQuality_; }
void StreamIDClient::setNowQuality(float quality) { nowQuality_ = quality; }
float StreamIDClient::getQualityStep() { return qualityStep_; }
void StreamIDClient::setQualityStep(float step) { qualityStep_ = step; }
float StreamIDClient::getSettingQuality() { return quality_; }
void StreamIDClient::setSettingQuality(float quality) { quality_ = quality; }
int StreamIDClient::getSettingFramerateSrcMax() { return frameRateSrcMax_; }
void StreamIDClient::setSettingFramerateSrcMax(int rate) { frameRateSrcMax_ = rate; }
int StreamIDClient::getSettingFramerateSrcMin() { return frameRateSrcMin_; }
void StreamIDClient::setSettingFramerateSrcMin(int rate) { frameRateSrcMin_ = rate; }
int StreamIDClient::getSettingFramerate() { return frameRate_; }
void StreamIDClient::setSettingFramerate(int rate) { frameRate_ = rate; }
int StreamIDClient::getSettingBitrate() { return bitrate_; }
void StreamIDClient::setSettingBitrate(int bitrate) { bitrate_ = bitrate; }
int StreamIDClient::getSettingGovLength() { return govLength_; }
void StreamIDClient::setSettingGovLength(int length) { govLength_ = length; }
float StreamIDClient::getSettingQualitySrcMax() { return qualitySrcMax_; }
float StreamIDClient::getSettingQualitySrcMin() { return qualitySrcMin_; }

CgiMap& StreamIDClient::get_temp_cgicache_map() { return temporaryCgiCache_; }
