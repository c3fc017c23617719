/// @file
/// What a device is, told from its login and capability answers. Each takes a text (null counts as empty)
/// and gives a non-zero value for yes.
#pragma once

#include "koine/export.h"

KOINE_EXPORT int checkIfONVIFProductName(const char* productName);    ///< login "Product-Name"
KOINE_EXPORT int checkIf331_578ProductName(const char* productName);  ///< login "Product-Name"
KOINE_EXPORT int checkIf5240ProductName(const char* productName);     ///< login "Product-Name"
KOINE_EXPORT int checkIfPellProductId(const char* productId);         ///< login "Product-ID"
KOINE_EXPORT int checkIfNoCapabilityProductId(const char* productId); ///< login "Product-ID-Minor"
KOINE_EXPORT int haveResoIndepInCapability(const char* functions);    ///< "Capability.Function"
KOINE_EXPORT int haveProfileInCapability(const char* functions);      ///< "Capability.Function"
KOINE_EXPORT int haveIDPTZInCapability(const char* ptz);              ///< "Capability.PTZ"
