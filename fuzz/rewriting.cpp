// The two steps that look into a request line on its way to the device.
#include "fuzz/fuzz_device.h"

using namespace koine;
using namespace koine::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const auto device = boost::make_shared<Device>();
    chooseKind(*device, input.byte());
    device->get_streamid_client(1)->set_profile_id(input.byte());
    std::string line = input.text();

    const int checked = device->checkCgiParameter(1, line.data());
    if (checked != kOk && checked != kRefused)
        __builtin_trap();
    OwnedText rewritten;
    if (device->recoveryUrl(1, line.data(), OutText(rewritten)) != kOk)
        __builtin_trap();
    if (rewritten) {
        // What was rewritten once must be acceptable input again.
        OwnedText again;
        device->recoveryUrl(1, rewritten.get(), OutText(again));
        device->handleConfigSet(1, rewritten.get());
    }
    return 0;
}
