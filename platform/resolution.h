/// @file
/// Resolution names and the video keys of the maker's own devices.
#pragma once

#include "koine/export.h"
#include "koine/types.h"

/// Translates a resolution name ("CIF", "720P", "640x480", any case) into pixels.
/// @return non-zero on success; 0 for a name it does not know, which leaves the outputs alone
KOINE_EXPORT int getResolutionByStr(const char* name, _VIDEO_SYSTEM_DEF system, int* width, int* height);

/// Finds the name that a device uses for a size.
/// @param resolutionList the sizes or names that the device offers, separated by commas
/// @param width,height the size in pixels
/// @param[out] name receives the name, always ended, never more than `nameSize` bytes
/// @param nameSize room behind `name`
/// @retval 1 found
/// @retval 0 the list has no such size, or the name does not fit
KOINE_EXPORT int getResolutionStrByValue2(const char* resolutionList, int width, int height, char* name,
                                          unsigned int nameSize);

/// Writes one profile's encoder settings as video keys of the device ("&Video....=...").
/// @param resolutionList the sizes or names that the device offers, separated by commas
/// @param resoIndep non-zero when the device takes any size
/// @param encoding "JPEG", "MPEG4", "H264" or null
/// @param width,height pixels, 0 when not given
/// @param quality below 0 when not given
/// @param frameRate frames per second, 0 when not given
/// @param bitrate in the device's unit, 0 when not given
/// @param govLength frames, 0 when not given
/// @return a `malloc`ed text for the caller to `free`; null when the record cannot be expressed
KOINE_EXPORT char* getConfigVideoStr_TovlinNVR(const char* resolutionList, int resoIndep, char* encoding,
                                               int width, int height, float quality, int frameRate,
                                               int bitrate, int govLength);
