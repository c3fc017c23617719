#include "platform/classification.h"

#include "default_platform/characters.h"
#include "text/owned_text.h"
#include "text/tokens.h"

#include <algorithm>
#include <array>
#include <string_view>

// What a device is told by. A further product is one more entry in one of these tables; docs/devices.md
// says which table changes what.
namespace {

using namespace std::string_view_literals;

// Beginnings of "Product-Name".
constexpr std::array kOnvifProducts = {"ONVIF_"sv};
constexpr std::array k331And578Products = {"TL-331"sv, "TL-578"sv};
constexpr std::array k5240Products = {"TL-5240"sv};

// Beginnings of "Product-ID" and "Product-ID-Minor".
constexpr std::array kPellProductIds = {"PELL"sv};
constexpr std::array kNoCapabilityProductIds = {"NOCAP"sv};

// Words of "Capability.Function" and "Capability.PTZ".
constexpr std::string_view kResolutionIndependent = "ResoIndep";
constexpr std::string_view kProfiles = "Profile";
constexpr std::string_view kDigitalPtzOfProfile = "IDPTZ";

constexpr std::string_view kWordSeparators = ",; \t\r\n";

template <std::size_t Count>
int beginsWithOneOf(const char* name, const std::array<std::string_view, Count>& beginnings) {
    const std::string_view text = koine::skipBlanks(koine::viewOf(name));
    return std::any_of(beginnings.begin(), beginnings.end(), [text](std::string_view beginning) {
        return koine::startsWithIgnoreCase(text, beginning);
    });
}

int hasWord(const char* list, std::string_view word) {
    for (const std::string_view entry : koine::Tokens(koine::viewOf(list), kWordSeparators))
        if (koine::platform::sameWord(entry, word))
            return 1;
    return 0;
}

} // namespace

int checkIfONVIFProductName(const char* productName) { return beginsWithOneOf(productName, kOnvifProducts); }

int checkIf331_578ProductName(const char* productName) {
    return beginsWithOneOf(productName, k331And578Products);
}

int checkIf5240ProductName(const char* productName) { return beginsWithOneOf(productName, k5240Products); }

int checkIfPellProductId(const char* productId) { return beginsWithOneOf(productId, kPellProductIds); }

int checkIfNoCapabilityProductId(const char* productId) {
    return beginsWithOneOf(productId, kNoCapabilityProductIds);
}

int haveResoIndepInCapability(const char* functions) { return hasWord(functions, kResolutionIndependent); }

int haveProfileInCapability(const char* functions) { return hasWord(functions, kProfiles); }

int haveIDPTZInCapability(const char* ptz) { return hasWord(ptz, kDigitalPtzOfProfile); }
