/// @file
/// The behaviour that all request objects share.
#pragma once

#include "koine/IBaseRequest.h"
#include "koine/StreamIDCenter.h"
#include "koine/export.h"
#include "koine/types.h"
#include "platform/http_client.h"
#include "platform/mutex.h"

#include <boost/noncopyable.hpp>
#include <boost/shared_ptr.hpp>

#include <map>
#include <string>
#include <vector>

namespace koine {

/// One cache: what the device said, and whether it was asked.
struct DeviceCache {
    int loaded = 0;
    CgiMap map;
};

struct CategoryFamily;

} // namespace koine

/// Encoder settings of one media profile, gathered from a set line.
struct _tagProfileMap {
    const char* encoding; ///< "JPEG", "MPEG4", "H264" (constant texts), or null when not given
    int width;            ///< pixels
    int height;           ///< pixels
    float quality;        ///< -1.0 when not given
    int frameRateLimit;   ///< frames per second
    int bitrateLimit;     ///< in the device's unit
    int govLength;        ///< frames
};

// The class is non-copyable by itself and through its registry base; the compiler's remark that the two
// empty bases cannot be told apart is of no use to anybody.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winaccessible-base"
#elif defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Winaccessible-base"
#endif

/// A request object: dispatch of request lines, caches, stream users, media profiles.
///
/// Abstract: a device class supplies `deviceClass`, `probe`, `handleParameter`, `syncProfileToken`,
/// `requestCgi` and `buildStreamUri`, for which `handleParameter_1`, `syncProfileToken_1` and `requestCgi_1`
/// are the building blocks. Every other step is virtual too and is called through the virtual table, so a
/// device class can replace any of them. The rules at `IBaseRequest` hold here.
///
/// All operations are public so that a host, a device class or a test can call any step. The steps are not
/// "locked" in the sense of those rules unless they say so: call them while holding `getLock()`.
///
/// The order of the virtual operations is part of the binary interface and never changes.
class KOINE_EXPORT BaseRequest : public IBaseRequest, public StreamIDCenter, private boost::noncopyable {
public:
    BaseRequest();

    // ---- Entry points of the host: request/dispatch.cpp, request/transport.cpp, request/request.cpp
    void init(unsigned int uid, const char* text) override;
    int requestHttpData(unsigned int uid, char* url, char* username, char* password) override;
    int requestHttpStr(unsigned int uid, char* url, char* username, char* password, char** answer) override;
    void freeData(char* data) override;
    void close() override;
    int testOK(char* text, unsigned long length, char* username, char* password) override;
    const char* GetCgiMapStr(unsigned int uid, const char* key) override;
    const char* GetStreamMapStr(unsigned int uid, const char* key) override;

    // ---- Per-uid reads of the stream client: stream/uid_accessors.cpp
    int strm_setting_channel(unsigned int uid) override;
    int strm_setting_no(unsigned int uid) override;
    const char* model_name(unsigned int uid) override;
    int getSettingMaxW(unsigned int uid) override;
    int getSettingMaxH(unsigned int uid) override;
    float getNowQuality(unsigned int uid) override;
    float getQualityStep(unsigned int uid) override;
    int profile_id(unsigned int uid) override;
    const char* profile_token(unsigned int uid) override;
    int audio_in_live(unsigned int uid) override;

    // ---- Connection data and what the host attaches: request/accessors.cpp, stream/uid_accessors.cpp
    int strm_nvr_subchannel() override;
    const char* get_login_username() override;
    const char* get_login_password() override;
    const char* server_address() const override;
    unsigned int server_port() const override;
    void setVendor(const char* vendor) override;
    const char* getVendor() override;
    boost::shared_ptr<IBase> getIBaseStream(unsigned int uid) override;
    void setIBaseStream(unsigned int uid, boost::shared_ptr<IBase> stream) override;
    void setStreamLive(IBase* live) override;
    const char* getCookie() override;

    // ---- Operations that device classes may fill with life: request/request.cpp
    int CallJoystickCmd(const char* command, const char* parameter, unsigned int first, unsigned int second,
                        int third) override;
    void HandleMultiCmd(const std::string& command, void* context, unsigned int length) override;
    void PTZCmdCB(unsigned int uid, __QaHttpErr error, const unsigned char* data, unsigned int length,
                  const void* context) override;
    int ParsingBaseNotification(const unsigned char* data, unsigned int length, bool* first, bool* second,
                                bool* third) override;

