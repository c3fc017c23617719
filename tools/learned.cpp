// What the library learned about a device, gathered for showing.

#include "tools/learned.h"

#include "cache/key_map.h"
#include "media/profile_count.h"
#include "media/profile_keys.h"
#include "tools/categories.h"

namespace koine::tool {
namespace {

struct KindOf {
    const char* key;
    const char* name;
    int (BaseRequest::*get)();
};

constexpr std::array<KindOf, 11> kKinds = {{
    {"media_profiles", "media profiles", &BaseRequest::getMediaProfile},
    {"mobile_profile", "mobile profile", &BaseRequest::getHaveMobile},
    {"video_analytics", "video analytics", &BaseRequest::getHasVA},
    {"remote_event_trigger", "remote event trigger", &BaseRequest::getIsRemoteEventTrigger},
    {"resolution_independent", "independent resolutions", &BaseRequest::getIsResoIndep},
    {"profile_settings", "settings by profile", &BaseRequest::getIsTlProfile},
    {"digital_ptz_by_profile", "digital PTZ by profile", &BaseRequest::getIsIDPTZ},
    {"onvif", "ONVIF product", &BaseRequest::getIsONVIFProduct},
    {"pell", "Pell kind", &BaseRequest::getIsPellDevice},
    {"product_331_578", "331/578 kind", &BaseRequest::getIs331_578Product},
    {"product_5240", "5240 kind", &BaseRequest::getIs5240Product},
}};

CgiMap mediaOf(Connection& connection) {
    const Answer answer = connection.ask(readingLine("Media"));
    if (meansAbsent(answer.result, answer.status()))
        return {};
    if (!answer.ok() || answer.status() != 0)
        throw connection.failure(answer.result, answer.status(), "reading the media profiles");
    return answer.values();
}

std::string sizeText(std::string_view width, std::string_view height) {
    return width.empty() || height.empty() ? std::string() : std::string(width).append("x").append(height);
}

/// The length of a group of pictures, which is kept per encoding or once for all.
std::string govLength(const CgiMap& media, ProfileKeys& keys, std::string_view encoding) {
    const std::string_view own = valueOr(media, EncodingKeys(keys, encoding).of(EncodingKey::govLength));
    if (!own.empty())
        return std::string(own);
    return std::string(valueOr(media, keys.of(EncoderKey::govLength)));
}

Profile profileOf(const CgiMap& media, int number) {
    ProfileKeys keys(ProfileNumber{number});
    const auto value = [&](auto key) { return std::string(valueOr(media, keys.of(key))); };
    Profile profile;
    profile.number = number;
    profile.token = value(ProfileKey::token);
    profile.live = value(ProfileKey::allowLive);
    profile.encoding = value(EncoderKey::encoding);
    profile.size = sizeText(value(EncoderKey::width), value(EncoderKey::height));
    profile.frameRate = value(EncoderKey::frameRateLimit);
    profile.quality = value(EncoderKey::quality);
    profile.bitrate = value(EncoderKey::bitrateLimit);
    profile.govLength = govLength(media, keys, profile.encoding);
    profile.encodings = value(EncoderKey::encodingList);
    return profile;
}

} // namespace

std::vector<Profile> profilesIn(const CgiMap& media) {
    std::vector<Profile> profiles;
    const int count = boundedProfileCount(valueOr(media, kProfileCountKey));
    for (int number = 1; number <= count; ++number)
        profiles.push_back(profileOf(media, number));
    return profiles;
}

Learned learn(Connection& connection) {
    Learned learned;
    learned.login = connection.demand(readingLine("Login"), "logging in").values();
    connection.prepareMedia();
    learned.capability = connection.demand(readingLine("Capability"), "reading the capabilities").values();
    learned.media = mediaOf(connection);
    learned.profiles = profilesIn(learned.media);
    for (const KindOf& kind : kKinds)
        learned.kinds.push_back({kind.key, kind.name, (connection.device().*kind.get)() != 0});
    return learned;
}

Table profileTable(const std::vector<Profile>& profiles) {
    using Align = Table::Align;
    Table table({{"#", Align::right},
                 {"TOKEN"},
                 {"LIVE"},
                 {"ENCODING"},
                 {"SIZE", Align::right},
                 {"FPS", Align::right},
                 {"QUALITY", Align::right},
                 {"BITRATE", Align::right},
                 {"GOV", Align::right},
                 {"CAN ENCODE"}});
    for (const Profile& profile : profiles)
        table.add({std::to_string(profile.number), harmless(profile.token), harmless(profile.live),
                   harmless(profile.encoding), harmless(profile.size), harmless(profile.frameRate),
                   harmless(profile.quality), harmless(profile.bitrate), harmless(profile.govLength),
                   harmless(profile.encodings)});
    return table;
}

Json profilesAsJson(const std::vector<Profile>& profiles) {
    Json all = Json::array();
    for (const Profile& profile : profiles) {
        Json json = Json::object();
        json.set("number", Json::number(profile.number));
        json.set("token", profile.token);
        json.set("live", profile.live);
        json.set("encoding", profile.encoding);
        json.set("size", profile.size);
        json.set("frame_rate", profile.frameRate);
        json.set("quality", profile.quality);
        json.set("bitrate", profile.bitrate);
        json.set("gov_length", profile.govLength);
        json.set("encodings", profile.encodings);
        all.add(std::move(json));
    }
    return all;
}

} // namespace koine::tool
