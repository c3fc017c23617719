// What a device class says about itself counts, not what is stored: the steps ask the object's operations.

#include "camera.h"

#include <boost/make_shared.hpp>

namespace koine::test {
namespace {

/// A stream user that speaks for itself.
class OwnClient : public StreamIDClient {
public:
    int profile_id() const override { return 42; }
    void setSettingQuality(float quality) override { note("setting", quality); }
    void setNowQuality(float quality) override { note("now", quality); }
    CgiMap& get_temp_cgicache_map() override { return pairs; }

    Lines noted;
    CgiMap pairs;

private:
    void note(const std::string& what, float quality) {
        noted.push_back(what + " " + std::to_string(static_cast<int>(quality)));
    }
};

/// A camera that answers for itself; nothing of it is stored.
class OwnAccessors : public Camera {
public:
    OwnAccessors() {
        client = boost::make_shared<OwnClient>();
        get_streamid_client(kUser) = client;
    }

    const char* getVendor() override { return vendor; }
    int getIsPellDevice() override { return pell; }
    int getIsTovlinNVRDevice() override { return recorder; }
    int getIsIDPTZ() override { return 1; }
    int getMediaProfile() override { return 1; }
    using Camera::getQualityStep;
    float getQualityStep() override { return 2.0F; }
    float getSettingQualitySrcMin() override { return 10.0F; }
    vm_mutex* getLock() override {
        ++locks;
        return BaseRequest::getLock();
    }

    const char* vendor = "TOVLIN";
    int pell = 1;
    int recorder = 0;
    int locks = 0;
    boost::shared_ptr<OwnClient> client;
};

class OverriddenAccessors : public ::testing::Test {
protected:
    std::string rewritten(std::string line) {
        Answer answer;
        EXPECT_EQ(camera.recoveryUrl(kUser, line.data(), answer.out()), 1);
        return answer.text();
    }
    std::string printed(int result, const Answer& answer) {
        EXPECT_EQ(result, 1);
        return answer.text();
    }

