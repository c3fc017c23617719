// How far a survey is, for the person at the terminal.

#include "tools/survey/progress.h"

#include <algorithm>
#include <string_view>

namespace koine::tool {
namespace {

constexpr std::size_t kWidestBar = 40;
constexpr std::size_t kNarrowestBar = 8;
constexpr std::size_t kBrackets = 3; ///< and the blank behind them

bool canRewrite() {
    const std::string_view terminal = environment("TERM");
    return !terminal.empty() && terminal != "dumb";
}

std::string failures(std::size_t failed) { return "  " + std::to_string(failed) + " failed"; }

/// The same from the first device to the last, so that the bar neither jumps nor goes away when some fail.
std::size_t barWidth(std::size_t devices, std::size_t width) {
    const std::string all = std::to_string(devices);
    const std::size_t words = 2 * all.size() + 1 + failures(devices).size();
    return words + kBrackets + kNarrowestBar <= width ? std::min(kWidestBar, width - words - kBrackets) : 0;
}

} // namespace

std::string progressText(const Style& style, std::size_t finished, std::size_t devices, std::size_t failed,
                         const std::string& newest, std::size_t width) {
    const std::string count = std::to_string(finished) + "/" + std::to_string(devices);
    const std::string bad = failed == 0 ? "" : failures(failed);
    std::string text;
    std::size_t used = 0;
    if (const std::size_t bar = barWidth(devices, width); bar != 0) {
        const std::size_t filled = devices == 0 ? bar : bar * finished / devices;
        text = "[" + style.paint(Tint::green, std::string(filled, '#')) +
               style.paint(Tint::dim, std::string(bar - filled, '-')) + "] ";
        used = bar + kBrackets;
    }
    used += count.size() + bad.size();
    text += count + style.paint(Tint::red, bad);
    if (!newest.empty() && used + 2 + kNarrowestBar <= width)
        text += "  " + style.paint(Tint::dim, shortened(newest, width - used - 2));
    return text;
}

Progress::Progress(std::size_t devices, bool wanted)
    : devices_(devices), shown_(wanted && style_.isTerminal() && canRewrite()) {}

Progress::~Progress() {
    if (shown_)
        std::fputs("\r\033[K", stderr);
}

void Progress::show(std::size_t finished, std::size_t failed, const std::string& newest) {
    if (!shown_)
        return;
    // The last column stays free: some terminals go on to the next line there.
    const std::size_t width = std::max<std::size_t>(style_.width(), 2) - 1;
    std::fprintf(stderr, "\r%s\033[K",
                 progressText(style_, finished, devices_, failed, newest, width).c_str());
}

} // namespace koine::tool
