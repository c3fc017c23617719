// footprint MODEL: what request objects with full caches take of the heap, and the process of memory. MODEL
// is a folder with a device's answers.

#include "koine/BaseRequest.h"

#include <boost/make_shared.hpp>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <malloc.h>
#include <sstream>
#include <string>
#include <vector>

namespace {

/// A device that answers from files.
class FileDevice final : public BaseRequest {
public:
    explicit FileDevice(std::string folder) : folder_(std::move(folder)) {}

    const char* deviceClass() override { return "files"; }
    int probe(unsigned int) override { return koine::kOk; }
    int handleParameter(unsigned int, char* parameters, char** answer) override {
        return handleParameter_1(parameters, answer);
    }
    int syncProfileToken(unsigned int uid) override { return syncProfileToken_1(uid); }
    int buildStreamUri(unsigned int, const char*, unsigned int, const char*, const char*, int, int,
                       char**) override {
        return koine::kNotBuilt;
    }
    int requestCgi(unsigned int, char* url, char** answer, _REQCGI_METHOD_DEF,
                   _REQCGI_CONNECTION_DEF) override {
        const std::string line = url;
        for (const char* name : {"login", "capability", "media", "video", "camera", "notification", "misc"})
            if (asksFor(line, name))
                return give(name, answer);
        *answer = ::strdup("0\nOK\n");
        return koine::kOk;
    }

private:
    /// "Login.cgi" for login, "category=Media.*" for media.
    static bool asksFor(const std::string& line, std::string name) {
        name[0] = static_cast<char>(name[0] - 'a' + 'A');
        return line.find("/" + name + ".cgi") != std::string::npos ||
               line.find("category=" + name + ".") != std::string::npos;
    }

    int give(const std::string& name, char** answer) const {
        std::ostringstream text;
        text << std::ifstream(folder_ + "/" + name + ".txt").rdbuf();
        *answer = ::strdup(text.str().c_str());
        return koine::kOk;
    }

    std::string folder_;
};

std::size_t heapInUse() { return ::mallinfo2().uordblks; }

/// "VmRSS: 1234 kB" of this process; under an emulator it is the emulator's.
long residentKilobytes() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.compare(0, 6, "VmRSS:") == 0)
            return std::strtol(line.c_str() + 6, nullptr, 10);
    return 0;
}

bool fill(BaseRequest& device) {
    device.set_server_address("127.0.0.1");
    if (device.cacheCgi(1) != koine::kOk)
        return false;
    char line[] = "Login.cgi";
    char* answer = nullptr;
    const int result = device.requestHttpStr(1, line, nullptr, nullptr, &answer);
    const bool isFull = result == koine::kOk && std::strstr(answer, "Product-Name=") != nullptr;
    std::free(answer);
    return isFull;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2)
        return 2;
    constexpr int kDevices = 64;
    std::vector<boost::shared_ptr<FileDevice>> devices;
    devices.reserve(kDevices);
    const std::size_t heapBefore = heapInUse();
    const long residentBefore = residentKilobytes();
    for (int i = 0; i < kDevices; ++i) {
        devices.push_back(boost::make_shared<FileDevice>(argv[1]));
        if (!fill(*devices.back())) {
            std::fprintf(stderr, "the caches cannot be filled from %s\n", argv[1]);
            return 1;
        }
    }
    std::printf("pointer %zu bits, heap per request object with full caches %zu bytes\n", sizeof(void*) * 8,
                (heapInUse() - heapBefore) / kDevices);
    std::printf("resident: %ld KiB before, %ld KiB with %d request objects\n", residentBefore,
                residentKilobytes(), kDevices);
    return 0;
}
