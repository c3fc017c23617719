// Around declarations: functions and classes of a host or a device class.
#include "default_platform/host_settings.h"
#include "devices/answer.h"
#include "devices/open_device.h"
#include "platform/TlGlobalLib.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>
#include <string_view>

using namespace std::string_view_literals;

// @BLOCK@
