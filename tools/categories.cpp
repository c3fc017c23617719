// The parts of a device's configuration.

#include "tools/categories.h"

#include "text/words.h"
#include "tools/failure.h"

namespace koine::tool {
namespace {

constexpr std::string_view kReadConfig = "Config.cgi?action=get&category=";
constexpr std::string_view kUnsafe = "%&#+";

bool isCalled(std::string_view text, std::string_view name) {
    return text.size() == name.size() && startsWithIgnoreCase(text, name);
}

} // namespace

std::string_view categoryOf(std::string_view key) {
    for (const std::string_view category : kConfiguration)
        if (startsWithIgnoreCase(key, category) && key.substr(category.size(), 1) == ".")
            return category;
    return {};
}

std::string readingLine(std::string_view category) {
    if (isCalled(category, "Login"))
        return "Login.cgi";
    if (isCalled(category, "Capability"))
        return "Capability.cgi?action=get";
    for (const std::string_view known : kConfiguration)
        if (isCalled(category, known))
            return std::string(kReadConfig).append(known).append(".*");
    if (categoryOf(category).empty() || category.find_first_of("=,&\n ") != std::string_view::npos)
        throw Failure(ExitCode::usage,
                      "no category or key: " + std::string(category) +
                          "; categories are Login, Capability, Media, Video, Camera, Notification, Misc and "
                          "VideoAnalytics, keys begin with one of them (Video.I0.*)");
    return std::string(kReadConfig).append(category);
}

bool meansAbsent(int result, int status) {
    constexpr int kUnknownParameter = -11;
    return result == kNoResource || result == kNoFunction || result == kUnknownParameter ||
           (result == kOk && status == kUnknownParameter);
}

std::string lineValue(std::string_view value) {
    constexpr std::string_view kHex = "0123456789ABCDEF";
    std::string text;
    for (const char c : value) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte > 0x20 && byte < 0x7F && kUnsafe.find(c) == std::string_view::npos)
            text += c;
        else
            text.append({'%', kHex[byte >> 4U], kHex[byte & 0xFU]});
    }
    return text;
}

} // namespace koine::tool
