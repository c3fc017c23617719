/// @file
/// The kinds of requests that a host makes, and how an answer to each is told from a wrong one.
#pragma once

#include "fleet.h"

#include "devices/answer.h"
#include "devices/dialect_request.h"

#include <array>
#include <string>
#include <string_view>

namespace koine::soak {

/// What an answer that says success must show.
enum class Proof {
    status, ///< a status, and nobody else's mark
    mark,   ///< the mark of the device
    echo,   ///< the mark, unless the device sent no text at all
    media,  ///< the mark, or that it has no profiles: it may say that it does not know them
    port    ///< the device's own port in a stream URI
};

struct Kind {
    const char* name;
    const char* line; ///< "%M" stands for the mark
    Proof proof = Proof::status;
    bool asMap = false; ///< through `requestHttpData`
};

inline constexpr std::array<Kind, 15> kKinds = {{
    {"login", "Login.cgi", Proof::mark},
    {"capability", "Capability.cgi?action=get", Proof::mark},
    {"config get", "Config.cgi?action=get&category=Video.*", Proof::mark},
    {"config get, all", "Config.cgi?action=get&category=*", Proof::mark},
    {"config get, notification", "Config.cgi?action=get&category=Notification.*", Proof::mark},
    {"media", "Config.cgi?action=get&category=Media.*", Proof::media},
    {"config set", "Config.cgi?action=set&Video.I0.Brightness=61&Video.Unit=%M"},
    {"config set, media",
     "Config.cgi?action=set&Media.Profiles.Profile1.VideoEncoderConfiguration.RateControl.FrameRateLimit=12"},
    {"stream set", "Stream.cgi?action=set&StreamSetup.Stream=RTP-Unicast&StreamSetup.Transport.Protocol=TCP&"
                   "ProfileMode=AUTO"
                   "&StreamSetup.VideoEncoderConfiguration.Resolution.NxN=640x480"},
    {"stream set, mobile",
     "Stream.cgi?action=set&StreamSetup.Stream=RTP-Unicast&StreamSetup.Transport.Protocol=TCP"
     "&ProfileMode=MOBILE"},
    {"stream get", "Stream.cgi?action=get"},
    {"stream URI", "Onvif.cgi?action=GetStreamUri&ProfileToken=", Proof::port},
    {"onvif", "Onvif.cgi?action=GetDeviceInformation&a=%n%s%x"},
    {"pass-through", "PTZ.cgi?stop=1&a=%n%s%x", Proof::echo},
    {"pass-through as a map", "PTZ.cgi?stop=2", Proof::echo, true},
}};

/// Makes one request.
Answer send(DialectRequest& device, const Unit& unit, unsigned int uid, const Kind& kind);

/// Does the text carry a mark that is not this one?
bool showsAnother(std::string_view text, std::string_view mark);

/// Is there no text at all where one is due? A failure always has one.
bool lacksItsText(const Answer& answer, const Kind& kind);

/// What is wrong with an answer; empty when nothing is.
std::string faultOf(const Answer& answer, const Kind& kind, const Unit& unit);

} // namespace koine::soak