    /// Empties the caches and releases the HTTP client under the lock, then ends the lock. No other thread
    /// may use the object any more.
    ~BaseRequest() override;

    // ---- Request-wide settings: request/accessors.cpp
    virtual void set_username(const char* username);
    virtual std::string get_username();
    virtual void set_password(const char* password);
    virtual std::string get_password();
    virtual void set_strm_setting_channel(int channel);
    virtual void set_strm_nvr_subchannel(int channel); ///< values below 1 are stored as 1
    virtual int strm_setting_channel();
    virtual void set_model_name(const char* name);
    virtual std::string get_model_name();

    /// The quality setters also write the capability cache; those of the bounds recompute the step as a
    /// tenth of the range (`getSettingQualitySrcMax` - `getSettingQualitySrcMin`).
    virtual float getSettingQualitySrcMax();
    virtual void setSettingQualitySrcMax(float quality);
    virtual float getSettingQualitySrcMin();
    virtual void setSettingQualitySrcMin(float quality);
    virtual float getQualityStep();
    virtual void setQualityStep(float step);
    virtual int getSettingFramerateSrcMax();
    virtual void setSettingFramerateSrcMax(int rate);
    virtual int getSettingFramerateSrcMin();
    virtual void setSettingFramerateSrcMin(int rate);
    virtual IBase* getStreamLive();

    // ---- Device caches: cache/
    //
    // A fill asks the device once. `refresh` 1 empties the cache first; whether the device is then asked
    // again differs from cache to cache. `answer` receives the printed cache, the raw device text of a
    // failed fill, or a fallback answer.

    /// Fills all caches: login, capability, media, video, camera, notification, misc, video analytics.
    /// @retval 1 all filled
    /// @return otherwise the code of the first that failed
    virtual int cacheCgi(unsigned int uid);

    /// The device's "Login.cgi" answer, whole; `key` is ignored. Sets the product flags.
    virtual int getCacheLogin(unsigned int uid, int refresh, const char* key, char** answer);

    /// The device's capabilities, whole, converted; sets the capability flags.
    /// @param uid the stream user who asks
    /// @param refresh 1 empties the cache first
    /// @param url null, or a ready URL that is requested instead of the built one
    /// @param[out] answer null, or receives the printed cache
    virtual int getCacheCapability(unsigned int uid, int refresh, const char* url, char** answer);

    /// The device's media profiles, completed and normalised; sets profile count and media-profile flag.
    /// @param uid the stream user who asks
    /// @param refresh 1 empties the cache first
    /// @param url null, or a ready URL that is requested instead of the built one
    /// @param key which keys to print ("Media.*"), null for all
    /// @param[out] answer null, or receives the printed keys
    virtual int getCacheConfigMedia(unsigned int uid, int refresh, const char* url, const char* key,
                                    char** answer);

    /// The five configuration categories; `extra` is ignored, `key` as above.
    virtual int getCacheConfigVideo(unsigned int uid, int refresh, const char* extra, const char* key,
                                    char** answer);
    virtual int getCacheConfigCamera(unsigned int uid, int refresh, const char* extra, const char* key,
                                     char** answer);
    virtual int getCacheConfigNotification(unsigned int uid, int refresh, const char* extra, const char* key,
                                           char** answer);
    virtual int getCacheConfigMisc(unsigned int uid, int refresh, const char* extra, const char* key,
                                   char** answer);
    virtual int getCacheConfigVideoAnalytics(unsigned int uid, int refresh, const char* extra,
                                             const char* key, char** answer);

    /// Media, Video, Camera, Notification and Misc in one text, each part with its own status head; `mode` is
    /// ignored. `answer` receives the parts joined so far also after a failure.
    virtual int getCacheConfigAll(unsigned int uid, int mode, char** answer);

    /// Conversions between key dialects, in place. All return 1.
    virtual int convertCgiCapability(CgiMap* capability, CgiMap* login);
    virtual int convertCgiCapability(CgiMap* capability, CgiMap* machine, CgiMap* login);
    virtual int convertCgiMedia(unsigned int uid, CgiMap* media, CgiMap* login);
    virtual int convertCgiVideo(CgiMap* video);
    virtual int convertCgiCamera(CgiMap* camera);
    virtual int convertCgiMisc(CgiMap* misc, CgiMap* notification);

