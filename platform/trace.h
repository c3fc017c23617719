/// @file
/// Diagnostics: trace lines and the marks that locate a crash.
#pragma once

#include "koine/export.h"

/// Writes one diagnostic line, built as `printf` does. The format begins with "?", "??" or "???" for
/// failures of rising severity; the first number is always a source line. Any thread.
KOINE_EXPORT void dbg_trace(const char* format, ...) __attribute__((format(printf, 1, 2)));

/// Name of the operation that a thread entered last; for the host's crash handler. Written by every
/// request object on every thread with relaxed atomic stores: read it the same way.
KOINE_EXPORT extern char g_login_debug_function_name[64];

/// The checkpoint inside that operation, written the same way.
KOINE_EXPORT extern int g_login_debug_line;
