#include "default_platform/curl_handle.h"

namespace koine::platform {

bool curlReady() {
    // A function static is made once, however many threads arrive here first. The end of the process is
    // early enough to clean up.
    static const bool ready = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    return ready;
}

} // namespace koine::platform