    /// Locked. Sends one request to the device with the stored credentials.
    /// @param uid the stream user who asks
    /// @param url an absolute URL
    /// @param[out] answer receives a copy of the body when there is one, else stays as it is
    /// @param method 0 is GET, anything else POST
    /// @param connection whether the connection is kept
    /// @retval 1 the device answered
    /// @retval -2 null url
    /// @retval -8 no HTTP client
    /// @return otherwise the client's failing result
    virtual int requestCgi_1(unsigned int uid, char* url, char** answer, _REQCGI_METHOD_DEF method,
                             _REQCGI_CONNECTION_DEF connection);

    // ---- Streams and profiles: stream/, media/

    /// Starts the stream that the user's set-up text asks for: fills the caches, chooses and synchronises
    /// the media profile.
    /// @retval 1 started
    /// @retval -2 the device cannot serve this kind of stream
    /// @return otherwise the failing result of the cache filling or the profile search
    virtual int HandleInit(unsigned int uid);

    /// Chooses the media profile that serves the user, by token or by profile mode.
    /// @retval 1 chosen, or the device has no media profiles
    /// @retval -2 no profile may serve the user
    virtual int searchAvailableProfileToken(unsigned int uid);

    /// The encoding to use on a profile: the one asked for if the profile has it, else the best it has.
    /// @return `encoding` itself or a constant text, never to be freed; null when there is none
    virtual const char* getAutoStrmEnc(const char* encoding, int profileNo);

    /// Fits the user's stream to the profile and sends the encoder settings in one set line, once per user.
    /// @retval 1 done, nothing to do, or the device refused the settings
    /// @retval -2 no encoding can be determined
    /// @retval -8 out of memory, or the settings are longer than 2047 characters
    virtual int syncProfileToken_1(unsigned int uid);

    /// Composes the set line that carries profile settings in the device's video keys.
    /// @return a `malloc`ed text, or null when a profile's settings cannot be expressed
    virtual char* getConfigVideoStr(std::map<int, _tagProfileMap*>& profiles);

    /// Brings the device's video keys in line with the profile settings of a set line.
    /// @retval 1 done or nothing to do
    /// @retval 0 failed
    virtual int syncVideoConfigByMediaConfig(unsigned int uid, char* url);

    /// Answers "Stream.cgi?action=get".
    virtual int buildCgiStreamGet(unsigned int uid, char* url, char** answer);
    /// Answers "Onvif.cgi?action=GetStreamUri".
    virtual int buildCgiGetStreamUri(unsigned int uid, char* url, char** answer);

    // ---- Request lines: request/rewrite.cpp, request/config_get.cpp, request/config_set.cpp

    /// Rewrites a request line into the device's dialect.
    /// @param uid the stream user who asks
    /// @param url the line; stays as it is
    /// @param[out] rewritten receives a `malloc`ed line when something applies, else stays as it is
    /// @retval 1 done
    /// @retval -8 out of memory
    virtual int recoveryUrl(unsigned int uid, char* url, char** rewritten);

    /// Looks at the parameters of a set line.
    /// @retval 1 go on
    /// @retval -2 the line must be refused
    /// @retval -8 out of memory
    virtual int checkCgiParameter(unsigned int uid, char* url);

    /// Answers "Config.cgi?action=get" from the category caches. `*answer` stays null when the line names no
    /// known category.
    virtual int handleConfigGet(unsigned int uid, char* url, char** answer);

    /// Decides whether changed profile sizes need a reconnect; always leaves a fresh text in `*answer`,
    /// freeing what was there.
    /// @retval 1 decided
    /// @retval -8 out of memory
    virtual int handleParameter_1(char* params, char** answer);

    /// Writes what a set line changed into the caches.
    /// @retval 1 written
    /// @retval 0 the video keys could not be brought in line
    /// @retval -8 out of memory
    virtual int handleConfigSet(unsigned int uid, char* url);

    virtual int forbiRequest(); ///< @retval 0 always

    /// The object's recursive lock; owned by the object.
    virtual vm_mutex* getLock();

