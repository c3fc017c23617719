// The summary of a device for programs.

#include "tools/summary.h"

#include "cache/key_map.h"

namespace koine::tool {
namespace {

template <std::size_t Count>
void addJson(Json& json, const std::array<Fact, Count>& facts, const CgiMap& map) {
    for (const Fact& fact : facts)
        if (const std::string* value = findValue(map, fact.source))
            json.set(fact.key, *value);
}

} // namespace

Json summaryAsJson(const Learned& learned, const std::string& url) {
    Json json = Json::object();
    json.set("url", url);
    addJson(json, kLoginFacts, learned.login);
    addJson(json, kCapabilityFacts, learned.capability);
    Json kinds = Json::object();
    for (const Kind& kind : learned.kinds)
        kinds.set(kind.key, Json::boolean(kind.holds));
    json.set("kinds", std::move(kinds));
    json.set("profiles", profilesAsJson(learned.profiles));
    return json;
}

} // namespace koine::tool
