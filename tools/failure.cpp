// What results mean for a person.

#include "tools/failure.h"

#include "koine/types.h"

#include <array>
#include <string_view>

namespace koine::tool {
namespace {

struct Row {
    int result;
    ExitCode code;
    const char* text;
};

constexpr const char* kAuthentication =
    "the device refused the user name or password; check --user and the password";

/// Results of the library and of the default support library's HTTP client.
constexpr std::array<Row, 9> kResults = {{
    {kNotBuilt, ExitCode::refused,
     "no answer could be built; the stream may not be set up, or its device settings are unknown"},
    {kAuthFailed, ExitCode::authentication, kAuthentication},
    {kRefused, ExitCode::refused,
     "refused: the device cannot do this, or a value in the request is not allowed; check its spelling"},
    {-3, ExitCode::unreachable,
     "cannot connect; check the address, the port and that the device is switched on"},
    {-4, ExitCode::unreachable, "no answer within the time limit; try again with a longer --timeout"},
    {-5, ExitCode::unreachable,
     "the connection or the answer was broken; with https check --ca-file, else run again with --trace"},
    {-6, ExitCode::refused, "the device answered with an HTTP error; run again with --trace to see it"},
    {kNoResource, ExitCode::refused,
     "something is missing: the device has no such key, or its settings could not be read"},
    {kNoFunction, ExitCode::refused, "the device does not have this function"},
}};

struct StatusRow {
    int status;
    ExitCode code;
    const char* text;
};

/// Statuses that devices put into the first line of their answers.
constexpr std::array<StatusRow, 2> kStatuses = {{
    {-11, ExitCode::refused, "unknown parameter or value (status -11); check its spelling and range"},
    {-35, ExitCode::authentication, kAuthentication},
}};

} // namespace

std::string Meaning::brief() const {
    constexpr std::string_view kSubject = "the device ";
    std::string_view what = std::string_view(text).substr(0, text.find_first_of(":;"));
    if (what.substr(0, kSubject.size()) == kSubject)
        what.remove_prefix(kSubject.size());
    return std::string(what);
}

Meaning meaningOf(int result, int status) {
    if (result == kOk && status == 0)
        return {ExitCode::answered, "answered"};
    // A result that is no code of ours is the status with which the device refused a set.
    const int said = result == kOk ? status : result;
    if (result != kOk)
        for (const Row& row : kResults)
            if (row.result == result)
                return {row.code, row.text};
    for (const StatusRow& row : kStatuses)
        if (row.status == said)
            return {row.code, row.text};
    return {ExitCode::refused,
            "refused with status " + std::to_string(said) + "; the device's manual tells what it means"};
}

} // namespace koine::tool
