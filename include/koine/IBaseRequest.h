/// @file
/// What a host calls on a request object.
#pragma once

#include "koine/IBase.h"
#include "koine/types.h"

#include <boost/enable_shared_from_this.hpp>
#include <boost/shared_ptr.hpp>

#include <string>

/// The host's view of one network video device.
///
/// The rules below hold for every operation here and in `BaseRequest`; an operation states only what it
/// adds to them.
///
/// 1. Ownership. The host owns a request object through `boost::shared_ptr<IBaseRequest>`, created from a
///    pointer to the concrete class (the interface has no virtual destructor; the shared pointer remembers
///    how to destroy the object).
/// 2. Texts in. `const char*` and `char*` arguments are read during the call only and never kept, changed
///    or freed. A null text counts as an empty one where nothing else is said.
/// 3. Texts out. A text stored through `answer` is `malloc`ed and belongs to the receiver: the host gives
///    it back with `freeData`, a step with `free`. `answer` itself may be null: the text is then not wanted.
///    Returned `const char*` point into the object and stay valid until the value is changed.
/// 4. Users. `uid` names a stream user of the host. Naming one for the first time creates its
///    `StreamIDClient` with the initial values; no operation removes it again.
/// 5. Results. 1 is success; -1 refused credentials; -2 bad or refused input; -8 something is missing
///    (memory, the HTTP client, a key of a cache); 0 an answer could not be built; any other value comes
///    unchanged from the device transport.
/// 6. Threads. "Locked" operations take the object's recursive lock for their whole run and may be called
///    from any thread. All others read or write plain members: call them before the object is shared, or
///    while holding `BaseRequest::getLock()`, or from within a step.
///
/// The order of the operations is part of the binary interface and never changes.
class KOINE_EXPORT IBaseRequest : public IBase, public boost::enable_shared_from_this<IBaseRequest> {
public:
    /// Name of the device class, for people and logs. Any thread.
    virtual const char* deviceClass() = 0;

    /// Can this class drive the device?
    /// @retval 1 yes
    /// @return otherwise the code of the step that failed
    virtual int probe(unsigned int uid) = 0;

    /// Stores the set-up text of a stream user. The next `requestHttpStr` for the uid acts on it once.
    virtual void init(unsigned int uid, const char* text) = 0;

    /// Locked. Runs `requestHttpStr` and parses the answer into the user's temporary key map, where
    /// `GetCgiMapStr` reads it.
    /// @return the dispatch's result when that fails, otherwise the parser's (1 on success)
    virtual int requestHttpData(unsigned int uid, char* url, char* username, char* password) = 0;

    /// Locked. Answers one request line of the dialect.
    /// @param uid the stream user who asks
    /// @param url the request line, usually an absolute URL; the first one teaches the object the device's
    ///        address and port. Null is refused.
    /// @param username,password taken when the object has none yet, ignored afterwards
    /// @param[out] answer always receives a text when not null, on failure one of the two error answers:
    ///        "-35\nERROR: Authentication error.\n" for result -1, "-11\nERROR: Unknown parameter.\n" for
    ///        every other failure
    /// @retval 1 answered
    /// @retval 0 a stream answer could not be built
    /// @retval -1 the device refused the credentials
    /// @retval -2 the line cannot be parsed, or a step refused it
    /// @retval -8 out of memory, or something a step needs is missing
    /// @return any other failing result of a step or of the device transport
    virtual int requestHttpStr(unsigned int uid, char* url, char* username, char* password,
                               char** answer) = 0;

    /// Device-specific handling of the parameters of a "Stream.cgi?action=set" or "Config.cgi?action=set"
    /// line. May replace `*answer` (a `malloc`ed text or null).
    /// @retval 1 handled
    virtual int handleParameter(unsigned int uid, char* url, char** answer) = 0;

    /// Device-specific synchronisation of the user's media profile with the device.
    /// @retval 1 synchronised
    virtual int syncProfileToken(unsigned int uid) = 0;

    /// Frees an answer; null is allowed. Any thread.
    virtual void freeData(char* data) = 0;

    /// Closes the connection to the device; the object stays usable. Any thread.
    virtual void close() = 0;

    /// Locked. Waits until a running request has finished. The arguments are ignored.
    /// @retval 1 always
    virtual int testOK(char* text, unsigned long length, char* username, char* password) = 0;

    /// Value of a key in the user's temporary key map, or null when absent or empty.
    virtual const char* GetCgiMapStr(unsigned int uid, const char* key) = 0;

