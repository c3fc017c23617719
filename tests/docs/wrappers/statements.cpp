// Around statements of a host.
#include "default_platform/host_settings.h"
#include "devices/answer.h"
#include "devices/open_device.h"
#include "devices/prepare_media.h"
#include "platform/TlGlobalLib.h"

#include <boost/make_shared.hpp>

#include <cstring>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <thread>

void statements(const boost::shared_ptr<koine::DialectRequest>& camera, unsigned int uid,
                std::ofstream& logFile) {
    {
        // @BLOCK@
    }
    static_cast<void>(camera), static_cast<void>(uid), static_cast<void>(logFile);
}
