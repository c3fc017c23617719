#include "platform/cgi_text.h"

#include "platform/url.h"
#include "text/owned_text.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using koine::OwnedText;

/// The URL, or "(null)".
std::string built(const char* address, unsigned int port, std::string line) {
    const OwnedText url(getTovlinCgiUrl(address, port, line.data()));
    return url ? url.get() : "(null)";
}

struct UrlCase {
    const char* address;
    unsigned int port;
    const char* line;
    const char* url;
};

class DeviceUrl : public testing::TestWithParam<UrlCase> {};

TEST_P(DeviceUrl, AddressesTheLine) {
    EXPECT_EQ(built(GetParam().address, GetParam().port, GetParam().line), GetParam().url);
}

INSTANTIATE_TEST_SUITE_P(
    Built, DeviceUrl,
    testing::Values(UrlCase{"cam", 80, "Login.cgi", "http://cam:80/Login.cgi"},
                    UrlCase{"10.0.0.9", 8080, "Config.cgi?action=get&category=Video.*",
                            "http://10.0.0.9:8080/Config.cgi?action=get&category=Video.*"},
                    UrlCase{"cam", 443, "Login.cgi", "https://cam:443/Login.cgi"},
                    UrlCase{"https://cam", 80, "Login.cgi", "https://cam:80/Login.cgi"},
                    UrlCase{"HTTPS://cam", 8443, "x", "https://cam:8443/x"},
                    UrlCase{"http://cam", 81, "x", "http://cam:81/x"},
                    UrlCase{"http://cam", 443, "x", "https://cam:443/x"},
                    UrlCase{"https://cam/", 444, "/x", "https://cam:444/x"},
                    UrlCase{"cam//", 80, "//x", "http://cam:80/x"}, UrlCase{"cam", 80, "", "http://cam:80/"},
                    UrlCase{"cam", 80, "?a=b", "http://cam:80/?a=b"},
                    UrlCase{"::1", 80, "x", "http://[::1]:80/x"},
                    UrlCase{"[::1]", 80, "x", "http://[::1]:80/x"},
                    UrlCase{"https://[fe80::1]", 80, "x", "https://[fe80::1]:80/x"},
                    UrlCase{"fe80::1%eth0", 80, "x", "http://[fe80::1%25eth0]:80/x"},
                    UrlCase{"fe80::1%25eth0", 80, "x", "http://[fe80::1%25eth0]:80/x"},
                    // With nothing behind it, "25" is the name of the interface and not a part of an escape.
                    UrlCase{"fe80::1%25", 80, "x", "http://[fe80::1%2525]:80/x"},
                    UrlCase{"fe80::1%2525", 80, "x", "http://[fe80::1%2525]:80/x"},
                    UrlCase{"::ffff:1.2.3.4", 1, "x", "http://[::ffff:1.2.3.4]:1/x"},
                    UrlCase{"cam", 65535, "x", "http://cam:65535/x"},
                    UrlCase{"cam", 80, "%s%n a\nb", "http://cam:80/%s%n a\nb"}));

// The result addresses the device, whatever host the line itself names.
INSTANTIATE_TEST_SUITE_P(
    AbsoluteLine, DeviceUrl,
    testing::Values(UrlCase{"cam", 80, "http://cam:80/Login.cgi", "http://cam:80/Login.cgi"},
                    UrlCase{"cam", 80, "https://evil:9/a?b=http://c/", "http://cam:80/a?b=http://c/"},
                    UrlCase{"cam", 80, "http://u:p@other", "http://cam:80/"},
                    UrlCase{"cam", 80, "HTTP://other?x=1", "http://cam:80/?x=1"}));

INSTANTIATE_TEST_SUITE_P(
    Refused, DeviceUrl,
    testing::Values(UrlCase{"", 80, "x", "(null)"}, UrlCase{"https://", 80, "x", "(null)"},
                    UrlCase{"/", 80, "x", "(null)"}, UrlCase{"cam", 0, "x", "(null)"},
                    UrlCase{"cam", 65536, "x", "(null)"}, UrlCase{"cam", 70000, "x", "(null)"},
                    UrlCase{"cam:81", 80, "x", "(null)"}, UrlCase{"user@cam", 80, "x", "(null)"},
                    UrlCase{"cam/path", 80, "x", "(null)"}, UrlCase{"cam?x", 80, "x", "(null)"},
                    UrlCase{"cam#x", 80, "x", "(null)"}, UrlCase{"cam\\x", 80, "x", "(null)"},
                    UrlCase{"ca m", 80, "x", "(null)"}, UrlCase{"ca\nm", 80, "x", "(null)"},
                    UrlCase{"ca\x7fm", 80, "x", "(null)"}, UrlCase{"fe80::1%a\x7f", 80, "x", "(null)"},
                    UrlCase{"[]", 80, "x", "(null)"}, UrlCase{"[cam]x", 80, "x", "(null)"},
                    UrlCase{"[", 80, "x", "(null)"}, UrlCase{"::g", 80, "x", "(null)"},
                    UrlCase{"::1]", 80, "x", "(null)"}, UrlCase{"fe80::1%a b", 80, "x", "(null)"},
                    UrlCase{"fe80::1%", 80, "x", "(null)"},
                    UrlCase{"k\xc3\xbc"
                            "che",
                            80, "x", "(null)"}));

TEST(DeviceUrl, NullGivesNull) {
    std::string line = "Login.cgi";
    EXPECT_EQ(getTovlinCgiUrl(nullptr, 80, line.data()), nullptr);
    EXPECT_EQ(getTovlinCgiUrl("cam", 80, nullptr), nullptr);
}

TEST(DeviceUrl, LineMayHaveAMegabyte) {
    const std::string line(1 << 20, 'y');
    EXPECT_EQ(built("cam", 80, line), "http://cam:80/" + line);
}

TEST(DeviceUrl, CanBeParsedAgain) {
    for (const char* address : {"cam", "10.1.2.3", "fe80::1%eth0", "fe80::1%25", "::1", "https://cam/"}) {
        Url url(built(address, 8080, "Login.cgi").c_str());
        url.parse_url();
        EXPECT_EQ(url.port(), 8080U);
        EXPECT_EQ(
            built(url.host().c_str(), 8080, "Login.cgi").substr(4),
            built(address, 8080, "Login.cgi").substr(std::string(address).rfind("https", 0) == 0 ? 5 : 4));
    }
}

} // namespace
