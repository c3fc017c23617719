/// @file
/// The media profiles before anybody started a stream.
#pragma once

#include "devices/dialect_request.h"

namespace koine {

/// Fetches the capabilities and then all media profiles before somebody asks for some: whatever is fetched
/// first stays. And gives the stream user the device's quality scale and frame rates, as starting a stream
/// does, or qualities would be shown on the wrong scale. Locked.
/// @retval 1 the capabilities are known. What goes wrong with the profiles is told when they are asked for:
/// the
///         device is then asked again.
/// @return otherwise what asking for the capabilities gave
KOINE_EXPORT int prepareMedia(DialectRequest& device, unsigned int uid);

} // namespace koine
