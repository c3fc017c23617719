/// @file
/// What goes to a terminal: colours where they are wanted, aligned tables, no device text that could act.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

namespace koine::tool {

enum class Tint { plain, bold, dim, red, green, yellow, cyan };

/// A variable of the environment; empty where it is not set.
std::string_view environment(const char* name);

/// Colours for one stream: only on a terminal, and only if the user did not switch them off (NO_COLOR).
class Style {
public:
    explicit Style(std::FILE* stream);
    Style(std::FILE* stream, bool coloured) : stream_(stream), coloured_(coloured) {}

    std::string paint(Tint tint, std::string_view text) const;
    bool isTerminal() const;

    /// Columns of the terminal; 80 where nobody knows.
    std::size_t width() const;

private:
    std::FILE* stream_;
    bool coloured_;
};

/// The text with control characters replaced: a device must not be able to steer the terminal. Line ends
/// and tabs stay.
std::string harmless(std::string_view text);

/// Characters that the text takes on the screen (UTF-8, each code point one).
std::size_t shownWidth(std::string_view text);

/// The text, filled up with blanks.
std::string padded(std::string_view text, std::size_t width);

/// The text, cut in the middle of nothing: a longer one ends with "...".
std::string shortened(std::string_view text, std::size_t width);

/// "1 request", "3 requests".
std::string counted(std::size_t count, std::string_view what);

/// "40 µs", "12.3 ms", "2.5 s".
std::string timeText(double milliseconds);

void print(std::string_view text);
void printLine(std::string_view text = {});

/// Columns as wide as their widest cell.
class Table {
public:
    enum class Align { left, right };
    struct Column {
        std::string title;
        Align align = Align::left;
    };

    explicit Table(std::vector<Column> columns) : columns_(std::move(columns)) {}
    void add(std::vector<std::string> cells, Tint tint = Tint::plain) {
        rows_.push_back({std::move(cells), tint});
    }
    bool empty() const { return rows_.empty(); }
    /// On a terminal that is too narrow the columns stand closer.
    /// @param cut whether the last column is then cut, so that no row is broken
    void print(const Style& style, std::string_view indent = {}, bool cut = false) const;

private:
    struct Row {
        std::vector<std::string> cells;
        Tint tint;
    };
    std::vector<std::size_t> widths() const;
    struct Layout {
        std::vector<std::size_t> widths;
        std::size_t gap = 2;
        std::size_t last = 0; ///< columns that the last one may take; 0 for any number
    };
    Layout layoutFor(const Style& style, std::size_t indent, bool cut) const;
    std::string rowText(std::vector<std::string> cells, const Layout& layout) const;

    std::vector<Column> columns_;
    std::vector<Row> rows_;
};

} // namespace koine::tool
