// Which media profile serves a stream user.

#include "cache/key_map.h"
#include "koine/BaseRequest.h"
#include "media/media_traces.h"
#include "media/profile_count.h"
#include "media/profile_keys.h"
#include "media/profile_words.h"
#include "stream/required_client.h"
#include "text/owned_text.h"

#include <optional>

using namespace koine;

namespace {

constexpr int kFirstProfile = 1;
constexpr const char* kPlaceholderToken = "PROFILE-1";

/// The first profile whose key has this value.
std::optional<int> firstProfileWith(const CgiMap& media, int count, ProfileKey key, std::string_view value) {
    for (int number = kFirstProfile; number <= count; ++number) {
        const std::string* found = findValue(media, ProfileKeys(ProfileNumber{number}).of(key));
        if (found != nullptr && *found == value)
            return number;
    }
    return std::nullopt;
}

/// By token when the user has one and no mode, else by who may view the profiles live; nothing when a mobile
/// user can be served by none. A user without a mode and a token becomes one that takes any profile.
std::optional<int> chooseProfile(const CgiMap& media, int count, StreamIDClient& client) {
    const std::string token(viewOf(client.profile_token()));
    if (client.profile_mode().empty()) {
        if (!token.empty())
            return firstProfileWith(media, count, ProfileKey::token, token).value_or(kFirstProfile);
        client.setProfileMode_1(kModeAuto);
    } else if (token.empty()) {
        client.set_profile_token(kPlaceholderToken);
    }
    if (client.profile_mode() == kModeAuto)
        return firstProfileWith(media, count, ProfileKey::allowLive, kLiveAny).value_or(kFirstProfile);
    if (client.profile_mode() != kModeMobile)
        return kFirstProfile;
    if (count < 1)
        return token.empty() ? std::nullopt : std::optional<int>(kFirstProfile);
    return firstProfileWith(media, count, ProfileKey::allowLive, kLiveMobile).value_or(count);
}

} // namespace

int BaseRequest::searchAvailableProfileToken(unsigned int uid) {
    const boost::shared_ptr<StreamIDClient> held = get_streamid_client(uid);
    StreamIDClient& client = required(held);
    if (client.profile_mode() == kModeMobile && getIsPellDevice() != 0) {
        media_trace::mobileRefused(kRefused);
        return kRefused;
    }
    if (getMediaProfile() != 1) {
        media_trace::noMedia(1933);
        return kOk;
    }
    const std::string* claimed = findValue(media_.map, kProfileCountKey);
    if (claimed == nullptr) {
        media_trace::noMedia(1941);
        return kOk;
    }
    const std::optional<int> chosen = chooseProfile(media_.map, boundedProfileCount(*claimed), client);
    if (!chosen) {
        media_trace::noProfileForMobile(kRefused);
        return kRefused;
    }
    client.set_profile_id(*chosen);
    client.set_profile_token(entry(media_.map, ProfileKeys(ProfileNumber{*chosen}).of(ProfileKey::token)));
    return kOk;
}
