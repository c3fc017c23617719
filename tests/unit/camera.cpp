#include "camera.h"

#include "tests/support/failing_allocations.h"

#include <cstdlib>
#include <cstring>
#include <utility>

namespace koine::test {
namespace {

char* onHeap(const std::string& text) {
    char* copy = static_cast<char*>(std::malloc(text.size() + 1));
    if (copy != nullptr)
        std::memcpy(copy, text.c_str(), text.size() + 1);
    return copy;
}

std::string lineOf(const std::string& url) {
    const std::size_t scheme = url.find("://");
    const std::size_t path = scheme == std::string::npos ? scheme : url.find('/', scheme + 3);
    return path == std::string::npos ? url : url.substr(path + 1);
}

} // namespace

Camera::Camera() {
    set_server_address("camera");
    set_username("admin");
    set_password("secret");
    has(kLoginLine, "Product-Name=Camera\nProduct-ID=C100\n");
    has(kCapabilityLine, "Device=IPCAM\nID=C100\n");
    has(kSecondCapabilityLine, "Second=1\n");
    has(kMachineLine, "Product.Type=IPCAM\nProduct.ID=M100\n");
    has(kMediaLine, "Media.Kind=1\n");
    has(kVideoLine, "Video.I0.Brightness=1\n");
    has(kCameraLine, "Camera.Title=Gate\n");
    has(kNotificationLine, "Notification.Trigger.Alarm=ENABLE\n");
    has(kMiscLine, "Misc.External.DI.Port1.Active=N.O.\n");
    has(kAnalyticsLine, "VideoAnalytics.Rule=1\n");
    healthy_ = replies_;
}

int Camera::requestCgi(unsigned int uid, char* url, char** answer, _REQCGI_METHOD_DEF method,
                       _REQCGI_CONNECTION_DEF connection) {
    const SpareAllocations spare;
    if (url == nullptr)
        return -2;
    sent.push_back({uid, url, method, connection});
    const auto reply = replies_.find(lineOf(url));
    if (reply == replies_.end())
        return -6;
    if (reply->second.hasText && answer != nullptr)
        *answer = onHeap(reply->second.text);
    return reply->second.result;
}

void Camera::has(const std::string& line, const std::string& pairs) { answers(line, kEmptySuccess + pairs); }

void Camera::answers(const std::string& line, const std::string& text) { replies_[line] = {1, true, text}; }

void Camera::answersNothing(const std::string& line) { replies_[line] = {1, false, ""}; }

void Camera::fails(const std::string& line, int result) { replies_[line] = {result, false, ""}; }

void Camera::fails(const std::string& line, int result, const std::string& text) {
    replies_[line] = {result, true, text};
}

std::vector<std::string> Camera::asked() {
    std::vector<std::string> all;
    for (const Sent& one : sent)
        all.push_back(lineOf(one.url));
    sent.clear();
    return all;
}

void Camera::isPell(int flag) {
    setVendor("TOVLIN");
    setIsPellDevice(flag);
}

int Camera::stepResult(const std::string& step, int result) {
    conversions.push_back(step);
    const auto scripted = conversionResults.find(step);
    return scripted == conversionResults.end() ? result : scripted->second;
}

int Camera::convertCgiCapability(CgiMap* capability, CgiMap* login) {
    return stepResult("capability", converts ? BaseRequest::convertCgiCapability(capability, login) : 1);
}

int Camera::convertCgiCapability(CgiMap* capability, CgiMap* machine, CgiMap* login) {
    return stepResult("machine", BaseRequest::convertCgiCapability(capability, machine, login));
}

int Camera::convertCgiVideo(CgiMap* video) {
    videoMap = video;
    return stepResult("video", BaseRequest::convertCgiVideo(video));
}

int Camera::convertCgiCamera(CgiMap* map) {
    cameraMap = map;
    return stepResult("camera", BaseRequest::convertCgiCamera(map));
}

int Camera::convertCgiMisc(CgiMap* misc, CgiMap* notification) {
    miscMap = misc;
    notificationMap = notification;
    return stepResult("misc", BaseRequest::convertCgiMisc(misc, notification));
}

int Camera::handleParameter(unsigned int, char* url, char** answer) {
    return setHandler ? setHandler(url, answer) : 1;
}

CgiMap pairsOf(const std::string& answer) {
    const std::string head = kEmptySuccess;
    EXPECT_EQ(answer.substr(0, head.size()), head);
    CgiMap pairs;
    for (std::size_t at = head.size(); at < answer.size();) {
        const std::size_t end = answer.find('\n', at);
        const std::string line = answer.substr(at, end - at);
        const std::size_t equals = line.find('=');
        EXPECT_NE(equals, std::string::npos) << line;
        if (end == std::string::npos || equals == std::string::npos)
            break;
        pairs[line.substr(0, equals)] = line.substr(equals + 1);
        at = end + 1;
    }
    return pairs;
}

CameraTest::CameraTest() { forgetTraces(); }

} // namespace koine::test
