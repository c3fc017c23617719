// What a connected device keeps on the heap, against the maps of its answers and one libcurl handle.

#include "bench/bare_client.h"
#include "bench/device_process.h"
#include "bench/groups.h"
#include "bench/heap_meter.h"
#include "bench/memory_device.h"
#include "bench/wire_device.h"
#include "devices/answer.h"
#include "platform/cgi_text.h"

#include <array>
#include <optional>

namespace koine::bench {
namespace {

constexpr const char* kGroup = "memory";

/// The lines whose answers are the caches.
constexpr std::array<const char*, 8> kCacheLines = {
    "Login.cgi",
    "Capability.cgi?action=get",
    "Config.cgi?action=get&category=Media.*",
    "Config.cgi?action=get&category=Video.*",
    "Config.cgi?action=get&category=Camera.*",
    "Config.cgi?action=get&category=Notification.*",
    "Config.cgi?action=get&category=Misc.*",
    "Config.cgi?action=get&category=VideoAnalytics.*",
};

/// 400 keys in all that the device says: three profiles have 55.
DeviceShape shapeOf400Keys() {
    DeviceShape shape;
    shape.loginKeys = 25;
    shape.capabilityKeys = 120;
    shape.categoryKeys = 40;
    return shape;
}

std::size_t keysSaid(const DeviceShape& shape) {
    const std::shared_ptr<const DeviceTexts> texts = deviceTexts(shape);
    std::size_t keys = 0;
    for (const auto& [line, text] : *texts) {
        CgiMap map;
        createMapStr(text.c_str(), &map);
        keys += map.size();
    }
    return keys;
}

/// Heap bytes of the maps that hold what the caches hold.
double mapFloor(DialectRequest& object) {
    double bytes = 0.0;
    for (const char* line : kCacheLines) {
        const std::string text = request(object, kUid, line).text;
        CgiMap map;
        bytes += static_cast<double>(heapUseOf([&] { createMapStr(text.c_str(), &map); }).bytes);
    }
    return bytes;
}

/// Heap bytes of a handle that has asked this device once.
double handleFloor(const DeviceProcess& device) {
    std::optional<BareClient> client;
    const std::string url = device.url() + "/Login.cgi";
    return static_cast<double>(heapUseOf([&] {
                                   client.emplace(kUser, kPassword);
                                   client->get(url);
                               }).bytes);
}

} // namespace

Rows measureMemory() {
    const DeviceShape shape = shapeOf400Keys();
    const DeviceProcess device(generatedModel(shape));
    startStream(*openWireDevice(device.url())); // what a process takes once, above all for libcurl
    handleFloor(device);

    boost::shared_ptr<DialectRequest> object;
    const HeapUse use = heapUseOf([&] {
        object = openWireDevice(device.url());
        startStream(*object);
    });
    const double bytes = static_cast<double>(use.bytes);
    const double maps = mapFloor(*object);
    const double handle = handleFloor(device);
    return {
        ratioRow(kGroup, "a connected device, floor: maps of its answers and one libcurl handle", bytes,
                 maps + handle, "B", Target::atMost(1.3),
                 std::to_string(keysSaid(shape)) + " keys from the device"),
        valueRow(kGroup, "of the floor: the maps", maps, "B", Target::report()),
        valueRow(kGroup, "of the floor: the libcurl handle", handle, "B", Target::report()),
    };
}

} // namespace koine::bench
