/// @file
/// CGI answer texts: parse into a map, print from a map; device URLs.
#pragma once

#include "koine/export.h"
#include "koine/types.h"

/// Parses an answer text into `map`: a status line, a message line, then `key=value` lines. An existing
/// key is overwritten, other entries stay; on failure nothing is added.
/// @retval 1 parsed
/// @retval -1 the answer says that the credentials were refused (status -35)
/// @retval -2 null, empty, or the first line is no number
/// @return any other failing status of the answer as it stands
KOINE_EXPORT int createMapStr(const char* text, CgiMap* map);

/// Same contract as `createMapStr`; used for answers that the library itself gave.
KOINE_EXPORT int createMapstrFromCgi(const char* text, CgiMap* map);

/// Prints the entries that match `key` as a new answer text, in map order.
/// @param map what to print from
/// @param key null for the whole map; "*" stands for any run of characters; case is ignored
/// @return a `malloc`ed text for the caller to `free`; null when nothing matches or memory runs out
KOINE_EXPORT char* getCgiStr(CgiMap* map, const char* key);

/// Builds the URL that addresses a request line on a device.
/// @param address name, IPv4 or IPv6 address; may begin with "https://" or "http://"
/// @param port HTTP port; 443 means TLS
/// @param requestLine the line as it stands, without a leading "/"
/// @return a `malloc`ed text for the caller to `free`; null when it cannot be built
KOINE_EXPORT char* getTovlinCgiUrl(const char* address, unsigned int port, char* requestLine);
