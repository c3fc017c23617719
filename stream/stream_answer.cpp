// "Stream.cgi?action=get": the stream a user is set up for and the profile behind it.

#include "cache/key_map.h"
#include "cache/keys.h"
#include "koine/BaseRequest.h"
#include "media/profile_count.h"
#include "media/profile_keys.h"
#include "stream/first_profile.h"
#include "stream/required_client.h"
#include "stream/stream_traces.h"
#include "text/bounded_text.h"
#include "text/nearby_search.h"
#include "text/numbers.h"
#include "text/owned_text.h"
#include "text/words.h"

#include <array>

using namespace koine;

namespace {

constexpr std::size_t kStreamAnswerBytes = 4096;

constexpr const char* kDefaultCodec = "H264";
/// Codecs that the answer names, by how the entry begins; everything else counts as the default.
constexpr std::array<std::string_view, 2> kOtherCodecs = {"JPEG", "MPEG4"};

std::string_view codecName(std::string_view encoding) {
    for (const std::string_view codec : kOtherCodecs)
        if (startsWithIgnoreCase(encoding, codec))
            return codec;
    return kDefaultCodec;
}

/// How an entry of the media cache is printed.
enum class Print { whole, oneDecimal, sizesOfCodec };

struct ProfileLine {
    EncoderKey key; // not looked at for the sizes of the codec
    std::string_view start;
    Print print;
};

/// The lines about the profile, in their order, after that of the encoding: the text up to the value, or to
/// the codec. Hosts ask for this answer often, so what can be one text is one.
constexpr std::array<ProfileLine, 8> kProfileLines = {{
    {EncoderKey::width, "\nStream.Profile.Resolution.Width=", Print::whole},
    {EncoderKey::height, "\nStream.Profile.Resolution.Height=", Print::whole},
    {EncoderKey::quality, "\nStream.Profile.Quality=", Print::oneDecimal},
    {EncoderKey::frameRateLimit, "\nStream.Profile.RateControl.FrameRateLimit=", Print::whole},
    {EncoderKey::bitrateLimit, "\nStream.Profile.RateControl.BitrateLimit=", Print::whole},
    {EncoderKey::encodingList, "\nStream.Video.Resolution.", Print::sizesOfCodec},
    {EncoderKey::qualityMax, "\nStream.Video.Quality.Max=", Print::whole},
    {EncoderKey::qualityMin, "\nStream.Video.Quality.Min=", Print::whole},
}};

/// The same lines in the order in which their keys stand in the map.
constexpr std::array<unsigned, kProfileLines.size()> kByKey = {5, 2, 6, 7, 4, 3, 1, 0};

class StreamAnswer {
public:
    StreamAnswer() { text_.append(answers::kOkHead); }

    const BoundedText<kStreamAnswerBytes>& text() const { return text_; }

    void addGiven(std::string_view start, std::string_view value) {
        if (!value.empty())
            text_.append(start).append(value);
    }

    void addUser(const StreamIDClient& client) {
        addGiven("\nProfileToken=", viewOf(client.profile_token()));
        addGiven("\nProfileMode=", client.profile_mode());
        if (client.profile_id() != 0)
            text_.append("\nStream.Profile.Id=").append(client.profile_id());
        addGiven("\nStream.Stream=", client.setting_stream());
        addGiven("\nStream.Transport.Protocol=", client.transport_protocol());
    }

    void addProfile(const CgiMap& media, ProfileNumber profile) {
        ProfileKeys keys(profile);
        NearbySearch<const CgiMap> search(media);
        const auto find = [&search](std::string_view key) {
            return search.moveTo(key) ? &search.place()->second : nullptr;
        };
        std::string_view codec = kDefaultCodec;
        if (const std::string* encoding = find(keys.of(EncoderKey::encoding))) {
            codec = codecName(*encoding);
            text_.append("\nStream.Profile.Encoding=").append(codec);
        }
        std::array<const std::string*, kProfileLines.size()> values{};
        for (const unsigned i : kByKey) {
            const ProfileLine& line = kProfileLines[i];
            values[i] =
                find(line.print == Print::sizesOfCodec ? EncodingKeys(keys, codec).of(EncodingKey::sizes)
                                                       : keys.of(line.key));
        }
        for (unsigned i = 0; i < values.size(); ++i)
            if (values[i] != nullptr)
                addLine(kProfileLines[i], *values[i], codec);
    }

private:
    void addLine(const ProfileLine& line, const std::string& value, std::string_view codec) {
        text_.append(line.start);
        switch (line.print) {
        case Print::sizesOfCodec:
            text_.append(codec).append(".NxN.List=").append(value);
            break;
        case Print::oneDecimal:
            text_.append(fixedText(readDouble(value), 1));
            break;
        case Print::whole:
            text_.append(readInt(value));
            break;
        }
    }

    BoundedText<kStreamAnswerBytes> text_;
};

/// Without a profile of the user's token the chosen one stays.
void takeProfileOfToken(CgiMap& media, StreamIDClient& client) {
    const int count = boundedProfileCount(entry(media, kProfileCountKey));
    const int profile = firstProfileWith(media, count, ProfileKey::token, viewOf(client.profile_token()));
    if (profile != 0)
        client.set_profile_id(profile);
}

/// Answers with the error text, unless there is an answer already.
int fail(int result, char** answer) {
    if (answer != nullptr && *answer == nullptr)
        *answer = copyText(answers::kUnknownParameter).release();
    return result;
}

} // namespace

int BaseRequest::buildCgiStreamGet(unsigned int uid, char* /*url*/, char** answer) {
    const boost::shared_ptr<StreamIDClient> held = get_streamid_client(uid);
    StreamIDClient& client = required(held);
    const int user = static_cast<int>(uid);
    if (viewOf(client.profile_token()).empty()) {
        stream_trace::streamNotBuilt(__LINE__, user, strm_setting_channel(), kRefused);
        return fail(kRefused, answer);
    }
    const bool hasProfiles = getMediaProfile() == 1;
    if (hasProfiles)
        takeProfileOfToken(media_.map, client);
    if (answer == nullptr)
        return kOk;

    StreamAnswer built;
    built.addUser(client);
    if (hasProfiles)
        built.addProfile(media_.map, ProfileNumber{client.profile_id()});
    OwnedText copy;
    if (built.text().isWhole())
        copy = copyText(built.text().view());
    if (!copy) {
        stream_trace::streamNotBuilt(__LINE__, user, strm_setting_channel(), kNoResource);
        return fail(kNoResource, answer);
    }
    *answer = copy.release();
    return kOk;
}
