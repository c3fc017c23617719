#include "tests/e2e/request_kinds.h"

namespace koine::test {

Answer ask(DialectRequest& device, const RequestKind& kind) {
    if (kind.setsStreamUp)
        device.init(1, kStreamSetup);
    return request(device, 1, kind.line);
}

bool isStated(const Answer& answer) {
    return answer.ok() || answer.text == (answer.result == -1 ? kAuthenticationError : kUnknownParameter);
}

} // namespace koine::test
