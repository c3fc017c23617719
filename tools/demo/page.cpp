// How the demo looks.

#include "tools/demo/page.h"

#include "text/tokens.h"
#include "text/words.h"

namespace koine::tool {
namespace {

constexpr std::size_t kMargin = 4;
constexpr std::string_view kSettings = "&Media.Profiles."; // said once, or their lines would be too long
constexpr std::size_t kLongestAnswer = 12;                 // lines of it that are shown

std::string indent(std::size_t columns) { return std::string(columns, ' '); }

} // namespace

void Page::say(std::string_view text) const {
    if (!silent_)
        printLine(text);
}

void Page::table(const Table& table) const {
    if (!silent_)
        table.print(style_, "  ");
}

void Page::title(std::string_view text) const {
    gap();
    say(style_.paint(Tint::bold, text));
    say(style_.paint(Tint::dim, std::string(kWidth, '=')));
}

void Page::fact(std::string_view name, std::string_view value) const {
    say("  " + style_.paint(Tint::dim, padded(name, 10)) + std::string(value));
}

void Page::section(int number, std::string_view text) const {
    gap();
    say(style_.paint(Tint::bold, std::to_string(number) + ". " + std::string(text)));
    say(style_.paint(Tint::dim, std::string(kWidth, '-')));
}

void Page::hostLine(std::string_view line) const {
    gap();
    std::string row;
    bool first = true;
    const auto flush = [&] {
        say("  " + style_.paint(Tint::cyan, (first ? "> " : "    ") + row));
        first = false;
        row.clear();
    };
    std::size_t begin = 0;
    while (begin < line.size()) {
        std::size_t end = line.find('&', begin + 1);
        end = end == std::string_view::npos ? line.size() : end;
        const std::string_view piece = line.substr(begin, end - begin);
        if (!row.empty() && row.size() + piece.size() + 2 * kMargin > kWidth)
            flush();
        row += piece;
        begin = end;
    }
    flush();
}

void Page::withRightEdge(std::string_view left, Tint tint, std::string_view right) const {
    const std::size_t room = kWidth - shownWidth(right) - 1;
    say(style_.paint(tint, padded(shortened(left, room), room)) + " " + style_.paint(Tint::dim, right));
}

void Page::deviceRequest(const DeviceRequest& request) const {
    const std::string right =
        (request.result == kOk ? "" : "result " + std::to_string(request.result) + "  ") +
        timeText(request.milliseconds);
    const std::size_t items = request.line.find(kSettings);
    std::string head = request.line.substr(0, items);
    if (items != std::string::npos)
        head.append(kSettings).append(" ...");
    withRightEdge(indent(kMargin) + "device  " + harmless(head), Tint::yellow, right);
    if (items == std::string::npos)
        return;
    for (std::string_view item : Tokens(std::string_view(request.line).substr(items), "&")) {
        if (startsWith(item, kSettings.substr(1)))
            item.remove_prefix(kSettings.size() - 1);
        say(style_.paint(Tint::yellow, indent(kMargin + 10) + harmless(item)));
    }
}

void Page::longLine(std::string_view text) const {
    constexpr std::size_t kRoom = kWidth - kMargin;
    if (text.size() <= kRoom) {
        say(indent(kMargin) + std::string(text));
        return;
    }
    // A second row holds the rest of nearly everything, URIs above all; lists of sizes are cut there.
    const std::size_t joint = text.substr(0, kRoom).find_last_of("?&,");
    const std::size_t end = joint == std::string_view::npos || joint < kRoom / 2 ? kRoom : joint;
    say(indent(kMargin) + std::string(text.substr(0, end)));
    say(indent(2 * kMargin) + shortened(text.substr(end), kRoom - kMargin));
}

void Page::answer(const Answer& answer, const Cost& cost, bool sameAsBefore) const {
    const std::string source =
        cost.deviceRequests == 0 ? "from cache" : "from device, " + counted(cost.deviceRequests, "request");
    const std::string right = source + ", " + timeText(cost.milliseconds);
    std::vector<std::string> lines;
    for (const std::string_view line : Tokens(answer.text, "\n"))
        lines.push_back(harmless(line));
    // The status says nothing that the word after it does not.
    if (lines.size() > 1)
        lines.erase(lines.begin());
    const std::string head = lines.empty() ? std::string() : lines.front();
    const std::string note = sameAsBefore && lines.size() > 1 ? ", the same answer as before" : "";
    withRightEdge(indent(kMargin) + head + note, answer.ok() ? Tint::green : Tint::red, right);
    if (sameAsBefore)
        return;
    for (std::size_t i = 1; i < lines.size() && i < kLongestAnswer; ++i)
        longLine(lines[i]);
    if (lines.size() > kLongestAnswer)
        say(style_.paint(Tint::dim,
                         indent(kMargin) + "... and " + counted(lines.size() - kLongestAnswer, "more line")));
}

} // namespace koine::tool
