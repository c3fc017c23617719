/// @file
/// The device behind the scripted HTTP client: what it says to which request line.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace koine::test {

/// One call of the HTTP client's request operation.
struct DeviceRequest {
    std::string url;      ///< "(null)" for none
    std::string line;     ///< what follows address and port: "Login.cgi"
    unsigned int uid = 0; ///< of the last marking before it
    std::string username; ///< "(null)" for none
    std::string password; ///< "(null)" for none
    int method = 0;
    int connection = 0;
    bool plain = false;   ///< no headers, no content type, no content, length 0
    bool cleared = false; ///< the outputs were given, and were cleared before
};

/// The result and the body of an answer: a text means success with that body, a number a result without one.
struct DeviceAnswer {
    DeviceAnswer(const char* text) : body(text) {}            // NOLINT(google-explicit-constructor)
    DeviceAnswer(std::string text) : body(std::move(text)) {} // NOLINT(google-explicit-constructor)
    DeviceAnswer(int number) : result(number) {}              // NOLINT(google-explicit-constructor)
    DeviceAnswer(int number, std::string text) : result(number), body(std::move(text)) {}

    int result = 1;
    std::optional<std::string> body;
};

/// Answers request lines. What is asked of it in this order: `handler` when set, the answers given with
/// `once`, those for whole lines, those for beginnings (the longest), and what `otherwise` says.
class ScriptedDevice {
public:
    using Handler = std::function<DeviceAnswer(const DeviceRequest&)>;

    /// From now on, to exactly this line.
    void on(const std::string& line, DeviceAnswer answer) {
        lasting_.insert_or_assign(line, std::move(answer));
    }
    /// To this line, the next time; several queue up.
    void once(const std::string& line, DeviceAnswer answer) { once_[line].push_back(std::move(answer)); }
    /// From now on, to lines that begin like this.
    void onBeginning(const std::string& beginning, DeviceAnswer answer) {
        beginnings_.insert_or_assign(beginning, std::move(answer));
    }
    /// To all other lines; at first -6.
    void otherwise(DeviceAnswer answer) { otherwise_ = std::move(answer); }
    /// A header of all answers; the name is compared exactly.
    void header(const std::string& name, const std::string& value) { headers_.insert_or_assign(name, value); }

    /// A camera that answers every line of the cache filling: one media profile, no extras.
    void answerAsCamera();

    DeviceAnswer answerTo(const DeviceRequest& request);
    const std::string* findHeader(const std::string& name) const;

    Handler handler;

private:
    std::map<std::string, std::deque<DeviceAnswer>> once_;
    std::map<std::string, DeviceAnswer> lasting_;
    std::map<std::string, DeviceAnswer> beginnings_;
    std::map<std::string, std::string> headers_;
    DeviceAnswer otherwise_ = -6;
};

/// What follows the address and port of a URL; a text without a scheme is given back as it is.
std::string lineOfUrl(const std::string& url);

} // namespace koine::test
