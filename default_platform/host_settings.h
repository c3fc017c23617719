/// @file
/// What a host can set in this support library: where trace lines go, and the limits and TLS rules of every
/// HTTP client.
///
/// All settings belong to the process. Any of these operations may be called from any thread at any time,
/// also while clients are at work; a client takes the settings that hold when a request of it begins. Nothing
/// here reads files or the environment when it is called; a CA file is read when a connection is made.
///
/// Every operation that can run out of memory says so in its result and then changes nothing.
#pragma once

#include "koine/export.h"

#include <cstddef>

namespace koine {

/// Receives one finished trace line.
/// @param line the line without its line end, passwords already masked; valid during the call only
/// @param context what the host gave with the callback
///
/// Called on the thread that traces, never by two threads at once, and never after the sink has been
/// replaced. What it traces itself is dropped. It must not throw, and must not wait for a thread that may
/// trace.
using TraceCallback = void (*)(const char* line, void* context);

/// Drops all trace lines; so it is at the start. A line then costs one look at a flag.
KOINE_EXPORT void traceToNowhere();

/// Writes every trace line to standard error, each with one write.
KOINE_EXPORT void traceToStandardError();

/// Hands every trace line to `callback`; null is the same as `traceToNowhere()`.
KOINE_EXPORT void traceToCallback(TraceCallback callback, void* context);

/// @name Limits
/// They hold for requests that begin later.
/// @{

/// Time limit of a whole request, from its begin to the last byte of the answer, in milliseconds, for clients
/// that have none of their own (`IHttpClient::SetTimeout`). 0 restores the default, 30,000.
KOINE_EXPORT void setRequestTimeLimit(unsigned int milliseconds);

/// The limit that holds now, in milliseconds.
KOINE_EXPORT unsigned int requestTimeLimit();

/// Time limit for resolving the name and connecting, TLS included, in milliseconds. 0 restores the default,
/// 10,000. The limit of the whole request holds all the same.
KOINE_EXPORT void setConnectTimeLimit(unsigned int milliseconds);

/// Largest body of an answer in bytes; a larger one is a broken answer. 0 restores the default, 16 MiB. More
/// than 4 GiB less 2 bytes counts as that: a client hands out no longer ones.
KOINE_EXPORT void setBodyLimit(std::size_t bytes);
/// @}

/// @name TLS
/// They hold for requests that begin later; a connection made under other rules is not used again.
/// @{

/// Whether a device's certificate must be signed by a known authority and name the host. Yes at the start.
/// Switched off, only a pinned key protects against a false device.
KOINE_EXPORT void setTlsVerification(bool verify);

/// File with the PEM certificates of the authorities to trust; null or empty restores the system's own.
/// @retval 1 set
/// @retval -8 out of memory
KOINE_EXPORT int setTlsAuthorityFile(const char* path);

/// The one public key that devices may have: "sha256//" and the base64 SHA-256 of the key in DER form,
/// several separated by ";", or the path of a file with the key in PEM or DER form. Null or empty ends the
/// pinning. Checked besides what `setTlsVerification` asks for.
/// @retval 1 set
/// @retval -8 out of memory
KOINE_EXPORT int setTlsPinnedKey(const char* key);
/// @}

} // namespace koine
