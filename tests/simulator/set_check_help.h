/// @file
/// A device's own settings, to be given back to it.
#pragma once

#include "simulator/device_state.h"
#include "text/numbers.h"

#include <string>
#include <vector>

namespace koine::sim {

/// For each profile and each encoding it offers, a set line with the first and one with the last size of its
/// list; and one with the profile's settings as they are.
inline std::vector<std::string> ownSettings(const DeviceModel& model, unsigned int channel) {
    const DeviceState state(model);
    std::vector<std::string> lines;
    const long count = readLong(state.value("Media.Profiles.Count", channel));
    for (long n = 1; n <= count; ++n) {
        const std::string encoder =
            "Media.Profiles.Profile" + std::to_string(n) + ".VideoEncoderConfiguration";
        const auto line = [&encoder](const std::string& encoding, const std::string& width,
                                     const std::string& height) {
            return encoder + ".Encoding=" + encoding + "&" + encoder + ".Resolution.Width=" + width + "&" +
                   encoder + ".Resolution.Height=" + height;
        };
        lines.push_back(line(state.value(encoder + ".Encoding", channel),
                             state.value(encoder + ".Resolution.Width", channel),
                             state.value(encoder + ".Resolution.Height", channel)));
        for (const char* encoding : {"JPEG", "MPEG4", "H264", "H265"}) {
            const std::string list = state.value(encoder + "." + encoding + ".Resolution.NxN.List", channel);
            const std::size_t last = list.find_last_of(',') + 1;
            for (const std::string& size : {list.substr(0, list.find(',')), list.substr(last)})
                if (const std::size_t times = size.find('x'); times != std::string::npos)
                    lines.push_back(line(encoding, size.substr(0, times), size.substr(times + 1)));
        }
    }
    return lines;
}

/// Whether a new device takes a set line.
inline bool isTaken(const DeviceModel& model, unsigned int channel, const std::string& items) {
    return DeviceState(model).set(parseTarget("/Config.cgi?" + items).items, channel);
}

} // namespace koine::sim
