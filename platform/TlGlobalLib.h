/// @file
/// Everything that the library needs of the support library, libTlGlobalLib.
///
/// Only declarations: `default_platform/` implements them on libcurl, a maker may bring an implementation
/// of its own.
#pragma once

#include "platform/cgi_text.h"
#include "platform/classification.h"
#include "platform/http_client.h"
#include "platform/mutex.h"
#include "platform/resolution.h"
#include "platform/trace.h"
#include "platform/url.h"
