// SIGINT and SIGTERM, waited for instead of acted on.

#include "tools/stop_signals.h"

#include <sys/signalfd.h>
#include <unistd.h>

namespace koine::tool {

StopSignals::StopSignals() {
    sigemptyset(&set_);
    sigaddset(&set_, SIGINT);
    sigaddset(&set_, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &set_, nullptr);
    descriptor_ = signalfd(-1, &set_, SFD_CLOEXEC);
}

StopSignals::~StopSignals() {
    if (descriptor_ >= 0)
        close(descriptor_);
}

void StopSignals::wait() const {
    int signal = 0;
    sigwait(&set_, &signal);
}

} // namespace koine::tool
