#include "bench/memory_device.h"

#include "text/owned_text.h"

#include <boost/make_shared.hpp>

#include <stdexcept>
#include <string_view>

namespace koine::bench {

MemoryDevice::MemoryDevice(std::shared_ptr<const DeviceTexts> texts) : texts_(std::move(texts)) {
    set_server_address("camera");
    set_username("admin");
    set_password("secret");
}

int MemoryDevice::handleParameter(unsigned int /*uid*/, char* url, char** answer) {
    return handleParameter_1(url, answer);
}

int MemoryDevice::requestCgi(unsigned int /*uid*/, char* url, char** answer, _REQCGI_METHOD_DEF /*method*/,
                             _REQCGI_CONNECTION_DEF /*connection*/) {
    ++requests_;
    for (const auto& [part, text] : *texts_) {
        if (viewOf(url).find(part) == std::string_view::npos)
            continue;
        if (answer != nullptr)
            *answer = copyText(text).release();
        return kOk;
    }
    return kNoFunction;
}

int MemoryDevice::buildStreamUri(unsigned int /*uid*/, const char* /*serverAddress*/,
                                 unsigned int /*serverPort*/, const char* /*videoEncoding*/,
                                 const char* /*audioEncoding*/, int /*width*/, int /*height*/, char** uri) {
    *uri = copyText("rtsp://camera/live").release();
    return *uri == nullptr ? kNoResource : kOk;
}

int MemoryDevice::convertCgiCapability(CgiMap* capability, CgiMap* login) {
    capability_ = capability;
    login_ = login;
    return BaseRequest::convertCgiCapability(capability, login);
}

int MemoryDevice::convertCgiMedia(unsigned int uid, CgiMap* media, CgiMap* login) {
    media_ = media;
    return BaseRequest::convertCgiMedia(uid, media, login);
}

int MemoryDevice::convertCgiVideo(CgiMap* video) {
    video_ = video;
    return BaseRequest::convertCgiVideo(video);
}

boost::shared_ptr<MemoryDevice> startedDevice(const DeviceShape& shape) {
    auto device = boost::make_shared<MemoryDevice>(deviceTexts(shape));
    startStream(*device);
    return device;
}

void startStream(IBaseRequest& device, unsigned int uid) {
    for (const char* line : {kStreamSetup, kStreamGet, kGetUri})
        answerTo(device, line, uid);
}

int send(IBaseRequest& device, const char* line, unsigned int uid) {
    char* answer = nullptr;
    const int result = device.requestHttpStr(uid, const_cast<char*>(line), nullptr, nullptr, &answer);
    device.freeData(answer);
    return result;
}

std::string answerTo(IBaseRequest& device, const char* line, unsigned int uid) {
    char* answer = nullptr;
    const int result = device.requestHttpStr(uid, const_cast<char*>(line), nullptr, nullptr, &answer);
    const OwnedText owned(answer);
    if (result != kOk)
        throw std::runtime_error("the device in memory answers \"" + std::string(line) + "\" with " +
                                 std::to_string(result));
    return owned.get();
}

} // namespace koine::bench
