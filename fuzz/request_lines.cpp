// Request lines of a host, through the whole dispatch.
#include "fuzz/fuzz_device.h"

using namespace koine::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const auto device = boost::make_shared<Device>();
    answerAsCamera(*device);
    chooseKind(*device, input.byte());
    device->set_server_address("camera");
    for (int lines = 0; lines < 8 && !input.empty(); ++lines) {
        const unsigned int uid = input.byte() % 3U;
        ask(*device, uid, input.text());
    }
    return 0;
}