    // ---- What the device is: request/accessors.cpp
    virtual int getMediaProfile();
    virtual void setMediaProfile(int driven);
    virtual int getProfileCount();
    virtual void setProfileCount(int count);
    virtual int getIsONVIFProduct();
    virtual void setIsONVIFProduct(int is);
    virtual int getIs331_578Product();
    virtual void setIs331_578Product(int is);
    virtual int getIs5240Product();
    virtual void setIs5240Product(int is);
    virtual int getIsPellDevice();
    virtual void setIsPellDevice(int is);
    virtual int getIsTovlinNVRDevice();
    virtual void setIsTovlinNVRDevice(int is);
    virtual int getIsTovlinDevice();
    virtual void setIsTovlinDevice(int is);
    virtual int get_which_slave();
    /// Reads the device kind from a text that begins with "IPCAM" (0), "NVR" (1) or "DVR" (2) in any case;
    /// null and any other text leave the kind as it is.
    virtual void set_which_slave(const char* kind);
    virtual int getIsResoIndep();
    virtual void setIsResoIndep(int is);
    virtual int getIsRemoteEventTrigger();
    virtual void setIsIsRemoteEventTrigger(int is);
    virtual int getIsTlProfile();
    virtual void setIsTlProfile(int is);
    virtual int getHasVA();
    virtual void setHasVA(int has);
    /// @retval 1 the device can serve the kind of stream that the user asks for
    /// @retval 0 it cannot
    virtual int checkStreamSupport(unsigned int uid);
    virtual int getIsIDPTZ();
    virtual void setIsIDPTZ(int is);
    virtual std::string server_address_2();
    virtual void set_server_address(const char* address);
    virtual void set_server_port(unsigned int port);
    virtual unsigned int stream_port();
    virtual void set_stream_port(unsigned int port);
    virtual int getHaveMobile();
    virtual void setHaveMobile(int have);

    // ---- Not virtual

    /// Sets the video-analytics flag when the capability cache says so; never clears it.
    void paserCapabilitySupport();

protected:
    /// What of the device's configuration is still unknown.
    enum class Configuration { all, withoutAnalytics };

    /// The request lines that filling these caches is sure to send to the device when nothing fails, in this
    /// order; what tells the device's kind comes before them and is left out.
    std::vector<std::string> linesToFill(unsigned int uid, Configuration wanted);

    /// Gives the object another HTTP client, for good. For constructors only: `close` takes no lock.
    /// @return the client it had, which is the caller's from now on; null when there was none
    IHttpClient* exchangeHttpClient(IHttpClient* client);

private:
    friend struct koine::CategoryFamily;
    class KOINE_HIDDEN Dispatch;
    class KOINE_HIDDEN Rewrite;
    class KOINE_HIDDEN ConfigSet;
    class KOINE_HIDDEN CapabilityFill;
    class KOINE_HIDDEN CategoryAnswer;
    class KOINE_HIDDEN MediaFill;
    class KOINE_HIDDEN ProfileSync;
    class KOINE_HIDDEN StreamStart;
    class KOINE_HIDDEN UriAnswer;

    KOINE_HIDDEN int fillLogin(unsigned int uid, char** raw);
    KOINE_HIDDEN char* deviceUrl(const char* requestLine);
    KOINE_HIDDEN int askDevice(unsigned int uid, const char* requestLine, char** raw);

    vm_mutex lock_;
    IBase* streamLive_ = nullptr;
    int settingChannel_ = 0;
    int nvrSubchannel_ = 1;
    std::string vendor_;
    std::string serverAddress_;
    unsigned int serverPort_ = 80;
    unsigned int streamPort_ = 80;
    std::string username_;
    std::string password_;
    std::string modelName_;
    float qualityStep_ = 0.1F;
    float qualitySrcMin_ = 0.0F;
    float qualitySrcMax_ = 1.0F;
    int frameRateSrcMin_ = 1;
    int frameRateSrcMax_ = 30;
    koine::DeviceCache login_;
    koine::DeviceCache capability_;
    koine::DeviceCache media_;
    koine::DeviceCache video_;
    koine::DeviceCache camera_;
    koine::DeviceCache notification_;
    koine::DeviceCache misc_;
    koine::DeviceCache videoAnalytics_;
    int mediaProfile_ = 0;
    int profileCount_ = 0;
    int isOnvifProduct_ = 0;
    int is331_578Product_ = 0;
    int is5240Product_ = 0;
    int isPellDevice_ = 0;
    int isTovlinNvrDevice_ = 0;
    int isTovlinDevice_ = 0;
    int isResoIndep_ = 0;
    int isRemoteEventTrigger_ = 0;
    int isTlProfile_ = 0;
    int hasVideoAnalytics_ = 0;
    int haveMobile_ = 0;
    int isIdPtz_ = 0;
    int whichSlave_ = 0;
    IHttpClient* httpClient_ = nullptr;
};

#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#elif defined(__clang__)
#pragma clang diagnostic pop
#endif
