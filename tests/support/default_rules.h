/// @file
/// The default platform's functions under the names that `default_names.h` gives them.
#pragma once

#include "platform/TlGlobalLib.h"

int default_createMapStr(const char* text, CgiMap* map);
int default_createMapstrFromCgi(const char* text, CgiMap* map);
char* default_getCgiStr(CgiMap* map, const char* key);
int default_checkIfONVIFProductName(const char* productName);
int default_checkIf331_578ProductName(const char* productName);
int default_checkIf5240ProductName(const char* productName);
int default_checkIfPellProductId(const char* productId);
int default_checkIfNoCapabilityProductId(const char* productId);
int default_haveResoIndepInCapability(const char* functions);
int default_haveProfileInCapability(const char* functions);
int default_haveIDPTZInCapability(const char* ptz);
int default_getResolutionByStr(const char* name, _VIDEO_SYSTEM_DEF system, int* width, int* height);
int default_getResolutionStrByValue2(const char* resolutionList, int width, int height, char* name,
                                     unsigned int nameSize);
char* default_getConfigVideoStr_TovlinNVR(const char* resolutionList, int resoIndep, char* encoding,
                                          int width, int height, float quality, int frameRate, int bitrate,
                                          int govLength);
void default_vm_mutex_set_invalid(vm_mutex* mutex);
int default_vm_mutex_init(vm_mutex* mutex);
int default_vm_mutex_lock(vm_mutex* mutex);
int default_vm_mutex_unlock(vm_mutex* mutex);
void default_vm_mutex_destroy(vm_mutex* mutex);
