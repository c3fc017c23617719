#include "observed.h"

#include <algorithm>
#include <cctype>
#include <string_view>

namespace koine::test {
namespace {

bool isDigit(char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; }

/// Length of a whole number at the start of a text.
std::size_t numberLength(std::string_view text) {
    std::size_t length = !text.empty() && text.front() == '-' ? 1 : 0;
    const std::size_t sign = length;
    while (length < text.size() && isDigit(text[length]))
        ++length;
    return length == sign ? 0 : length;
}

bool matches(std::string_view line, std::string_view pattern) {
    while (!pattern.empty()) {
        const bool number = pattern.front() == '*';
        const std::size_t length = number ? numberLength(line) : 1;
        if (length == 0 || line.empty() || (!number && line.front() != pattern.front()))
            return false;
        line.remove_prefix(length);
        pattern.remove_prefix(1);
    }
    return line.empty();
}

std::string listed(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines)
        text += "  " + line;
    return text.empty() ? "  nothing\n" : text;
}

std::ptrdiff_t countOf(const std::string& expected) {
    const std::vector<std::string> lines = traces();
    return std::count_if(lines.begin(), lines.end(),
                         [&](const std::string& line) { return matches(line, expected); });
}

} // namespace

::testing::AssertionResult tracesAre(const std::vector<std::string>& expected) {
    const std::vector<std::string> lines = traces();
    if (std::equal(lines.begin(), lines.end(), expected.begin(), expected.end(), matches))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "expected traces:\n"
                                         << listed(expected) << "but there was:\n"
                                         << listed(lines);
}

::testing::AssertionResult tracedOnce(const std::string& expected) {
    if (countOf(expected) == 1)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "expected once:\n  " << expected << "among:\n"
                                         << listed(traces());
}

::testing::AssertionResult notTraced(const std::string& expected) {
    if (countOf(expected) == 0)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "not expected:\n  " << expected << "among:\n" << listed(traces());
}

} // namespace koine::test
