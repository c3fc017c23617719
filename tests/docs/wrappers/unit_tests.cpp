// Around tests of the core, which has the scripted support library.
#include "tests/support/failing_allocations.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/test_request.h"

#include <gtest/gtest.h>

namespace koine::test {

// @BLOCK@

} // namespace koine::test
