/// @file
/// What a device refuses to be set to.
#pragma once

#include "simulator/device_state.h"

namespace koine::sim {

/// Whether a key belongs to a part of the device that can be set at all.
bool isSettable(std::string_view key) noexcept;

/// Whether a device takes this value for this key: profiles must exist, numbers must be numbers, a frame rate
/// is at least 1, and a text fits on a line.
bool isAcceptable(const DeviceModel& model, const Settings& held, unsigned int channel,
                  const QueryItem& item);

/// Whether the picture size that the key belongs to is one that the device offers for the encoding it is used
/// with. True for a key that has nothing to do with sizes.
bool sizeIsOffered(const DeviceModel& model, const Settings& held, unsigned int channel,
                   std::string_view key);

} // namespace koine::sim
