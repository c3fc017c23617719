// koine_gate: performs one of six operations so often, for the gate to count what it costs. What is counted
// happens inside of `koine_gate_counted`; making the devices and a first round come before.

#include "bench/heap_meter.h"
#include "bench/memory_device.h"
#include "platform/cgi_text.h"

#include <boost/make_shared.hpp>
#include <gnu/libc-version.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string_view>

extern "C" void koine_gate_counted(const void* stage, void (*operation)(const void* stage), long calls);

// The name that callgrind is told: it must be found, and nothing of it may be inlined.
extern "C" __attribute__((noinline)) void
koine_gate_counted(const void* stage, void (*operation)(const void* stage), long calls) {
    for (long call = 0; call < calls; ++call)
        operation(stage);
}

namespace koine::bench {
namespace {

struct Stage {
    std::shared_ptr<const DeviceTexts> texts = deviceTexts({});
    boost::shared_ptr<MemoryDevice> device = boost::make_shared<MemoryDevice>(texts);
    mutable std::uint64_t requestsOfOthers = 0; ///< to devices that were made on the way
};

const Stage& stageAt(const void* stage) { return *static_cast<const Stage*>(stage); }

constexpr const char* kCapability = "Capability.cgi?action=get";
constexpr const char* kMedia = "Config.cgi?action=get&category=Media.*";
constexpr const char* kSet =
    "Config.cgi?action=set&Media.Profiles.Profile1.VideoEncoderConfiguration.Quality=5"
    "&Media.Profiles.Profile2.VideoEncoderConfiguration.Encoding=H264"
    "&Video.Group000.Setting0001=Value-0001&Camera.Group000.Setting0002=Value-0002";

template <const char* const& Line>
void sendLine(const void* stage) {
    send(*stageAt(stage).device, Line);
}

void parse(const void* stage) {
    CgiMap map;
    createMapStr(stageAt(stage).texts->find("Capability.cgi")->second.c_str(), &map);
}

void firstStream(const void* stage) {
    const auto device = boost::make_shared<MemoryDevice>(stageAt(stage).texts);
    startStream(*device);
    stageAt(stage).requestsOfOthers += device->requests();
}

struct Operation {
    std::string_view name;
    void (*run)(const void* stage);
};

constexpr std::array<Operation, 6> kOperations = {{
    {"stream-get", sendLine<kStreamGet>},
    {"capability-get", sendLine<kCapability>},
    {"media-get", sendLine<kMedia>},
    {"config-set", sendLine<kSet>},
    {"parse", parse},
    {"first-stream", firstStream},
}};

void printToolchain() {
#if defined(__clang__)
    constexpr const char* kCompiler = "Clang";
#else
    constexpr const char* kCompiler = "GCC";
#endif
#if defined(__x86_64__)
    constexpr const char* kProcessor = "x86-64";
#elif defined(__aarch64__)
    constexpr const char* kProcessor = "aarch64";
#else
    constexpr const char* kProcessor = "another processor";
#endif
    std::printf("%s %s, libstdc++ %ld, glibc %s, %s\n", kCompiler, __VERSION__,
                static_cast<long>(__GLIBCXX__), gnu_get_libc_version(), kProcessor);
}

void count(const Operation& operation, long calls) {
    const Stage stage;
    startStream(*stage.device);
    operation.run(&stage); // fills what is filled once, and binds the functions
    const auto requests = [&] { return stage.device->requests() + stage.requestsOfOthers; };
    const std::uint64_t before = requests();
    const HeapUse use = heapUseOf([&] {
        for (long call = 0; call < calls; ++call)
            operation.run(&stage);
    });
    std::printf("{\"allocations\": %lld, \"requests\": %llu}\n", static_cast<long long>(use.allocations),
                static_cast<unsigned long long>(requests() - before));
    koine_gate_counted(&stage, operation.run, calls);
}

int run(int argc, char** argv) {
    const std::string_view wanted = argc > 1 ? argv[1] : "";
    if (wanted == "toolchain") {
        printToolchain();
        return 0;
    }
    const long calls = argc > 2 ? std::strtol(argv[2], nullptr, 10) : 1;
    for (const Operation& operation : kOperations) {
        if (wanted == "list")
            std::printf("%.*s\n", static_cast<int>(operation.name.size()), operation.name.data());
        else if (wanted == operation.name)
            return count(operation, calls), 0;
    }
    if (wanted == "list")
        return 0;
    std::fprintf(stderr, "usage: koine_gate list | toolchain | OPERATION [CALLS]\n");
    return 2;
}

} // namespace
} // namespace koine::bench

int main(int argc, char** argv) {
    try {
        return koine::bench::run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "koine_gate: %s\n", error.what());
        return 1;
    }
}
