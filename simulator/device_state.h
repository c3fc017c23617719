/// @file
/// What a simulated device holds, and what it lets itself be set to.
#pragma once

#include "simulator/device_model.h"
#include "simulator/pair_list.h"
#include "simulator/request_target.h"

#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace koine::sim {

/// The settings of a device: the media profiles of each channel, and everything else once.
struct Settings {
    PairList common;
    std::vector<PairList> media; ///< index 0 is channel 1

    /// Where a key of a channel is kept.
    PairList& listOf(std::string_view key, unsigned int channel);
    const PairList& listOf(std::string_view key, unsigned int channel) const;
};

/// Any thread may use it at any time.
class DeviceState {
public:
    explicit DeviceState(const DeviceModel& model);

    /// The value that the device holds under a key of its settings, its capabilities or its login answer;
    /// empty when it has none. @param channel counted from 1
    std::string value(std::string_view key, unsigned int channel) const;

    /// The pairs, as "key=value\n" lines, of some patterns separated by commas; nothing when a pattern names
    /// something the device does not have.
    std::optional<std::string> get(std::string_view patterns, unsigned int channel) const;

    /// Keeps all items, or none when one of them cannot be. @return whether they were kept
    bool set(const std::vector<QueryItem>& items, unsigned int channel);

private:
    const DeviceModel model_;
    mutable std::mutex mutex_;
    Settings settings_;
};

} // namespace koine::sim
