/// @file
/// A request object whose every step can be watched and replaced.
#pragma once

#include "koine/BaseRequest.h"
#include "tests/support/scripted_platform.h"

#include <functional>
#include <map>
#include <string>

namespace koine::test {

/// The stream user of most tests.
inline constexpr unsigned int kUser = 7;

/// Owns a text that a step hands out: `EXPECT_EQ(step(..., answer.out()), 1)`, then `answer.text()`.
class Answer {
public:
    Answer() = default;
    /// A text that is there before the call.
    explicit Answer(const std::string& before) : raw_(mallocedText(before)) {}
    ~Answer();
    Answer(const Answer&) = delete;
    Answer& operator=(const Answer&) = delete;

    /// Where the next call stores its text; frees what is owned.
    char** out();
    /// The same, but the call sees the text that is owned.
    char** inOut() { return &raw_; }
    bool isNull() const { return raw_ == nullptr; }
    std::string text() const { return raw_ == nullptr ? "(null)" : raw_; }
    char* raw() const { return raw_; }

private:
    char* raw_ = nullptr;
};

/// Result and text of one request line.
struct Reply {
    int result;
    std::string text; ///< "(null)" for none
};

inline bool operator==(const Reply& a, const Reply& b) { return a.result == b.result && a.text == b.text; }
std::ostream& operator<<(std::ostream& out, const Reply& reply);

/// The two error answers and the plain success.
inline const std::string kRefusedCredentials = "-35\nERROR: Authentication error.\n";
inline const std::string kUnknownParameter = "-11\nERROR: Unknown parameter.\n";
inline const std::string kPlainOk = "0\nOK\n";

/// What a test puts in the place of a step. Empty: the library's own step; for the six operations that a
/// device class supplies, what `TestRequest` says. A hook may call the library's own step as
/// `request.BaseRequest::recoveryUrl(...)`.
struct Steps {
    using ByUser = std::function<int(unsigned int)>;
    using ByLine = std::function<int(unsigned int, char*)>;
    using ByLineAnswered = std::function<int(unsigned int, char*, char**)>;
    using WholeCache = std::function<int(unsigned int, int, const char*, char**)>;
    using CategoryCache = std::function<int(unsigned int, int, const char*, const char*, char**)>;
    using Sending =
        std::function<int(unsigned int, char*, char**, _REQCGI_METHOD_DEF, _REQCGI_CONNECTION_DEF)>;

    ByUser probe;
    ByUser syncProfileToken;
    ByUser cacheCgi;
    ByUser HandleInit;
    ByUser searchAvailableProfileToken;
    ByUser syncProfileToken_1;
    ByUser checkStreamSupport;
    ByLine checkCgiParameter;
    ByLine handleConfigSet;
    ByLine syncVideoConfigByMediaConfig;
    ByLineAnswered handleParameter;
    ByLineAnswered recoveryUrl;
    ByLineAnswered handleConfigGet;
    ByLineAnswered buildCgiStreamGet;
    ByLineAnswered buildCgiGetStreamUri;
    WholeCache getCacheLogin;
    WholeCache getCacheCapability;
    CategoryCache getCacheConfigMedia;
    CategoryCache getCacheConfigVideo;
    CategoryCache getCacheConfigCamera;
    CategoryCache getCacheConfigNotification;
    CategoryCache getCacheConfigMisc;
    CategoryCache getCacheConfigVideoAnalytics;
    std::function<int(unsigned int, int, char**)> getCacheConfigAll;
    std::function<int(CgiMap*, CgiMap*)> convertCgiCapability;
    std::function<int(CgiMap*, CgiMap*, CgiMap*)> convertCgiCapabilityByMachine;
    std::function<int(unsigned int, CgiMap*, CgiMap*)> convertCgiMedia;
    std::function<int(CgiMap*)> convertCgiVideo;
    std::function<int(CgiMap*)> convertCgiCamera;
    std::function<int(CgiMap*, CgiMap*)> convertCgiMisc;
    std::function<int(char*, char**)> handleParameter_1;
    std::function<const char*(const char*, int)> getAutoStrmEnc;
    std::function<char*(std::map<int, _tagProfileMap*>&)> getConfigVideoStr;
    Sending requestCgi;
    Sending requestCgi_1;
    std::function<int(unsigned int, char*, char*, char*, char**)> requestHttpStr;
    std::function<int(unsigned int, const char*, unsigned int, const char*, const char*, int, int, char**)>
        buildStreamUri;
};

/// The caches, as the conversions were given them: null until then. VideoAnalytics has no conversion.
struct SeenMaps {
    CgiMap* login = nullptr;
    CgiMap* capability = nullptr;
    CgiMap* media = nullptr;
    CgiMap* video = nullptr;
    CgiMap* camera = nullptr;
    CgiMap* notification = nullptr;
    CgiMap* misc = nullptr;
};

/// A device class for tests. Its own operations forward to the building blocks: `requestCgi` to
/// `requestCgi_1` (and so to the scripted device), `handleParameter` to `handleParameter_1`,
/// `syncProfileToken` to `syncProfileToken_1`; `buildStreamUri` gives "rtsp://camera/live", `probe` 1.
///
/// Every step is noted in the platform's transcript with its arguments, "recoveryUrl(7, Login.cgi, answer)",
/// before it runs; a null text or answer is noted as "(null)".
class TestRequest : public BaseRequest {
public:
    Steps steps;
    SeenMaps maps;

