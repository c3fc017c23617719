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

/// Texts split into maps.
struct Maps {
    std::size_t keys = 0;
    double bytes = 0.0; ///< of the heap

    void add(const std::string& text) {
        CgiMap map;
        bytes += static_cast<double>(heapUseOf([&] { createMapStr(text.c_str(), &map); }).bytes);
        keys += map.size();
    }
};

/// What the device says.
Maps answersOf(const DeviceShape& shape) {
    const std::shared_ptr<const DeviceTexts> texts = deviceTexts(shape);
    Maps maps;
    for (const auto& [line, text] : *texts)
        maps.add(text);
    return maps;
}

/// What the library says from its caches: the same and what the conversions added.
Maps cachesOf(DialectRequest& object) {
    Maps maps;
    for (const char* line : kCacheLines)
        maps.add(request(object, kUid, line).text);
    return maps;
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
    const Maps said = answersOf(shape);
    const Maps kept = cachesOf(*object);
    const double handle = handleFloor(device);
    return {
        ratioRow(kGroup, "a connected device, floor: maps of its caches and one libcurl handle", bytes,
                 kept.bytes + handle, "B", Target::atMost(1.3),
                 std::to_string(said.keys) + " keys from the device, " + std::to_string(kept.keys) +
                     " with those that conversions add"),
        ratioRow(kGroup, "the same, floor: maps of what the device said and the handle", bytes,
                 said.bytes + handle, "B", Target::report()),
        valueRow(kGroup, "of the floor: the maps of the caches", kept.bytes, "B", Target::report()),
        valueRow(kGroup, "the maps of what the device said", said.bytes, "B", Target::report()),
        valueRow(kGroup, "of the floor: the libcurl handle", handle, "B", Target::report()),
    };
}

} // namespace koine::bench
