#include "default_platform/host_settings.h"

#include "default_platform/settings.h"
#include "koine/types.h"
#include "text/owned_text.h"
#include "text/shortage.h"

#include <algorithm>
#include <array>
#include <limits>
#include <mutex>
#include <new>
#include <string>

namespace koine {
namespace platform {
namespace {

// The length of a body is handed out as an unsigned int, and one byte more is its end.
constexpr std::size_t kLargestBody = std::numeric_limits<unsigned int>::max() - 1;

struct Shared {
    std::mutex mutex;
    Settings settings;
};

Shared& shared() {
    // Never destroyed, as a host may use clients while the process winds down; and in storage of its own,
    // as making it must not fail.
    alignas(Shared) static std::array<unsigned char, sizeof(Shared)> storage;
    static Shared& instance = *new (storage.data()) Shared;
    return instance;
}

template <typename Change>
void change(Change&& apply) {
    const std::lock_guard<std::mutex> guard(shared().mutex);
    apply(shared().settings);
}

int replaceText(std::string Settings::*member, const char* text) {
    return orOnShortage<int>(kNoResource, [&]() -> int {
        std::string copy(orEmpty(text));
        change([&](Settings& settings) { (settings.*member).swap(copy); });
        return kOk;
    });
}

} // namespace

Settings currentSettings() {
    const std::lock_guard<std::mutex> guard(shared().mutex);
    return shared().settings;
}

} // namespace platform

using platform::Settings;

void setRequestTimeLimit(unsigned int milliseconds) {
    platform::change([=](Settings& settings) {
        settings.requestMilliseconds = milliseconds != 0 ? milliseconds : Settings().requestMilliseconds;
    });
}

unsigned int requestTimeLimit() {
    const std::lock_guard<std::mutex> guard(platform::shared().mutex);
    return platform::shared().settings.requestMilliseconds;
}

void setConnectTimeLimit(unsigned int milliseconds) {
    platform::change([=](Settings& settings) {
        settings.connectMilliseconds = milliseconds != 0 ? milliseconds : Settings().connectMilliseconds;
    });
}

void setBodyLimit(std::size_t bytes) {
    platform::change([=](Settings& settings) {
        settings.bodyLimit = bytes != 0 ? std::min(bytes, platform::kLargestBody) : Settings().bodyLimit;
    });
}

void setTlsVerification(bool verify) {
    platform::change([=](Settings& settings) { settings.verifyTls = verify; });
}

int setTlsAuthorityFile(const char* path) { return platform::replaceText(&Settings::authorityFile, path); }

int setTlsPinnedKey(const char* key) { return platform::replaceText(&Settings::pinnedKey, key); }

} // namespace koine
