// With the maker's library the device answers from memory; with the default one there is no device at this
// address, and that is what the host is told.

#include "devices/answer.h"
#include "devices/open_device.h"

#include <iostream>

int main(int argc, char** argv) {
    const bool external = argc > 1 && std::string(argv[1]) == "external";
    const auto camera = koine::openDevice("http://127.0.0.1:1");
    const koine::Answer answer = koine::request(*camera, 1, "Login.cgi");
    std::cout << answer.result << " " << answer.text << "\n";
    if (external)
        return answer.ok() && answer.text.find("Product-Name=Stub") != std::string::npos ? 0 : 1;
    return answer.result == -3 ? 0 : 1;
}