    /// Knows its device ("camera", port 80) and the credentials ("admin", "secret").
    void connect();

    /// Sends one request line through the dispatch, without credentials.
    Reply ask(const std::string& line, unsigned int uid = kUser);
    /// The same without an answer pointer.
    int tell(const std::string& line, unsigned int uid = kUser);

    StreamIDClient& client(unsigned int uid = kUser) { return *get_streamid_client(uid); }

    // ---- The device class
    const char* deviceClass() override { return "test"; }
    int probe(unsigned int uid) override;
    int handleParameter(unsigned int uid, char* url, char** answer) override;
    int syncProfileToken(unsigned int uid) override;
    int requestCgi(unsigned int uid, char* url, char** answer, _REQCGI_METHOD_DEF method,
                   _REQCGI_CONNECTION_DEF connection) override;
    int buildStreamUri(unsigned int uid, const char* serverAddress, unsigned int serverPort,
                       const char* videoEncoding, const char* audioEncoding, int width, int height,
                       char** uri) override;

    // ---- The library's steps
    int requestHttpStr(unsigned int uid, char* url, char* username, char* password, char** answer) override;
    int cacheCgi(unsigned int uid) override;
    int getCacheLogin(unsigned int uid, int refresh, const char* key, char** answer) override;
    int getCacheCapability(unsigned int uid, int refresh, const char* url, char** answer) override;
    int getCacheConfigMedia(unsigned int uid, int refresh, const char* url, const char* key,
                            char** answer) override;
    int getCacheConfigVideo(unsigned int uid, int refresh, const char* extra, const char* key,
                            char** answer) override;
    int getCacheConfigCamera(unsigned int uid, int refresh, const char* extra, const char* key,
                             char** answer) override;
    int getCacheConfigNotification(unsigned int uid, int refresh, const char* extra, const char* key,
                                   char** answer) override;
    int getCacheConfigMisc(unsigned int uid, int refresh, const char* extra, const char* key,
                           char** answer) override;
    int getCacheConfigVideoAnalytics(unsigned int uid, int refresh, const char* extra, const char* key,
                                     char** answer) override;
    int getCacheConfigAll(unsigned int uid, int mode, char** answer) override;
    int convertCgiCapability(CgiMap* capability, CgiMap* login) override;
    int convertCgiCapability(CgiMap* capability, CgiMap* machine, CgiMap* login) override;
    int convertCgiMedia(unsigned int uid, CgiMap* media, CgiMap* login) override;
    int convertCgiVideo(CgiMap* video) override;
    int convertCgiCamera(CgiMap* camera) override;
    int convertCgiMisc(CgiMap* misc, CgiMap* notification) override;
    int requestCgi_1(unsigned int uid, char* url, char** answer, _REQCGI_METHOD_DEF method,
                     _REQCGI_CONNECTION_DEF connection) override;
    int HandleInit(unsigned int uid) override;
    int searchAvailableProfileToken(unsigned int uid) override;
    const char* getAutoStrmEnc(const char* encoding, int profileNo) override;
    int syncProfileToken_1(unsigned int uid) override;
    char* getConfigVideoStr(std::map<int, _tagProfileMap*>& profiles) override;
    int syncVideoConfigByMediaConfig(unsigned int uid, char* url) override;
    int buildCgiStreamGet(unsigned int uid, char* url, char** answer) override;
    int buildCgiGetStreamUri(unsigned int uid, char* url, char** answer) override;
    int recoveryUrl(unsigned int uid, char* url, char** rewritten) override;
    int checkCgiParameter(unsigned int uid, char* url) override;
    int handleConfigGet(unsigned int uid, char* url, char** answer) override;
    int handleParameter_1(char* params, char** answer) override;
    int handleConfigSet(unsigned int uid, char* url) override;
    int checkStreamSupport(unsigned int uid) override;
};

} // namespace koine::test
