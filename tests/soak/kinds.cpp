#include "kinds.h"

namespace koine::soak {
namespace {

constexpr std::string_view kOkText = "0\nOK\n";
// Of a device that does not know the category: looking the count up leaves the key behind.
constexpr std::string_view kNoProfiles = "0\nOK\nMedia.Profiles.Count=\n";
constexpr std::string_view kUnknownParameter = "-11\nERROR: Unknown parameter.\n";
constexpr std::string_view kAuthenticationError = "-35\nERROR: Authentication error.\n";

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

std::string faultOfSuccess(std::string_view text, Proof proof, const Unit& unit) {
    if (showsAnother(text, unit.mark()))
        return "the answer of another device";
    if (proof == Proof::echo && (text.empty() || text == kOkText))
        return "";
    if (proof == Proof::media && (text == kUnknownParameter || text == kNoProfiles))
        return "";
    const bool needsMark = proof == Proof::mark || proof == Proof::echo || proof == Proof::media;
    if (needsMark && !contains(text, unit.mark()))
        return "nobody's answer";
    if (proof == Proof::port && !contains(text, "127.0.0.1:" + std::to_string(unit.rtspPort())))
        return "a URI that leads elsewhere";
    return text.empty() ? "no text" : "";
}

} // namespace

bool showsAnother(std::string_view text, std::string_view mark) {
    for (std::size_t at = text.find(kMarkBegin); at != std::string_view::npos;
         at = text.find(kMarkBegin, at + 1))
        if (text.substr(at, mark.size()) != mark)
            return true;
    return false;
}

Answer send(DialectRequest& device, const Unit& unit, unsigned int uid, const Kind& kind) {
    std::string line(kind.line);
    if (const std::size_t at = line.find("%M"); at != std::string::npos)
        line.replace(at, 2, unit.mark());
    if (!kind.asMap)
        return request(device, uid, line);
    // The map is kept per user and may be read only by whoever holds the object.
    std::string none;
    Answer answer;
    vm_mutex_lock(device.getLock());
    answer.result = device.requestHttpData(uid, line.data(), none.data(), none.data());
    const char* const mark = device.GetCgiMapStr(uid, "Unit");
    answer.text = mark == nullptr ? "" : mark;
    vm_mutex_unlock(device.getLock());
    return answer;
}

bool lacksItsText(const Answer& answer, const Kind& kind) {
    const bool mayBeEmpty = kind.asMap || (answer.ok() && kind.proof == Proof::echo);
    return answer.text.empty() && !mayBeEmpty;
}

std::string faultOf(const Answer& answer, const Kind& kind, const Unit& unit) {
    if (answer.ok())
        return faultOfSuccess(answer.text, kind.proof, unit);
    if (kind.asMap)
        return showsAnother(answer.text, unit.mark()) ? "the answer of another device" : "";
    const std::string_view stated = answer.result == kAuthFailed ? kAuthenticationError : kUnknownParameter;
    return answer.text == stated ? "" : "a text that does not belong to the result";
}

} // namespace koine::soak
