#include "default_platform/trace_line.h"

#include "default_platform/characters.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

namespace koine::platform {
namespace {

constexpr std::array<std::string_view, 14> kSecretKeyEndings = {
    "password", "passwd", "passphrase", "passcode", "pass",      "pwd",        "secret",
    "_token",   "apikey", "api_key",    "session",  "sessionid", "session_id", "cookie",
};

// Only as a whole key: many keys that end so name a media profile.
constexpr std::string_view kToken = "token";

/// The rest of the printed value that begins here: the formats put ", " behind a value and ". " behind the
/// last one.
std::string_view fieldOf(std::string_view text) noexcept {
    std::size_t end = 0;
    while (end < text.size() && text[end] != '\r' && text[end] != '\n' && !startsWith(text.substr(end), ", "))
        ++end;
    const std::string_view field = text.substr(0, end);
    const bool isLast = !startsWith(text.substr(end), ", ");
    const bool hasFullStop = field.size() >= 2 && field.substr(field.size() - 2) == ". ";
    return field.substr(0, end - (isLast && hasFullStop ? 2 : 0));
}

/// A line under work: what was read is copied down over what was dropped.
class LineEditor {
public:
    LineEditor(char* line, std::size_t length) noexcept : line_(line), length_(length) {}

    bool done() const noexcept { return read_ == length_; }
    std::string_view rest() const noexcept { return {line_ + read_, length_ - read_}; }
    std::string_view written() const noexcept { return {line_, written_}; }

    /// What is left of the printed value that is under work.
    std::string_view field() noexcept {
        findField();
        return {line_ + read_, fieldEnd_ - read_};
    }
    /// Where the last '@' of `field()` is in it, or npos.
    std::size_t lastAtOfField() noexcept {
        findField();
        return fieldAt_ < read_ || fieldAt_ == std::string_view::npos ? std::string_view::npos
                                                                      : fieldAt_ - read_;
    }

    void keep(std::size_t count) noexcept {
        std::memmove(line_ + written_, line_ + read_, count);
        written_ += count;
        read_ += count;
    }
    void hide(std::size_t count) noexcept {
        if (count == 0)
            return;
        line_[written_++] = '*';
        read_ += count;
    }
    std::size_t finish() noexcept {
        line_[written_] = '\0';
        return written_;
    }

private:
    /// Once for each value: a device can make one of a million beginnings of URLs.
    void findField() noexcept {
        if (read_ <= fieldEnd_)
            return;
        const std::string_view field = fieldOf(rest());
        const std::size_t at = field.find_last_of('@');
        fieldEnd_ = read_ + field.size();
        fieldAt_ = at == std::string_view::npos ? at : read_ + at;
    }

    char* line_;
    std::size_t length_;
    std::size_t read_ = 0;
    std::size_t written_ = 0;
    std::size_t fieldEnd_ = 0; // a value begins behind something
    std::size_t fieldAt_ = std::string_view::npos;
};

/// Does a port number and nothing else stand at the start of this text, up to the path?
bool beginsWithPort(std::string_view text) noexcept {
    const std::string_view port = text.substr(0, std::min(text.find_first_of("/?#"), text.size()));
    return std::all_of(port.begin(), port.end(), isDigit);
}

/// Behind "://": hides the password.
void hidePassword(LineEditor& line) noexcept {
    const std::string_view url = line.field();
    const std::string_view authority = url.substr(0, std::min(url.find_first_of("/?#"), url.size()));
    const std::size_t colon = authority.find(':');
    if (colon == std::string_view::npos || authority.front() == '[')
        return;
    std::size_t end = authority.find_last_of('@');
    // A password with an unescaped delimiter in it makes no URL, yet it is a password still.
    if (end == std::string_view::npos && !beginsWithPort(url.substr(colon + 1)))
        end = line.lastAtOfField();
    if (end == std::string_view::npos || end < colon)
        return;
    line.keep(colon + 1);
    line.hide(end - colon - 1);
}

bool endsAKeyOfASecret(std::string_view text) noexcept {
    for (const std::string_view ending : kSecretKeyEndings)
        if (text.size() >= ending.size() &&
            startsWithIgnoreCase(text.substr(text.size() - ending.size()), ending))
            return true;
    if (text.size() < kToken.size())
        return false;
    const std::string_view before = text.substr(0, text.size() - kToken.size());
    return sameWord(text.substr(before.size()), kToken) &&
           (before.empty() || before.back() == '?' || before.back() == '&');
}

/// Behind "=": hides the value of the item.
void hideValue(LineEditor& line) noexcept {
    const std::string_view field = line.field();
    line.hide(std::min(field.find('&'), field.size()));
}

void hideSecrets(LineEditor& line) noexcept {
    while (!line.done()) {
        line.keep(std::min(line.rest().find_first_of(":="), line.rest().size()));
        if (startsWith(line.rest(), "://")) {
            line.keep(std::string_view("://").size());
            hidePassword(line);
        } else if (startsWith(line.rest(), "=")) {
            const bool secret = endsAKeyOfASecret(line.written());
            line.keep(1);
            if (secret)
                hideValue(line);
        } else if (!line.done()) {
            line.keep(1);
        }
    }
}

} // namespace

std::size_t tidyTraceLine(char* line, std::size_t length) noexcept {
    while (length > 0 && (line[length - 1] == '\n' || line[length - 1] == '\r'))
        --length;
    LineEditor editor(line, length);
    hideSecrets(editor);
    const std::size_t tidied = editor.finish();
    std::replace_if(line, line + tidied, isControl, ' ');
    return tidied;
}

} // namespace koine::platform
