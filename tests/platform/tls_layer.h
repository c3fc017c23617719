/// @file
/// TLS over the connections of a `RawServer`, with a certificate made for the test.
#pragma once

#include "tests/support/raw_server.h"

#include <memory>
#include <string>

struct ssl_ctx_st;

namespace koine::test {

/// A certificate for the address 127.0.0.1, signed by itself.
class TlsIdentity {
public:
    TlsIdentity();
    ~TlsIdentity();
    TlsIdentity(const TlsIdentity&) = delete;
    TlsIdentity& operator=(const TlsIdentity&) = delete;

    /// For `RawServer`; must not outlive this object.
    RawServer::Layer layer() const;

    /// A PEM file with the certificate; removed at the end.
    const std::string& certificateFile() const { return file_; }

    /// The public key as it is pinned: "sha256//..." .
    const std::string& pin() const { return pin_; }

private:
    ssl_ctx_st* context_;
    std::string file_;
    std::string pin_;
};

} // namespace koine::test
