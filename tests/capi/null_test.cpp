// Null pointers, everywhere one can be.

#include "tests/capi/c_device.h"

#include <gtest/gtest.h>

namespace koine::test {
namespace {

constexpr const char* kUrl = "http://127.0.0.1:9";

TEST(CNull, OpeningSaysWhatIsMissing) {
    koine_device* device = nullptr;
    char* problem = nullptr;
    EXPECT_EQ(koine_open(nullptr, nullptr, &device, &problem), KOINE_REFUSED);
    EXPECT_NE(taken(problem).find("must begin with http://"), std::string::npos);
    EXPECT_EQ(device, nullptr);
    EXPECT_EQ(koine_open(kUrl, nullptr, nullptr, &problem), KOINE_REFUSED);
    EXPECT_NE(taken(problem).find("no place for the device"), std::string::npos);
    EXPECT_EQ(koine_open(nullptr, nullptr, nullptr, nullptr), KOINE_REFUSED);
}

TEST(CNull, ANullDeviceIsRefused) {
    char stale[] = "left from before";
    char* text = stale;
    EXPECT_EQ(koine_request(nullptr, 1, "Login.cgi", &text), KOINE_REFUSED);
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(koine_prepare_media(nullptr, 1), KOINE_REFUSED);
    EXPECT_STREQ(koine_address(nullptr), "");
    EXPECT_EQ(koine_requests_sent(nullptr), 0U);
    EXPECT_EQ(koine_requests_failed(nullptr), 0U);
    koine_disconnect(nullptr);
    koine_close(nullptr);
    koine_free(nullptr);
}

TEST(CNull, ANullLineIsRefusedAndSendsNothing) {
    const CDevice device = opened(kUrl);
    ASSERT_NE(device, nullptr);
    EXPECT_EQ(asked(device, nullptr).result, KOINE_REFUSED);
    EXPECT_EQ(koine_requests_sent(device.get()), 0U);
}

TEST(CNull, NoAnswerHasNoValues) {
    EXPECT_EQ(koine_status(nullptr), 0);
    EXPECT_EQ(koine_value(nullptr, "A"), nullptr);
    EXPECT_EQ(koine_value("0\nOK\nA=1\n", nullptr), nullptr);
    EXPECT_EQ(koine_visit_values(nullptr, nullptr, nullptr), KOINE_OK);
    EXPECT_EQ(koine_visit_values("0\nOK\nA=1\n", nullptr, nullptr), KOINE_OK);
}

TEST(CNull, SettingsWithNullAreTheDefaults) {
    koine_trace_to(nullptr, nullptr);
    EXPECT_EQ(koine_set_tls_authority_file(nullptr), KOINE_OK);
    EXPECT_EQ(koine_set_tls_pinned_key(nullptr), KOINE_OK);
}

} // namespace
} // namespace koine::test
