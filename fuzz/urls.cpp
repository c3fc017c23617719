// URLs, and the texts of the support library: maps, names of sizes, kinds of products.
#include "fuzz/fuzz_device.h"
#include "platform/TlGlobalLib.h"

using namespace koine;
using namespace koine::fuzz;

namespace {

void parseUrl(const std::string& text) {
    Url url(text.c_str());
    try {
        url.parse_url();
        if (url.host().empty() || url.port() == 0 || url.port() > 65535)
            __builtin_trap();
    } catch (const Url::parse_error& error) {
        if (error.what()[0] == '\0')
            __builtin_trap();
    }
}

/// What was printed from a map must parse into the same map. Line ends of other systems are the exception:
/// each parse takes one "\r" off a value.
void printAndParse(const std::string& text, const std::string& key) {
    CgiMap map;
    if (createMapStr(text.c_str(), &map) != kOk)
        return;
    const OwnedText some(getCgiStr(&map, key.c_str()));
    const OwnedText all(getCgiStr(&map, nullptr));
    CgiMap again;
    const bool hasReturns = text.find('\r') != std::string::npos;
    if (all && !hasReturns && (createMapstrFromCgi(all.get(), &again) != kOk || again != map))
        __builtin_trap();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const std::uint8_t small = input.byte();
    std::string first = input.text();
    const std::string second = input.text();

    parseUrl(first);
    const OwnedText url(getTovlinCgiUrl(second.c_str(), small * 257U, first.data()));
    printAndParse(first, second);

    int width = 0;
    int height = 0;
    getResolutionByStr(first.c_str(), (small & 1U) != 0 ? VIDEO_SYSTEM_PAL : VIDEO_SYSTEM_NTSC, &width,
                       &height);
    char name[16];
    getResolutionStrByValue2(second.c_str(), width, height, name, small % (sizeof name + 1));
    for (const auto check : {checkIfONVIFProductName, checkIf331_578ProductName, checkIf5240ProductName,
                             checkIfPellProductId, checkIfNoCapabilityProductId, haveResoIndepInCapability,
                             haveProfileInCapability, haveIDPTZInCapability})
        check(first.c_str());
    const OwnedText keys(getConfigVideoStr_TovlinNVR(second.c_str(), small & 1, first.data(), width, height,
                                                     static_cast<float>(small) - 1.0F, small, small, small));
    return 0;
}
