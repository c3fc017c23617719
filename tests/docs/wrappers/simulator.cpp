// Around lines of a test that makes a simulated device.
#include "simulator/simulated_device.h"

void makeDevice() {
    // @BLOCK@
}
