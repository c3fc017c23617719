/// @file
/// A certificate for 127.0.0.1 that signs itself, made for one test.
#pragma once

#include <filesystem>

namespace koine::test {

/// Two PEM files in a folder of their own, which goes when this dies.
class TestCertificate {
public:
    TestCertificate();
    ~TestCertificate();
    TestCertificate(const TestCertificate&) = delete;
    TestCertificate& operator=(const TestCertificate&) = delete;

    std::filesystem::path certificateFile() const { return folder_ / "certificate.pem"; }
    std::filesystem::path keyFile() const { return folder_ / "key.pem"; }

private:
    std::filesystem::path folder_;
};

} // namespace koine::test
