// One-line reads and writes of the members. Everything else in the library goes through these, never to the
// members, so that a device class may replace any of them.

#include "koine/BaseRequest.h"
#include "text/owned_text.h"
#include "text/words.h"

#include <array>

using namespace koine;

// ---- Connection data

const char* BaseRequest::server_address() const { return serverAddress_.c_str(); }
std::string BaseRequest::server_address_2() { return serverAddress_; }
void BaseRequest::set_server_address(const char* address) { serverAddress_ = viewOf(address); }
unsigned int BaseRequest::server_port() const { return serverPort_; }
void BaseRequest::set_server_port(unsigned int port) { serverPort_ = port; }
unsigned int BaseRequest::stream_port() { return streamPort_; }
void BaseRequest::set_stream_port(unsigned int port) { streamPort_ = port; }
const char* BaseRequest::get_login_username() { return username_.c_str(); }
std::string BaseRequest::get_username() { return username_; }
void BaseRequest::set_username(const char* username) { username_ = viewOf(username); }
const char* BaseRequest::get_login_password() { return password_.c_str(); }
std::string BaseRequest::get_password() { return password_; }
void BaseRequest::set_password(const char* password) { password_ = viewOf(password); }

// ---- What the host knows

const char* BaseRequest::getVendor() { return vendor_.c_str(); }
void BaseRequest::setVendor(const char* vendor) { vendor_ = viewOf(vendor); }
const char* BaseRequest::model_name(unsigned int /*uid*/) { return modelName_.c_str(); }
std::string BaseRequest::get_model_name() { return modelName_; }
void BaseRequest::set_model_name(const char* name) { modelName_ = viewOf(name); }
IBase* BaseRequest::getStreamLive() { return streamLive_; }
void BaseRequest::setStreamLive(IBase* live) { streamLive_ = live; }
int BaseRequest::strm_setting_channel() { return settingChannel_; }
void BaseRequest::set_strm_setting_channel(int channel) { settingChannel_ = channel; }
int BaseRequest::strm_nvr_subchannel() { return nvrSubchannel_; }
void BaseRequest::set_strm_nvr_subchannel(int channel) { nvrSubchannel_ = channel < 1 ? 1 : channel; }

// ---- Limits of the source (the quality setters: cache/quality_bounds.cpp)

float BaseRequest::getSettingQualitySrcMax() { return qualitySrcMax_; }
float BaseRequest::getSettingQualitySrcMin() { return qualitySrcMin_; }
float BaseRequest::getQualityStep() { return qualityStep_; }
int BaseRequest::getSettingFramerateSrcMax() { return frameRateSrcMax_; }
void BaseRequest::setSettingFramerateSrcMax(int rate) { frameRateSrcMax_ = rate; }
int BaseRequest::getSettingFramerateSrcMin() { return frameRateSrcMin_; }
void BaseRequest::setSettingFramerateSrcMin(int rate) { frameRateSrcMin_ = rate; }

// ---- What the device is

int BaseRequest::getMediaProfile() { return mediaProfile_; }
void BaseRequest::setMediaProfile(int driven) { mediaProfile_ = driven; }
int BaseRequest::getProfileCount() { return profileCount_; }
void BaseRequest::setProfileCount(int count) { profileCount_ = count; }
int BaseRequest::getIsONVIFProduct() { return isOnvifProduct_; }
void BaseRequest::setIsONVIFProduct(int is) { isOnvifProduct_ = is; }
int BaseRequest::getIs331_578Product() { return is331_578Product_; }
void BaseRequest::setIs331_578Product(int is) { is331_578Product_ = is; }
int BaseRequest::getIs5240Product() { return is5240Product_; }
void BaseRequest::setIs5240Product(int is) { is5240Product_ = is; }
int BaseRequest::getIsPellDevice() { return isPellDevice_; }
void BaseRequest::setIsPellDevice(int is) { isPellDevice_ = is; }
int BaseRequest::getIsTovlinNVRDevice() { return isTovlinNvrDevice_; }
void BaseRequest::setIsTovlinNVRDevice(int is) { isTovlinNvrDevice_ = is; }
int BaseRequest::getIsTovlinDevice() { return isTovlinDevice_; }
void BaseRequest::setIsTovlinDevice(int is) { isTovlinDevice_ = is; }
int BaseRequest::getIsResoIndep() { return isResoIndep_; }
void BaseRequest::setIsResoIndep(int is) { isResoIndep_ = is; }
int BaseRequest::getIsRemoteEventTrigger() { return isRemoteEventTrigger_; }
void BaseRequest::setIsIsRemoteEventTrigger(int is) { isRemoteEventTrigger_ = is; }
int BaseRequest::getIsTlProfile() { return isTlProfile_; }
void BaseRequest::setIsTlProfile(int is) { isTlProfile_ = is; }
int BaseRequest::getHasVA() { return hasVideoAnalytics_; }
void BaseRequest::setHasVA(int has) { hasVideoAnalytics_ = has; }
int BaseRequest::getIsIDPTZ() { return isIdPtz_; }
void BaseRequest::setIsIDPTZ(int is) { isIdPtz_ = is; }
int BaseRequest::getHaveMobile() { return haveMobile_; }
void BaseRequest::setHaveMobile(int have) { haveMobile_ = have; }

namespace {

struct SlaveKind {
    std::string_view keyword;
    int number;
};

constexpr std::array<SlaveKind, 3> kSlaveKinds = {{{"IPCAM", 0}, {"NVR", 1}, {"DVR", 2}}};

} // namespace

int BaseRequest::get_which_slave() { return whichSlave_; }

void BaseRequest::set_which_slave(const char* kind) {
    for (const SlaveKind& known : kSlaveKinds) {
        if (!startsWithIgnoreCase(viewOf(kind), known.keyword))
            continue;
        whichSlave_ = known.number;
        return;
    }
}