    /// Value of a key in the user's stream set-up map, or null when absent or empty.
    virtual const char* GetStreamMapStr(unsigned int uid, const char* key) = 0;

    virtual int strm_setting_channel(unsigned int uid) = 0;  ///< channel of the user's stream, counted from 1
    virtual int strm_setting_no(unsigned int uid) = 0;       ///< stream number of the user
    virtual const char* model_name(unsigned int uid) = 0;    ///< model of the device; the uid is ignored
    virtual int getSettingMaxW(unsigned int uid) = 0;        ///< largest width in pixels
    virtual int getSettingMaxH(unsigned int uid) = 0;        ///< largest height in pixels
    virtual float getNowQuality(unsigned int uid) = 0;       ///< current quality; below 0 when unknown
    virtual float getQualityStep(unsigned int uid) = 0;      ///< device quality per unit of host quality
    virtual int profile_id(unsigned int uid) = 0;            ///< number of the chosen profile, 0 for none
    virtual const char* profile_token(unsigned int uid) = 0; ///< token of the chosen profile
    virtual int audio_in_live(unsigned int uid) = 0;         ///< 1 when live view carries audio

    virtual int strm_nvr_subchannel() = 0;          ///< channel of a recorder, 1 or more
    virtual const char* get_login_username() = 0;   ///< user name sent to the device
    virtual const char* get_login_password() = 0;   ///< password sent to the device
    virtual const char* server_address() const = 0; ///< address of the device; empty until known
    virtual unsigned int server_port() const = 0;   ///< HTTP port of the device

    virtual void setVendor(const char* vendor) = 0; ///< "ONLY_STREAM..." and "TOVLIN..." have meanings
    virtual const char* getVendor() = 0;

    /// The stream object attached for a user; empty when none was attached or it has gone.
    virtual boost::shared_ptr<IBase> getIBaseStream(unsigned int uid) = 0;
    /// Attaches a stream object; only a weak reference to it is kept.
    virtual void setIBaseStream(unsigned int uid, boost::shared_ptr<IBase> stream) = 0;
    /// Keeps a plain pointer to the host's live object; never used or freed by the library.
    virtual void setStreamLive(IBase* live) = 0;

    /// Device-specific sending of one request; `BaseRequest::requestCgi_1` is the building block.
    /// @param uid the stream user who asks
    /// @param url an absolute URL, or a line of the host as it is after rewriting
    /// @param[out] answer receives a `malloc`ed copy of the device's text, or stays as it is
    /// @param method how to send it; the library itself always asks for the plain method
    /// @param connection whether the connection is kept; the library itself always keeps it
    /// @retval 1 the device answered
    virtual int requestCgi(unsigned int uid, char* url, char** answer, _REQCGI_METHOD_DEF method,
                           _REQCGI_CONNECTION_DEF connection) = 0;

    /// Device-specific building of a stream URI.
    /// @param uid the stream user who asks
    /// @param serverAddress as `server_address` gives it
    /// @param serverPort the device's HTTP port
    /// @param videoEncoding "H264", "MPEG4", "JPEG" or what the device names
    /// @param audioEncoding "ULAW", or null when the device has no audio input
    /// @param width,height in pixels, 0 when unknown
    /// @param[out] uri receives a `malloc`ed text on success
    /// @retval 1 built
    virtual int buildStreamUri(unsigned int uid, const char* serverAddress, unsigned int serverPort,
                               const char* videoEncoding, const char* audioEncoding, int width, int height,
                               char** uri) = 0;

    /// The "SET-COOKIE" header of the device's last answer; null when there is none. Owned by the HTTP
    /// client, valid until the next request.
    virtual const char* getCookie() = 0;

    /// Joystick commands are not supported by the library itself.
    /// @retval -2 always
    virtual int CallJoystickCmd(const char* command, const char* parameter, unsigned int first,
                                unsigned int second, int third) = 0;

    /// Does nothing in the library itself.
    virtual void HandleMultiCmd(const std::string& command, void* context, unsigned int length) = 0;

    /// Does nothing in the library itself.
    virtual void PTZCmdCB(unsigned int uid, __QaHttpErr error, const unsigned char* data, unsigned int length,
                          const void* context) = 0;

    /// Touches nothing in the library itself.
    /// @retval 1 always
    virtual int ParsingBaseNotification(const unsigned char* data, unsigned int length, bool* first,
                                        bool* second, bool* third) = 0;
};
