/// @file
/// The HTTP client that a request object owns.
#pragma once

#include "koine/export.h"

/// One connection to one device. Destroyed only by `Release`.
///
/// Threads: one request at a time; `Abort` may be called from any other thread, `Close` from any thread.
class IHttpClient {
public:
    /// Destroys the client.
    virtual void Release() = 0;

    /// Performs one request and waits for the answer.
    /// @param url absolute URL
    /// @param headers further header lines separated by line ends, or null
    /// @param contentType media type of `content`, or null
    /// @param content body to send, or null
    /// @param contentLength its length in bytes
    /// @param username,password credentials; null counts as empty; sent only to the host of `url`
    /// @param[out] body the answer's body, ended by a NUL; owned by the client, valid until its next request
    /// @param[out] bodyLength its length in bytes
    /// @param method 0 GET, 2 POST
    /// @param connection 0 keeps the connection, 1 uses a fresh one that is closed afterwards
    /// @retval 1 the device answered with success
    /// @retval -1 the device refused the credentials
    /// @retval -2 the URL cannot be used
    /// @retval -3 cannot connect or resolve
    /// @retval -4 time limit
    /// @retval -5 broken answer
    /// @retval -6 any other HTTP status
    /// @retval -7 ended by `Abort`
    /// @retval -8 out of memory
    /// @retval -14 the device has no such function
    virtual int Request(const char* url, const char* headers, const char* contentType, const void* content,
                        unsigned int contentLength, const char* username, const char* password, char** body,
                        unsigned int* bodyLength, int method, int connection) = 0;

    /// Time limit of a whole request in milliseconds; 0 restores the default.
    virtual void SetTimeout(unsigned int milliseconds) = 0;

    /// HTTP status of the last answer, 0 if there was none.
    virtual int GetStatus() = 0;

    /// Value of a header of the last answer, whatever the case of its name; null if absent. Owned by the
    /// client, valid until its next request.
    virtual const char* GetHeader(const char* name) = 0;

    /// Ends a running `Request` from another thread; without one it does nothing.
    virtual void Abort() = 0;

    /// Closes the connection to the device; the next request opens it again.
    virtual void Close() = 0;

    /// Marks the requests that follow as made for a stream user. A client that works for nobody yet asks
    /// ahead: it should write no traces.
    virtual void SetUid(unsigned int uid) = 0;

protected:
    // Not virtual: the slot order above is the interface, and Release is the only way to end a client.
    ~IHttpClient() = default;
};

/// @return a new client, or null when none can be made
KOINE_EXPORT IHttpClient* CreateIHttpClient();
