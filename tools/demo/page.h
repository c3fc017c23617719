/// @file
/// How the demo looks: a page that fits a terminal of 80 columns.
#pragma once

#include "devices/answer.h"
#include "tools/demo/watched_device.h"
#include "tools/terminal.h"

#include <string>
#include <string_view>
#include <vector>

namespace koine::tool {

/// What a line cost.
struct Cost {
    std::size_t deviceRequests = 0;
    double milliseconds = 0;

    Cost& operator+=(const Cost& other) {
        deviceRequests += other.deviceRequests;
        milliseconds += other.milliseconds;
        return *this;
    }
};

class Page {
public:
    static constexpr std::size_t kWidth = 80;

    /// @param silent prints nothing: somebody wants the figures alone
    explicit Page(bool silent) : silent_(silent) {}

    void title(std::string_view text) const;
    void fact(std::string_view name, std::string_view value) const;
    void section(int number, std::string_view text) const;

    /// What the host sent. Long lines are broken at "&".
    void hostLine(std::string_view line) const;

    /// What the library asked the device meanwhile.
    void deviceRequest(const DeviceRequest& request) const;

    /// The answer, with its source and cost at the right edge; one that was shown before in a word.
    void answer(const Answer& answer, const Cost& cost, bool sameAsBefore) const;

    void table(const Table& table) const;
    void gap() const { say(""); }
    const Style& style() const { return style_; }

private:
    void say(std::string_view text) const;
    void longLine(std::string_view text) const;
    void withRightEdge(std::string_view left, Tint tint, std::string_view right) const;

    Style style_{stdout};
    bool silent_;
};

} // namespace koine::tool
