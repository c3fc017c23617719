// The members of a request object: what they are at first, and that each setter reaches its getter.

#include "tests/support/test_request.h"

#include <gtest/gtest.h>

namespace koine::test {
namespace {

TEST(RequestAccessors, StartWithTheirInitialValues) {
    TestRequest request;
    EXPECT_EQ(request.getStreamLive(), nullptr);
    EXPECT_EQ(request.BaseRequest::strm_setting_channel(), 0);
    EXPECT_EQ(request.strm_nvr_subchannel(), 1);
    EXPECT_STREQ(request.getVendor(), "");
    EXPECT_STREQ(request.server_address(), "");
    EXPECT_EQ(request.server_address_2(), "");
    EXPECT_EQ(request.server_port(), 80U);
    EXPECT_EQ(request.stream_port(), 80U);
    EXPECT_EQ(request.get_username(), "");
    EXPECT_STREQ(request.get_login_username(), "");
    EXPECT_EQ(request.get_password(), "");
    EXPECT_STREQ(request.get_login_password(), "");
    EXPECT_STREQ(request.model_name(1), "");
    EXPECT_EQ(request.get_model_name(), "");
    EXPECT_EQ(request.getQualityStep(), 0.1F);
    EXPECT_EQ(request.getSettingQualitySrcMin(), 0.0F);
    EXPECT_EQ(request.getSettingQualitySrcMax(), 1.0F);
    EXPECT_EQ(request.getSettingFramerateSrcMin(), 1);
    EXPECT_EQ(request.getSettingFramerateSrcMax(), 30);
    EXPECT_EQ(request.get_which_slave(), 0);
    EXPECT_STREQ(request.getCookie() == nullptr ? "none" : request.getCookie(), "none");
}

struct Flag {
    const char* name;
    int (BaseRequest::*get)();
    void (BaseRequest::*set)(int);
};

void PrintTo(const Flag& flag, std::ostream* out) { *out << flag.name; }

constexpr Flag kFlags[] = {
    {"MediaProfile", &BaseRequest::getMediaProfile, &BaseRequest::setMediaProfile},
    {"ProfileCount", &BaseRequest::getProfileCount, &BaseRequest::setProfileCount},
    {"IsONVIFProduct", &BaseRequest::getIsONVIFProduct, &BaseRequest::setIsONVIFProduct},
    {"Is331_578Product", &BaseRequest::getIs331_578Product, &BaseRequest::setIs331_578Product},
    {"Is5240Product", &BaseRequest::getIs5240Product, &BaseRequest::setIs5240Product},
    {"IsPellDevice", &BaseRequest::getIsPellDevice, &BaseRequest::setIsPellDevice},
    {"IsTovlinNVRDevice", &BaseRequest::getIsTovlinNVRDevice, &BaseRequest::setIsTovlinNVRDevice},
    {"IsTovlinDevice", &BaseRequest::getIsTovlinDevice, &BaseRequest::setIsTovlinDevice},
    {"IsResoIndep", &BaseRequest::getIsResoIndep, &BaseRequest::setIsResoIndep},
    {"IsRemoteEventTrigger", &BaseRequest::getIsRemoteEventTrigger, &BaseRequest::setIsIsRemoteEventTrigger},
    {"IsTlProfile", &BaseRequest::getIsTlProfile, &BaseRequest::setIsTlProfile},
    {"HasVA", &BaseRequest::getHasVA, &BaseRequest::setHasVA},
    {"HaveMobile", &BaseRequest::getHaveMobile, &BaseRequest::setHaveMobile},
    {"IsIDPTZ", &BaseRequest::getIsIDPTZ, &BaseRequest::setIsIDPTZ},
};

class RequestFlags : public ::testing::TestWithParam<Flag> {};

TEST_P(RequestFlags, StartAtZeroAndKeepAnyValueByThemselves) {
    TestRequest request;
    EXPECT_EQ((request.*GetParam().get)(), 0);
    for (const int value : {1, 0, 7, -3}) {
        (request.*GetParam().set)(value);
        for (const Flag& flag : kFlags)
            EXPECT_EQ((request.*flag.get)(), flag.set == GetParam().set ? value : 0) << flag.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Each, RequestFlags, ::testing::ValuesIn(kFlags));

TEST(RequestAccessors, KeepTexts) {
    TestRequest request;
    request.setVendor("vendor");
    request.set_server_address("address");
    request.set_username("user");
    request.set_password("password");
    request.set_model_name("model");
    EXPECT_STREQ(request.getVendor(), "vendor");
    EXPECT_STREQ(request.server_address(), "address");
    EXPECT_EQ(request.server_address_2(), "address");
    EXPECT_EQ(request.get_username(), "user");
    EXPECT_STREQ(request.get_login_username(), "user");
    EXPECT_EQ(request.get_password(), "password");
    EXPECT_STREQ(request.get_login_password(), "password");
    EXPECT_STREQ(request.model_name(1), "model");
    EXPECT_STREQ(request.model_name(2), "model") << "the user does not matter";
    EXPECT_EQ(request.get_model_name(), "model");
}

TEST(RequestAccessors, TakeANullTextAsAnEmptyOne) {
    TestRequest request;
    request.setVendor("x");
    request.set_server_address("x");
    request.set_username("x");
    request.set_password("x");
    request.set_model_name("x");
    request.setVendor(nullptr);
    request.set_server_address(nullptr);
    request.set_username(nullptr);
    request.set_password(nullptr);
    request.set_model_name(nullptr);
    EXPECT_STREQ(request.getVendor(), "");
    EXPECT_EQ(request.server_address_2(), "");
    EXPECT_EQ(request.get_username(), "");
    EXPECT_EQ(request.get_password(), "");
    EXPECT_EQ(request.get_model_name(), "");
}

TEST(RequestAccessors, GiveThePointersIntoTheObject) {
    TestRequest request;
    request.set_username("user");
    EXPECT_EQ(request.get_login_username(), request.get_login_username());
    EXPECT_EQ(request.server_address(), request.server_address());
    EXPECT_EQ(request.getVendor(), request.getVendor());
}

TEST(RequestAccessors, KeepNumbers) {
    TestRequest request;
    IBase live;
    request.setStreamLive(&live);
    request.set_strm_setting_channel(-4);
    request.set_server_port(70000);
    request.set_stream_port(554);
    request.setSettingFramerateSrcMin(5);
    request.setSettingFramerateSrcMax(60);
    EXPECT_EQ(request.getStreamLive(), &live);
    EXPECT_EQ(request.BaseRequest::strm_setting_channel(), -4);
    EXPECT_EQ(request.server_port(), 70000U);
    EXPECT_EQ(request.stream_port(), 554U);
    EXPECT_EQ(request.getSettingFramerateSrcMin(), 5);
    EXPECT_EQ(request.getSettingFramerateSrcMax(), 60);
    request.setStreamLive(nullptr);
    EXPECT_EQ(request.getStreamLive(), nullptr);
}

TEST(RequestAccessors, TheChannelOfARecorderIsAtLeastOne) {
    TestRequest request;
    for (const auto& [given, kept] :
         std::vector<std::pair<int, int>>{{5, 5}, {1, 1}, {0, 1}, {16, 16}, {-1, 1}, {-2147483647 - 1, 1}}) {
        request.set_strm_nvr_subchannel(given);
        EXPECT_EQ(request.strm_nvr_subchannel(), kept) << given;
    }
}

TEST(RequestAccessors, TheKindOfDeviceIsReadFromABeginning) {
    TestRequest request;
    for (const auto& [text, kind] : std::vector<std::pair<const char*, int>>{
             {"NVR", 1}, {"IPCAM", 0}, {"DVR", 2}, {"nvr-16", 1}, {"Dvr", 2}, {"ipcamera", 0}}) {
        request.set_which_slave(text);
        EXPECT_EQ(request.get_which_slave(), kind) << text;
    }
}

TEST(RequestAccessors, TheKindOfDeviceStaysForAnyOtherText) {
    TestRequest request;
    request.set_which_slave("DVR");
    for (const char* text : {"", "XNVR", "A DVR", "NV", "IPCA", " NVR", "camera"}) {
        request.set_which_slave(text);
        EXPECT_EQ(request.get_which_slave(), 2) << text;
    }
    request.set_which_slave(nullptr);
    EXPECT_EQ(request.get_which_slave(), 2);
}

// ---- Quality: request-wide, mirrored in the capabilities

class RequestQuality : public ::testing::Test {
protected:
    /// An entry of the capability cache, which is not filled: the device is not asked.
    std::string capability(const std::string& key) {
        request.steps.convertCgiCapability = [](auto...) { return 1; };
        request.connect();
        device().on("Login.cgi", "0\nOK\nA=1\n");
        device().on("Capability.cgi?action=get", "0\nOK\nB=1\n");
        EXPECT_EQ(request.getCacheCapability(kUser, 0, nullptr, nullptr), 1);
        const auto found = request.maps.capability->find(key);
        return found == request.maps.capability->end() ? "(absent)" : found->second;
    }
    TestRequest request;
};

const std::string kStep = "Capability.Video.Quality.Value.Step";
const std::string kMax = "Capability.Video.Quality.Src.Max";
const std::string kMin = "Capability.Video.Quality.Src.Min";

TEST_F(RequestQuality, TheStepIsKeptAndWritten) {
    request.setQualityStep(2.5F);
    EXPECT_EQ(request.getQualityStep(), 2.5F);
    EXPECT_EQ(capability(kStep), "2.5");
}

TEST_F(RequestQuality, TheMaximumIsKeptWrittenAndChangesTheStep) {
    request.setSettingQualitySrcMax(10);
    EXPECT_EQ(request.getSettingQualitySrcMax(), 10.0F);
    EXPECT_EQ(request.getSettingQualitySrcMin(), 0.0F);
    EXPECT_EQ(request.getQualityStep(), 10.0F * 0.1F);
    EXPECT_EQ(capability(kMax), "10");
    EXPECT_EQ(capability(kStep), "1");
    EXPECT_EQ(capability(kMin), "(absent)");
}

TEST_F(RequestQuality, TheMinimumIsKeptWrittenAndChangesTheStep) {
    request.setSettingQualitySrcMax(10);
    request.setSettingQualitySrcMin(2);
    EXPECT_EQ(request.getSettingQualitySrcMin(), 2.0F);
    EXPECT_EQ(request.getQualityStep(), 8.0F * 0.1F);
    EXPECT_EQ(capability(kMin), "2");
    EXPECT_EQ(capability(kMax), "10");
    EXPECT_EQ(capability(kStep), "0.8");
}

TEST_F(RequestQuality, NumbersAreWrittenWithSixSignificantDigits) {
    request.setQualityStep(1.0F / 3.0F);
    EXPECT_EQ(capability(kStep), "0.333333");
    request.setQualityStep(1234567.0F);
    EXPECT_EQ(capability(kStep), "1.23457e+06");
    request.setSettingQualitySrcMax(100.5F);
    EXPECT_EQ(capability(kMax), "100.5");
}

TEST_F(RequestQuality, TheStepIsComputedFromWhatTheGettersSayThroughItsSetter) {
    struct Other : TestRequest {
        float getSettingQualitySrcMax() override { return 50; }
        float getSettingQualitySrcMin() override { return 20; }
        void setQualityStep(float step) override { seen.push_back(step); }
        std::vector<float> seen;
    };
    Other other;
    other.setSettingQualitySrcMax(1);
    other.setSettingQualitySrcMin(2);
    EXPECT_EQ(other.seen, (std::vector<float>{30.0F * 0.1F, 30.0F * 0.1F}));
}

TEST_F(RequestQuality, TheBoundIsWrittenAfterTheStep) {
    struct Watched : TestRequest {
        void setQualityStep(float step) override {
            written = maps.capability->count(kMax) + maps.capability->count(kMin);
            TestRequest::setQualityStep(step);
        }
        std::size_t written = 99;
    };
    Watched watched;
    watched.connect();
    device().answerAsCamera();
    watched.steps.convertCgiCapability = [](auto...) { return 1; };
    ASSERT_EQ(watched.getCacheCapability(kUser, 0, nullptr, nullptr), 1);
    watched.setSettingQualitySrcMax(10);
    EXPECT_EQ(watched.written, 0U);
    watched.maps.capability->erase(kMax);
    watched.setSettingQualitySrcMin(1);
    EXPECT_EQ(watched.written, 0U);
    EXPECT_EQ(watched.maps.capability->at(kMin), "1");
}

TEST_F(RequestQuality, TheUsersAreNotConcerned) {
    request.setSettingQualitySrcMax(10);
    request.setQualityStep(4);
    EXPECT_EQ(request.getQualityStep(kUser), 0.1F);
    EXPECT_EQ(request.client().getSettingQualitySrcMax(), 1.0F);
}

} // namespace
} // namespace koine::test
