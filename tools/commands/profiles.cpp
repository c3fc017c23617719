// koine profiles: the media profiles alone.

#include "tools/commands/commands.h"
#include "tools/learned.h"

namespace koine::tool {

ExitCode ProfilesCommand::run(const Arguments& arguments) const {
    Connection connection(target, arguments);
    const Learned learned = learn(connection);
    if (json) {
        print(profilesAsJson(learned.profiles).dump());
        return ExitCode::answered;
    }
    if (learned.profiles.empty())
        printLine("The device has no media profiles.");
    else
        profileTable(learned.profiles).print(Style(stdout));
    return ExitCode::answered;
}

} // namespace koine::tool
