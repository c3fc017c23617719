/// @file
/// Request lines for C++ hosts: no `char*`, nothing to free.
#pragma once

#include "koine/IBaseRequest.h"
#include "platform/cgi_text.h"

#include <string>
#include <string_view>

namespace koine {

/// What a request object said to one line.
struct Answer {
    int result = 0;   ///< 1 answered; the codes at `IBaseRequest` otherwise
    std::string text; ///< the answer; after a failure one of the two error answers

    bool ok() const { return result == kOk; }

    /// The `key=value` lines; empty when the answer carries a failing status.
    CgiMap values() const {
        CgiMap map;
        createMapStr(text.c_str(), &map);
        return map;
    }
};

/// Sends one line. The object must know address and credentials, or learn them from the line.
/// @throws std::bad_alloc when the answer does not fit into memory
inline Answer request(IBaseRequest& device, unsigned int uid, std::string_view line) {
    struct Text {
        explicit Text(IBaseRequest& giver) : device(giver) {}
        ~Text() { device.freeData(text); }
        Text(const Text&) = delete;
        Text& operator=(const Text&) = delete;
        IBaseRequest& device;
        char* text = nullptr;
    };
    std::string url(line); // the operation takes texts that it could change
    std::string none;
    Text answer(device);
    Answer result;
    result.result = device.requestHttpStr(uid, url.data(), none.data(), none.data(), &answer.text);
    if (answer.text != nullptr)
        result.text = answer.text;
    return result;
}

} // namespace koine
