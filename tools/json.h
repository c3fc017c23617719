/// @file
/// JSON for programs that call the command. Keeps the JSON library, which is slow to compile, in one place.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace koine::tool {

/// One JSON value. Members of an object keep the order in which they were set. Device texts that are no
/// UTF-8 are repaired, not refused.
class Json {
public:
    static Json object();
    static Json array();
    static Json text(std::string_view value);
    static Json number(long long value);
    static Json fraction(double value);
    static Json boolean(bool value);
    static Json null();
    static Json copy(const Json& other);

    Json(Json&&) noexcept;
    Json& operator=(Json&&) noexcept;
    ~Json();

    Json& set(std::string_view key, Json value);
    Json& set(std::string_view key, std::string_view value) { return set(key, text(value)); }
    Json& add(Json value);

    /// Indented, with a line end.
    std::string dump() const;
    /// In one line, with a line end: for output that is read while it is written.
    std::string line() const;

    /// The value that a text of ours stands for; null when it is none.
    static Json parse(std::string_view text);
    bool isNull() const;
    bool has(std::string_view key) const;
    /// The member, null when there is none.
    Json at(std::string_view key) const;
    /// The value as a text; empty when it is something else.
    std::string asText() const;
    /// The value as a whole number; 0 when it is something else.
    int asNumber() const;
    /// How many elements or members it has.
    std::size_t size() const;

private:
    struct Value;
    explicit Json(std::unique_ptr<Value> value);
    std::unique_ptr<Value> value_;
};

} // namespace koine::tool
