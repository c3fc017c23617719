/// @file
/// Visibility of what the Koine libraries export. Everything else stays inside them.
#pragma once

#define KOINE_EXPORT __attribute__((visibility("default")))
/// A part of an exported class that is the library's own business.
#define KOINE_HIDDEN __attribute__((visibility("hidden")))
