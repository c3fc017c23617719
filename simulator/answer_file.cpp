#include "simulator/answer_file.h"

#include "text/numbers.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace koine::sim {

std::string fileText(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw std::runtime_error("cannot open " + file.string() + "; check that it exists and may be read");
    std::ostringstream text;
    text << stream.rdbuf();
    if (text.bad() || stream.bad())
        throw std::runtime_error("cannot read " + file.string() + "; is it a file?");
    return text.str();
}

std::string_view takeLine(std::string_view& text) noexcept {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
    if (!line.empty() && line.back() == '\r')
        line.remove_suffix(1);
    return line;
}

void failAtLine(const std::string& where, std::size_t line, const std::string& what) {
    throw std::runtime_error(where + ", line " + numberAsText(static_cast<long>(line)) + ": " + what);
}

PairList answerPairs(std::string_view text, const std::string& where) {
    if (takeLine(text) != "0")
        failAtLine(where, 1, "an answer begins with the status line \"0\"; put it there");
    if (takeLine(text) != "OK")
        failAtLine(where, 2, "the second line of an answer is \"OK\"; put it there");
    PairList pairs;
    for (std::size_t line = 3; !text.empty(); ++line) {
        const std::string_view pair = takeLine(text);
        const std::size_t equals = pair.find('=');
        if (equals == std::string_view::npos || equals == 0)
            failAtLine(where, line, "expected \"key=value\", found \"" + std::string(pair) + "\"");
        const std::string_view key = pair.substr(0, equals);
        if (pairs.find(key) != nullptr)
            failAtLine(where, line, "key \"" + std::string(key) + "\" stands here a second time; remove one");
        pairs.set(key, pair.substr(equals + 1));
    }
    return pairs;
}

} // namespace koine::sim
