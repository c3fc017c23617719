/// @file
/// What the library said: its trace lines and what it wrote to standard error.
#pragma once

#include "tests/support/scripted_platform.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace koine::test {

/// Are these exactly the trace lines? A "*" stands for one whole number: where no line number is given, any
/// will do, but there must be one.
::testing::AssertionResult tracesAre(const std::vector<std::string>& expected);

/// Is there exactly one trace line like this among others?
::testing::AssertionResult tracedOnce(const std::string& expected);

/// Is there none?
::testing::AssertionResult notTraced(const std::string& expected);

/// Gathers what goes to standard error while it lives.
class StandardError {
public:
    StandardError() { ::testing::internal::CaptureStderr(); }
    ~StandardError() { text(); }
    StandardError(const StandardError&) = delete;
    StandardError& operator=(const StandardError&) = delete;

    const std::string& text() {
        if (!ended_)
            text_ = ::testing::internal::GetCapturedStderr();
        ended_ = true;
        return text_;
    }

private:
    std::string text_;
    bool ended_ = false;
};

} // namespace koine::test
