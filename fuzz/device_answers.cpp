// Answers of a device, through every cache and conversion and into every answer for the host.
#include "fuzz/fuzz_device.h"

#include "platform/cgi_text.h"
#include "text/numbers.h"

using namespace koine::fuzz;

namespace {

constexpr long kMostProfiles = 40; // more of them cost time and show nothing new

bool claimsManyProfiles(const std::string& answer) {
    CgiMap map;
    if (createMapStr(answer.c_str(), &map) != 1)
        return false;
    return koine::readLong(map["Media.Profiles.Count"]) > kMostProfiles;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const auto device = boost::make_shared<Device>();
    device->set_server_address("camera");
    chooseKind(*device, input.byte());
    for (const std::string& line : deviceLines())
        device->answers[line] = input.text();
    if (claimsManyProfiles(device->answers["category=Media."]))
        return 0;

    static constexpr const char* kLines[] = {
        "Login.cgi",
        "Capability.cgi?action=get",
        "Config.cgi?action=get&category=*",
        "Config.cgi?action=get&category=Video*,Camera.*,VideoAnalytics.*",
        "Stream.cgi?action=set&StreamSetup.Transport.Protocol=TCP&StreamSetup.Stream=RTP&ProfileMode=AUTO",
        "Stream.cgi?action=get",
        "Onvif.cgi?action=GetStreamUri",
        "Config.cgi?action=set&Media.Profiles.Profile1.VideoEncoderConfiguration.Quality=5",
        "Config.cgi?action=get&category=Media.*",
    };
    for (const char* line : kLines)
        ask(*device, 1, line);
    return 0;
}
