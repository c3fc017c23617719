// What programs rely on: the members of every command's JSON, in their order.

#include "tests/tools/run_tool.h"

#include <gtest/gtest.h>

#include <csignal>

namespace koine::test {
namespace {

constexpr const char* kInfo =
    "url product product_id user_level video_system device model channels audio_inputs encodings sizes "
    "quality_min quality_max functions kinds profiles";
constexpr const char* kProfile =
    "number token live encoding size frame_rate quality bitrate gov_length encodings";

struct Part {
    const char* place;
    const char* members;
};

struct Row {
    std::vector<std::string> arguments; ///< "URL" stands for the device
    std::vector<Part> parts;
};

TEST(JsonSchema, EveryCommandKeepsItsMembers) {
    GuardedDome dome;
    const TemporaryFile saved("Video.I0.Brightness=77\n");
    const std::vector<Row> rows = {
        {{"request", "URL", "Login.cgi"},
         {{"/0", "line result status answered meaning text values device_requests milliseconds"}}},
        {{"info", "URL"},
         {{"", kInfo},
          {"/kinds", "media_profiles mobile_profile video_analytics remote_event_trigger "
                     "resolution_independent profile_settings digital_ptz_by_profile onvif pell "
                     "product_331_578 product_5240"},
          {"/profiles/0", kProfile}}},
        {{"profiles", "URL"}, {{"/0", kProfile}}},
        {{"stream", "--mode", "MOBILE", "URL"}, {{"", "uri stream"}}},
        {{"get", "URL", "Video.I0.Brightness"}, {{"", "Video.I0.Brightness"}}},
        {{"set", "URL", "Video.I0.Brightness=42"},
         {{"", "changes reconnect"}, {"/changes/0", "key old new"}}},
        {{"diff", "URL", saved.path()}, {{"/0", "key device"}}},
        {{"survey", "-"},
         {{"", "devices summary"},
          {"/devices/0", "url state milliseconds exit_code error info"},
          {"/devices/0/info", kInfo},
          {"/summary", "devices answered failed not_asked interrupted milliseconds"}}},
        {{"simulate", "--list-models"}, {{"/0", "model channels description"}}},
        {{"simulate", "--list-faults"}, {{"/0", "fault description"}}},
        {{"demo", "--delay", "0"},
         {{"", "users settings connections requests unauthorized"},
          {"/users/1", "uid wish uri first again"},
          {"/users/1/again", "device_requests milliseconds"},
          {"/settings/0", "key before pushed device"}}},
    };
    for (const Row& row : rows) {
        std::vector<std::string> arguments = row.arguments;
        arguments.insert(arguments.begin() + 1, "--json");
        for (std::string& argument : arguments)
            if (argument == "URL")
                argument = dome.url();
        const Outcome outcome = runTool(arguments, dome.url() + "\n");
        for (const Part& part : row.parts)
            EXPECT_EQ(jsonMembers(outcome.out, part.place), part.members)
                << row.arguments.front() << " " << part.place << "\n"
                << outcome.err;
    }
}

TEST(JsonSchema, ADumpIsOneObjectOfTexts) {
    GuardedDome dome;
    const std::string json = runTool({"dump", "--json", dome.url()}).out;
    EXPECT_EQ(jsonAt(json, "/Media.Profiles.Profile1.token"), "PROFILE-MAIN");
}

TEST(JsonSchema, ASimulatedDeviceTellsItsStartAndItsEndInALineEach) {
    RunningTool simulator({"simulate", "--json", "--model", "minimal"});
    const std::string start = simulator.readLine();
    EXPECT_EQ(jsonMembers(start, ""), "model url auth user");
    EXPECT_EQ(runTool({"request", jsonAt(start, "/url"), "Login.cgi"}).exitCode, 0);
    simulator.signal(SIGTERM);
    const Outcome outcome = simulator.finish();
    EXPECT_EQ(jsonMembers(outcome.out, ""), "connections requests unauthorized paths");
    EXPECT_EQ(jsonAt(outcome.out, "/paths/Login.cgi"), "1");
}

} // namespace
} // namespace koine::test
