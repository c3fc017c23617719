// What the core has for derived classes alone: the lines that a fill is going to send, and another HTTP
// client.

#include "camera.h"

namespace koine::test {
namespace {

class Derived : public Camera {
public:
    using BaseRequest::Configuration;
    using BaseRequest::exchangeHttpClient;

    Lines linesOf(Configuration wanted) { return linesToFill(kUser, wanted); }
};

class LinesToFill : public ::testing::Test {
protected:
    Lines all() { return request.linesOf(Derived::Configuration::all); }
    Lines withoutAnalytics() { return request.linesOf(Derived::Configuration::withoutAnalytics); }

    Derived request;
};

TEST_F(LinesToFill, AreThoseThatTheFillThenSends) {
    const Lines expected = all();
    EXPECT_EQ(expected,
              (Lines{kMediaLine, kVideoLine, kCameraLine, kNotificationLine, kMiscLine, kAnalyticsLine}));
    EXPECT_EQ(request.cacheCgi(kUser), 1);
    Lines asked = request.asked();
    ASSERT_GE(asked.size(), expected.size());
    asked.erase(asked.begin(), asked.end() - static_cast<std::ptrdiff_t>(expected.size()));
    EXPECT_EQ(asked, expected) << "what tells the device's kind comes before";
    EXPECT_EQ(all(), Lines());
}

TEST_F(LinesToFill, LeaveTheAnalyticsOutOnDemand) {
    EXPECT_EQ(withoutAnalytics(), (Lines{kMediaLine, kVideoLine, kCameraLine, kNotificationLine, kMiscLine}));
}

TEST_F(LinesToFill, LeaveOutWhatIsKnown) {
    EXPECT_EQ(request.getCacheConfigVideo(kUser, 0, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(request.getCacheConfigMedia(kUser, 0, nullptr, nullptr, nullptr), 1);
    EXPECT_EQ(all(), (Lines{kCameraLine, kNotificationLine, kMiscLine, kAnalyticsLine}));
}

TEST_F(LinesToFill, AskARecorderForTheProfilesOfTheUsersChannel) {
    request.setIsTovlinNVRDevice(1);
    request.client().set_strm_nvr_subchannel(3);
    EXPECT_EQ(all(), Lines{"Config.cgi?action=get&category=Media.*&ch=3"});
}

TEST_F(LinesToFill, AskAStreamOnlySourceNothing) {
    request.setVendor("ONLY_STREAM");
    EXPECT_EQ(all(), Lines());
}

TEST(ExchangedHttpClient, IsUsedFromThenOnAndTheFormerOneIsTheCallers) {
    Derived request;
    IHttpClient* const own = request.exchangeHttpClient(nullptr);
    ASSERT_NE(own, nullptr);
    char url[] = "http://camera:80/Login.cgi";
    EXPECT_EQ(
        request.BaseRequest::requestCgi_1(kUser, url, nullptr, REQCGI_METHOD_GET, REQCGI_CONNECTION_KEEP), -8)
        << "without a client nothing can be asked";
    device().on("Login.cgi", "0\nOK\n");
    EXPECT_EQ(request.exchangeHttpClient(own), nullptr);
    EXPECT_EQ(
        request.BaseRequest::requestCgi_1(kUser, url, nullptr, REQCGI_METHOD_GET, REQCGI_CONNECTION_KEEP), 1);
}

} // namespace
} // namespace koine::test
