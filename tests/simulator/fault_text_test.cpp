#include "simulator/fault.h"

#include <gtest/gtest.h>

namespace koine::sim {
namespace {

std::string complaintAbout(const std::string& text) {
    try {
        parseFault(text);
    } catch (const std::invalid_argument& failure) {
        return failure.what();
    }
    return {};
}

TEST(FaultText, ANumberFollowsTheWord) {
    const Fault fault = parseFault("delay=20");
    EXPECT_EQ(fault.kind, FaultKind::delay);
    EXPECT_EQ(fault.amount, 20U);
    EXPECT_EQ(fault.path, "");
    EXPECT_EQ(fault.count, 0U);
}

TEST(FaultText, AUsualNumberMayBeLeftOut) {
    EXPECT_EQ(parseFault("status").amount, 500U);
    EXPECT_EQ(parseFault("reset-within-body").amount, 100U);
    EXPECT_EQ(parseFault("status").amount, Fault(FaultKind::status).amount);
}

TEST(FaultText, PathAndCountStandBehind) {
    const Fault fault = parseFault("reset-within-body=7;path=Config.cgi?action=get;count=2");
    EXPECT_EQ(fault.kind, FaultKind::resetWithinBody);
    EXPECT_EQ(fault.amount, 7U);
    EXPECT_EQ(fault.path, "Config.cgi?action=get");
    EXPECT_EQ(fault.count, 2U);
    EXPECT_EQ(parseFault("garbage;count=3;path=x").count, 3U);
}

TEST(FaultText, TextsHaveEscapesAndMayHoldAnything) {
    EXPECT_EQ(parseFault("answer=0\\nOK\\na=b;c\\\\n\\q").text, "0\nOK\na=b;c\\n\\q");
    EXPECT_EQ(parseFault("raw=\\r\\0").text, std::string("\r\0", 2));
    EXPECT_EQ(parseFault("redirect=http://h/?a=b;path=Login").text, "http://h/?a=b");
}

TEST(FaultText, EveryWordIsReadAndListed) {
    for (int kind = 0; kind <= static_cast<int>(FaultKind::raw); ++kind) {
        const std::string name(faultName(static_cast<FaultKind>(kind)));
        const std::string said = complaintAbout(name);
        const Fault fault = parseFault(said.empty() ? name : name + "=1");
        EXPECT_EQ(fault.kind, static_cast<FaultKind>(kind)) << name;
        EXPECT_NE(faultHelp().find(name), std::string::npos);
        EXPECT_NE(complaintAbout("nonsense").find(name), std::string::npos);
    }
}

TEST(FaultText, WhatIsWrongIsSaid) {
    EXPECT_NE(complaintAbout("dealy=20").find("unknown fault \"dealy\""), std::string::npos);
    EXPECT_NE(complaintAbout("").find("unknown fault"), std::string::npos);
    EXPECT_NE(complaintAbout("delay").find("needs a value"), std::string::npos);
    EXPECT_NE(complaintAbout("refuse=1").find("takes no value"), std::string::npos);
    EXPECT_NE(complaintAbout("refuse;count=1").find("no count"), std::string::npos);
    for (const char* number :
         {"delay=", "delay=x", "delay=-1", "delay=1x", "delay= 1", "delay=99999999999999999999"})
        EXPECT_NE(complaintAbout(number).find("no number"), std::string::npos) << number;
    EXPECT_NE(complaintAbout("hang;count=x").find("no number"), std::string::npos);
}

} // namespace
} // namespace koine::sim
