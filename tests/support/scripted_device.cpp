#include "scripted_device.h"

namespace koine::test {

DeviceAnswer ScriptedDevice::answerTo(const DeviceRequest& request) {
    if (handler)
        return handler(request);
    // Looked up first, so that several threads may ask a device that has no such answers.
    const auto queued = once_.find(request.line);
    if (queued != once_.end() && !queued->second.empty()) {
        DeviceAnswer answer = queued->second.front();
        queued->second.pop_front();
        return answer;
    }
    const auto lasting = lasting_.find(request.line);
    if (lasting != lasting_.end())
        return lasting->second;
    const DeviceAnswer* best = &otherwise_;
    for (const auto& [beginning, answer] : beginnings_) // in order: a longer one comes later
        if (request.line.compare(0, beginning.size(), beginning) == 0)
            best = &answer;
    return *best;
}

const std::string* ScriptedDevice::findHeader(const std::string& name) const {
    const auto found = headers_.find(name);
    return found == headers_.end() ? nullptr : &found->second;
}

void ScriptedDevice::answerAsCamera() {
    on("Login.cgi", "0\nOK\nProduct-Name=CAM-1\nProduct-ID=CAM\nProduct-ID-Minor=1\n");
    on("Capability.cgi?action=get",
       "0\nOK\nCapability.Audio.Input.Channel=1\nCapability.Function=AudioVolume\n"
       "Capability.Video.Format=MJPEG,MPEG4,H264\nCapability.Video.Resolution=CIF,VGA,720P\n"
       "Device=IPCAM\n");
    onBeginning("Config.cgi?action=get&category=Media.*",
                "0\nOK\nMedia.Profiles.Count=1\nMedia.Profiles.Profile1.token=ONE\n"
                "Media.Profiles.Profile1.VideoEncoderConfiguration.token=V1\n"
                "Media.Profiles.Profile1.VideoEncoderConfiguration.Encoding=H264\n"
                "Media.Profiles.Profile1.VideoEncoderConfiguration.Resolution.Width=1280\n"
                "Media.Profiles.Profile1.VideoEncoderConfiguration.Resolution.Height=720\n");
    on("Config.cgi?action=get&category=Video.*", "0\nOK\nVideo.I0.Brightness=1\n");
    on("Config.cgi?action=get&category=Camera.*", "0\nOK\nCamera.Detection.LS=3\n");
    on("Config.cgi?action=get&category=Notification.*", "0\nOK\nNotification.Trigger.Alarm=DISABLE\n");
    on("Config.cgi?action=get&category=Misc.*", "0\nOK\nMisc.External.DI.Port1.Active=N.O.\n");
    on("Config.cgi?action=get&category=VideoAnalytics.*", "0\nOK\nVideoAnalytics.Count=0\n");
    onBeginning("Config.cgi?action=set", "0\nOK\n");
    onBeginning("Stream.cgi?action=set", "0\nOK\n");
}

std::string lineOfUrl(const std::string& url) {
    const std::size_t scheme = url.find("://");
    if (scheme == std::string::npos)
        return url;
    const std::size_t path = url.find('/', scheme + 3);
    return path == std::string::npos ? std::string() : url.substr(path + 1);
}

} // namespace koine::test
