// How the cost of every operation grows when a device has ten and a hundred times as much of something.

#include "bench/groups.h"
#include "bench/memory_device.h"
#include "bench/timings.h"
#include "platform/cgi_text.h"

#include <boost/make_shared.hpp>

#include <array>

namespace koine::bench {
namespace {

constexpr std::array<int, 2> kFactors = {10, 100};
constexpr std::array<double, 2> kMostGrowth = {13.0, 150.0};

/// Of what there is more and more, and how much to begin with.
struct Dimension {
    const char* name;
    int least;
    int DeviceShape::*member; ///< null for the users
};

constexpr int DeviceShape::*kUsers = nullptr;
constexpr int DeviceShape::*kKeys = &DeviceShape::categoryKeys; // of every answer

constexpr std::array<Dimension, 4> kDimensions = {{
    {"keys", 40, kKeys},
    {"profiles", 2, &DeviceShape::profiles},
    {"sizes", 3, &DeviceShape::sizes},
    {"users", 10, kUsers},
}};

/// A device of one size, and how many users it has.
struct Stage {
    std::shared_ptr<const DeviceTexts> texts;
    boost::shared_ptr<MemoryDevice> device;
    unsigned int users;
    unsigned int uid; ///< the user that asks
};

Stage makeStage(const Dimension& dimension, int factor) {
    DeviceShape shape = withKeys(kDimensions[0].least);
    shape.profiles = kDimensions[1].least;
    shape.sizes = kDimensions[2].least;
    const int amount = dimension.least * factor;
    if (dimension.member == kKeys)
        shape.loginKeys = shape.capabilityKeys = shape.categoryKeys = amount;
    else if (dimension.member != kUsers)
        shape.*dimension.member = amount;

    Stage stage{deviceTexts(shape), nullptr, 1, kUid};
    stage.device = boost::make_shared<MemoryDevice>(stage.texts);
    if (dimension.member == kUsers)
        stage.users = static_cast<unsigned int>(amount);
    for (unsigned int uid = 1; uid <= stage.users; ++uid)
        startStream(*stage.device, uid);
    stage.uid = stage.users / 2 + 1;
    return stage;
}

struct Operation {
    const char* name;
    void (*run)(const Stage& stage);
};

template <const char* const& Line>
void sendLine(const Stage& stage) {
    send(*stage.device, Line, stage.uid);
}

constexpr const char* kLogin = "Login.cgi";
constexpr const char* kCapability = "Capability.cgi?action=get";
constexpr const char* kVideo = "Config.cgi?action=get&category=Video.*";
constexpr const char* kMedia = "Config.cgi?action=get&category=Media.*";
constexpr const char* kEverything = "Config.cgi?action=get&category=*";
constexpr const char* kSetOne = "Config.cgi?action=set&Video.Group000.Setting0001=Value-0001";
constexpr const char* kSetMedia =
    "Config.cgi?action=set&Media.Profiles.Profile1.VideoEncoderConfiguration.GovLength=25";
constexpr const char* kPassedOn = "PTZ.cgi?action=set&PanTilt.Move=LEFT";

/// Of each user, on a device that nobody has asked before.
void firstStream(const Stage& stage) {
    const auto device = boost::make_shared<MemoryDevice>(stage.texts);
    for (unsigned int uid = 1; uid <= stage.users; ++uid)
        for (const char* line : {kStreamSetup, kStreamGet, kGetUri})
            send(*device, line, uid);
}

void parse(const Stage& stage) {
    CgiMap map;
    createMapStr(stage.texts->find("Capability.cgi")->second.c_str(), &map);
}

void loginAsMap(const Stage& stage) {
    stage.device->requestHttpData(stage.uid, const_cast<char*>(kLogin), nullptr, nullptr);
}

constexpr std::array<Operation, 14> kOperations = {{
    {"Login.cgi", sendLine<kLogin>},
    {"Capability.cgi get", sendLine<kCapability>},
    {"Config.cgi get Video.*", sendLine<kVideo>},
    {"Config.cgi get Media.*", sendLine<kMedia>},
    {"Config.cgi get *", sendLine<kEverything>},
    {"Config.cgi set, a video key", sendLine<kSetOne>},
    {"Config.cgi set, a media key", sendLine<kSetMedia>},
    {"Stream.cgi set, again", sendLine<kStreamSetup>},
    {"Stream.cgi get", sendLine<kStreamGet>},
    {"Onvif.cgi GetStreamUri", sendLine<kGetUri>},
    {"a line passed on", sendLine<kPassedOn>},
    {"Login.cgi as a map", loginAsMap},
    {"parsing an answer", parse},
    {"first stream", firstStream},
}};

std::string nameOf(const Operation& operation, const Dimension& dimension, int factor) {
    return std::string(operation.name) + ", " + std::to_string(dimension.least * factor) + " " +
           dimension.name;
}

void add(Timings& timings, const Dimension& dimension, int factor) {
    const auto stage = std::make_shared<Stage>(makeStage(dimension, factor));
    for (const Operation& operation : kOperations)
        timings.add(nameOf(operation, dimension, factor), [operation, stage] { operation.run(*stage); });
}

void report(Rows& rows, const Timings& timings, const Dimension& dimension, const Operation& operation) {
    for (std::size_t at = 0; at < kFactors.size(); ++at)
        rows.push_back(ratioRow("growth", nameOf(operation, dimension, kFactors[at]),
                                timings.nanoseconds(nameOf(operation, dimension, kFactors[at])),
                                timings.nanoseconds(nameOf(operation, dimension, 1)), "ns",
                                Target::atMost(kMostGrowth[at]),
                                "floor: with " + std::to_string(dimension.least)));
}

} // namespace

Rows measureGrowth() {
    Rows rows;
    for (const Dimension& dimension : kDimensions) {
        Timings timings(7, 0.004);
        for (const int factor : {1, kFactors[0], kFactors[1]})
            add(timings, dimension, factor);
        timings.measure();
        for (const Operation& operation : kOperations)
            report(rows, timings, dimension, operation);
    }
    return rows;
}

} // namespace koine::bench
