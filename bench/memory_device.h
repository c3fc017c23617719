/// @file
/// A device in this process: it answers from a table and does nothing else, so that what is measured is the
/// library.
#pragma once

#include "bench/device_texts.h"
#include "koine/BaseRequest.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>

namespace koine::bench {

inline constexpr unsigned int kUid = 1;

/// What the first stream user asks for; the last profile is reserved for mobile viewing.
inline constexpr const char* kStreamSetup =
    "Stream.cgi?action=set&StreamSetup.Stream=RTP-Unicast&StreamSetup.Transport.Protocol=TCP"
    "&ProfileMode=MOBILE";
inline constexpr const char* kStreamGet = "Stream.cgi?action=get";
inline constexpr const char* kGetUri = "Onvif.cgi?action=GetStreamUri";

class MemoryDevice : public BaseRequest {
public:
    explicit MemoryDevice(std::shared_ptr<const DeviceTexts> texts);

    /// The cache itself, once it was filled.
    CgiMap& login() { return *login_; }
    CgiMap& capability() { return *capability_; }
    CgiMap& media() { return *media_; }
    CgiMap& video() { return *video_; }

    std::uint64_t requests() const { return requests_; }

    const char* deviceClass() override { return "memory"; }
    int probe(unsigned int uid) override { return getCacheLogin(uid, 0, nullptr, nullptr); }
    int handleParameter(unsigned int uid, char* url, char** answer) override;
    int syncProfileToken(unsigned int uid) override { return syncProfileToken_1(uid); }
    int requestCgi(unsigned int uid, char* url, char** answer, _REQCGI_METHOD_DEF method,
                   _REQCGI_CONNECTION_DEF connection) override;
    int buildStreamUri(unsigned int uid, const char* serverAddress, unsigned int serverPort,
                       const char* videoEncoding, const char* audioEncoding, int width, int height,
                       char** uri) override;

    using BaseRequest::convertCgiCapability;
    int convertCgiCapability(CgiMap* capability, CgiMap* login) override;
    int convertCgiMedia(unsigned int uid, CgiMap* media, CgiMap* login) override;
    int convertCgiVideo(CgiMap* video) override;

private:
    std::shared_ptr<const DeviceTexts> texts_;
    CgiMap* login_ = nullptr;
    CgiMap* capability_ = nullptr;
    CgiMap* media_ = nullptr;
    CgiMap* video_ = nullptr;
    std::uint64_t requests_ = 0;
};

/// A device whose caches are filled and whose first user has a stream.
boost::shared_ptr<MemoryDevice> startedDevice(const DeviceShape& shape = {});

/// What a host does with a device that it does not know yet, up to the address of its pictures.
/// @throws std::runtime_error when a line fails
void startStream(IBaseRequest& device, unsigned int uid = kUid);

/// Sends one line and lets go of the answer; what a host does that only measures.
/// @return the result
int send(IBaseRequest& device, const char* line, unsigned int uid = kUid);

/// The answer to one line.
/// @throws std::runtime_error naming the line when it fails: nothing that fails is worth measuring
std::string answerTo(IBaseRequest& device, const char* line, unsigned int uid = kUid);

} // namespace koine::bench
