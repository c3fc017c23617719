// koine stream: sets a stream up and gives its URI.

#include "cache/key_map.h"
#include "text/scan.h"
#include "tools/categories.h"
#include "tools/commands/commands.h"
#include "tools/json.h"
#include "tools/learned.h"
#include "tools/terminal.h"

#include <algorithm>

namespace koine::tool {
namespace {

constexpr std::string_view kUriKey = "GetStreamUriResponse.MediaUri.Uri";
constexpr std::string_view kEncodingKey = "Stream.Profile.Encoding";
constexpr std::string_view kEncoder = "StreamSetup.VideoEncoderConfiguration.";

void checkSize(const std::string& size) {
    int width = 0;
    int height = 0;
    Cursor cursor(size);
    if (!cursor.integer(width) || !cursor.literal("x") || !cursor.integer(height) || !cursor.rest().empty() ||
        width < 1 || height < 1)
        throw Failure(ExitCode::usage, "--size " + size + ": no size; write it like 1280x720");
}

/// A set-up text holds one word per item.
void checkWord(const char* option, const std::string& word) {
    if (word.find_first_of("& \t\r\n") != std::string::npos)
        throw Failure(ExitCode::usage, std::string(option) + " " + word + ": must be one word without &");
}

/// The set-up line, item by item; what was not asked for is left out.
class SetupLine {
public:
    void item(std::string_view key, std::string_view value) {
        if (!value.empty())
            line_.append("&").append(key).append("=").append(value);
    }
    void number(std::string_view key, int value) {
        if (value > 0)
            item(key, std::to_string(value));
    }
    void encoder(std::string_view key, std::string_view value) {
        item(std::string(kEncoder).append(key), value);
    }
    void channel(int channel) {
        if (channel < 1)
            return;
        // Channels are counted from 0 in the one item and from 1 in the other.
        item("StreamSetup.Setting.Channel", std::to_string(channel - 1));
        number("StreamSetup.Live.Channel", channel);
    }
    const std::string& text() const { return line_; }

private:
    std::string line_ = "Stream.cgi?action=set";
};

std::string setupLine(const StreamCommand& command) {
    SetupLine line;
    line.item("StreamSetup.Stream", "RTP-Unicast");
    line.item("StreamSetup.Transport.Protocol", command.transport);
    line.item("ProfileMode", command.mode);
    line.item("ProfileToken", command.token);
    line.channel(command.channel);
    line.encoder("Encoding", command.encoding);
    line.encoder("Resolution.NxN", command.size);
    line.encoder("Quality", command.quality);
    line.number(std::string(kEncoder) + "RateControl.FrameRateLimit", command.framesPerSecond);
    line.number(std::string(kEncoder) + "RateControl.BitrateLimit", command.bitrate);
    line.number(std::string(kEncoder) + "GovLength", command.govLength);
    return line.text();
}

/// The library serves an unknown token by another profile, and that one's encoder would be changed.
/// @throws Failure when the device has profiles, and none with this token
void demandProfile(Connection& connection, const StreamCommand& command) {
    // A set-up that names no stream fills the caches, with the profiles of the channel, and changes nothing.
    SetupLine learning;
    learning.item("StreamSetup.Transport.Protocol", command.transport); // makes it a set-up
    learning.channel(command.channel);
    connection.demand(learning.text(), "reading the media profiles");
    const std::vector<Profile> profiles = profilesIn(connection.ask(readingLine("Media")).values());
    std::string tokens;
    for (const Profile& profile : profiles) {
        if (profile.token == command.token)
            return;
        tokens.append(tokens.empty() ? "" : ", ").append(profile.token);
    }
    if (!profiles.empty())
        throw Failure(ExitCode::usage, connection.where() + ": no profile has the token " + command.token +
                                           "; there are: " + tokens);
}

/// The stream comes all the same: a host may well be able to show it.
void warnOfOtherEncoding(const std::string& where, std::string_view wanted, std::string_view got) {
    if (!wanted.empty() && !got.empty() && wanted != got)
        std::fprintf(stderr,
                     "koine: %s: the stream comes in %s, not in %s (koine profiles shows what can be)\n",
                     where.c_str(), harmless(got).c_str(), std::string(wanted).c_str());
}

/// The URI of the profile that the stream uses; without the token any H.264 profile would do.
std::string uriLine(const CgiMap& stream) {
    std::string line = "Onvif.cgi?action=GetStreamUri";
    if (const std::string* token = findValue(stream, "ProfileToken"))
        line.append("&ProfileToken=").append(*token);
    return line;
}

void show(const CgiMap& stream, const std::string& uri) {
    const Style style(stdout);
    std::size_t widest = 0;
    for (const auto& [key, value] : stream)
        widest = std::max(widest, shownWidth(key));
    for (const auto& [key, value] : stream)
        printLine(style.paint(Tint::dim, padded(harmless(key), widest)) + "  " + harmless(value));
    printLine();
    printLine(style.paint(Tint::bold, harmless(uri)));
}

} // namespace

ExitCode StreamCommand::run(const Arguments& arguments) const {
    if (!size.empty())
        checkSize(size);
    checkWord("--token", token);
    DeviceOptions options;
    options.rtspPort = rtspPort;
    options.credentialsInUri = credentialsInUri;
    Connection connection(target, arguments, options);
    if (!token.empty())
        demandProfile(connection, *this);
    connection.demand(setupLine(*this),
                      "setting the stream up" + (mode.empty() ? std::string() : " in mode " + mode));
    const CgiMap stream = connection.demand("Stream.cgi?action=get", "reading the stream").values();
    warnOfOtherEncoding(connection.where(), encoding, valueOr(stream, kEncodingKey));
    const CgiMap answer = connection.demand(uriLine(stream), "asking for the stream URI").values();
    const std::string uri(valueOr(answer, kUriKey));
    if (uriOnly) {
        printLine(uri);
    } else if (json) {
        Json values = Json::object();
        for (const auto& [key, value] : stream)
            values.set(key, value);
        Json result = Json::object();
        result.set("uri", uri);
        result.set("stream", std::move(values));
        print(result.dump());
    } else {
        show(stream, uri);
    }
    return ExitCode::answered;
}

} // namespace koine::tool
