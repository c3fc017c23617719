// The login cache: what the device is called, and which product it therefore is.

#include "cache/cache_traces.h"
#include "cache/key_map.h"
#include "cache/keys.h"
#include "koine/BaseRequest.h"
#include "platform/cgi_text.h"
#include "platform/classification.h"
#include "text/owned_text.h"
#include "text/shortage.h"

using namespace koine;

namespace {

constexpr const char* kRequestLine = "Login.cgi";
constexpr std::string_view kProductId = "Product-ID";

} // namespace

/// Asks the device and sets the product flags. `raw` is left with the device's text.
int BaseRequest::fillLogin(unsigned int uid, char** raw) {
    const auto user = [&] { return cache_trace::User{static_cast<int>(uid), strm_setting_channel()}; };
    if (const int result = askDevice(uid, kRequestLine, raw); result != kOk) {
        cache_trace::loginFailed(__LINE__, user());
        return result;
    }
    if (const int result = createMapStr(*raw, &login_.map); result != kOk) {
        cache_trace::notParsed(__LINE__, user(), result);
        return result;
    }
    const auto value = [this](std::string_view key) { return entry(login_.map, key).c_str(); };
    setIsONVIFProduct(checkIfONVIFProductName(value(keys::kProductName)));
    setIs331_578Product(checkIf331_578ProductName(value(keys::kProductName)));
    setIs5240Product(checkIf5240ProductName(value(keys::kProductName)));
    setIsPellDevice(checkIfPellProductId(value(kProductId)));
    login_.loaded = 1;
    return kOk;
}

int BaseRequest::getCacheLogin(unsigned int uid, int refresh, const char* /*key*/, char** answer) {
    // The device is not asked again after a refresh: what was filled once counts as known.
    if (refresh == 1)
        login_.map.clear();
    OwnedText raw;
    if (login_.loaded == 0) {
        const int result = orNoResource([&] { return fillLogin(uid, OutText(raw)); });
        if (result != kOk) {
            if (answer != nullptr)
                *answer = raw.release();
            return result;
        }
    }
    if (answer == nullptr)
        return kOk;
    *answer = getCgiStr(&login_.map, nullptr);
    if (*answer != nullptr)
        return kOk;
    cache_trace::loginEmpty(__LINE__, kNoResource);
    return kNoResource;
}
