#include "default_platform/curl_handle.h"

#include <mutex>

namespace koine::platform {

bool curlReady() {
    static std::mutex mutex;
    static bool ready = false;
    const std::lock_guard<std::mutex> guard(mutex);
    // Tried again after a failure: the lack of memory may have passed. The end of the process is early enough
    // to clean up.
    ready = ready || curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    return ready;
}

} // namespace koine::platform
