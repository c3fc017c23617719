/// @file
/// The summary of a device: what `koine info` shows.
#pragma once

#include "cache/keys.h"
#include "tools/json.h"
#include "tools/learned.h"

#include <array>
#include <string>
#include <string_view>

namespace koine::tool {

/// A line of the summary: where its value comes from.
struct Fact {
    const char* key;  ///< for programs
    const char* name; ///< for people
    std::string_view source;
};

inline constexpr std::array<Fact, 4> kLoginFacts = {{
    {"product", "Product", keys::kProductName},
    {"product_id", "Product id", "Product-ID"},
    {"user_level", "User level", "User-Level"},
    {"video_system", "Video system", keys::kVideoSystem},
}};

inline constexpr std::array<Fact, 9> kCapabilityFacts = {{
    {"device", "Device", keys::kDevice},
    {"model", "Model", "ID"},
    {"channels", "Video channels", "Capability.Video.Input.Channel"},
    {"audio_inputs", "Audio inputs", keys::kAudioInputChannel},
    {"encodings", "Encodings", keys::kVideoFormat},
    {"sizes", "Sizes", keys::kVideoResolutionNxN},
    {"quality_min", "Quality from", keys::kQualitySrcMin},
    {"quality_max", "Quality to", keys::kQualitySrcMax},
    {"functions", "Functions", keys::kFunction},
}};

/// The summary for programs.
Json summaryAsJson(const Learned& learned, const std::string& url);

} // namespace koine::tool
