#include "simulator/fault.h"

#include "text/numbers.h"
#include "text/words.h"

#include <algorithm>
#include <array>
#include <climits>
#include <optional>
#include <stdexcept>

namespace koine::sim {
namespace {

/// What stands behind the "=" of a fault.
enum class Value { none, number, text };

struct FaultWord {
    FaultKind kind;
    std::string_view name;
    Value value;
    std::string_view meaning; ///< of the value; empty when there is none
    std::uint64_t usual;      ///< the value when none is given
    bool needsValue;
    std::string_view help;
};

constexpr std::uint64_t kWhole = UINT64_MAX;
constexpr std::uint64_t kSafetyCap = 64U << 20U;

constexpr std::array<FaultWord, 25> kWords = {{
    {FaultKind::delay, "delay", Value::number, "MS", 0, true, "wait before every answer"},
    {FaultKind::hang, "hang", Value::none, "", 0, false, "read the request and never answer"},
    {FaultKind::refuse, "refuse", Value::none, "", 0, false, "nobody listens: connections are refused"},
    {FaultKind::resetConnection, "reset-connection", Value::none, "", 0, false, "accept and reset at once"},
    {FaultKind::resetBeforeBody, "reset-before-body", Value::none, "", 0, false, "reset after the head"},
    {FaultKind::resetWithinBody, "reset-within-body", Value::number, "BYTES", 100, false,
     "reset within the body"},
    {FaultKind::resetWithinAnswer, "reset-within-answer", Value::number, "BYTES", 10, false,
     "reset, counted from the first byte of the head"},
    {FaultKind::closeWithinAnswer, "close-within-answer", Value::number, "BYTES", 10, false,
     "clean close, counted from the first byte of the head"},
    {FaultKind::truncatedBody, "truncated-body", Value::number, "BYTES", kWhole, false,
     "announce the whole body, send BYTES of it (half), close"},
    {FaultKind::shortLength, "short-length", Value::number, "BYTES", kWhole, false,
     "announce BYTES (half) and send the whole body"},
    {FaultKind::drip, "drip", Value::number, "MS", 1, false, "send a byte at a time, MS apart"},
    {FaultKind::endlessBody, "endless-body", Value::number, "CAP", kSafetyCap, false,
     "a body that never ends (after CAP bytes)"},
    {FaultKind::endlessChunks, "endless-chunks", Value::number, "CAP", kSafetyCap, false,
     "chunks that never end (after CAP bytes)"},
    {FaultKind::chunked, "chunked", Value::number, "BYTES", 100, false, "send the body in chunks of BYTES"},
    {FaultKind::emptyBody, "empty-body", Value::none, "", 0, false, "HTTP 200 and no body"},
    {FaultKind::garbage, "garbage", Value::number, "BYTES", 512, false, "bytes that are no HTTP"},
    {FaultKind::wrongStatusLine, "wrong-status-line", Value::none, "", 0, false,
     "a status line that cannot be read"},
    {FaultKind::status, "status", Value::number, "CODE", 500, false, "an HTTP status in place of the answer"},
    {FaultKind::unauthorizedStorm, "401-storm", Value::none, "", 0, false,
     "always HTTP 401, with a new challenge"},
    {FaultKind::redirect, "redirect", Value::text, "URL", 0, true, "HTTP 302 to URL"},
    {FaultKind::headerFlood, "header-flood", Value::number, "LINES", 10000, false, "many header lines"},
    {FaultKind::close, "close", Value::none, "", 0, false, "close after every answer, as announced"},
    {FaultKind::closeSilently, "close-silently", Value::none, "", 0, false,
     "close after every answer, unannounced"},
    {FaultKind::answer, "answer", Value::text, "TEXT", 0, true, "TEXT in place of the answer text"},
    {FaultKind::raw, "raw", Value::text, "TEXT", 0, true,
     "TEXT in place of the whole HTTP answer, then close"},
}};

constexpr bool wordsStandInTheOrderOfTheirKinds() {
    for (std::size_t i = 0; i < kWords.size(); ++i)
        if (kWords.at(i).kind != static_cast<FaultKind>(i))
            return false;
    return true;
}
static_assert(wordsStandInTheOrderOfTheirKinds());

const FaultWord& wordOf(FaultKind kind) { return kWords.at(static_cast<std::size_t>(kind)); }

std::string shownWord(const FaultWord& word) {
    std::string shown(word.name);
    if (word.value != Value::none)
        shown.append(word.needsValue ? "=" : "[=").append(word.meaning).append(word.needsValue ? "" : "]");
    return shown;
}

[[noreturn]] void fail(const std::string& what) {
    std::string known;
    for (const FaultWord& word : kWords)
        known.append(known.empty() ? "" : ", ").append(shownWord(word));
    throw std::invalid_argument(what + "; known faults: " + known);
}

std::uint64_t wholeNumber(std::string_view text, std::string_view of) {
    const LeadingLong number = leadingLong(text);
    if (text.empty() || !isDigit(text.front()) || number.length != text.size() || number.value == LONG_MAX)
        fail("\"" + std::string(text) + "\" is no number for the fault's \"" + std::string(of) + "\"");
    return static_cast<std::uint64_t>(number.value);
}

std::optional<char> escaped(char c) {
    switch (c) {
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case '0':
        return '\0';
    case '\\':
        return '\\';
    default:
        return std::nullopt;
    }
}

std::string unescaped(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto meant = text[i] == '\\' && i + 1 < text.size() ? escaped(text[i + 1]) : std::nullopt;
        result += meant.value_or(text[i]);
        i += meant ? 1U : 0U;
    }
    return result;
}

/// Takes ";KEY=..." off the end of a fault; nothing when it does not end that way.
std::optional<std::string_view> takeOption(std::string_view& text, std::string_view key) {
    const std::size_t begin = text.rfind(';');
    if (begin == std::string_view::npos || !startsWith(text.substr(begin + 1), key))
        return std::nullopt;
    const std::string_view value = text.substr(begin + 1 + key.size());
    text = text.substr(0, begin);
    return value;
}

void takeOptions(Fault& fault, std::string_view& text) {
    for (bool more = true; more;) {
        more = false;
        if (const auto path = takeOption(text, "path=")) {
            fault.path = *path;
            more = true;
        }
        if (const auto count = takeOption(text, "count=")) {
            const std::uint64_t number = wholeNumber(*count, "count");
            fault.count = static_cast<unsigned int>(std::min<std::uint64_t>(number, UINT_MAX));
            more = true;
        }
    }
}

void readValue(Fault& fault, const FaultWord& word, std::optional<std::string_view> value) {
    if (!value && word.needsValue)
        fail("the fault \"" + std::string(word.name) + "\" needs a value");
    if (value && word.value == Value::none)
        fail("the fault \"" + std::string(word.name) + "\" takes no value");
    if (value && word.value == Value::number)
        fault.amount = wholeNumber(*value, word.meaning);
    if (value && word.value == Value::text)
        fault.text = unescaped(*value);
}

} // namespace

