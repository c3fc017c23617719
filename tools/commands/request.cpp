// koine request: lines of the dialect, over one object.

#include "tools/commands/commands.h"
#include "tools/json.h"
#include "tools/secrets.h"
#include "tools/terminal.h"

#include <chrono>

namespace koine::tool {
namespace {

using Clock = std::chrono::steady_clock;

/// One line, its answer and what it cost.
struct Exchange {
    std::string line;
    Answer answer;
    std::uint64_t deviceRequests = 0;
    double milliseconds = 0;
    Meaning meaning{};
};

Exchange exchange(Connection& connection, const std::string& line) {
    Exchange made;
    made.line = line;
    const std::uint64_t before = connection.device().requestsSent();
    const Clock::time_point start = Clock::now();
    made.answer = connection.ask(line);
    made.milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    made.deviceRequests = connection.device().requestsSent() - before;
    made.meaning = meaningOf(made.answer.result, made.answer.status());
    return made;
}

Json asJson(const Exchange& made) {
    Json values = Json::object();
    for (const auto& [key, value] : made.answer.values())
        values.set(key, value);
    Json json = Json::object();
    json.set("line", withoutSecrets(made.line));
    json.set("result", Json::number(made.answer.result));
    json.set("status", Json::number(made.answer.status()));
    json.set("answered", Json::boolean(made.meaning.code == ExitCode::answered));
    json.set("meaning", made.meaning.text);
    json.set("text", made.answer.text);
    json.set("values", std::move(values));
    json.set("device_requests", Json::number(static_cast<long long>(made.deviceRequests)));
    json.set("milliseconds", Json::fraction(made.milliseconds));
    return json;
}

void show(const Exchange& made, const Style& style, bool withHead) {
    if (withHead)
        printLine(style.paint(Tint::bold, "> " + harmless(withoutSecrets(made.line))));
    // A program that reads the answer gets it byte for byte.
    print(style.isTerminal() ? harmless(made.answer.text) : made.answer.text);
    if (made.answer.text.empty() || made.answer.text.back() != '\n')
        printLine();
}

/// Further lines would meet the same wall.
bool endsAll(ExitCode code) { return code == ExitCode::authentication || code == ExitCode::unreachable; }

} // namespace

ExitCode RequestCommand::run(const Arguments& arguments) const {
    Connection connection(target, arguments);
    const Style style(stdout);
    Json all = Json::array();
    ExitCode outcome = ExitCode::answered;
    for (const std::string& line : lines) {
        const Exchange made = exchange(connection, line);
        if (json)
            all.add(asJson(made));
        else
            show(made, style, lines.size() > 1);
        if (made.meaning.code == ExitCode::answered)
            continue;
        const Failure failed =
            connection.failure(made.answer.result, made.answer.status(), withoutSecrets(line));
        std::fprintf(stderr, "koine: %s\n", harmless(failed.what()).c_str());
        if (outcome == ExitCode::answered)
            outcome = made.meaning.code;
        if (endsAll(made.meaning.code))
            break;
    }
    if (json)
        print(all.dump());
    return outcome;
}

} // namespace koine::tool
