// The functions of `platform/`: recorded, then answered by a test's hook or by the default rule.
#include "default_rules.h"
#include "failing_allocations.h"
#include "scripted_platform.h"

#include <cstdarg>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

char g_login_debug_function_name[64];
int g_login_debug_line;

namespace {

using koine::test::platform;
using koine::test::shownText;

/// Asks the hook when there is one, else the default rule.
template <typename Hook, typename Rule, typename... Arguments>
auto answered(const Hook& hook, Rule rule, Arguments... arguments) {
    return hook ? hook(arguments...) : rule(arguments...);
}

int asked(const char* name, const koine::test::PlatformHooks::Question& hook, int (*rule)(const char*),
          const char* text) {
    if (!platform().quiet()) {
        const koine::test::SpareAllocations spare;
        platform().note(std::string(name) + "(" + shownText(text) + ")");
    }
    return answered(hook, rule, text);
}

void noted(std::string_view text) { platform().note(text); }

} // namespace

void dbg_trace(const char* format, ...) {
    if (platform().quiet())
        return;
    const koine::test::SpareAllocations spare;
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    va_list third;
    va_copy(third, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    std::vector<char> text(static_cast<std::size_t>(length) + 1);
    std::vsnprintf(text.data(), text.size(), format, again);
    const int line = va_arg(third, int);
    va_end(third);
    va_end(again);
    va_end(arguments);
    platform().noteTrace(format, line, text.data());
}

int createMapStr(const char* text, CgiMap* map) {
    noted("createMapStr");
    return answered(platform().hooks.createMapStr, default_createMapStr, text, map);
}

int createMapstrFromCgi(const char* text, CgiMap* map) {
    noted("createMapstrFromCgi");
    return answered(platform().hooks.createMapstrFromCgi, default_createMapstrFromCgi, text, map);
}

char* getCgiStr(CgiMap* map, const char* key) {
    if (!platform().quiet()) {
        const koine::test::SpareAllocations spare;
        noted("getCgiStr(" + shownText(key) + ")");
    }
    return answered(platform().hooks.getCgiStr, default_getCgiStr, map, key);
}

int checkIfONVIFProductName(const char* text) {
    return asked(__func__, platform().hooks.checkIfONVIFProductName, default_checkIfONVIFProductName, text);
}
int checkIf331_578ProductName(const char* text) {
    return asked(__func__, platform().hooks.checkIf331_578ProductName, default_checkIf331_578ProductName,
                 text);
}
int checkIf5240ProductName(const char* text) {
    return asked(__func__, platform().hooks.checkIf5240ProductName, default_checkIf5240ProductName, text);
}
int checkIfPellProductId(const char* text) {
    return asked(__func__, platform().hooks.checkIfPellProductId, default_checkIfPellProductId, text);
}
int checkIfNoCapabilityProductId(const char* text) {
    return asked(__func__, platform().hooks.checkIfNoCapabilityProductId,
                 default_checkIfNoCapabilityProductId, text);
}
int haveResoIndepInCapability(const char* text) {
    return asked(__func__, platform().hooks.haveResoIndepInCapability, default_haveResoIndepInCapability,
                 text);
}
int haveProfileInCapability(const char* text) {
    return asked(__func__, platform().hooks.haveProfileInCapability, default_haveProfileInCapability, text);
}
int haveIDPTZInCapability(const char* text) {
    return asked(__func__, platform().hooks.haveIDPTZInCapability, default_haveIDPTZInCapability, text);
}

int getResolutionByStr(const char* name, _VIDEO_SYSTEM_DEF system, int* width, int* height) {
    return answered(platform().hooks.getResolutionByStr, default_getResolutionByStr, name, system, width,
                    height);
}

int getResolutionStrByValue2(const char* resolutionList, int width, int height, char* name,
                             unsigned int nameSize) {
    return answered(platform().hooks.getResolutionStrByValue2, default_getResolutionStrByValue2,
                    resolutionList, width, height, name, nameSize);
}

char* getConfigVideoStr_TovlinNVR(const char* resolutionList, int resoIndep, char* encoding, int width,
                                  int height, float quality, int frameRate, int bitrate, int govLength) {
    return answered(platform().hooks.getConfigVideoStr_TovlinNVR, default_getConfigVideoStr_TovlinNVR,
                    resolutionList, resoIndep, encoding, width, height, quality, frameRate, bitrate,
                    govLength);
}

void vm_mutex_set_invalid(vm_mutex* mutex) {
    noted("vm_mutex_set_invalid");
    default_vm_mutex_set_invalid(mutex);
}

int vm_mutex_init(vm_mutex* mutex) { return platform().initialise(mutex); }
int vm_mutex_lock(vm_mutex* mutex) { return platform().lock(mutex); }
int vm_mutex_unlock(vm_mutex* mutex) { return platform().unlock(mutex); }
void vm_mutex_destroy(vm_mutex* mutex) { platform().destroy(mutex); }
