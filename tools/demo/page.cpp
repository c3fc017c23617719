// How the demo looks.

#include "tools/demo/page.h"

#include "text/numbers.h"
#include "text/tokens.h"

namespace koine::tool {
namespace {

constexpr std::size_t kMargin = 4;
constexpr std::size_t kLongestAnswer = 12; // lines of it that are shown

std::string indent(std::size_t columns) { return std::string(columns, ' '); }

} // namespace

std::string timeText(double milliseconds) { return fixedText(milliseconds, 1) + " ms"; }

std::string counted(std::size_t count, std::string_view what) {
    return std::to_string(count) + " " + std::string(what) + (count == 1 ? "" : "s");
}

void Page::title(std::string_view text) const {
    printLine();
    printLine(style_.paint(Tint::bold, text));
    printLine(style_.paint(Tint::dim, std::string(kWidth, '=')));
}

void Page::fact(std::string_view name, std::string_view value) const {
    printLine("  " + style_.paint(Tint::dim, padded(name, 10)) + std::string(value));
}

void Page::section(int number, std::string_view text) const {
    printLine();
    printLine(style_.paint(Tint::bold, std::to_string(number) + ". " + std::string(text)));
    printLine(style_.paint(Tint::dim, std::string(kWidth, '-')));
}

void Page::hostLine(std::string_view line) const {
    printLine();
    std::string row;
    bool first = true;
    const auto flush = [&] {
        printLine("  " + style_.paint(Tint::cyan, (first ? "> " : "    ") + row));
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
    printLine(style_.paint(tint, padded(shortened(left, room), room)) + " " + style_.paint(Tint::dim, right));
}

void Page::deviceRequest(const DeviceRequest& request) const {
    const std::string right =
        (request.result == kOk ? "" : "result " + std::to_string(request.result) + "  ") + padded("", 0) +
        timeText(request.milliseconds);
    std::string_view head = request.line;
    const std::size_t items = request.line.find("&Media.Profiles.");
    if (items != std::string::npos)
        head = head.substr(0, items);
    withRightEdge(indent(kMargin) + "device  " + harmless(head), Tint::yellow, right);
    if (items == std::string::npos)
        return;
    for (const std::string_view item : Tokens(std::string_view(request.line).substr(items), "&"))
        printLine(style_.paint(Tint::yellow, indent(kMargin + 10) + harmless(item)));
}

void Page::answer(const Answer& answer, const Cost& cost) const {
    const std::string source =
        cost.deviceRequests == 0 ? "from cache" : "from device, " + counted(cost.deviceRequests, "request");
    const std::string right = source + ", " + timeText(cost.milliseconds);
    const Tint tint = answer.ok() ? Tint::green : Tint::red;
    std::size_t shown = 0;
    std::size_t left = 0;
    bool first = true;
    for (const std::string_view line : Tokens(answer.text, "\n")) {
        if (first && line == "0")
            continue; // the status says nothing that the word after it does not
        if (shown == kLongestAnswer) {
            ++left;
            continue;
        }
        const std::string text = indent(kMargin) + harmless(line);
        if (first)
            withRightEdge(text, tint, right);
        else
            printLine(shortened(text, kWidth));
        first = false;
        ++shown;
    }
    if (left > 0)
        printLine(style_.paint(Tint::dim, indent(kMargin) + "... and " + counted(left, "line") + " more"));
}

} // namespace koine::tool
