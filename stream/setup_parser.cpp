// The set-up text of a stream user, item by item, into its record.

#include "cache/keys.h"
#include "koine/StreamIDClient.h"
#include "media/profile_words.h"
#include "stream/quoted_value.h"
#include "text/owned_text.h"
#include "text/scan.h"
#include "text/tokens.h"
#include "text/words.h"

#include <array>

using namespace koine;

namespace {

constexpr std::size_t kLongestWord = 127;
constexpr const char* kTcp = "TCP";
constexpr const char* kUdp = "UDP";
constexpr std::string_view kMulticast = "RTP-Multicast";
constexpr std::string_view kNetworkBackup = "TOVLIN-NetworkBk";

// ---- What the items do to the record

using Client = StreamIDClient;

void setStream(Client& client, const char* stream) {
    client.setSettingStream(stream);
    client.set_req_mode(TOVLIN_REQUEST_MODE_STREAM);
    if (client.setting_stream() == kMulticast)
        client.setSettingTranPro(kUdp);
    else if (client.setting_stream() == kNetworkBackup)
        client.set_req_mode(TOVLIN_REQUEST_MODE_NETWORK_BACKUP);
}

void setAudio(Client& client, const char* word) {
    if (startsWithIgnoreCase(word, "OFF"))
        client.set_audio_in_live(0);
}

void setQuality(Client& client, float quality) {
    client.setSettingQuality(quality);
    client.setNowQuality(quality);
}

bool isMakers(Client& client) { return startsWithIgnoreCase(viewOf(client.getVendor()), kMakerVendor); }

/// Scaled by the step as it stands now; setting a bound changes it, so the order of the two items matters.
void setSourceMin(Client& client, float quality) {
    if (isMakers(client))
        client.setSettingQualitySrcMin(client.getQualityStep() * quality);
}

void setSourceMax(Client& client, float quality) {
    if (isMakers(client))
        client.setSettingQualitySrcMax(client.getQualityStep() * quality);
}

// ---- The items, in the order in which they are tried

using SetNumber = void (*)(Client& client, int value);
using SetWord = void (*)(Client& client, const char* value);
using SetReal = void (*)(Client& client, float value);
using SetSize = void (*)(Client& client, int width, int height);

/// One key and what its value does; exactly one of the functions is there and tells how the value is read.
struct Item {
    std::string_view key;
    SetNumber number;
    SetWord word;
    SetReal real;
    SetSize size;
};

constexpr Item number(std::string_view key, SetNumber set) { return {key, set, nullptr, nullptr, nullptr}; }
constexpr Item word(std::string_view key, SetWord set) { return {key, nullptr, set, nullptr, nullptr}; }
constexpr Item real(std::string_view key, SetReal set) { return {key, nullptr, nullptr, set, nullptr}; }
constexpr Item size(std::string_view key, SetSize set) { return {key, nullptr, nullptr, nullptr, set}; }

constexpr std::array<Item, 20> kItems = {{
    number("StreamSetup.UseruidOrder=", [](Client& c, int n) { c.set_userid_order(n); }),
    word("StreamSetup.Stream=", setStream),
    word("StreamSetup.Transport.Protocol=", [](Client& c, const char* v) { c.setSettingTranPro(v); }),
    word("StreamSetup.Audio.Input.Live=", setAudio),
    word("ProfileToken=", [](Client& c, const char* v) { c.set_profile_token(v); }),
    word("ProfileMode=", [](Client& c, const char* v) { c.setProfileMode_1(v); }),
    number("StreamSetup.Live.Channel=", [](Client& c, int n) { c.set_strm_nvr_subchannel(n); }),
    // The text counts channels from 0, the record from 1.
    number("StreamSetup.Setting.Channel=",
           [](Client& c, int n) {
               c.set_strm_setting_channel(static_cast<int>(static_cast<unsigned>(n) + 1U));
           }),
    number("StreamSetup.StreamNo=", [](Client& c, int n) { c.set_strm_setting_no(n); }),
    word("StreamSetup.VideoEncoderConfiguration.Encoding=",
         [](Client& c, const char* v) { c.setSettingEnc(v); }),
    size("StreamSetup.VideoEncoderConfiguration.Resolution.NxN=",
         [](Client& c, int w, int h) {
             c.setSettingW(w);
             c.setSettingH(h);
         }),
    size("StreamSetup.VideoEncoderConfiguration.Resolution.NxN.Max=",
         [](Client& c, int w, int h) {
             c.setSettingMaxW(w);
             c.setSettingMaxH(h);
         }),
    size("StreamSetup.VideoEncoderConfiguration.Resolution.NxN.Max.Ui=",
         [](Client& c, int w, int h) {
             c.setSettingMaxW_Ui(w);
             c.setSettingMaxH_Ui(h);
         }),
    size("StreamSetup.VideoEncoderConfiguration.Resolution.NxN.Min.Ui=",
         [](Client& c, int w, int h) {
             c.setSettingMinW_Ui(w);
             c.setSettingMinH_Ui(h);
         }),
    number("StreamSetup.VideoEncoderConfiguration.RateControl.FrameRateLimit=",
           [](Client& c, int n) { c.setSettingFramerate(n); }),
    real("StreamSetup.VideoEncoderConfiguration.Quality=", setQuality),
    number("StreamSetup.VideoEncoderConfiguration.RateControl.BitrateLimit=",
           [](Client& c, int n) { c.setSettingBitrate(n); }),
    number("StreamSetup.VideoEncoderConfiguration.GovLength=",
           [](Client& c, int n) { c.setSettingGovLength(n); }),
    real("StreamSetup.VideoEncoderConfiguration.Quality.Src.Min=", setSourceMin),
    real("StreamSetup.VideoEncoderConfiguration.Quality.Src.Max=", setSourceMax),
}};

/// @return does the token have this item's key and a value that can be read?
bool apply(const Item& item, std::string_view token, Client& client) {
    int first = 0;
    int second = 0;
    float fraction = 0.0F;
    std::string_view text;
    if (item.number != nullptr && scan(token, item.key, into(first)))
        item.number(client, first);
    else if (item.word != nullptr && scan(token, item.key, into(text)))
        item.word(client, std::string(text.substr(0, kLongestWord)).c_str());
    else if (item.real != nullptr && scan(token, item.key, into(fraction)))
        item.real(client, fraction);
    else if (item.size != nullptr && scan(token, item.key, into(first), "x", into(second)))
        item.size(client, first, second);
    else
        return false;
    return true;
}

void applyFirst(std::string_view token, Client& client) {
    for (const Item& item : kItems)
        if (apply(item, token, client))
            return;
}

// ---- Values in quotes

void takeQuoted(std::string_view text, std::string_view key, ClosingQuote closing, Client& client,
                void (Client::*set)(const char*)) {
    const std::string value(quotedValue(text, key, closing));
    if (!value.empty())
        (client.*set)(value.c_str());
}

} // namespace

int StreamIDClient::ParseStreamInit() {
    const std::string text = getInitStream();
    for (const std::string_view token : Tokens(text, "&\n"))
        applyFirst(token, *this);

    if (setting_stream() == kNetworkBackup)
        takeQuoted(text, "StreamSetup.Param=", ClosingQuote::last, *this,
                   &StreamIDClient::setStreamSettingCgiParam);
    takeQuoted(text, "StreamSetup.Stream.Param=", ClosingQuote::next, *this,
               &StreamIDClient::setSettingStrmparam);
    takeQuoted(text, "StreamSetup.Stream.Param1=", ClosingQuote::next, *this,
               &StreamIDClient::setSettingStrmparam1);

    if (transport_protocol().empty())
        setSettingTranPro(kTcp);
    if (profile_mode() == kModeMobile)
        set_audio_in_live(0);
    return kOk;
}