    OwnAccessors camera;
};

const std::string kQualityKey = "Media.Profiles.Profile42.VideoEncoderConfiguration.Quality";

TEST_F(OverriddenAccessors, DecideHowALineIsRewritten) {
    EXPECT_EQ(rewritten("X&Camera.Detection.Sensitivity=3"), "X&Camera.Detection.LS=3");
    EXPECT_EQ(rewritten("X&" + kQualityKey + "=5"), "X&" + kQualityKey + "=20.00");
    EXPECT_EQ(rewritten("X&StreamSetup.Event.Quality=5"), "X&StreamSetup.Event.Quality=NORMAL");
    EXPECT_EQ(rewritten("PTZ.cgi?x&Camera.DPTZ=1"), "PTZ.cgi?x&Profile=42&Media.Profiles.Profile42.DPTZ=1");
    camera.pell = 0;
    EXPECT_EQ(rewritten("X&Misc.External.DI.Port1.Active=OPEN"), "X");
    camera.recorder = 1;
    EXPECT_EQ(rewritten("X&Camera.Detection.Sensitivity=3"), "(null)");
}

TEST_F(OverriddenAccessors, AreToldTheQualityOfTheUsersProfile) {
    std::string line = kQualityKey + "=7";
    EXPECT_EQ(camera.checkCgiParameter(kUser, line.data()), 1);
    EXPECT_EQ(camera.client->noted, (Lines{"setting 7", "now 7"}));
}

TEST_F(OverriddenAccessors, DecideWhatASetLineLeavesInTheMediaCache) {
    EXPECT_EQ(camera.cacheCgi(kUser), 1);
    camera.steps.syncVideoConfigByMediaConfig = [](unsigned int, char*) { return 1; };
    std::string line = kQualityKey + "=20";
    EXPECT_EQ(camera.handleConfigSet(kUser, line.data()), 1);
    Answer answer;
    const int result = camera.getCacheConfigMedia(kUser, 0, nullptr, kQualityKey.c_str(), answer.out());
    EXPECT_EQ(printed(result, answer), "0\nOK\n" + kQualityKey + "=5\n");
}

TEST_F(OverriddenAccessors, DecideWhatACategoryAnswers) {
    camera.has(kCameraLine, "Camera.Detection.LS=6\n");
    Answer answer;
    EXPECT_EQ(printed(camera.getCacheConfigVideo(kUser, 0, nullptr, "Video.I0.HueMin", answer.out()), answer),
              "0\nOK\nVideo.I0.HueMin=-5\n");
    EXPECT_EQ(printed(camera.getCacheConfigCamera(kUser, 0, nullptr, "*.Sensitivity", answer.out()), answer),
              "0\nOK\nCamera.Detection.Sensitivity=6\n");
    EXPECT_EQ(printed(camera.getCacheConfigMisc(kUser, 0, nullptr, nullptr, answer.out()), answer),
              "0\nOK\nMisc.External.DI.Port1.Active=ENABLE\n");
    camera.recorder = 1;
    EXPECT_EQ(printed(camera.getCacheConfigMisc(kUser, 0, nullptr, nullptr, answer.out()), answer),
              kEmptySuccess);
}

TEST_F(OverriddenAccessors, MakeAStreamOnlySource) {
    camera.vendor = "ONLY_STREAM";
    EXPECT_EQ(camera.cacheCgi(kUser), 1);
    EXPECT_EQ(camera.ask("Login.cgi"), (Reply{1, kPlainOk}));
    EXPECT_EQ(camera.asked(), Lines{});
}

TEST_F(OverriddenAccessors, GiveTheLockOfEveryCallThatTakesIt) {
    const auto taken = [this](const auto& call) {
        camera.locks = 0;
        call();
        return camera.locks;
    };
    char line[] = "Other.cgi";
    EXPECT_EQ(taken([&] { camera.testOK(nullptr, 0, nullptr, nullptr); }), 1);
    EXPECT_EQ(
        taken([&] { camera.requestCgi_1(kUser, line, nullptr, REQCGI_METHOD_GET, REQCGI_CONNECTION_KEEP); }),
        1);
    EXPECT_EQ(taken([&] { camera.ask("Other.cgi"); }), 1);
    EXPECT_EQ(taken([&] { camera.requestHttpData(kUser, line, nullptr, nullptr); }), 2);
}

TEST_F(OverriddenAccessors, GiveTheKeyMapOfAUser) {
    char line[] = "Login.cgi";
    EXPECT_EQ(camera.requestHttpData(kUser, line, nullptr, nullptr), 1);
    EXPECT_EQ(camera.client->pairs["Product-ID"], "C100");
    EXPECT_STREQ(camera.GetCgiMapStr(kUser, "Product-ID"), "C100");
}

// ---- What a request object learns

/// Notes what it is told instead of keeping it.
class OwnSetters : public TestRequest {
public:
    std::string server_address_2() override { return address; }
    std::string get_username() override { return username; }
    std::string get_password() override { return password; }
    void set_server_address(const char* text) override { told.push_back(std::string("address ") + text); }
    void set_server_port(unsigned int port) override { told.push_back("port " + std::to_string(port)); }
    void set_username(const char* text) override { told.push_back(std::string("username ") + text); }
    void set_password(const char* text) override { told.push_back(std::string("password ") + text); }
    void setSettingQualitySrcMax(float quality) override { tell("highest", quality); }
    void setSettingQualitySrcMin(float quality) override { tell("lowest", quality); }

    std::string address;
    std::string username;
    std::string password;
    Lines told;

private:
    void tell(const std::string& what, float quality) {
        told.push_back(what + " " + std::to_string(static_cast<int>(quality)));
    }
};

TEST(OverriddenSetters, AreToldWhatTheFirstLineTeaches) {
    OwnSetters request;
    char line[] = "http://dome:81/Other.cgi";
    char name[] = "admin";
    char word[] = "secret";
    request.requestHttpStr(kUser, line, name, word, nullptr);
    EXPECT_EQ(request.told, (Lines{"address dome", "port 81", "username admin", "password secret"}));
}

TEST(OverriddenSetters, AreToldNothingThatTheObjectSaysItKnows) {
    OwnSetters request;
    request.address = "camera";
    request.username = "admin";
    request.password = "secret";
    char line[] = "http://dome:81/Other.cgi";
    char name[] = "guest";
    request.requestHttpStr(kUser, line, name, name, nullptr);
    EXPECT_EQ(request.told, Lines{});
}

TEST(OverriddenSetters, AreToldTheBoundsOfTheSourceTheHighestFirst) {
    OwnSetters request;
    CgiMap capability = {{"Capability.Video.Quality.Max", "31"}, {"Capability.Video.Quality.Min", "1"}};
    CgiMap login = {{"Product-Name", "Camera"}};
    EXPECT_EQ(request.convertCgiCapability(&capability, &login), 1);
    EXPECT_EQ(request.told, (Lines{"highest 31", "lowest 1"}));
}

} // namespace
} // namespace koine::test
