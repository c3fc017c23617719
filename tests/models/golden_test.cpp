// What the library tells of every model, against answers that were read by a person.

#include "bench.h"
#include "golden.h"

#include <algorithm>
#include <filesystem>
#include <sstream>

namespace koine::test {
namespace {

struct Asked {
    const char* what;
    const char* line;
};

// In the order in which a host asks them; the first ones fill the caches.
constexpr Asked kAsked[] = {
    {"login", "Login.cgi"},
    {"capability", "Capability.cgi?action=get"},
    {"media", "Config.cgi?action=get&category=Media.*"},
    {"video", "Config.cgi?action=get&category=Video.*"},
    {"camera", "Config.cgi?action=get&category=Camera.*"},
    {"notification", "Config.cgi?action=get&category=Notification.*"},
    {"misc", "Config.cgi?action=get&category=Misc.*"},
    {"videoanalytics", "Config.cgi?action=get&category=VideoAnalytics.*"},
};

// What the vendor "TOVLIN" changes.
constexpr const char* kOfVendor[] = {"video", "camera", "misc"};

struct Mode {
    const char* name;
    const char* items;
};

constexpr Mode kModes[] = {
    {"no mode", ""},
    {"AUTO", "&ProfileMode=AUTO"},
    {"MOBILE", "&ProfileMode=MOBILE"},
    {"ONLY_META", "&ProfileMode=ONLY_META"},
    {"ONLY_STATUS", "&ProfileMode=ONLY_STATUS"},
    {"AUTO 1280x720", "&ProfileMode=AUTO&StreamSetup.VideoEncoderConfiguration.Resolution.NxN=1280x720"
                      "&StreamSetup.VideoEncoderConfiguration.Quality=5"},
};

/// An answer as a file: the result, then the text; a text without a line end at its end gets one.
std::string shown(const Answer& answer) {
    std::string text = "result=" + std::to_string(answer.result) + "\n" + answer.text;
    if (text.back() != '\n')
        text += '\n';
    return text;
}

std::string kindsOf(DialectRequest& request) {
    std::ostringstream text;
    text << "ONVIF product=" << request.getIsONVIFProduct()
         << "\n331_578 product=" << request.getIs331_578Product()
         << "\n5240 product=" << request.getIs5240Product() << "\nPell device=" << request.getIsPellDevice()
         << "\nresolution independent=" << request.getIsResoIndep()
         << "\nremote event trigger=" << request.getIsRemoteEventTrigger()
         << "\nprofile function=" << request.getIsTlProfile() << "\nvideo analytics=" << request.getHasVA()
         << "\nID-PTZ=" << request.getIsIDPTZ() << "\nwhich slave=" << request.get_which_slave()
         << "\nmodel name=" << request.get_model_name()
         << "\nlowest quality of the source=" << request.getSettingQualitySrcMin()
         << "\nhighest quality of the source=" << request.getSettingQualitySrcMax()
         << "\nquality step=" << request.getQualityStep() << "\nmedia profiles=" << request.getMediaProfile()
         << "\nprofile count=" << request.getProfileCount()
         << "\nhas a mobile profile=" << request.getHaveMobile() << "\n";
    return text.str();
}

using Golden = OnEveryModel;

TEST_P(Golden, answersToAPlainUser) {
    Bench bench(model());
    for (const Asked& asked : kAsked)
        expectGolden(model(), asked.what, shown(bench.ask(asked.line)));
    expectGolden(model(), "kind", kindsOf(bench.request()));
}

TEST_P(Golden, whatTheVendorChanges) {
    Bench plain(model());
    Bench ofVendor(model(), "Tovlin");
    std::string text;
    for (const char* what : kOfVendor)
        for (const Asked& asked : kAsked)
            if (std::string_view(asked.what) == what)
                text += changedLines(plain.ask(asked.line).text, ofVendor.ask(asked.line).text);
    expectGolden(model(), "vendor", text);
}

TEST_P(Golden, streamsOfEveryMode) {
    std::string text;
    for (const Mode& mode : kModes) {
        Bench bench(model());
        const Answer start = bench.ask(
            std::string(
                "Stream.cgi?action=set&StreamSetup.Stream=RTP-Unicast&StreamSetup.Transport.Protocol=UDP") +
            mode.items);
        text.append("[").append(mode.name).append("]\n").append(shown(start));
        if (!start.ok())
            continue;
        text += shown(bench.ask("Stream.cgi?action=get"));
        const std::string token(bench.request().profile_token(1));
        text += shown(bench.ask("Onvif.cgi?action=GetStreamUri&ProfileToken=" + token));
    }
    expectGolden(model(), "streams", text);
}

// The qualities of the media answer depend on the user's quality scale, which a stream start settles.
TEST_P(Golden, profilesAfterAStreamHasStarted) {
    Bench before(model());
    Bench after(model());
    const Answer plain = before.ask("Config.cgi?action=get&category=Media.*");
    after.ask("Stream.cgi?action=set&StreamSetup.Stream=RTP-Unicast&StreamSetup.Transport.Protocol=TCP"
              "&ProfileMode=AUTO&StreamSetup.VideoEncoderConfiguration.Resolution.NxN=352x288"
              "&StreamSetup.VideoEncoderConfiguration.Resolution.NxN.Max.Ui=800x600"
              "&StreamSetup.VideoEncoderConfiguration.Quality=3.5");
    expectGolden(model(), "media_after_stream",
                 changedLines(plain.text, after.ask("Config.cgi?action=get&category=Media.*").text));
}

INSTANTIATE_TEST_SUITE_P(Models, Golden, testing::ValuesIn(sim::modelNames()), modelOf);

TEST(GoldenFiles, belongToModelsThatExist) {
    const std::vector<std::string> models = sim::modelNames();
    for (const auto& folder : std::filesystem::directory_iterator(KOINE_GOLDEN_DIR))
        EXPECT_NE(std::find(models.begin(), models.end(), folder.path().filename().string()), models.end())
            << folder.path() << " is left over from a model that is gone";
}

} // namespace
} // namespace koine::test
