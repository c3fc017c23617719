#include "platform/classification.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct Check {
    const char* name;
    int (*check)(const char*);
};

struct Case {
    Check check;
    const char* value;
    bool yes;
};

constexpr Check kOnvif{"ONVIF", &checkIfONVIFProductName};
constexpr Check k331{"331_578", &checkIf331_578ProductName};
constexpr Check k5240{"5240", &checkIf5240ProductName};
constexpr Check kPell{"Pell", &checkIfPellProductId};
constexpr Check kNoCapability{"NoCapability", &checkIfNoCapabilityProductId};
constexpr Check kResoIndep{"ResoIndep", &haveResoIndepInCapability};
constexpr Check kProfile{"Profile", &haveProfileInCapability};
constexpr Check kIdPtz{"IDPTZ", &haveIDPTZInCapability};

class Classification : public testing::TestWithParam<Case> {};

TEST_P(Classification, IsToldFromTheText) {
    EXPECT_EQ(GetParam().check.check(GetParam().value) != 0, GetParam().yes)
        << GetParam().check.name << " of " << GetParam().value;
}

INSTANTIATE_TEST_SUITE_P(
    Beginnings, Classification,
    testing::Values(Case{kOnvif, "ONVIF_Dome", true}, Case{kOnvif, "onvif_x", true},
                    Case{kOnvif, "ONVIF_", true}, Case{kOnvif, " ONVIF_x", true},
                    Case{kOnvif, "ONVIF", false}, Case{kOnvif, "My ONVIF_x", false},
                    Case{k331, "TL-331", true}, Case{k331, "TL-331A", true}, Case{k331, "tl-578x", true},
                    Case{k331, "TL-5240", false}, Case{k331, "331", false}, Case{k331, "TL-33", false},
                    Case{k5240, "TL-5240", true}, Case{k5240, "TL-5240-IR", true},
                    Case{k5240, "TL-524", false}, Case{k5240, "5240", false}, Case{k5240, "TL-331", false},
                    Case{kPell, "PELL", true}, Case{kPell, "Pell-2000", true}, Case{kPell, "PEL", false},
                    Case{kPell, "X-PELL", false}, Case{kNoCapability, "NOCAP", true},
                    Case{kNoCapability, "nocap-7", true}, Case{kNoCapability, "NOCA", false},
                    Case{kNoCapability, "CAP", false}));

INSTANTIATE_TEST_SUITE_P(
    Words, Classification,
    testing::Values(Case{kResoIndep, "ResoIndep", true}, Case{kResoIndep, "AudioVolume,ResoIndep,VA", true},
                    Case{kResoIndep, "a;RESOINDEP", true}, Case{kResoIndep, "a resoindep b", true},
                    Case{kResoIndep, "a\nResoIndep", true}, Case{kResoIndep, "ResoIndep2", false},
                    Case{kResoIndep, "NoResoIndep", false}, Case{kResoIndep, "Reso,Indep", false},
                    Case{kProfile, "Profile", true}, Case{kProfile, "VA, profile", true},
                    Case{kProfile, "Profiles", false}, Case{kProfile, "MultiProfile", false},
                    Case{kProfile, "Profile=1", false}, Case{kIdPtz, "PTZ,IDPTZ", true},
                    Case{kIdPtz, "idptz", true}, Case{kIdPtz, "DPTZ", false},
                    Case{kIdPtz, "IDPTZ-2", false}));

TEST(Classification, NullAndEmptyAreNo) {
    for (const Check& each : {kOnvif, k331, k5240, kPell, kNoCapability, kResoIndep, kProfile, kIdPtz}) {
        EXPECT_EQ(each.check(nullptr), 0) << each.name;
        EXPECT_EQ(each.check(""), 0) << each.name;
        EXPECT_EQ(each.check(" ,;"), 0) << each.name;
    }
}

TEST(Classification, LongListIsReadToItsEnd) {
    std::string list;
    for (int i = 0; i < 100'000; ++i)
        list += "Word,";
    EXPECT_EQ(haveProfileInCapability(list.c_str()), 0);
    EXPECT_NE(haveProfileInCapability((list + "Profile").c_str()), 0);
}

} // namespace
