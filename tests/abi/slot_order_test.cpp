// The order of the virtual operations. Every name stands here with the slot it has had from the beginning;
// an operation that moves, goes or comes in between breaks hosts that are already compiled.

#include "koine/BaseRequest.h"
#include "koine/IBaseRequest.h"
#include "koine/StreamIDCenter.h"
#include "koine/StreamIDClient.h"
#include "platform/http_client.h"
#include "slots.h"
#include "tests/support/test_request.h"

#include <gtest/gtest.h>

#include <new>
#include <type_traits>
#include <vector>

namespace koine::test {
namespace {

struct Slot {
    const char* name;
    int expected;
    int found;
};

void expectOrder(const std::vector<Slot>& slots) {
    for (const Slot& slot : slots)
        EXPECT_EQ(slot.found, slot.expected) << slot.name;
}

TEST(SlotOrder, OfIBaseRequest) {
    using I = IBaseRequest;
    expectOrder({
        {"deviceClass", 0, slotOf(&I::deviceClass)},
        {"probe", 1, slotOf(&I::probe)},
        {"init", 2, slotOf(&I::init)},
        {"requestHttpData", 3, slotOf(&I::requestHttpData)},
        {"requestHttpStr", 4, slotOf(&I::requestHttpStr)},
        {"handleParameter", 5, slotOf(&I::handleParameter)},
        {"syncProfileToken", 6, slotOf(&I::syncProfileToken)},
        {"freeData", 7, slotOf(&I::freeData)},
        {"close", 8, slotOf(&I::close)},
        {"testOK", 9, slotOf(&I::testOK)},
        {"GetCgiMapStr", 10, slotOf(&I::GetCgiMapStr)},
        {"GetStreamMapStr", 11, slotOf(&I::GetStreamMapStr)},
        {"strm_setting_channel", 12, slotOf(&I::strm_setting_channel)},
        {"strm_setting_no", 13, slotOf(&I::strm_setting_no)},
        {"model_name", 14, slotOf(&I::model_name)},
        {"getSettingMaxW", 15, slotOf(&I::getSettingMaxW)},
        {"getSettingMaxH", 16, slotOf(&I::getSettingMaxH)},
        {"getNowQuality", 17, slotOf(&I::getNowQuality)},
        {"getQualityStep", 18, slotOf(&I::getQualityStep)},
        {"profile_id", 19, slotOf(&I::profile_id)},
        {"profile_token", 20, slotOf(&I::profile_token)},
        {"audio_in_live", 21, slotOf(&I::audio_in_live)},
        {"strm_nvr_subchannel", 22, slotOf(&I::strm_nvr_subchannel)},
        {"get_login_username", 23, slotOf(&I::get_login_username)},
        {"get_login_password", 24, slotOf(&I::get_login_password)},
        {"server_address", 25, slotOf(&I::server_address)},
        {"server_port", 26, slotOf(&I::server_port)},
        {"setVendor", 27, slotOf(&I::setVendor)},
        {"getVendor", 28, slotOf(&I::getVendor)},
        {"getIBaseStream", 29, slotOf(&I::getIBaseStream)},
        {"setIBaseStream", 30, slotOf(&I::setIBaseStream)},
        {"setStreamLive", 31, slotOf(&I::setStreamLive)},
        {"requestCgi", 32, slotOf(&I::requestCgi)},
        {"buildStreamUri", 33, slotOf(&I::buildStreamUri)},
        {"getCookie", 34, slotOf(&I::getCookie)},
        {"CallJoystickCmd", 35, slotOf(&I::CallJoystickCmd)},
        {"HandleMultiCmd", 36, slotOf(&I::HandleMultiCmd)},
        {"PTZCmdCB", 37, slotOf(&I::PTZCmdCB)},
        {"ParsingBaseNotification", 38, slotOf(&I::ParsingBaseNotification)},
    });
}

TEST(SlotOrder, OfBaseRequestKeepsThatOfItsInterface) {
    using B = BaseRequest;
    expectOrder({
        {"init", 2, slotOf(&B::init)},
        {"requestHttpData", 3, slotOf(&B::requestHttpData)},
        {"requestHttpStr", 4, slotOf(&B::requestHttpStr)},
        {"freeData", 7, slotOf(&B::freeData)},
        {"close", 8, slotOf(&B::close)},
        {"testOK", 9, slotOf(&B::testOK)},
        {"GetCgiMapStr", 10, slotOf(&B::GetCgiMapStr)},
        {"GetStreamMapStr", 11, slotOf(&B::GetStreamMapStr)},
        {"strm_setting_channel", 12, slotOf<BaseRequest, int, unsigned int>(&B::strm_setting_channel)},
        {"strm_setting_no", 13, slotOf(&B::strm_setting_no)},
        {"model_name", 14, slotOf(&B::model_name)},
        {"getSettingMaxW", 15, slotOf(&B::getSettingMaxW)},
        {"getSettingMaxH", 16, slotOf(&B::getSettingMaxH)},
        {"getNowQuality", 17, slotOf(&B::getNowQuality)},
        {"getQualityStep", 18, slotOf<BaseRequest, float, unsigned int>(&B::getQualityStep)},
        {"profile_id", 19, slotOf(&B::profile_id)},
        {"profile_token", 20, slotOf(&B::profile_token)},
        {"audio_in_live", 21, slotOf(&B::audio_in_live)},
        {"strm_nvr_subchannel", 22, slotOf(&B::strm_nvr_subchannel)},
        {"get_login_username", 23, slotOf(&B::get_login_username)},
        {"get_login_password", 24, slotOf(&B::get_login_password)},
        {"server_address", 25, slotOf(&B::server_address)},
        {"server_port", 26, slotOf(&B::server_port)},
        {"setVendor", 27, slotOf(&B::setVendor)},
        {"getVendor", 28, slotOf(&B::getVendor)},
        {"getIBaseStream", 29, slotOf(&B::getIBaseStream)},
        {"setIBaseStream", 30, slotOf(&B::setIBaseStream)},
        {"setStreamLive", 31, slotOf(&B::setStreamLive)},
        {"getCookie", 34, slotOf(&B::getCookie)},
        {"CallJoystickCmd", 35, slotOf(&B::CallJoystickCmd)},
        {"HandleMultiCmd", 36, slotOf(&B::HandleMultiCmd)},
        {"PTZCmdCB", 37, slotOf(&B::PTZCmdCB)},
        {"ParsingBaseNotification", 38, slotOf(&B::ParsingBaseNotification)},
    });
}

TEST(SlotOrder, OfBaseRequestsOwnOperations) {
    using B = BaseRequest; // slots 39 and 40 are the destructors'
    expectOrder({
        {"set_username", 41, slotOf(&B::set_username)},
        {"get_username", 42, slotOf(&B::get_username)},
        {"set_password", 43, slotOf(&B::set_password)},
        {"get_password", 44, slotOf(&B::get_password)},
        {"set_strm_setting_channel", 45, slotOf(&B::set_strm_setting_channel)},
        {"set_strm_nvr_subchannel", 46, slotOf(&B::set_strm_nvr_subchannel)},
        {"strm_setting_channel", 47, slotOf<BaseRequest, int>(&B::strm_setting_channel)},
        {"set_model_name", 48, slotOf(&B::set_model_name)},
        {"get_model_name", 49, slotOf(&B::get_model_name)},
        {"getSettingQualitySrcMax", 50, slotOf(&B::getSettingQualitySrcMax)},
        {"setSettingQualitySrcMax", 51, slotOf(&B::setSettingQualitySrcMax)},
        {"getSettingQualitySrcMin", 52, slotOf(&B::getSettingQualitySrcMin)},
        {"setSettingQualitySrcMin", 53, slotOf(&B::setSettingQualitySrcMin)},
        {"getQualityStep", 54, slotOf<BaseRequest, float>(&B::getQualityStep)},
        {"setQualityStep", 55, slotOf(&B::setQualityStep)},
        {"getSettingFramerateSrcMax", 56, slotOf(&B::getSettingFramerateSrcMax)},
        {"setSettingFramerateSrcMax", 57, slotOf(&B::setSettingFramerateSrcMax)},
        {"getSettingFramerateSrcMin", 58, slotOf(&B::getSettingFramerateSrcMin)},
        {"setSettingFramerateSrcMin", 59, slotOf(&B::setSettingFramerateSrcMin)},
        {"getStreamLive", 60, slotOf(&B::getStreamLive)},
        {"cacheCgi", 61, slotOf(&B::cacheCgi)},
        {"getCacheLogin", 62, slotOf(&B::getCacheLogin)},
        {"getCacheCapability", 63, slotOf(&B::getCacheCapability)},
        {"getCacheConfigMedia", 64, slotOf(&B::getCacheConfigMedia)},
        {"getCacheConfigVideo", 65, slotOf(&B::getCacheConfigVideo)},
        {"getCacheConfigCamera", 66, slotOf(&B::getCacheConfigCamera)},
        {"getCacheConfigNotification", 67, slotOf(&B::getCacheConfigNotification)},
        {"getCacheConfigMisc", 68, slotOf(&B::getCacheConfigMisc)},
        {"getCacheConfigVideoAnalytics", 69, slotOf(&B::getCacheConfigVideoAnalytics)},
        {"getCacheConfigAll", 70, slotOf(&B::getCacheConfigAll)},
        {"convertCgiCapability2", 71, slotOf<BaseRequest, int, CgiMap*, CgiMap*>(&B::convertCgiCapability)},
        {"convertCgiCapability3", 72,
         slotOf<BaseRequest, int, CgiMap*, CgiMap*, CgiMap*>(&B::convertCgiCapability)},
        {"convertCgiMedia", 73, slotOf(&B::convertCgiMedia)},
        {"convertCgiVideo", 74, slotOf(&B::convertCgiVideo)},
        {"convertCgiCamera", 75, slotOf(&B::convertCgiCamera)},
        {"convertCgiMisc", 76, slotOf(&B::convertCgiMisc)},
        {"requestCgi_1", 77, slotOf(&B::requestCgi_1)},
        {"HandleInit", 78, slotOf(&B::HandleInit)},
        {"searchAvailableProfileToken", 79, slotOf(&B::searchAvailableProfileToken)},
        {"getAutoStrmEnc", 80, slotOf(&B::getAutoStrmEnc)},
        {"syncProfileToken_1", 81, slotOf(&B::syncProfileToken_1)},
        {"getConfigVideoStr", 82, slotOf(&B::getConfigVideoStr)},
        {"syncVideoConfigByMediaConfig", 83, slotOf(&B::syncVideoConfigByMediaConfig)},
        {"buildCgiStreamGet", 84, slotOf(&B::buildCgiStreamGet)},
        {"buildCgiGetStreamUri", 85, slotOf(&B::buildCgiGetStreamUri)},
        {"recoveryUrl", 86, slotOf(&B::recoveryUrl)},
        {"checkCgiParameter", 87, slotOf(&B::checkCgiParameter)},
        {"handleConfigGet", 88, slotOf(&B::handleConfigGet)},
        {"handleParameter_1", 89, slotOf(&B::handleParameter_1)},
        {"handleConfigSet", 90, slotOf(&B::handleConfigSet)},
        {"forbiRequest", 91, slotOf(&B::forbiRequest)},
        {"getLock", 92, slotOf(&B::getLock)},
        {"getMediaProfile", 93, slotOf(&B::getMediaProfile)},
        {"setMediaProfile", 94, slotOf(&B::setMediaProfile)},
        {"getProfileCount", 95, slotOf(&B::getProfileCount)},
        {"setProfileCount", 96, slotOf(&B::setProfileCount)},
        {"getIsONVIFProduct", 97, slotOf(&B::getIsONVIFProduct)},
        {"setIsONVIFProduct", 98, slotOf(&B::setIsONVIFProduct)},
        {"getIs331_578Product", 99, slotOf(&B::getIs331_578Product)},
        {"setIs331_578Product", 100, slotOf(&B::setIs331_578Product)},
        {"getIs5240Product", 101, slotOf(&B::getIs5240Product)},
        {"setIs5240Product", 102, slotOf(&B::setIs5240Product)},
        {"getIsPellDevice", 103, slotOf(&B::getIsPellDevice)},
        {"setIsPellDevice", 104, slotOf(&B::setIsPellDevice)},
        {"getIsTovlinNVRDevice", 105, slotOf(&B::getIsTovlinNVRDevice)},
        {"setIsTovlinNVRDevice", 106, slotOf(&B::setIsTovlinNVRDevice)},
        {"getIsTovlinDevice", 107, slotOf(&B::getIsTovlinDevice)},
        {"setIsTovlinDevice", 108, slotOf(&B::setIsTovlinDevice)},
        {"get_which_slave", 109, slotOf(&B::get_which_slave)},
        {"set_which_slave", 110, slotOf(&B::set_which_slave)},
        {"getIsResoIndep", 111, slotOf(&B::getIsResoIndep)},
        {"setIsResoIndep", 112, slotOf(&B::setIsResoIndep)},
        {"getIsRemoteEventTrigger", 113, slotOf(&B::getIsRemoteEventTrigger)},
        {"setIsIsRemoteEventTrigger", 114, slotOf(&B::setIsIsRemoteEventTrigger)},
        {"getIsTlProfile", 115, slotOf(&B::getIsTlProfile)},
        {"setIsTlProfile", 116, slotOf(&B::setIsTlProfile)},
        {"getHasVA", 117, slotOf(&B::getHasVA)},
        {"setHasVA", 118, slotOf(&B::setHasVA)},
        {"checkStreamSupport", 119, slotOf(&B::checkStreamSupport)},
        {"getIsIDPTZ", 120, slotOf(&B::getIsIDPTZ)},
        {"setIsIDPTZ", 121, slotOf(&B::setIsIDPTZ)},
        {"server_address_2", 122, slotOf(&B::server_address_2)},
        {"set_server_address", 123, slotOf(&B::set_server_address)},
        {"set_server_port", 124, slotOf(&B::set_server_port)},
        {"stream_port", 125, slotOf(&B::stream_port)},
        {"set_stream_port", 126, slotOf(&B::set_stream_port)},
        {"getHaveMobile", 127, slotOf(&B::getHaveMobile)},
        {"setHaveMobile", 128, slotOf(&B::setHaveMobile)},
    });
    EXPECT_EQ(slotOf(&B::paserCapabilitySupport), kNotVirtual);
}

TEST(SlotOrder, OfStreamIDClient) {
    using C = StreamIDClient; // slots 0 and 1 are the destructors'
    expectOrder({
        {"ParseStreamInit", 2, slotOf(&C::ParseStreamInit)},
        {"get_ibase_stream", 3, slotOf(&C::get_ibase_stream)},
        {"set_ibase_stream", 4, slotOf(&C::set_ibase_stream)},
        {"set_strm_setting_channel", 5, slotOf(&C::set_strm_setting_channel)},
        {"strm_setting_channel", 6, slotOf(&C::strm_setting_channel)},
        {"set_userid", 7, slotOf(&C::set_userid)},
        {"uid", 8, slotOf(&C::uid)},
        {"set_userid_order", 9, slotOf(&C::set_userid_order)},
        {"get_userid_order", 10, slotOf(&C::get_userid_order)},
        {"setVendor", 11, slotOf(&C::setVendor)},
        {"getVendor", 12, slotOf(&C::getVendor)},
        {"profile_id", 13, slotOf(&C::profile_id)},
        {"set_profile_id", 14, slotOf(&C::set_profile_id)},
        {"profile_token", 15, slotOf(&C::profile_token)},
        {"set_strm_setting_no", 16, slotOf(&C::set_strm_setting_no)},
        {"strm_setting_no", 17, slotOf(&C::strm_setting_no)},
        {"setInitStream", 18, slotOf(&C::setInitStream)},
        {"getInitStream", 19, slotOf(&C::getInitStream)},
        {"setSettingStream", 20, slotOf(&C::setSettingStream)},
        {"set_req_mode", 21, slotOf(&C::set_req_mode)},
        {"get_req_mode", 22, slotOf(&C::get_req_mode)},
        {"setStreamSettingCgiParam", 23, slotOf(&C::setStreamSettingCgiParam)},
        {"setSettingStrmparam", 24, slotOf(&C::setSettingStrmparam)},
        {"setSettingStrmparam1", 25, slotOf(&C::setSettingStrmparam1)},
        {"set_strmp_innrparam", 26, slotOf(&C::set_strmp_innrparam)},
        {"set_strmp_pre_innrparam", 27, slotOf(&C::set_strmp_pre_innrparam)},
        {"setSettingTranPro", 28, slotOf(&C::setSettingTranPro)},
        {"setSettingEnc", 29, slotOf(&C::setSettingEnc)},
        {"getSettingW", 30, slotOf(&C::getSettingW)},
        {"setSettingW", 31, slotOf(&C::setSettingW)},
        {"getSettingH", 32, slotOf(&C::getSettingH)},
        {"setSettingH", 33, slotOf(&C::setSettingH)},
        {"getSettingMaxW", 34, slotOf(&C::getSettingMaxW)},
        {"setSettingMaxW", 35, slotOf(&C::setSettingMaxW)},
        {"getSettingMaxH", 36, slotOf(&C::getSettingMaxH)},
        {"setSettingMaxH", 37, slotOf(&C::setSettingMaxH)},
        {"getSettingMaxW_Ui", 38, slotOf(&C::getSettingMaxW_Ui)},
        {"setSettingMaxW_Ui", 39, slotOf(&C::setSettingMaxW_Ui)},
        {"getSettingMaxH_Ui", 40, slotOf(&C::getSettingMaxH_Ui)},
        {"setSettingMaxH_Ui", 41, slotOf(&C::setSettingMaxH_Ui)},
        {"getSettingMinW_Ui", 42, slotOf(&C::getSettingMinW_Ui)},
        {"setSettingMinW_Ui", 43, slotOf(&C::setSettingMinW_Ui)},
        {"getSettingMinH_Ui", 44, slotOf(&C::getSettingMinH_Ui)},
        {"setSettingMinH_Ui", 45, slotOf(&C::setSettingMinH_Ui)},
        {"getNowQuality", 46, slotOf(&C::getNowQuality)},
        {"setNowQuality", 47, slotOf(&C::setNowQuality)},
        {"getSettingQualitySrcMax", 48, slotOf(&C::getSettingQualitySrcMax)},
        {"setSettingQualitySrcMax", 49, slotOf(&C::setSettingQualitySrcMax)},
        {"getSettingQualitySrcMin", 50, slotOf(&C::getSettingQualitySrcMin)},
        {"setSettingQualitySrcMin", 51, slotOf(&C::setSettingQualitySrcMin)},
        {"getQualityStep", 52, slotOf(&C::getQualityStep)},
        {"setQualityStep", 53, slotOf(&C::setQualityStep)},
        {"getSettingQuality", 54, slotOf(&C::getSettingQuality)},
        {"setSettingQuality", 55, slotOf(&C::setSettingQuality)},
        {"getSettingFramerateSrcMax", 56, slotOf(&C::getSettingFramerateSrcMax)},
        {"setSettingFramerateSrcMax", 57, slotOf(&C::setSettingFramerateSrcMax)},
        {"getSettingFramerateSrcMin", 58, slotOf(&C::getSettingFramerateSrcMin)},
        {"setSettingFramerateSrcMin", 59, slotOf(&C::setSettingFramerateSrcMin)},
        {"getSettingFramerate", 60, slotOf(&C::getSettingFramerate)},
        {"setSettingFramerate", 61, slotOf(&C::setSettingFramerate)},
        {"getSettingBitrate", 62, slotOf(&C::getSettingBitrate)},
        {"setSettingBitrate", 63, slotOf(&C::setSettingBitrate)},
        {"getSettingGovLength", 64, slotOf(&C::getSettingGovLength)},
        {"setSettingGovLength", 65, slotOf(&C::setSettingGovLength)},
        {"audio_in_live", 66, slotOf(&C::audio_in_live)},
        {"set_audio_in_live", 67, slotOf(&C::set_audio_in_live)},
        {"set_strm_nvr_subchannel", 68, slotOf(&C::set_strm_nvr_subchannel)},
        {"strm_nvr_subchannel", 69, slotOf(&C::strm_nvr_subchannel)},
        {"setHaveSyncProfileToken", 70, slotOf(&C::setHaveSyncProfileToken)},
        {"getHaveSyncProfileToken", 71, slotOf(&C::getHaveSyncProfileToken)},
        {"get_temp_cgicache_map", 72, slotOf(&C::get_temp_cgicache_map)},
    });
    EXPECT_EQ(slotOf(&C::setProfileMode_1), kNotVirtual);
}

TEST(SlotOrder, OfStreamIDCenter) {
    using C = StreamIDCenter; // slots 0 and 1 are the destructors'
    expectOrder({
        {"get_streamid_client", 2, slotOf(&C::get_streamid_client)},
        {"get_first_streamid_client", 3, slotOf(&C::get_first_streamid_client)},
    });
}

TEST(SlotOrder, OfIHttpClient) {
    using C = IHttpClient;
    expectOrder({
        {"Release", 0, slotOf(&C::Release)},
        {"Request", 1, slotOf(&C::Request)},
        {"SetTimeout", 2, slotOf(&C::SetTimeout)},
        {"GetStatus", 3, slotOf(&C::GetStatus)},
        {"GetHeader", 4, slotOf(&C::GetHeader)},
        {"Abort", 5, slotOf(&C::Abort)},
        {"Close", 6, slotOf(&C::Close)},
        {"SetUid", 7, slotOf(&C::SetUid)},
    });
    EXPECT_FALSE(std::has_virtual_destructor<IHttpClient>::value);
}

// ---- The end: what a subclass adds comes right behind

struct AfterInterface : IBaseRequest {
    virtual void next() = 0;
};
struct AfterRequest : TestRequest {
    virtual void next() {}
};
struct AfterClient : StreamIDClient {
    virtual void next() {}
};
struct AfterCenter : StreamIDCenter {
    virtual void next() {}
};
struct AfterHttp : IHttpClient {
    virtual void next() = 0;
};

TEST(SlotOrder, HasNothingBehindTheLastOperation) {
    expectOrder({
        {"IBaseRequest", 39, slotOf(&AfterInterface::next)},
        {"BaseRequest", 129, slotOf(&AfterRequest::next)},
        {"StreamIDClient", 73, slotOf(&AfterClient::next)},
        {"StreamIDCenter", 4, slotOf(&AfterCenter::next)},
        {"IHttpClient", 8, slotOf(&AfterHttp::next)},
    });
}

// ---- The destructors: two slots, the first only destroys, the second also frees

struct Deaths {
    int destroyed = 0;
    int freed = 0;
};

template <typename Base>
struct Mortal : Base {
    explicit Mortal(Deaths& deaths) : deaths_(deaths) {}
    ~Mortal() override { ++deaths_.destroyed; }
    static void operator delete(void* memory) {
        ++freed;
        ::operator delete(memory);
    }
    Deaths& deaths_;
    inline static int freed = 0;
};

/// Calls the destructor in a slot of the table that `table` points into, for an object at `object`.
void destroyThrough(const void* table, int slot, void* object) {
    using Destructor = void (*)(void*);
    reinterpret_cast<Destructor>(tableEntry(table, slot))(object);
}

template <typename Object>
void expectDestructorsAt(int slot) {
    Deaths deaths;
    Object::freed = 0;
    alignas(Object) unsigned char place[sizeof(Object)];
    auto* onPlace = ::new (static_cast<void*>(place)) Object(deaths);
    destroyThrough(onPlace, slot, onPlace);
    EXPECT_EQ(deaths.destroyed, 1);
    EXPECT_EQ(Object::freed, 0);
    auto* onHeap = ::new Object(deaths);
    destroyThrough(onHeap, slot + 1, onHeap);
    EXPECT_EQ(deaths.destroyed, 2);
    EXPECT_EQ(Object::freed, 1);
}

TEST(SlotOrder, OfTheDestructors) {
    expectDestructorsAt<Mortal<TestRequest>>(39);
    expectDestructorsAt<Mortal<StreamIDClient>>(0);
    expectDestructorsAt<Mortal<StreamIDCenter>>(0);
}

TEST(SlotOrder, TheRegistryOfARequestObjectHasItsOwnTable) {
    Deaths deaths;
    auto* object = ::new Mortal<TestRequest>(deaths);
    Mortal<TestRequest>::freed = 0;
    StreamIDCenter* const registry = object;
    destroyThrough(registry, 1, registry);
    EXPECT_EQ(deaths.destroyed, 1);
    EXPECT_EQ(Mortal<TestRequest>::freed, 1);
}

} // namespace
} // namespace koine::test
