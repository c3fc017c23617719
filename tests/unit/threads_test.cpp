// Many threads, many objects: what the thread sanitizer looks at.

#include "tests/support/test_request.h"

#include <gtest/gtest.h>

namespace koine::test {
namespace {

TEST(Threads, Placeholder) { TestRequest request; }

} // namespace
} // namespace koine::test
