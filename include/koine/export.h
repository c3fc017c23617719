/// @file
/// Visibility of what the Koine libraries export. Everything else stays inside them.
#pragma once

#define KOINE_EXPORT __attribute__((visibility("default")))
