// JSON for programs that call the command.

#include "tools/json.h"

#include <nlohmann/json.hpp>

namespace koine::tool {

struct Json::Value {
    explicit Value(nlohmann::ordered_json held) : json(std::move(held)) {}
    nlohmann::ordered_json json;
};

Json::Json(std::unique_ptr<Value> value) : value_(std::move(value)) {}
Json::Json(Json&&) noexcept = default;
Json& Json::operator=(Json&&) noexcept = default;
Json::~Json() = default;

// One constructor per kind: an implicit conversion would take a literal for a truth value.
Json Json::object() { return Json(std::make_unique<Value>(nlohmann::ordered_json::object())); }
Json Json::array() { return Json(std::make_unique<Value>(nlohmann::ordered_json::array())); }
Json Json::text(std::string_view value) { return Json(std::make_unique<Value>(value)); }
Json Json::number(long long value) { return Json(std::make_unique<Value>(value)); }
Json Json::fraction(double value) { return Json(std::make_unique<Value>(value)); }
Json Json::boolean(bool value) { return Json(std::make_unique<Value>(value)); }

Json Json::null() { return Json(std::make_unique<Value>(nullptr)); }

Json Json::copy(const Json& other) { return Json(std::make_unique<Value>(*other.value_)); }

Json& Json::set(std::string_view key, Json value) {
    value_->json[std::string(key)] = std::move(value.value_->json);
    return *this;
}

Json& Json::add(Json value) {
    value_->json.push_back(std::move(value.value_->json));
    return *this;
}

std::string Json::dump() const {
    return value_->json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

std::string Json::line() const {
    return value_->json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

Json Json::parse(std::string_view text) {
    nlohmann::ordered_json json = nlohmann::ordered_json::parse(text, nullptr, false);
    if (json.is_discarded())
        json = nullptr;
    return Json(std::make_unique<Value>(std::move(json)));
}

bool Json::isNull() const { return value_->json.is_null(); }

bool Json::has(std::string_view key) const { return value_->json.contains(key); }

Json Json::at(std::string_view key) const {
    return has(key) ? Json(std::make_unique<Value>(value_->json.at(std::string(key)))) : null();
}

std::string Json::asText() const {
    return value_->json.is_string() ? value_->json.get<std::string>() : std::string();
}

int Json::asNumber() const { return value_->json.is_number_integer() ? value_->json.get<int>() : 0; }

std::size_t Json::size() const { return value_->json.size(); }

} // namespace koine::tool
