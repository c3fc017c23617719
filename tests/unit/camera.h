/// @file
/// A whole device on the bench: a camera that answers each request line with what the test wrote for it.
#pragma once

#include "observed.h"
#include "tests/support/test_request.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace koine::test {

inline constexpr const char* kLoginLine = "Login.cgi";
inline constexpr const char* kCapabilityLine = "Capability.cgi?action=get";
inline constexpr const char* kSecondCapabilityLine = "Capability.cgi?action=get&channel=1";
inline constexpr const char* kMachineLine = "Machine.cgi?action=get_capability";
inline constexpr const char* kMediaLine = "Config.cgi?action=get&category=Media.*&ch=1";
inline constexpr const char* kVideoLine = "Config.cgi?action=get&category=Video.*";
inline constexpr const char* kCameraLine = "Config.cgi?action=get&category=Camera.*";
inline constexpr const char* kNotificationLine = "Config.cgi?action=get&category=Notification.*";
inline constexpr const char* kMiscLine = "Config.cgi?action=get&category=Misc.*";
inline constexpr const char* kAnalyticsLine = "Config.cgi?action=get&category=VideoAnalytics.*";

inline constexpr const char* kNoSuchKey = "-11\nERROR: Unknown parameter.\n";
inline constexpr const char* kEmptySuccess = "0\nOK\n";

/// One request as the device class got it.
struct Sent {
    unsigned int uid;
    std::string url;
    int method;
    int connection;
};

/// Nothing is asked of it before the test does; every line that the library may send has a short answer, any
/// other fails with -6. Conversions run and show which maps they were given.
class Camera : public TestRequest {
public:
    using Maps = std::vector<CgiMap*>;

    Camera();

    /// Answers a request line with pairs ("A=1\nB=2\n") under a good status, from now on.
    void has(const std::string& line, const std::string& pairs);
    /// Answers a request line with exactly this text.
    void answers(const std::string& line, const std::string& text);
    /// Answers a request line with success but without a body.
    void answersNothing(const std::string& line);
    /// Fails a request line; nothing is written to the answer.
    void fails(const std::string& line, int result);
    /// Fails a request line and leaves a text all the same.
    void fails(const std::string& line, int result, const std::string& text);
    void recovers(const std::string& line) { replies_[line] = healthy_.at(line); }

    /// The request lines since the last look.
    std::vector<std::string> asked();

    /// Makes it one of the maker's devices with the adjustments that go with the flag.
    void isPell(int flag = 1);

    // ---- Seen by the test
    std::vector<Sent> sent;
    std::vector<std::string> conversions; ///< conversions in the order in which they were called
    CgiMap* videoMap = nullptr;
    CgiMap* cameraMap = nullptr;
    CgiMap* miscMap = nullptr;
    CgiMap* notificationMap = nullptr;

    // ---- Set by the test
    bool converts = true; ///< whether the device's own capability dialect is converted
    std::map<std::string, int> conversionResults;            ///< results other than 1, by name of the step
    std::function<int(char* url, char** answer)> setHandler; ///< 1 when empty

    int convertCgiCapability(CgiMap* capability, CgiMap* login) override;
    int convertCgiCapability(CgiMap* capability, CgiMap* machine, CgiMap* login) override;
    int convertCgiVideo(CgiMap* video) override;
    int convertCgiCamera(CgiMap* camera) override;
    int convertCgiMisc(CgiMap* misc, CgiMap* notification) override;
    int handleParameter(unsigned int uid, char* url, char** answer) override;
    int requestCgi(unsigned int uid, char* url, char** answer, _REQCGI_METHOD_DEF method,
                   _REQCGI_CONNECTION_DEF connection) override;

private:
    struct Reply {
        int result;
        bool hasText;
        std::string text;
    };

    int stepResult(const std::string& step, int result);

    std::map<std::string, Reply> replies_;
    std::map<std::string, Reply> healthy_;
};

/// The pairs of an answer text, without its head; fails the test when the head is not that of a success.
CgiMap pairsOf(const std::string& answer);

/// A camera under test, with the traces of its making forgotten.
class CameraTest : public ::testing::Test {
protected:
    CameraTest();

    Camera camera;
};

} // namespace koine::test
