// Whether a device can serve the kind of stream that is asked for.

#include "bench_request.h"
#include "observed.h"

#include <gtest/gtest.h>

namespace koine::test {
namespace {

TEST(StreamSupport, MetadataAloneNeedVideoAnalytics) {
    BenchRequest request;
    request.client().setProfileMode_1("ONLY_META");
    EXPECT_EQ(request.checkStreamSupport(kUid), 0);
    request.setHasVA(1);
    EXPECT_EQ(request.checkStreamSupport(kUid), 1);
    request.setHasVA(-1);
    EXPECT_EQ(request.checkStreamSupport(kUid), 1);
}

TEST(StreamSupport, EveryOtherModeIsServed) {
    BenchRequest request;
    for (const char* mode : {"", "AUTO", "MOBILE", "ONLY_STATUS", "only_meta", "ONLY_META2", "X"}) {
        request.client().setProfileMode_1(mode);
        EXPECT_EQ(request.checkStreamSupport(kUid), 1) << mode;
    }
}

TEST(StreamSupport, EveryUserIsLookedAtOnTheirOwn) {
    BenchRequest request;
    request.client(1).setProfileMode_1("ONLY_META");
    EXPECT_EQ(request.checkStreamSupport(1), 0);
    EXPECT_EQ(request.checkStreamSupport(2), 1);
}

TEST(StreamSupport, AnUnknownUserIsServedAndKnownAfterwards) {
    BenchRequest request;
    forgetTraces();
    EXPECT_EQ(request.checkStreamSupport(99), 1);
    EXPECT_TRUE(tracesAre({"######* StreamIDCenter::get_streamid_client, uid=99, new StreamIDClient. \n"}));
    EXPECT_EQ(request.checkStreamSupport(99), 1);
    EXPECT_EQ(traces().size(), 1U);
}

} // namespace
} // namespace koine::test
