/// @file
/// A request object on a bench: its caches are open to the test, its device is a function.
#pragma once

#include "koine/BaseRequest.h"
#include "tests/support/scripted_platform.h"

#include <functional>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace koine::test {

/// The stream user of most tests.
inline constexpr unsigned int kUid = 7;

/// Owns the answer of a step: `EXPECT_EQ(step(..., answer.out()), 1)`, then `answer.text()`.
class AnswerText {
public:
    AnswerText() = default;
    explicit AnswerText(const std::string& before) : raw_(mallocedText(before)) {}
    ~AnswerText();
    AnswerText(const AnswerText&) = delete;
    AnswerText& operator=(const AnswerText&) = delete;

    char** out() { return &raw_; }
    bool isNull() const { return raw_ == nullptr; }
    std::string text() const { return raw_ == nullptr ? "(null)" : raw_; }

private:
    char* raw_ = nullptr;
};

/// Whether the object starts with filled (and empty) caches or still has to ask its device.
enum class Caches { filled, unfilled };

/// With filled caches no step asks the device for anything; the maps are the object's own, so a test writes
/// the situation into them. The conversions hand everything through until `converts` is set.
class BenchRequest : public BaseRequest {
public:
    struct Sent {
        unsigned int uid;
        std::string url;
        int method;
        int connection;
    };
    struct Line {
        unsigned int uid;
        std::string url;
        std::string username;
        std::string password;
        bool wantsAnswer;
    };
    struct UriOrder {
        std::string address;
        unsigned int port;
        std::string videoEncoding;
        std::string audioEncoding; ///< "(null)" for none
        int width;
        int height;
    };

    explicit BenchRequest(Caches caches = Caches::filled);

    CgiMap& login() { return *login_; }
    CgiMap& capability() { return *capability_; }
    CgiMap& media() { return *media_; }

    StreamIDClient& client(unsigned int uid = kUid) { return *get_streamid_client(uid); }

    /// Makes the device one that is driven through this many media profiles with tokens "T1", "T2", ...
    void useProfiles(int count);
    /// Writes an entry below a profile: `profile(1, ".token", "T1")`.
    void profile(int number, const std::string& suffix, const std::string& value);
    /// Writes an entry below a profile's encoder configuration: `encoder(1, ".Encoding", "H264")`.
    void encoder(int number, const std::string& suffix, const std::string& value);
    /// The entry below a profile's encoder configuration, "(absent)" when there is none.
    std::string encoderValue(int number, const std::string& suffix);

    /// What the device was asked, as request lines ("Login.cgi").
    std::vector<std::string> sentLines() const;

    // ---- What the test sets
    bool converts = false;
    /// Answers requests to the device; the line comes without address and port.
    std::function<int(const std::string& line, char** answer)> device;
    /// When set, takes the place of the dispatch.
    std::function<int(const Line& line, char** answer)> dispatch;
    std::function<int(unsigned int uid)> sync; ///< `syncProfileToken_1` when empty
    std::function<int(char** uri)> uri;        ///< an RTSP address when empty

    // ---- What the test sees
    std::vector<Sent> sent;
    std::vector<Line> lines;
    std::vector<UriOrder> uriOrders;
    std::vector<unsigned int> syncs;

    // ---- The device class
    const char* deviceClass() override { return "bench"; }
    int probe(unsigned int uid) override;
    int handleParameter(unsigned int uid, char* url, char** answer) override;
    int syncProfileToken(unsigned int uid) override;
    int requestCgi(unsigned int uid, char* url, char** answer, _REQCGI_METHOD_DEF method,
                   _REQCGI_CONNECTION_DEF connection) override;
    int buildStreamUri(unsigned int uid, const char* serverAddress, unsigned int serverPort,
                       const char* videoEncoding, const char* audioEncoding, int width, int height,
                       char** uri) override;

    // ---- Steps that the bench looks into
    int requestHttpStr(unsigned int uid, char* url, char* username, char* password, char** answer) override;
    using BaseRequest::convertCgiCapability;
    int convertCgiCapability(CgiMap* capability, CgiMap* login) override;
    int convertCgiMedia(unsigned int uid, CgiMap* media, CgiMap* login) override;

private:
    CgiMap* login_ = nullptr;
    CgiMap* capability_ = nullptr;
    CgiMap* media_ = nullptr;
};

} // namespace koine::test
