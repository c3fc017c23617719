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

/// A line under work: what was read is copied down over what was dropped.
class LineEditor {
public:
    LineEditor(char* line, std::size_t length) noexcept : line_(line), length_(length) {}

    bool done() const noexcept { return read_ == length_; }
    std::string_view rest() const noexcept { return {line_ + read_, length_ - read_}; }
    std::string_view written() const noexcept { return {line_, written_}; }

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
    char* line_;
    std::size_t length_;
    std::size_t read_ = 0;
    std::size_t written_ = 0;
};

/// The rest of the printed value that begins here: the formats put ", " behind a value and ". " behind the
/// last one.
std::string_view fieldOf(std::string_view text) noexcept {
    const std::string_view field = text.substr(0, std::min(text.find_first_of("\r\n"), text.size()));
    const std::size_t next = field.find(", ");
    if (next != std::string_view::npos)
        return field.substr(0, next);
    const bool last = field.size() >= 2 && field.substr(field.size() - 2) == ". ";
    return field.substr(0, field.size() - (last ? 2 : 0));
}

/// Does a port number and nothing else stand at the start of this text, up to the path?
bool beginsWithPort(std::string_view text) noexcept {
    const std::string_view port = text.substr(0, std::min(text.find_first_of("/?#"), text.size()));
    return std::all_of(port.begin(), port.end(), isDigit);
}

/// Behind "://": hides the password.
void hidePassword(LineEditor& line) noexcept {
    const std::string_view url = fieldOf(line.rest());
    const std::string_view authority = url.substr(0, std::min(url.find_first_of("/?#"), url.size()));
    const std::size_t colon = authority.find(':');
    if (colon == std::string_view::npos || authority.front() == '[')
        return;
    std::size_t end = authority.find_last_of('@');
    // A password with an unescaped delimiter in it makes no URL, yet it is a password still.
    if (end == std::string_view::npos && !beginsWithPort(url.substr(colon + 1)))
        end = url.find_last_of('@');
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
    return sameWord(text.substr(std::min(text.find_last_of("?&") + 1, text.size())), kToken);
}

/// Behind "=": hides the value of the item.
void hideValue(LineEditor& line) noexcept {
    const std::string_view field = fieldOf(line.rest());
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
