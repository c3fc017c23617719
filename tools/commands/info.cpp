// koine info: what the library learned about a device.

#include "cache/key_map.h"
#include "text/numbers.h"
#include "tools/commands/commands.h"
#include "tools/learned.h"
#include "tools/summary.h"

#include <array>

namespace koine::tool {
namespace {

constexpr std::size_t kNameWidth = 16;
constexpr std::size_t kLineWidth = 78;

/// A name and its value; a long list goes on below its beginning, broken at commas.
void printFact(const Style& style, std::string_view name, std::string_view value) {
    std::string line = padded(name, kNameWidth);
    std::string shown = style.paint(Tint::bold, line);
    std::size_t column = kNameWidth;
    while (!value.empty()) {
        const std::size_t comma = value.find(',');
        const std::string_view piece = value.substr(0, comma == std::string_view::npos ? comma : comma + 1);
        if (column > kNameWidth && column + piece.size() > kLineWidth) {
            shown.append("\n").append(kNameWidth, ' ');
            column = kNameWidth;
        }
        // A list may be written with blanks after its commas; a new line does not begin with one.
        const std::string_view text = column == kNameWidth ? skipBlanks(piece) : piece;
        shown.append(harmless(text));
        column += text.size();
        value.remove_prefix(piece.size());
    }
    printLine(shown);
}

template <std::size_t Count>
void printFacts(const Style& style, const std::array<Fact, Count>& facts, const CgiMap& map) {
    for (const Fact& fact : facts)
        if (const std::string_view value = valueOr(map, fact.source); !value.empty())
            printFact(style, fact.name, value);
}

std::string kindsText(const std::vector<Kind>& kinds) {
    std::string text;
    for (const Kind& kind : kinds)
        if (kind.holds)
            text.append(text.empty() ? "" : ", ").append(kind.name);
    return text.empty() ? "nothing special" : text;
}

void show(const Learned& learned, const std::string& url) {
    const Style style(stdout);
    printFact(style, "Address", url);
    printFacts(style, kLoginFacts, learned.login);
    printFacts(style, kCapabilityFacts, learned.capability);
    printFact(style, "Kind", kindsText(learned.kinds));
    printFact(style, "Profiles", std::to_string(learned.profiles.size()));
    if (learned.profiles.empty())
        return;
    printLine();
    profileTable(learned.profiles).print(style);
}

} // namespace

ExitCode InfoCommand::run(const Arguments& arguments) const {
    Connection connection(target, arguments);
    const Learned learned = learn(connection);
    if (json)
        print(summaryAsJson(learned, connection.where()).dump());
    else
        show(learned, connection.where());
    return ExitCode::answered;
}

} // namespace koine::tool
