/// @file
/// The device that a command talks to.
#pragma once

#include "devices/answer.h"
#include "devices/open_device.h"
#include "tools/failure.h"
#include "tools/secrets.h"

#include <string>
#include <string_view>

namespace koine::tool {

/// What every command that talks to a device takes.
struct ConnectionOptions {
    std::string url; ///< without password
    std::string user;
    std::string passwordFile;
    std::string caFile;
    std::string vendor;
    double timeoutSeconds = 0; ///< of one request; 0 is the default
    unsigned int uid = 1;
    unsigned int connections = 2; ///< at a time
    bool insecure = false;
    bool trace = false;
    std::string traceMark; ///< stands before each trace line, where several processes trace
};

class Connection {
public:
    /// Opens the object; nothing is sent yet. Asks for the password when it is needed and nobody gave one.
    Connection(const ConnectionOptions& options, const Arguments& arguments, DeviceOptions device = {});

    DialectRequest& device() { return *device_; }
    unsigned int uid() const { return uid_; }

    /// "http://host:port", for messages.
    const std::string& where() const { return where_; }

    /// Sends one line, whatever comes of it.
    Answer ask(std::string_view line);

    /// Sends one line and ends the command when it fails.
    /// @param what the request in a person's words
    Answer demand(std::string_view line, std::string_view what);

    /// Readies the media profiles for reading and changing (see `koine::prepareMedia`), and ends the command
    /// when the device does not tell its capabilities.
    void prepareMedia();

    /// The failure that a result stands for, in one line.
    Failure failure(int result, int status, std::string_view what) const;

private:
    unsigned int uid_;
    bool trace_;
    std::string where_;
    boost::shared_ptr<DialectRequest> device_;
};

} // namespace koine::tool
