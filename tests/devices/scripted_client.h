/// @file
/// An HTTP client that answers from a table and notes what it was asked.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace koine::test {

struct SentRequest {
    std::string url;
    std::string username;
    std::string password;
    int method = 0;
    int connection = 0;
};

/// The device behind every client of this program. One at a time; it is empty at the start of each.
class ScriptedDevice {
public:
    ScriptedDevice();
    ~ScriptedDevice();
    ScriptedDevice(const ScriptedDevice&) = delete;
    ScriptedDevice& operator=(const ScriptedDevice&) = delete;

    /// What it answers to URLs that contain `part`; the longest part that fits is taken.
    void answers(const std::string& part, const std::string& text) { answers_[part] = {1, text}; }
    /// A request that fails in the client.
    void fails(const std::string& part, int result) { answers_[part] = {result, ""}; }

    const std::vector<SentRequest>& sent() const { return sent_; }
    std::vector<std::string> urls() const;

    int take(const SentRequest& request, const std::string*& text);

private:
    struct Reply {
        int result;
        std::string text;
    };
    std::map<std::string, Reply> answers_;
    std::vector<SentRequest> sent_;
};

} // namespace koine::test
