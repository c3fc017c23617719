// Devices and their lines, for hosts in C. Each entry point checks its arguments, calls one operation and
// turns what goes wrong into a code.

#include "capi/edge.h"
#include "devices/answer.h"
#include "devices/open_device.h"
#include "devices/prepare_media.h"
#include "koine/koine.h"
#include "text/owned_text.h"

#include <algorithm>
#include <cstring>

struct koine_device {
    boost::shared_ptr<koine::DialectRequest> request;
    std::string address;
};

namespace {

using namespace koine;

/// The caller's options, as far as it knows them: it may have been built before there were more.
koine_options complete(const koine_options* given) {
    koine_options options = KOINE_OPTIONS;
    if (given != nullptr)
        std::memcpy(&options, given, std::min(given->size, sizeof options));
    return options;
}

DeviceOptions optionsOf(const koine_options* given) {
    const koine_options known = complete(given);
    DeviceOptions options;
    options.username = viewOf(known.username);
    options.password = viewOf(known.password);
    options.vendor = viewOf(known.vendor);
    options.uriPattern = viewOf(known.uri_pattern);
    if (known.rtsp_port != 0)
        options.rtspPort = known.rtsp_port;
    options.credentialsInUri = known.credentials_in_uri != 0;
    if (known.connections != 0)
        options.connections = known.connections;
    return options;
}

int refuse(char** problem, const char* text) {
    if (problem != nullptr)
        *problem = copyText(text).release();
    return KOINE_REFUSED;
}

koine_device* open(const char* url, const koine_options* options) {
    const DeviceUrl parsed = parseDeviceUrl(viewOf(url));
    auto device = std::make_unique<koine_device>();
    device->request = openDevice(orEmpty(url), optionsOf(options));
    device->address = parsed.shown();
    return device.release();
}

} // namespace

int koine_open(const char* url, const koine_options* options, koine_device** device, char** problem) {
    if (problem != nullptr)
        *problem = nullptr;
    if (device == nullptr)
        return refuse(problem, "there is no place for the device; give the address of a pointer");
    *device = nullptr;
    return atEdge([&] {
        try {
            *device = open(url, options);
            return +KOINE_OK;
        } catch (const std::invalid_argument& error) {
            return refuse(problem, error.what());
        }
    });
}

void koine_close(koine_device* device) { delete device; }

void koine_disconnect(koine_device* device) {
    if (device != nullptr)
        atEdge([&] {
            device->request->close();
            return +KOINE_OK;
        });
}

const char* koine_address(const koine_device* device) {
    return device == nullptr ? "" : device->address.c_str();
}

int koine_request(koine_device* device, unsigned int uid, const char* line, char** answer) {
    if (answer != nullptr)
        *answer = nullptr;
    if (device == nullptr || line == nullptr)
        return KOINE_REFUSED;
    return atEdge([&] {
        // The operation takes texts that it could change.
        std::string url(line);
        std::string none;
        return device->request->requestHttpStr(uid, url.data(), none.data(), none.data(), answer);
    });
}

int koine_prepare_media(koine_device* device, unsigned int uid) {
    if (device == nullptr)
        return KOINE_REFUSED;
    return atEdge([&] { return prepareMedia(*device->request, uid); });
}

unsigned int koine_requests_sent(const koine_device* device) {
    return device == nullptr ? 0 : static_cast<unsigned int>(device->request->requestsSent());
}

unsigned int koine_requests_failed(const koine_device* device) {
    return device == nullptr ? 0 : static_cast<unsigned int>(device->request->requestsFailed());
}
