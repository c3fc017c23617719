/// @file
/// Every kind of request that a host makes of a device.
#pragma once

#include "tests/e2e/rig.h"

#include <array>
#include <ostream>

namespace koine::test {

struct RequestKind {
    const char* name;
    const char* line;
    const char* ownPath;       ///< by which a fault of the device finds the request that this kind is about
    bool setsStreamUp = false; ///< a set-up is pending when the line comes
};

inline void PrintTo(const RequestKind& kind, std::ostream* stream) { *stream << kind.name; }

inline constexpr const char* kStreamSetup =
    "Stream.cgi?action=set&StreamSetup.Stream=RTP-Unicast&StreamSetup.Transport.Protocol=TCP&ProfileMode=AUTO"
    "&StreamSetup.VideoEncoderConfiguration.Resolution.NxN=1280x720";

inline constexpr std::array<RequestKind, 11> kRequestKinds = {{
    {"login", "Login.cgi", "Login"},
    {"capability", "Capability.cgi?action=get", "Capability"},
    {"config get", kVideo, "category=Video"},
    {"config get, all", "Config.cgi?action=get&category=*", "category=Misc"},
    {"media", "Config.cgi?action=get&category=Media.*", "category=Media"},
    {"config set", "Config.cgi?action=set&Video.I0.Brightness=61", "action=set"},
    {"stream set", kStreamSetup, "action=set"},
    {"stream get", "Stream.cgi?action=get", "action=set", true},
    {"stream URI", "Onvif.cgi?action=GetStreamUri&ProfileToken=PROFILE-MAIN", "category=Notification", true},
    {"onvif", "Onvif.cgi?action=GetDeviceInformation", "Onvif"},
    {"pass-through", "PTZ.cgi?stop=1", "PTZ"},
}};

/// Makes a request of a kind.
Answer ask(DialectRequest& device, const RequestKind& kind);

/// Does a failure come with the error text that is stated for it?
bool isStated(const Answer& answer);

} // namespace koine::test
