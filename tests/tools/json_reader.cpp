// Reads the command's JSON: the only file that knows the JSON library, which is slow to compile.

#include "tests/tools/run_tool.h"

#include <nlohmann/json.hpp>

namespace koine::test {

std::string jsonAt(const std::string& text, const std::string& place) {
    const nlohmann::json json = nlohmann::json::parse(text, nullptr, false);
    if (json.is_discarded())
        return "(no JSON)";
    const nlohmann::json::json_pointer pointer(place);
    if (!json.contains(pointer))
        return "(absent)";
    const nlohmann::json& value = json.at(pointer);
    return value.is_string() ? value.get<std::string>() : value.dump();
}

std::string jsonMembers(const std::string& text, const std::string& place) {
    using Json = nlohmann::ordered_json;
    const Json json = Json::parse(text, nullptr, false);
    if (json.is_discarded())
        return "(no JSON)";
    const Json::json_pointer pointer(place);
    if (!json.contains(pointer))
        return "(absent)";
    std::string names;
    for (const auto& member : json.at(pointer).items())
        names += (names.empty() ? "" : " ") + member.key();
    return names;
}

std::size_t jsonSize(const std::string& text, const std::string& place) {
    const nlohmann::json json = nlohmann::json::parse(text, nullptr, false);
    const nlohmann::json::json_pointer pointer(place);
    return json.is_discarded() || !json.contains(pointer) ? 0 : json.at(pointer).size();
}

} // namespace koine::test
