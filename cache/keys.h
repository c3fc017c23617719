/// @file
/// Names that several parts of the library look up, and the fixed answers.
#pragma once

#include <string_view>

namespace koine {

namespace keys {
inline constexpr std::string_view kDevice = "Device";
inline constexpr std::string_view kProductName = "Product-Name";
inline constexpr std::string_view kVideoSystem = "Video-System";
inline constexpr std::string_view kFunction = "Capability.Function";
inline constexpr std::string_view kVideoFormat = "Capability.Video.Format";
inline constexpr std::string_view kVideoResolution = "Capability.Video.Resolution";
inline constexpr std::string_view kVideoResolutionNxN = "Capability.Video.Resolution.NxN";
inline constexpr std::string_view kQualityMax = "Capability.Video.Quality.Max";
inline constexpr std::string_view kQualityMin = "Capability.Video.Quality.Min";
inline constexpr std::string_view kQualitySrcMax = "Capability.Video.Quality.Src.Max";
inline constexpr std::string_view kQualitySrcMin = "Capability.Video.Quality.Src.Min";
inline constexpr std::string_view kQualityStep = "Capability.Video.Quality.Value.Step";
inline constexpr std::string_view kAudioInputChannel = "Capability.Audio.Input.Channel";
inline constexpr std::string_view kDetectionSensitivity = "Camera.Detection.Sensitivity";
inline constexpr std::string_view kDetectionLs = "Camera.Detection.LS";
inline constexpr std::string_view kTriggerAlarm = "Notification.Trigger.Alarm";
inline constexpr std::string_view kAlarmInputActive = "Misc.External.DI.Port1.Active";
} // namespace keys

namespace answers {
inline constexpr std::string_view kOk = "0\nOK\n";
inline constexpr std::string_view kOkHead = "0\nOK"; ///< stream answers go on after it
inline constexpr std::string_view kUnknownParameter = "-11\nERROR: Unknown parameter.\n";
inline constexpr std::string_view kAuthError = "-35\nERROR: Authentication error.\n";
} // namespace answers

/// The maker's own line: the vendor text begins like this, in any case.
inline constexpr std::string_view kMakerVendor = "TOVLIN";

/// A source that has streams and nothing else: it is never asked for anything.
inline constexpr std::string_view kStreamOnlyVendor = "ONLY_STREAM";

} // namespace koine
