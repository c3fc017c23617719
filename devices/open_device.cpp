// A request object from a URL, in one call.

#include "devices/open_device.h"

#include <boost/make_shared.hpp>

namespace koine {

void setUpDevice(DialectRequest& device, const DeviceUrl& url, const DeviceOptions& options) {
    if (!options.uriPattern.empty())
        device.setUriPattern(options.uriPattern);
    device.setRtspPort(options.rtspPort);
    device.setCredentialsInUri(options.credentialsInUri);
    device.setConnections(options.connections);
    device.set_server_address(url.serverAddress().c_str());
    device.set_server_port(url.port);
    device.set_username((options.username.empty() ? url.username : options.username).c_str());
    device.set_password((options.password.empty() ? url.password : options.password).c_str());
    if (!options.vendor.empty())
        device.setVendor(options.vendor.c_str());
}

boost::shared_ptr<DialectRequest> openDevice(const std::string& url, const DeviceOptions& options) {
    const DeviceUrl parsed = parseDeviceUrl(url);
    auto device = boost::make_shared<DialectRequest>();
    setUpDevice(*device, parsed, options);
    return device;
}

} // namespace koine
