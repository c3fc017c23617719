#include "simulator/device_model.h"

#include "set_check_help.h"
#include "temporary_folder.h"
#include "text/numbers.h"
#include "text/words.h"

#include <fstream>
#include <gtest/gtest.h>

namespace koine::sim {
namespace {

namespace fs = std::filesystem;

/// A folder that holds the smallest model there is.
class ModelFolder : public testing::Test {
protected:
    ModelFolder() {
        write("model.txt", "description=a test\n");
        write("login.txt", "0\nOK\nProduct-Name=Test\n");
    }
    ~ModelFolder() override {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }

    void write(const std::string& name, const std::string& text) const {
        std::ofstream(folder_ / name) << text;
    }

    /// What loading says is wrong; empty when nothing is.
    std::string complaint() const {
        try {
            DeviceModel::load(folder_);
        } catch (const std::runtime_error& failure) {
            return failure.what();
        }
        return {};
    }

    void expectComplaint(const std::string& file, const std::string& what) const {
        const std::string said = complaint();
        EXPECT_NE(said.find(file), std::string::npos) << said;
        EXPECT_NE(said.find(what), std::string::npos) << said;
    }

    const fs::path folder_ = test::makeTemporaryFolder();
};

TEST_F(ModelFolder, ASmallModelLoads) {
    EXPECT_EQ(complaint(), "");
    const DeviceModel model = DeviceModel::load(folder_ / "");
    EXPECT_EQ(model.name(), folder_.filename());
    EXPECT_EQ(model.description(), "a test");
    EXPECT_EQ(model.channels(), 1U);
    EXPECT_FALSE(model.readsChannel());
    ASSERT_NE(model.answer("login"), nullptr);
    EXPECT_EQ(model.answer("login")->valueOf("Product-Name"), "Test");
    EXPECT_EQ(model.answer("capability"), nullptr);
}

TEST_F(ModelFolder, SettingsAreRead) {
    write("model.txt", "# comment\n\nchannels=3\r\nreads_channel=yes\nacknowledges=A.cgi B.cgi\n"
                       "lacks=Config.cgi?action=get&category=Media\nany_text=*.Name\n");
    const DeviceModel model = DeviceModel::load(folder_);
    EXPECT_EQ(model.channels(), 3U);
    EXPECT_TRUE(model.readsChannel());
    EXPECT_TRUE(model.acknowledges("B.cgi"));
    EXPECT_FALSE(model.acknowledges("C.cgi"));
    EXPECT_TRUE(model.lacks("Config.cgi?action=get&category=Media.*&ch=1"));
    EXPECT_FALSE(model.lacks("Config.cgi?action=get&category=Video.*"));
    EXPECT_TRUE(model.takesAnyText("Camera.Name"));
    EXPECT_FALSE(model.takesAnyText("Camera.Level"));
}

TEST_F(ModelFolder, AMissingFolderIsNamed) {
    try {
        DeviceModel::load(folder_ / "nowhere");
        FAIL() << "it loaded";
    } catch (const std::runtime_error& failure) {
        EXPECT_NE(std::string(failure.what()).find("nowhere"), std::string::npos);
    }
}

TEST_F(ModelFolder, AMissingDescriptionIsNamed) {
    fs::remove(folder_ / "model.txt");
    expectComplaint("model.txt", "cannot open");
}

TEST_F(ModelFolder, AMissingLoginIsNamed) {
    fs::remove(folder_ / "login.txt");
    expectComplaint("login.txt", "Login.cgi");
}

TEST_F(ModelFolder, AnUnknownSettingIsNamedWithItsLine) {
    write("model.txt", "channels=1\ncolour=red\n");
    expectComplaint("model.txt, line 2", "colour");
}

TEST_F(ModelFolder, ABadSettingIsNamed) {
    write("model.txt", "channels=0\n");
    expectComplaint("line 1", "1 to 256");
    write("model.txt", "reads_channel=maybe\n");
    expectComplaint("line 1", "yes");
    write("model.txt", "channels\n");
    expectComplaint("line 1", "key=value");
}

TEST_F(ModelFolder, AnAnswerNeedsItsHead) {
    write("video.txt", "OK\n");
    expectComplaint("video.txt, line 1", "\"0\"");
    write("video.txt", "0\n");
    expectComplaint("video.txt, line 2", "OK");
}

TEST_F(ModelFolder, AnAnswerHoldsPairsOnly) {
    write("video.txt", "0\nOK\nVideo.I0.Hue=1\nnonsense\n");
    expectComplaint("video.txt, line 4", "nonsense");
    write("video.txt", "0\nOK\na=1\na=2\n");
    expectComplaint("video.txt, line 4", "second time");
}

TEST_F(ModelFolder, AnUnknownAnswerIsNamed) {
    write("vidoe.txt", "0\nOK\n");
    expectComplaint("vidoe.txt", "no answer text");
    fs::remove(folder_ / "vidoe.txt");
    write("media_channel2.txt", "0\nOK\n");
    expectComplaint("media_channel2.txt", "channels");
}

TEST_F(ModelFolder, TextsOfOtherKindsAreLeftAlone) {
    write("notes.md", "not an answer");
    EXPECT_EQ(complaint(), "");
}

TEST(Models, AnUnknownNameListsTheKnownOnes) {
    try {
        builtinModel("doom");
        FAIL() << "it loaded";
    } catch (const std::runtime_error& failure) {
        const std::string said = failure.what();
        EXPECT_NE(said.find("doom"), std::string::npos);
        EXPECT_NE(said.find("analytics, dome, minimal"), std::string::npos) << said;
    }
}

TEST(Models, AFolderThatCannotBeReadIsNamed) {
    EXPECT_THROW(modelNames("/nowhere/at/all"), std::runtime_error);
    EXPECT_THROW(builtinModel("dome", "/nowhere/at/all"), std::runtime_error);
}

TEST(Models, ThereAreNine) {
    const std::vector<std::string> expected = {"analytics", "dome", "minimal",  "nocapability", "noprofiles",
                                               "onvif",     "pell", "recorder", "videoserver"};
    EXPECT_EQ(modelNames(), expected);
}

constexpr std::array<const char*, 11> kAnswers = {
    "login", "capability", "capability_channel1", "machine", "media",         "media_channel16",
    "video", "camera",     "notification",        "misc",    "videoanalytics"};

std::size_t keysOf(const DeviceModel& model) {
    std::size_t keys = 0;
    for (const char* name : kAnswers)
        if (const PairList* pairs = model.answer(name))
            keys += pairs->size();
    return keys;
}

TEST(Models, AreSizedLikeRealDevices) {
    for (const std::string& name : modelNames()) {
        const std::size_t keys = keysOf(builtinModel(name));
        if (name == "minimal")
            EXPECT_LT(keys, 100U);
        else
            EXPECT_GT(keys, 200U) << name;
    }
    EXPECT_GT(keysOf(builtinModel("dome")), 500U);
    EXPECT_GT(builtinModel("recorder").answer("capability")->size(), 300U);
}

TEST(Models, SayWhatTheyAre) {
    for (const std::string& name : modelNames())
        EXPECT_FALSE(builtinModel(name).description().empty()) << name;
    EXPECT_EQ(builtinModel("videoserver").answer("capability")->valueOf("Device"), "VIDEO SERVER");
    EXPECT_NE(builtinModel("videoserver").answer("capability_channel1"), nullptr);
    EXPECT_TRUE(builtinModel("recorder").readsChannel());
    EXPECT_EQ(builtinModel("nocapability").answer("capability"), nullptr);
    EXPECT_NE(builtinModel("nocapability").answer("machine"), nullptr);
    EXPECT_EQ(builtinModel("noprofiles").answer("media"), nullptr);
    EXPECT_NE(builtinModel("pell").answer("camera")->find("Camera.Detection.LS"), nullptr);
    EXPECT_NE(builtinModel("analytics").answer("videoanalytics"), nullptr);
    EXPECT_TRUE(startsWith(builtinModel("onvif").answer("login")->valueOf("Product-Name"), "ONVIF_"));
}

TEST(Models, EveryProfileHasSettingsThatItOffers) {
    for (const std::string& name : modelNames()) {
        const DeviceModel model = builtinModel(name);
        for (unsigned int channel = 1; channel <= (model.readsChannel() ? model.channels() : 1); ++channel)
            for (const std::string& line : ownSettings(model, channel))
                EXPECT_TRUE(isTaken(model, channel, line)) << name << " channel " << channel << ": " << line;
    }
}

} // namespace
} // namespace koine::sim
