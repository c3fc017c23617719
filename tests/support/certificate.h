/// @file
/// A certificate for 127.0.0.1, made for one test and signed by itself.
#pragma once

#include <string>

namespace koine::test {

class Certificate {
public:
    Certificate();
    ~Certificate();
    Certificate(const Certificate&) = delete;
    Certificate& operator=(const Certificate&) = delete;

    /// PEM files, removed at the end.
    const std::string& certificateFile() const { return certificateFile_; }
    const std::string& keyFile() const { return keyFile_; }

private:
    std::string certificateFile_;
    std::string keyFile_;
};

} // namespace koine::test
