/// @file
/// A device of few words, and raw servers that answer as it does until they do otherwise.
#pragma once

#include "tests/e2e/request_kinds.h"
#include "tests/support/raw_server.h"

#include <atomic>
#include <functional>
#include <string>
#include <string_view>

namespace koine::test {

/// The whole HTTP answer of a small camera to a request, head included.
std::string smallCameraAnswer(const std::string& request);

/// What a device does instead of answering. @return whether it goes on with the connection
using Misbehaviour = std::function<bool(RawConnection& connection, const std::string& request)>;

/// A small camera that misbehaves where the target of a request contains `path`, as long as it is ill.
class IllCamera {
public:
    IllCamera(Misbehaviour misbehaviour, std::string_view path);

    void heal() { ill_ = false; }
    void fallIll() { ill_ = true; }
    std::string url() const;
    const RawServer& server() const { return server_; }

    /// An object for it that uses so many connections.
    boost::shared_ptr<DialectRequest> object(unsigned int connections = 1) const;

private:
    void serve(RawConnection& connection) const;

    const Misbehaviour misbehaviour_;
    const std::string path_;
    std::atomic<bool> ill_{true};
    RawServer server_;
};

} // namespace koine::test
