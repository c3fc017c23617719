// Set lines: their rewriting into the device's dialect, and the whole way of one.

#include "bench/groups.h"
#include "bench/memory_device.h"
#include "bench/timings.h"
#include "text/owned_text.h"

#include <array>
#include <stdexcept>

namespace koine::bench {
namespace {

constexpr const char* kGroup = "set lines";
constexpr int kItems = 20;
constexpr double kMostGrowth = 12.0;

/// Half of the items are rewritten, each in its own way; the others stay as they are.
std::string setLine(int items) {
    static constexpr std::array<const char*, 6> kKinds = {
        "Media.Profiles.Profile1.VideoEncoderConfiguration.Quality=5",
        "Video.Group000.Setting0001=Value-0001",
        "Media.Profiles.Profile2.VideoEncoderConfiguration.Encoding=H264",
        "Camera.Group000.Setting0002=Value-0002",
        "Misc.External.DI.Port1.Active=N.O.",
        "Notification.Group000.Setting0003=Value-0003",
    };
    std::string line = "Config.cgi?action=set";
    for (int number = 0; number < items; ++number)
        line.append("&").append(kKinds.at(static_cast<std::size_t>(number) % kKinds.size()));
    return line;
}

using Device = boost::shared_ptr<MemoryDevice>;

void rewrite(MemoryDevice& device, std::string& line) {
    OwnedText rewritten;
    const int result = device.recoveryUrl(kUid, line.data(), OutText(rewritten));
    if (result != kOk || !rewritten)
        throw std::runtime_error("a set line is not rewritten");
}

void add(Timings& timings, const Device& device, int items) {
    const std::string line = setLine(items);
    answerTo(*device, line.c_str());
    timings.add("rewrite " + std::to_string(items),
                [device, text = line]() mutable { rewrite(*device, text); });
    timings.add("set " + std::to_string(items), [device, line] { send(*device, line.c_str()); });
}

Row growthRow(const Timings& timings, const std::string& what, const std::string& name) {
    return ratioRow(kGroup, what + ", 10 times the items", timings.nanoseconds(name + "200"),
                    timings.nanoseconds(name + "20"), "ns", Target::atMost(kMostGrowth));
}

} // namespace

Rows measureSetLines() {
    const Device device = startedDevice();
    Timings timings;
    add(timings, device, kItems);
    add(timings, device, kItems * 10);
    timings.measure();
    return {
        valueRow(kGroup, "rewriting a set line of 20 items", timings.nanoseconds("rewrite 20"), "ns",
                 Target::report()),
        growthRow(timings, "rewriting a set line", "rewrite "),
        valueRow(kGroup, "a set line of 20 items, device in memory", timings.nanoseconds("set 20"), "ns",
                 Target::report()),
        growthRow(timings, "a set line", "set "),
    };
}

} // namespace koine::bench
