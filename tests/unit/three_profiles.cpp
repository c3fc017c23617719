#include "three_profiles.h"

namespace koine::test {

const std::vector<std::string>& fillingLines() {
    static const std::vector<std::string> lines = {
        "Login.cgi",
        "Capability.cgi?action=get",
        "Config.cgi?action=get&category=Media.*&ch=1",
        "Config.cgi?action=get&category=Video.*",
        "Config.cgi?action=get&category=Camera.*",
        "Config.cgi?action=get&category=Notification.*",
        "Config.cgi?action=get&category=Misc.*",
        "Config.cgi?action=get&category=VideoAnalytics.*",
    };
    return lines;
}

void scriptThreeProfiles() {
    device().answerAsCamera();
    device().on("Capability.cgi?action=get", "0\nOK\nCapability.Audio.Input.Channel=1\n"
                                             "Capability.Function=AudioVolume\nDevice=IPCAM\n");
    std::string media = "0\nOK\nMedia.Profiles.Count=3\n";
    const char* const kTokens[] = {"main", "sub", "phone"};
    for (int n = 1; n <= 3; ++n) {
        const std::string profile = "Media.Profiles.Profile" + std::to_string(n);
        const std::string encoder = profile + ".VideoEncoderConfiguration";
        media += profile + ".token=" + kTokens[n - 1] + "\n";
        media += encoder + ".token=E" + std::to_string(n) + "\n";
        media += encoder + ".Encoding=" + (n == 3 ? "MPEG4" : "H264") + "\n";
        media += encoder + ".EncodingList=" + (n == 3 ? "JPEG,MPEG4" : "JPEG,H264") + "\n";
        media += encoder + ".Resolution.Width=640\n";
        media += encoder + ".Resolution.Height=480\n";
        media += encoder + ".Quality=6\n";
        for (const char* encoding : {"JPEG", "H264", "MPEG4"})
            media += encoder + "." + encoding + ".Resolution.NxN.List=352x288,640x480,1280x720\n";
    }
    device().onBeginning("Config.cgi?action=get&category=Media.*", media);
}

std::string setUpLine(const std::string& items) {
    return "http://camera:80/Stream.cgi?action=set&StreamSetup.Transport.Protocol=TCP"
           "&StreamSetup.Stream=RTP-Unicast" +
           items;
}

std::string encoderItem(int profile, const std::string& setting) {
    return "&Media.Profiles.Profile" + std::to_string(profile) + ".VideoEncoderConfiguration." + setting;
}

std::string autoSetLine() {
    return "Config.cgi?action=set" + encoderItem(1, "Encoding=H264") +
           encoderItem(1, "Resolution.Width=1280") + encoderItem(1, "Resolution.Height=720");
}

std::string mobileSetLine() {
    return "Config.cgi?action=set" + encoderItem(3, "Encoding=MPEG4") +
           encoderItem(3, "Resolution.Width=352") + encoderItem(3, "Resolution.Height=288");
}

} // namespace koine::test
