/// @file
/// The commands: what each takes, and how it runs. The options are filled in by the command line.
#pragma once

#include "tools/connection.h"

#include <string>
#include <vector>

namespace koine::tool {

/// `koine request`: lines of the dialect, over one object.
struct RequestCommand {
    ConnectionOptions target;
    std::vector<std::string> lines;
    bool json = false;
    ExitCode run(const Arguments& arguments) const;
};

/// `koine info`: what the library learned about a device.
struct InfoCommand {
    ConnectionOptions target;
    bool json = false;
    ExitCode run(const Arguments& arguments) const;
};

/// `koine profiles`: the media profiles alone.
struct ProfilesCommand {
    ConnectionOptions target;
    bool json = false;
    ExitCode run(const Arguments& arguments) const;
};

/// `koine stream`: sets a stream up and gives its URI.
struct StreamCommand {
    ConnectionOptions target;
    std::string mode;
    std::string token;
    std::string size;
    std::string encoding;
    std::string transport = "TCP";
    std::string quality; ///< as typed: the library reads it
    int framesPerSecond = 0;
    int bitrate = 0;
    int govLength = 0;
    int channel = 0;
    unsigned int rtspPort = 554;
    bool credentialsInUri = false;
    bool uriOnly = false;
    bool json = false;
    ExitCode run(const Arguments& arguments) const;
};

/// `koine get`: configuration categories.
struct GetCommand {
    ConnectionOptions target;
    std::vector<std::string> categories;
    bool json = false;
    ExitCode run(const Arguments& arguments) const;
};

/// `koine set`: changes settings and shows what changed.
struct SetCommand {
    ConnectionOptions target;
    std::vector<std::string> settings;
    bool json = false;
    ExitCode run(const Arguments& arguments) const;
};

/// `koine dump`: the whole configuration, for a file.
struct DumpCommand {
    ConnectionOptions target;
    bool json = false;
    ExitCode run(const Arguments& arguments) const;
};

/// `koine diff`: a device against such a file.
struct DiffCommand {
    ConnectionOptions target;
    std::string file;
    bool json = false;
    ExitCode run(const Arguments& arguments) const;
};

/// `koine survey`: many devices at once.
struct SurveyCommand {
    ConnectionOptions target; ///< without URL; what holds for all devices
    std::string file;
    unsigned int jobs = 16;
    bool json = false;
    ExitCode run(const Arguments& arguments) const;
};

/// `koine simulate`: a simulated device until it is told to stop.
struct SimulateCommand {
    std::string model = "dome";
    std::string modelFolder;
    std::string address = "127.0.0.1";
    std::string auth = "none";
    std::string user = "admin";
    std::string passwordFile;
    std::vector<std::string> faults;
    std::string certificate;
    std::string key;
    unsigned short port = 0;
    unsigned int nonceLifetime = 0;
    bool listModels = false;
    bool listFaults = false;
    bool verbose = false;
    bool json = false;
    ExitCode run() const;
};

/// `koine demo`: the library at work against a simulated device.
struct DemoCommand {
    unsigned int delayMilliseconds = 20;
    bool trace = false;
    bool json = false;
    ExitCode run() const;
};

} // namespace koine::tool
