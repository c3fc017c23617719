/// @file
/// A device in memory, for the fuzz targets: its answers are whatever the fuzzer says.
#pragma once

#include "koine/BaseRequest.h"
#include "text/owned_text.h"

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <future>
#include <map>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace koine::fuzz {

/// The input, taken piece by piece.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    bool empty() const { return size_ == 0; }

    std::uint8_t byte() {
        if (size_ == 0)
            return 0;
        --size_;
        return *data_++;
    }

    /// Up to the next zero byte, or what is left.
    std::string text() {
        std::string piece;
        while (size_ > 0) {
            const char c = static_cast<char>(byte());
            if (c == '\0')
                break;
            piece += c;
        }
        return piece;
    }

private:
    const std::uint8_t* data_;
    std::size_t size_;
};

/// A request object whose device answers from a table of request lines.
class Device : public BaseRequest {
public:
    /// What the device says to a line that contains the key; the first that fits in key order decides.
    std::map<std::string, std::string, std::less<>> answers;
    /// Result for lines without an answer.
    int silence = -6;
    /// How often the device was asked; a run that asks without end is a defect.
    int asked = 0;
    /// The longest input names a category some 1,200 times, each of which may ask once; the kept inputs ask
    /// 51 times at most.
    static constexpr int kMostAsked = 4096;

    const char* deviceClass() override { return "fuzzed"; }
    int probe(unsigned int uid) override { return getCacheLogin(uid, 0, nullptr, nullptr); }
    int handleParameter(unsigned int /*uid*/, char* url, char** answer) override {
        return handleParameter_1(url, answer);
    }
    int syncProfileToken(unsigned int uid) override { return syncProfileToken_1(uid); }

    int requestCgi(unsigned int /*uid*/, char* url, char** answer, _REQCGI_METHOD_DEF /*method*/,
                   _REQCGI_CONNECTION_DEF /*connection*/) override {
        if (++asked > kMostAsked)
            __builtin_trap();
        if (url == nullptr)
            return kRefused;
        for (const auto& [line, text] : answers) {
            if (std::string_view(url).find(line) == std::string_view::npos)
                continue;
            if (answer != nullptr)
                *answer = copyText(text).release();
            return kOk;
        }
        return silence;
    }

    int buildStreamUri(unsigned int /*uid*/, const char* serverAddress, unsigned int /*serverPort*/,
                       const char* videoEncoding, const char* /*audioEncoding*/, int /*width*/,
                       int /*height*/, char** uri) override {
        const std::string text =
            "rtsp://" + std::string(orEmpty(serverAddress)) + "/" + orEmpty(videoEncoding);
        *uri = copyText(text).release();
        return *uri == nullptr ? kNoResource : kOk;
    }
};

/// The lines a device is asked, in the order in which its caches are filled.
inline const std::vector<std::string>& deviceLines() {
    static const std::vector<std::string> lines = {"Login.cgi",
                                                   "Capability.cgi",
                                                   "Machine.cgi",
                                                   "category=Media.",
                                                   "category=Video.",
                                                   "category=Camera.",
                                                   "category=Notification.",
                                                   "category=Misc.",
                                                   "category=VideoAnalytics.",
                                                   "action=set"};
    return lines;
}

/// An ordinary camera with two profiles.
inline void answerAsCamera(Device& device) {
    device.answers = {
        {"Login.cgi", "0\nOK\nProduct-Name=CAM-1\nProduct-ID=CAM\nVideo-System=PAL\n"},
        {"Capability.cgi", "0\nOK\nDevice=IPCAM\nID=CAM-1\nCapability.Function=AudioVolume,VA\n"
                           "Capability.Video.Format=MJPEG,MPEG4,H.264\n"
                           "Capability.Video.Resolution=CIF,4CIF,720P\nCapability.Audio.Input.Channel=1\n"},
        {"category=Media.", "0\nOK\nMedia.Profiles.Count=2\nMedia.Profiles.Profile1.token=ONE\n"
                            "Media.Profiles.Profile1.VideoEncoderConfiguration.token=V1\n"
                            "Media.Profiles.Profile1.VideoEncoderConfiguration.Encoding=H264\n"
                            "Media.Profiles.Profile1.VideoEncoderConfiguration.Quality=0.5\n"
                            "Media.Profiles.Profile1.VideoEncoderConfiguration.Resolution.Width=1280\n"
                            "Media.Profiles.Profile1.VideoEncoderConfiguration.Resolution.Height=720\n"
                            "Media.Profiles.Profile2.token=TWO\n"
                            "Media.Profiles.Profile2.VideoEncoderConfiguration.token=V2\n"
                            "Media.Profiles.Profile2.VideoEncoderConfiguration.Encoding=MPEG4\n"},
        {"category=Video.", "0\nOK\nVideo.I0.Brightness=1\n"},
        {"category=Camera.", "0\nOK\nCamera.Detection.LS=3\n"},
        {"category=Notification.", "0\nOK\nNotification.Trigger.Alarm=DISABLE\n"},
        {"category=Misc.", "0\nOK\nMisc.External.DI.Port1.Active=N.O.\n"},
        {"category=VideoAnalytics.", "0\nOK\nVideoAnalytics.Count=0\n"},
        {"action=set", "0\nOK\n"},
    };
}

/// Product flags and vendors that change what is done, chosen by one byte.
inline void chooseKind(Device& device, std::uint8_t choice) {
    static constexpr const char* kVendors[] = {"", "TOVLIN", "tovlin-x", "ONLY_STREAM"};
    device.setVendor(kVendors[choice & 3U]);
    device.setIsPellDevice((choice >> 2U) & 1U);
    device.setIsTovlinNVRDevice((choice >> 3U) & 1U);
    device.setIsIDPTZ((choice >> 4U) & 1U);
    device.setIsResoIndep((choice >> 5U) & 1U);
    device.setIsTlProfile((choice >> 6U) & 1U);
}

/// Sends one line and gives its answer back; a call without a text for the answer is a defect.
inline int ask(Device& device, unsigned int uid, std::string line) {
    char* answer = nullptr;
    const int result = device.requestHttpStr(uid, line.data(), nullptr, nullptr, &answer);
    if (answer == nullptr)
        __builtin_trap();
    device.freeData(answer);
    return result;
}

/// Another thread gets the lock of the object; one that is still held is a defect, which the thread that
/// holds it would not notice. Without a thread to be had nothing is shown.
inline void expectLockIsFree(const boost::shared_ptr<Device>& device) {
    std::future<int> other;
    try {
        other =
            std::async(std::launch::async, [device] { return device->testOK(nullptr, 0, nullptr, nullptr); });
    } catch (const std::system_error&) {
        return;
    }
    if (other.wait_for(std::chrono::seconds(10)) != std::future_status::ready)
        __builtin_trap(); // waiting for the thread would hang
}

} // namespace koine::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
