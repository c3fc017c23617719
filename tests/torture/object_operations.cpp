// The operations of the request object, each on its own.
#include "scenarios.h"

#include "text/owned_text.h"

#include <boost/make_shared.hpp>

#include <string>

namespace koine::torture {
namespace {

constexpr OperationOn<BaseRequest> kSettings[] = {
    [](BaseRequest& r) { r.setVendor(kLong); },
    [](BaseRequest& r) { r.set_username(kLong); },
    [](BaseRequest& r) { r.set_password(kLong); },
    [](BaseRequest& r) { r.set_model_name(kLong); },
    [](BaseRequest& r) { r.set_server_address(kLong); },
    [](BaseRequest& r) { r.set_server_port(8080); },
    [](BaseRequest& r) { r.set_stream_port(554); },
    [](BaseRequest& r) { r.set_strm_setting_channel(0); },
    [](BaseRequest& r) { r.set_strm_nvr_subchannel(0); },
    [](BaseRequest& r) { r.set_which_slave("IPCAM"); },
    [](BaseRequest& r) { r.setSettingQualitySrcMax(123.25F); },
    [](BaseRequest& r) { r.setSettingQualitySrcMin(0.125F); },
    [](BaseRequest& r) { r.setQualityStep(1.0F); },
    [](BaseRequest& r) { r.setSettingFramerateSrcMax(30); },
    [](BaseRequest& r) { r.setSettingFramerateSrcMin(1); },
    [](BaseRequest& r) { r.setMediaProfile(r.getMediaProfile()); },
    [](BaseRequest& r) { r.setProfileCount(r.getProfileCount()); },
    [](BaseRequest& r) { r.setIsONVIFProduct(0); },
    [](BaseRequest& r) { r.setIs331_578Product(0); },
    [](BaseRequest& r) { r.setIs5240Product(0); },
    [](BaseRequest& r) { r.setIsPellDevice(0); },
    [](BaseRequest& r) { r.setIsTovlinNVRDevice(0); },
    [](BaseRequest& r) { r.setIsTovlinDevice(0); },
    [](BaseRequest& r) { r.setIsResoIndep(0); },
    [](BaseRequest& r) { r.setIsIsRemoteEventTrigger(0); },
    [](BaseRequest& r) { r.setIsTlProfile(0); },
    [](BaseRequest& r) { r.setHasVA(1); },
    [](BaseRequest& r) { r.setIsIDPTZ(0); },
    [](BaseRequest& r) { r.setHaveMobile(0); },
    [](BaseRequest& r) { r.setStreamLive(nullptr); },
    [](BaseRequest& r) { r.setIBaseStream(kOther, boost::make_shared<Attached>()); },
    [](BaseRequest& r) { r.init(kOther, kLong); },
    [](BaseRequest& r) { r.init(kOther, ""); },
    [](BaseRequest& r) { r.paserCapabilitySupport(); },
};

constexpr OperationOn<BaseRequest> kObjectReads[] = {
    [](BaseRequest& r) { r.get_username(); },
    [](BaseRequest& r) { r.get_password(); },
    [](BaseRequest& r) { r.get_login_username(); },
    [](BaseRequest& r) { r.get_login_password(); },
    [](BaseRequest& r) { r.get_model_name(); },
    [](BaseRequest& r) { r.server_address(); },
    [](BaseRequest& r) { r.server_address_2(); },
    [](BaseRequest& r) { r.server_port(); },
    [](BaseRequest& r) { r.stream_port(); },
    [](BaseRequest& r) { r.getVendor(); },
    [](BaseRequest& r) { r.getStreamLive(); },
    [](BaseRequest& r) { r.strm_setting_channel(); },
    [](BaseRequest& r) { r.strm_nvr_subchannel(); },
    [](BaseRequest& r) { r.getSettingQualitySrcMax(); },
    [](BaseRequest& r) { r.getSettingQualitySrcMin(); },
    [](BaseRequest& r) { r.getQualityStep(); },
    [](BaseRequest& r) { r.getSettingFramerateSrcMax(); },
    [](BaseRequest& r) { r.getSettingFramerateSrcMin(); },
    [](BaseRequest& r) { r.getMediaProfile(); },
    [](BaseRequest& r) { r.getProfileCount(); },
    [](BaseRequest& r) { r.getIsONVIFProduct(); },
    [](BaseRequest& r) { r.getIs331_578Product(); },
    [](BaseRequest& r) { r.getIs5240Product(); },
    [](BaseRequest& r) { r.getIsPellDevice(); },
    [](BaseRequest& r) { r.getIsTovlinNVRDevice(); },
    [](BaseRequest& r) { r.getIsTovlinDevice(); },
    [](BaseRequest& r) { r.get_which_slave(); },
    [](BaseRequest& r) { r.getIsResoIndep(); },
    [](BaseRequest& r) { r.getIsRemoteEventTrigger(); },
    [](BaseRequest& r) { r.getIsTlProfile(); },
    [](BaseRequest& r) { r.getHasVA(); },
    [](BaseRequest& r) { r.getIsIDPTZ(); },
    [](BaseRequest& r) { r.getHaveMobile(); },
    [](BaseRequest& r) { r.getLock(); },
    [](BaseRequest& r) { r.forbiRequest(); },
    // Each of the rest makes the record of a user whom nobody named before.
    [](BaseRequest& r) { r.strm_setting_channel(20); },
    [](BaseRequest& r) { r.strm_setting_no(21); },
    [](BaseRequest& r) { r.model_name(22); },
    [](BaseRequest& r) { r.getSettingMaxW(23); },
    [](BaseRequest& r) { r.getSettingMaxH(24); },
    [](BaseRequest& r) { r.getNowQuality(25); },
    [](BaseRequest& r) { r.getQualityStep(26); },
    [](BaseRequest& r) { r.profile_id(27); },
    [](BaseRequest& r) { r.profile_token(28); },
    [](BaseRequest& r) { r.audio_in_live(29); },
    [](BaseRequest& r) { r.GetCgiMapStr(30, kLong); },
    [](BaseRequest& r) { r.GetStreamMapStr(31, kLong); },
    [](BaseRequest& r) { r.getIBaseStream(32); },
    [](BaseRequest& r) { r.checkStreamSupport(33); },
};

constexpr OperationOn<BaseRequest> kHostOperations[] = {
    [](BaseRequest& r) { r.freeData(nullptr); },
    [](BaseRequest& r) { r.close(); },
    [](BaseRequest& r) { r.testOK(nullptr, 0, nullptr, nullptr); },
    [](BaseRequest& r) { r.getCookie(); },
    [](BaseRequest& r) { r.deviceClass(); },
    [](BaseRequest& r) { r.CallJoystickCmd(kLong, kLong, 1, 2, 3); },
    [](BaseRequest& r) { r.HandleMultiCmd(kLong, nullptr, 0); },
    [](BaseRequest& r) { r.PTZCmdCB(kUid, {}, nullptr, 0, nullptr); },
    [](BaseRequest& r) { r.ParsingBaseNotification(nullptr, 0, nullptr, nullptr, nullptr); },
};

using Conversion = void (*)(BaseRequest& r);

constexpr Conversion kConversions[] = {
    [](BaseRequest& r) {
        CgiMap login = {{"Product-Name", kLong}, {"Product-ID", "CAM"}};
        CgiMap capability = {{"Capability.Video.Resolution", "CIF,4CIF,720P"},
                             {"Capability.Function", kLong}};
        r.convertCgiCapability(&capability, &login);
    },
    [](BaseRequest& r) {
        CgiMap login = {{"Product-Name", kLong}};
        CgiMap machine = {{"Machine.Video.Channel.Count", "4"}, {"Machine.Model", kLong}};
        CgiMap capability = {{"Capability.Video.Resolution", "CIF"}};
        r.convertCgiCapability(&capability, &machine, &login);
    },
    [](BaseRequest& r) {
        CgiMap login = {{"Product-Name", kLong}};
        CgiMap media = {{"Media.Profiles.Count", "1"}, {"Media.Profiles.Profile1.token", kLong}};
        r.convertCgiMedia(kUid, &media, &login);
    },
    [](BaseRequest& r) {
        CgiMap video = {{"Video.I0.Brightness", kLong}};
        r.convertCgiVideo(&video);
    },
    [](BaseRequest& r) {
        CgiMap camera = {{"Camera.Detection.LS", kLong}};
        r.convertCgiCamera(&camera);
    },
    [](BaseRequest& r) {
        CgiMap misc = {{"Misc.External.DI.Port1.Active", kLong}};
        CgiMap notification = {{"Notification.Trigger.Alarm", kLong}};
        r.convertCgiMisc(&misc, &notification);
    },
    [](BaseRequest& r) {
        _tagProfileMap profile = {"H264", 1280, 720, 5.0F, 25, 2000, 30};
        std::map<int, _tagProfileMap*> profiles = {{1, &profile}};
        const OwnedText line(r.getConfigVideoStr(profiles));
    },
    [](BaseRequest& r) { r.getAutoStrmEnc("H264", 1); },
};

} // namespace

void settings(Subject& subject) { callEach(kSettings, *subject.device); }
void reads(Subject& subject) { callEach(kObjectReads, *subject.device); }
void hostOperations(Subject& subject) { callEach(kHostOperations, *subject.device); }
void conversions(Subject& subject) { callEach(kConversions, *subject.device); }

} // namespace koine::torture
