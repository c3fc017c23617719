// What goes to a terminal.

#include "tools/terminal.h"

#include "text/numbers.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <numeric>

#include <sys/ioctl.h>
#include <unistd.h>

namespace koine::tool {
namespace {

constexpr std::array<const char*, 7> kCodes = {"", "1", "2", "31", "32", "33", "36"}; // in the order of Tint

bool colourWanted(std::FILE* stream) {
    return isatty(fileno(stream)) == 1 && environment("NO_COLOR").empty() && environment("TERM") != "dumb";
}

/// Is this byte the first of a character?
bool begins(char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }

} // namespace

std::string_view environment(const char* name) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing in the command changes the environment
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string_view() : value;
}

Style::Style(std::FILE* stream) : stream_(stream), coloured_(colourWanted(stream)) {}

bool Style::isTerminal() const { return isatty(fileno(stream_)) == 1; }

std::size_t Style::width() const {
    constexpr std::size_t kUsual = 80;
    winsize size{};
    if (ioctl(fileno(stream_), TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
        return kUsual;
    return size.ws_col;
}

std::string Style::paint(Tint tint, std::string_view text) const {
    if (!coloured_ || tint == Tint::plain || text.empty())
        return std::string(text);
    return std::string("\033[")
        .append(kCodes[static_cast<unsigned>(tint)])
        .append("m")
        .append(text)
        .append("\033[0m");
}

std::string harmless(std::string_view text) {
    std::string plain(text);
    for (char& c : plain) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte < 0x20 && c != '\n' && c != '\t') || byte == 0x7F)
            c = '?';
    }
    return plain;
}

std::size_t shownWidth(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), begins));
}

std::string padded(std::string_view text, std::size_t width) {
    const std::size_t shown = shownWidth(text);
    return std::string(text).append(shown < width ? width - shown : 0, ' ');
}

std::string shortened(std::string_view text, std::size_t width) {
    if (shownWidth(text) <= width)
        return std::string(text);
    std::size_t end = 0;
    for (std::size_t shown = 0; end < text.size(); ++end)
        if (begins(text[end]) && shown++ + 3 == width)
            break;
    return std::string(text.substr(0, end)) + "...";
}

std::string counted(std::size_t count, std::string_view what) {
    return std::to_string(count) + " " + std::string(what) + (count == 1 ? "" : "s");
}

std::string timeText(double milliseconds) {
    // By what would be shown: no "1000 µs" and no "1000.0 ms".
    if (milliseconds < 0.9995)
        return fixedText(milliseconds * 1000, 0) + " µs";
    return milliseconds < 999.95 ? fixedText(milliseconds, 1) + " ms"
                                 : fixedText(milliseconds / 1000, 1) + " s";
}

void print(std::string_view text) { std::fwrite(text.data(), 1, text.size(), stdout); }

void printLine(std::string_view text) {
    print(text);
    print("\n");
}

std::vector<std::size_t> Table::widths() const {
    std::vector<std::size_t> widths;
    for (const Column& column : columns_)
        widths.push_back(shownWidth(column.title));
    for (const Row& row : rows_)
        for (std::size_t i = 0; i < row.cells.size() && i < widths.size(); ++i)
            widths[i] = std::max(widths[i], shownWidth(row.cells[i]));
    return widths;
}

std::string Table::rowText(std::vector<std::string> cells, const Layout& layout) const {
    const std::vector<std::size_t>& widths = layout.widths;
    if (layout.last > 0 && !cells.empty() && cells.size() == widths.size())
        cells.back() = shortened(cells.back(), layout.last);
    std::string text;
    for (std::size_t i = 0; i < cells.size() && i < widths.size(); ++i) {
        if (i > 0)
            text.append(layout.gap, ' ');
        if (columns_[i].align == Align::right)
            text.append(widths[i] - shownWidth(cells[i]), ' ').append(cells[i]);
        else
            text += padded(cells[i], widths[i]);
    }
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

Table::Layout Table::layoutFor(const Style& style, std::size_t indent, bool cut) const {
    constexpr std::size_t kLeast = 12; // less of the last column could not be read
    Layout layout;
    layout.widths = widths();
    if (!style.isTerminal() || layout.widths.empty())
        return layout;
    const std::size_t gaps = layout.widths.size() - 1;
    const std::size_t cells = std::accumulate(layout.widths.begin(), layout.widths.end(), indent);
    const std::size_t room = style.width();
    if (cells + gaps * layout.gap > room)
        layout.gap = 1;
    const std::size_t others = cells - layout.widths.back() + gaps * layout.gap;
    if (cut)
        layout.last = std::max(kLeast, room > others ? room - others : 0);
    return layout;
}

void Table::print(const Style& style, std::string_view indent, bool cut) const {
    const Layout layout = layoutFor(style, indent.size(), cut);
    std::vector<std::string> titles;
    for (const Column& column : columns_)
        titles.push_back(column.title);
    printLine(std::string(indent) + style.paint(Tint::bold, rowText(titles, layout)));
    for (const Row& row : rows_)
        printLine(std::string(indent) + style.paint(row.tint, rowText(row.cells, layout)));
}

} // namespace koine::tool
