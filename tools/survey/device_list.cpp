// The devices of a survey, from a file.

#include "tools/survey/device_list.h"

#include "devices/device_url.h"
#include "tools/failure.h"
#include "tools/named_input.h"

namespace koine::tool {
namespace {

constexpr const char* kBlanks = " \t\r";

std::string trimmed(const std::string& line) {
    const std::size_t begin = line.find_first_not_of(kBlanks);
    if (begin == std::string::npos)
        return {};
    return line.substr(begin, line.find_last_not_of(kBlanks) - begin + 1);
}

ListedDevice deviceAt(const std::string& text, const std::string& place) {
    try {
        const DeviceUrl url = parseDeviceUrl(text);
        return {text, url.shown(), !url.username.empty(), !url.password.empty()};
    } catch (const DeviceUrlError& error) {
        throw Failure(ExitCode::usage, place + ": " + error.what());
    }
}

std::vector<ListedDevice> readDevices(std::istream& stream, const std::string& name) {
    std::vector<ListedDevice> devices;
    std::string line;
    for (int number = 1; std::getline(stream, line); ++number) {
        const std::string text = trimmed(line);
        if (!text.empty() && text.front() != '#')
            devices.push_back(deviceAt(text, name + ", line " + std::to_string(number)));
    }
    if (devices.empty())
        throw Failure(ExitCode::usage, name + ": holds no device; write the URL of one on each line");
    return devices;
}

} // namespace

std::vector<ListedDevice> readDeviceList(const std::string& path) {
    return readNamedInput(path, readDevices);
}

} // namespace koine::tool
