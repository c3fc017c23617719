// Five answers, key by key: half of an answer is never right.
#include "usable_answers.h"

#include "cache/key_map.h"
#include "platform/cgi_text.h"
#include "text/owned_text.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace koine::torture {
namespace {

constexpr unsigned int kAsker = 9;
constexpr std::string_view kGivenUp = "-11\nERROR: Unknown parameter.\n";

struct Line {
    const char* text;
    bool isCategory;  ///< one attempt decides: where memory ran out during that, the object says so from then
                      ///< on
    bool keepsValues; ///< otherwise each answer may bring the values in line with something else
};

constexpr std::array<Line, 5> kLines = {{
    {"http://camera/Login.cgi", false, true},
    {"http://camera/Capability.cgi?action=get", false, true},
    {"http://camera/Config.cgi?action=get&category=Media.*", false, false},
    {"http://camera/Config.cgi?action=get&category=Video.*", true, false},
    {"http://camera/Config.cgi?action=get&category=Camera.*", true, false},
}};

struct Said {
    int result;
    std::string text;
};

Said ask(BaseRequest& device, const char* line) {
    char* answer = nullptr;
    const int result = device.requestHttpStr(kAsker, const_cast<char*>(line), nullptr, nullptr, &answer);
    Said said = {result, orEmpty(answer)};
    device.freeData(answer);
    return said;
}

CgiMap pairsOf(const Said& said) {
    CgiMap pairs;
    createMapStr(said.text.c_str(), &pairs);
    return pairs;
}

/// The first key that is missing or has another value, or nothing.
std::string firstDifference(const CgiMap& whole, const CgiMap& got, bool valuesToo) {
    for (const auto& [key, value] : whole) {
        const std::string* found = findValue(got, key);
        if (found == nullptr)
            return key + " is missing";
        if (valuesToo && *found != value)
            return key + " is \"" + *found + "\" instead of \"" + value + "\"";
    }
    return {};
}

} // namespace

UsableAnswers::UsableAnswers(BaseRequest& whole) {
    for (const Line& line : kLines) {
        const Said said = ask(whole, line.text);
        wholes_.push_back(pairsOf(said));
        if (said.result == kOk && !wholes_.back().empty())
            continue;
        std::fprintf(stderr, "torture: %s gives nothing to compare with: %s\n", line.text, said.text.c_str());
        std::abort();
    }
}

std::vector<std::string> UsableAnswers::faultsOf(BaseRequest& device, Decides decided) const {
    std::vector<std::string> faults;
    auto whole = wholes_.begin();
    for (const Line& line : kLines) {
        const Said said = ask(device, line.text);
        const CgiMap& expected = *whole++;
        if (said.result == kOk) {
            const bool valuesToo = line.keepsValues && decided != Decides::qualityBounds;
            const std::string difference = firstDifference(expected, pairsOf(said), valuesToo);
            if (!difference.empty())
                faults.push_back(std::string(line.text) + ": " + difference);
            continue;
        }
        const bool mayBeGivenUp = line.isCategory && decided == Decides::categories;
        if (!mayBeGivenUp || said.result != kNoResource || said.text != kGivenUp)
            faults.push_back(std::string(line.text) + ": result " + std::to_string(said.result));
    }
    return faults;
}

} // namespace koine::torture
