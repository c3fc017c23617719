/// @file
/// The floor of everything that goes over a wire: libcurl and nothing else.
#pragma once

#include <memory>
#include <string>

namespace koine::bench {

/// One libcurl handle with Digest credentials; the connection is kept.
class BareClient {
public:
    BareClient(const std::string& username, const std::string& password);
    ~BareClient();
    BareClient(const BareClient&) = delete;
    BareClient& operator=(const BareClient&) = delete;

    /// @throws std::runtime_error naming the URL when the answer is no success
    void get(const std::string& url);

private:
    struct Handle;
    std::unique_ptr<Handle> handle_;
};

} // namespace koine::bench
