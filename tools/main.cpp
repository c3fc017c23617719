// koine: the command-line host of the library.

#include "devices/open_device.h"
#include "tools/command_line.h"
#include "tools/terminal.h"

#include <exception>

using namespace koine;

namespace {

int fail(tool::ExitCode code, const char* text) {
    // One line, whatever a message brought along, and nothing that steers the terminal.
    std::string line = tool::harmless(text);
    for (char& c : line)
        if (c == '\n')
            c = ' ';
    std::fprintf(stderr, "koine: %s\n", line.c_str());
    return static_cast<int>(code);
}

/// Output that did not arrive is a failure: somebody may rely on the file.
int finish(tool::ExitCode code) {
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0)
        return static_cast<int>(code);
    return fail(tool::ExitCode::refused, "standard output cannot be written; check the space on the disk");
}

} // namespace

int main(int argc, char** argv) {
    try {
        const tool::Arguments arguments(argc, argv);
        return finish(tool::runCommandLine(arguments));
    } catch (const tool::Failure& failure) {
        return fail(failure.code(), failure.what());
    } catch (const DeviceUrlError& error) {
        return fail(tool::ExitCode::usage, error.what());
    } catch (const std::exception& error) {
        return fail(tool::ExitCode::refused, error.what());
    }
}
