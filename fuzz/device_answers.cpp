// Answers of a device, through every cache and conversion and into every answer for the host.
#include "fuzz/fuzz_device.h"

using namespace koine::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const auto device = boost::make_shared<Device>();
    device->set_server_address("camera");
    chooseKind(*device, input.byte());
    for (const std::string& line : deviceLines())
        device->answers[line] = input.text();

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