Fault::Fault(FaultKind chosen) : kind(chosen), amount(wordOf(chosen).usual) {}

Fault parseFault(std::string_view text) {
    Fault options;
    std::string_view rest = text;
    takeOptions(options, rest);
    const std::size_t equals = rest.find('=');
    const std::string_view name = rest.substr(0, equals);
    for (const FaultWord& word : kWords) {
        if (word.name != name)
            continue;
        Fault fault(word.kind);
        fault.path = options.path;
        fault.count = options.count;
        readValue(fault, word,
                  equals == std::string_view::npos ? std::nullopt : std::optional(rest.substr(equals + 1)));
        if (fault.kind == FaultKind::refuse && (fault.count != 0 || !fault.path.empty()))
            fail("nobody sees the requests that \"refuse\" turns away, so it takes no path and no count");
        return fault;
    }
    fail("unknown fault \"" + std::string(name) + "\"");
}

std::string faultHelp() {
    constexpr std::size_t kColumn = 28;
    std::string help;
    for (const FaultWord& word : kWords) {
        std::string line = shownWord(word);
        line.resize(std::max(line.size() + 1, kColumn), ' ');
        help.append(line).append(word.help).append("\n");
    }
    return help;
}

std::string_view faultName(FaultKind kind) noexcept { return wordOf(kind).name; }

} // namespace koine::sim
