// Answers from the caches, and how an answer becomes a cache, against the least that each can cost.

#include "bench/floors.h"
#include "bench/groups.h"
#include "bench/memory_device.h"
#include "bench/pairs.h"
#include "platform/cgi_text.h"

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>

#include <cstdlib>
#include <memory>
#include <stdexcept>

namespace koine::bench {
namespace {

constexpr const char* kGroup = "cached answers";
constexpr const char* kLogin = "Login.cgi";
constexpr const char* kCapability = "Capability.cgi?action=get";
constexpr const char* kVideo = "Config.cgi?action=get&category=Video.*";
constexpr const char* kMedia = "Config.cgi?action=get&category=Media.*";

using Device = boost::shared_ptr<MemoryDevice>;

/// What "Stream.cgi?action=get" looks for when the third of three profiles serves the user: the count, the
/// tokens, the encoding and what depends on it.
std::vector<std::string> streamKeys() {
    std::vector<std::string> keys = {"Media.Profiles.Count", "Media.Profiles.Profile1.token",
                                     "Media.Profiles.Profile2.token", "Media.Profiles.Profile3.token"};
    for (const char* part :
         {"Encoding", "Resolution.Width", "Resolution.Height", "Quality", "RateControl.FrameRateLimit",
          "RateControl.BitrateLimit", "H264.Resolution.NxN.List", "Quality.Max", "Quality.Min"})
        keys.push_back("Media.Profiles.Profile3.VideoEncoderConfiguration." + std::string(part));
    return keys;
}

/// The target is stated with fifteen look-ups, as many as the answer has lines.
std::vector<std::string> fifteenKeys() {
    std::vector<std::string> keys = streamKeys();
    for (const char* part : {".Available", ".Tovlin.AllowLive"})
        keys.push_back("Media.Profiles.Profile3" + std::string(part));
    return keys;
}

Pair streamPair(const Device& device, const std::string& what, const std::vector<std::string>& keys,
                Target target) {
    const auto floor = std::make_shared<CopyFloor>(device->media(), keys, answerTo(*device, kStreamGet));
    return {what, [device] { send(*device, kStreamGet); }, [floor] { floor->run(); }, target, ""};
}

/// The floor prints the same text, or the two could not be compared.
Pair printPair(const Device& device, const std::string& what, const char* line, CgiMap& map, Target target) {
    const std::string answer = answerTo(*device, line);
    char* const printed = printInTwoPasses(map);
    const bool same = answer == printed;
    std::free(printed);
    if (!same)
        throw std::runtime_error("the floor of \"" + std::string(line) + "\" prints another text");
    const auto floor = [device, &map] {
        char* const text = printInTwoPasses(map);
        benchmark::DoNotOptimize(text);
        std::free(text);
    };
    return {what, [device, line] { send(*device, line); }, floor, target,
            std::to_string(map.size()) + " keys"};
}

Pair mediaPair(int profiles) {
    DeviceShape shape = withKeys(40);
    shape.profiles = profiles;
    const Device device = startedDevice(shape);
    return printPair(device, "Config.cgi get Media.*, " + std::to_string(profiles) + " profiles", kMedia,
                     device->media(), Target::atMost(8.0, 2.0));
}

Pair parsePair() {
    const auto text = std::make_shared<std::string>(capabilityText(400, 12));
    const auto run = [text] {
        CgiMap map;
        benchmark::DoNotOptimize(createMapStr(text->c_str(), &map));
    };
    const auto floor = [text] {
        const CgiMap map = splitIntoMap(*text);
        benchmark::DoNotOptimize(map.size());
    };
    CgiMap parsed;
    if (createMapStr(text->c_str(), &parsed) != kOk || parsed != splitIntoMap(*text))
        throw std::runtime_error("the floor of parsing makes another map");
    return {"parsing a 400-key answer", run, floor, Target::atMost(1.15), ""};
}

} // namespace

Rows measureCachedAnswers() {
    const Device device = startedDevice();
    answerTo(*device, kVideo);
    const Target print = Target::atMost(1.5);
    return measurePairs(
        kGroup, {streamPair(device, "Stream.cgi get, 3 profiles; floor: fifteen look-ups", fifteenKeys(),
                            Target::atMost(2.0)),
                 streamPair(device, "Stream.cgi get, 3 profiles; floor: the thirteen look-ups it makes",
                            streamKeys(), Target::report()),
                 printPair(device, "Login.cgi, 400 keys", kLogin, device->login(), print),
                 printPair(device, "Capability.cgi get, 400 keys", kCapability, device->capability(), print),
                 printPair(device, "Config.cgi get Video.*, 400 keys", kVideo, device->video(), print),
                 mediaPair(3), mediaPair(16), parsePair()});
}

} // namespace koine::bench
