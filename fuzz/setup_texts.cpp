// Set-up texts of stream users, and the parameters that decide about a reconnect.
#include "fuzz/fuzz_device.h"

using namespace koine;
using namespace koine::fuzz;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const auto device = boost::make_shared<Device>();
    answerAsCamera(*device);
    chooseKind(*device, input.byte());
    device->set_server_address("camera");
    const boost::shared_ptr<StreamIDClient> client = device->get_streamid_client(1);
    client->setVendor(device->getVendor());
    std::string text = input.text();

    client->setInitStream(text.c_str());
    if (client->ParseStreamInit() != kOk)
        __builtin_trap();
    OwnedText answer;
    device->handleParameter_1(text.data(), OutText(answer));
    device->init(2, text.c_str());
    ask(*device, 2, "Stream.cgi?action=get");
    return 0;
}
