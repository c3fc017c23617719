/// @file
/// Trace lines of the two steps that look into a request line on its way to the device.
#pragma once

#include "platform/trace.h"

namespace koine::rewrite_trace {

/// Memory ran out before the parameters were looked at.
inline void notChecked(int line, int error) {
    dbg_trace("???#%d BaseRequest::checkCgiParameter: err%d. \n", line, error);
}

/// Memory ran out before or while the line was rewritten.
inline void notRewritten(int line, int error) { dbg_trace("???#%d recoveryUrl: err%d. \n", line, error); }

} // namespace koine::rewrite_trace
