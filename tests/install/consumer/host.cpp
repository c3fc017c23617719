// Talks to a simulated device in this process over everything that is installed: the models, the device
// classes, the library and the support library.

#include "default_platform/host_settings.h"
#include "devices/answer.h"
#include "devices/open_device.h"
#include "platform/TlGlobalLib.h"
#include "simulator/simulated_device.h"

#include <iostream>

int main() {
    try {
        koine::sim::Options options(koine::sim::builtinModel("dome"));
        options.auth = koine::sim::AuthKind::digestMd5;
        options.username = "admin";
        options.password = "secret";
        const koine::sim::SimulatedDevice device(options);
        koine::setRequestTimeLimit(5000);

        koine::DeviceOptions credentials;
        credentials.username = "admin";
        credentials.password = "secret";
        const auto camera = koine::openDevice(device.url(), credentials);
        if (const koine::Answer answer = koine::request(*camera, 1, "Login.cgi"); !answer.ok()) {
            std::cerr << "Login.cgi: " << answer.result << "\n" << answer.text << "\n";
            return 1;
        }
        const koine::Answer stream =
            koine::request(*camera, 1, "Stream.cgi?action=set&StreamSetup.Stream=RTP-Unicast");
        const koine::Answer uri = koine::request(*camera, 1, "Onvif.cgi?action=GetStreamUri");
        std::cout << uri.text << device.counters().requests << " requests\n";
        return stream.ok() && uri.ok() && uri.text.find("rtsp://127.0.0.1") != std::string::npos ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << error.what() << "\n";
        return 1;
    }
}
