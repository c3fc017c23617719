#include "tests/e2e/small_camera.h"

#include <array>
#include <utility>

namespace koine::test {
namespace {

constexpr std::array<std::pair<std::string_view, std::string_view>, 7> kTexts = {{
    {"Login.cgi", "0\nOK\nProduct-Name=C\n"},
    {"Capability.cgi", "0\nOK\nDevice=IPCAM\nCapability.Video.Format=H264\n"},
    {"category=Media", "0\nOK\nMedia.Profiles.Count=1\n"
                       "Media.Profiles.Profile1.token=PROFILE-MAIN\n"
                       "Media.Profiles.Profile1.VideoEncoderConfiguration.Encoding=H264\n"},
    {"category=Video.", "0\nOK\nVideo.I0.Name=C\n"},
    {"category=Camera.", "0\nOK\nCamera.Name=C\n"},
    {"category=Notification.", "0\nOK\nNotification.Interval=1\n"},
    {"category=Misc.", "0\nOK\nMisc.Time.Source=NTP\n"},
}};

} // namespace

std::string smallCameraAnswer(const std::string& request) {
    const std::string line = firstLine(request);
    for (const auto& [path, text] : kTexts)
        if (line.find(path) != std::string::npos)
            return answerText("200 OK", text);
    return answerText("200 OK", "0\nOK\n");
}

IllCamera::IllCamera(Misbehaviour misbehaviour, std::string_view path)
    : misbehaviour_(std::move(misbehaviour)),
      path_(path),
      server_([this](RawConnection& connection) { serve(connection); }) {}

std::string IllCamera::url() const { return "http://127.0.0.1:" + std::to_string(server_.port()); }

boost::shared_ptr<DialectRequest> IllCamera::object(unsigned int connections) const {
    DeviceOptions options;
    options.username = kUser;
    options.password = kPassword;
    options.connections = connections;
    return openDevice(url(), options);
}

void IllCamera::serve(RawConnection& connection) const {
    for (;;) {
        const std::string request = connection.readRequest();
        if (request.empty())
            return;
        const bool isIll = ill_ && firstLine(request).find(path_) != std::string::npos;
        if (!(isIll ? misbehaviour_(connection, request) : connection.send(smallCameraAnswer(request))))
            return;
    }
}

} // namespace koine::test
