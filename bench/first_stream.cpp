// A full first stream on a device in this process: what the library itself costs.

#include "bench/groups.h"
#include "bench/memory_device.h"
#include "bench/pairs.h"

#include <boost/make_shared.hpp>

namespace koine::bench {

Rows measureFirstStream() {
    const std::shared_ptr<const DeviceTexts> texts = deviceTexts({});
    const auto run = [texts] { startStream(*boost::make_shared<MemoryDevice>(texts)); };
    return measurePairs("first stream", {{"first stream, device in memory, 400 keys in each answer",
                                          run,
                                          {},
                                          Target::report(),
                                          "device made, started, asked and given up"}});
}

} // namespace koine::bench
