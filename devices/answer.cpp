// Request lines for C++ hosts.

#include "devices/answer.h"

#include "platform/cgi_text.h"
#include "text/numbers.h"
#include "text/owned_text.h"

#include <new>

namespace koine {
namespace {

/// An answer on its way from the object to us.
class LentText {
public:
    explicit LentText(IBaseRequest& giver) : giver_(giver) {}
    ~LentText() { giver_.freeData(text_); }
    LentText(const LentText&) = delete;
    LentText& operator=(const LentText&) = delete;

    char** out() { return &text_; }
    std::string_view view() const { return viewOf(text_); }

private:
    IBaseRequest& giver_;
    char* text_ = nullptr;
};

} // namespace

int answerStatus(std::string_view text) {
    const std::string_view line = text.substr(0, text.find('\n'));
    const LeadingLong number = leadingLong(line);
    return skipBlanks(line.substr(number.length)).empty() ? readInt(line) : 0;
}

int Answer::status() const { return answerStatus(text); }

CgiMap Answer::values() const {
    CgiMap map;
    const int parsed = createMapStr(text.c_str(), &map);
    if (parsed == kNoResource && status() != kNoResource) // not what the text itself says
        throw std::bad_alloc();
    return map;
}

Answer request(IBaseRequest& device, unsigned int uid, std::string_view line) {
    std::string url(line); // the operation takes texts that it could change
    std::string none;
    LentText text(device);
    Answer answer;
    answer.result = device.requestHttpStr(uid, url.data(), none.data(), none.data(), text.out());
    answer.text = text.view();
    return answer;
}

} // namespace koine
