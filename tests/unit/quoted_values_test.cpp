// The three set-up values in quotes, which may hold "&" themselves.

#include "koine/StreamIDClient.h"

#include <gtest/gtest.h>

#include <string>

namespace {

class QuotedValues : public ::testing::Test {
protected:
    void parse(const std::string& text) {
        client.setInitStream(text.c_str());
        EXPECT_EQ(client.ParseStreamInit(), 1);
    }

    std::string mapEntry(const char* key) {
        const auto found = client.stream_setup_map().find(key);
        return found == client.stream_setup_map().end() ? "(absent)" : found->second;
    }

    std::string cgiParameter() { return mapEntry("StreamSetup.Param"); }
    std::string parameter() { return mapEntry("StreamSetup.Stream.Param"); }
    std::string parameter1() { return mapEntry("StreamSetup.Stream.Param1"); }

    StreamIDClient client;
};

TEST_F(QuotedValues, MayHoldSeparators) {
    parse("StreamSetup.Stream.Param=\"a=1&b=2\"");
    EXPECT_EQ(parameter(), "a=1&b=2");
    EXPECT_EQ(parameter1(), "(absent)");
    EXPECT_EQ(cgiParameter(), "(absent)");
}

TEST_F(QuotedValues, EndAtTheNextQuote) {
    parse("StreamSetup.Stream.Param=\"one\"&StreamSetup.Stream.Param1=\"two\"&X=\"three\"");
    EXPECT_EQ(parameter(), "one");
    EXPECT_EQ(parameter1(), "two");
}

TEST_F(QuotedValues, MayStandInEitherOrder) {
    parse("StreamSetup.Stream.Param1=\"two\"&StreamSetup.Stream.Param=\"one\"");
    EXPECT_EQ(parameter(), "one");
    EXPECT_EQ(parameter1(), "two");
}

TEST_F(QuotedValues, RunToTheEndWithoutAClosingQuote) {
    parse("StreamSetup.Stream.Param=\"a&b=2&c");
    EXPECT_EQ(parameter(), "a&b=2&c");
}

TEST_F(QuotedValues, AreTheWholeRestWithTheKeyWhenThereIsNoQuote) {
    parse("X=1&StreamSetup.Stream.Param1=abc&Y=2");
    EXPECT_EQ(parameter1(), "StreamSetup.Stream.Param1=abc&Y=2");
}

TEST_F(QuotedValues, OfLaterItemsAreTakenByAKeyWithoutQuotes) {
    // The first quote after the key counts, wherever it stands.
    parse("StreamSetup.Stream.Param=abc&Y=\"later\"");
    EXPECT_EQ(parameter(), "later");
}

TEST_F(QuotedValues, WhenEmptySetNothing) {
    parse("StreamSetup.Stream.Param=\"\"&StreamSetup.Stream.Param1=\"\"");
    EXPECT_EQ(parameter(), "(absent)");
    EXPECT_EQ(parameter1(), "(absent)");
    parse("StreamSetup.Stream.Param=\"");
    EXPECT_EQ(parameter(), "(absent)");
}

TEST_F(QuotedValues, AreFoundAnywhereInTheText) {
    parse("Some.StreamSetup.Stream.Param=\"v\"");
    EXPECT_EQ(parameter(), "v");
}

TEST_F(QuotedValues, AreNotLimitedInLength) {
    const std::string longValue(4000, 'v');
    parse("StreamSetup.Stream.Param=\"" + longValue + "\"");
    EXPECT_EQ(parameter(), longValue);
}

TEST_F(QuotedValues, KeepBlanksAndLineEnds) {
    parse("StreamSetup.Stream.Param=\"a b\nc\"");
    EXPECT_EQ(parameter(), "a b\nc");
}

TEST_F(QuotedValues, TheParameterOfABackupReachesToTheLastQuote) {
    parse("StreamSetup.Stream=TOVLIN-NetworkBk&StreamSetup.Param=\"a=\"1\"&b=\"2\"\"&End=1");
    EXPECT_EQ(cgiParameter(), "a=\"1\"&b=\"2\"");
}

TEST_F(QuotedValues, TheParameterOfABackupWithoutClosingQuoteRunsToTheEnd) {
    parse("StreamSetup.Stream=TOVLIN-NetworkBk&StreamSetup.Param=\"a=1&b");
    EXPECT_EQ(cgiParameter(), "a=1&b");
}

TEST_F(QuotedValues, TheParameterOfABackupWithoutAnyQuoteIsTheWholeRest) {
    parse("StreamSetup.Stream=TOVLIN-NetworkBk&StreamSetup.Param=a&B=1");
    EXPECT_EQ(cgiParameter(), "StreamSetup.Param=a&B=1");
}

TEST_F(QuotedValues, AnEmptyParameterOfABackupSetsNothing) {
    parse("StreamSetup.Stream=TOVLIN-NetworkBk&StreamSetup.Param=\"\"");
    EXPECT_EQ(cgiParameter(), "(absent)");
}

TEST_F(QuotedValues, TheBackupParameterIsOnlyReadForABackup) {
    parse("StreamSetup.Stream=RTP-Unicast&StreamSetup.Param=\"a\"");
    EXPECT_EQ(cgiParameter(), "(absent)");
    parse("StreamSetup.Param=\"a\"&StreamSetup.Stream=TOVLIN-NetworkBk");
    EXPECT_EQ(cgiParameter(), "a");
}

TEST_F(QuotedValues, ItemsInsideAValueStillCountAsItems) {
    // Values are looked for in the raw text; the items of the same text were read before.
    parse("StreamSetup.Stream.Param=\"x&StreamSetup.StreamNo=6&y\"");
    EXPECT_EQ(client.strm_setting_no(), 6);
    EXPECT_EQ(parameter(), "x&StreamSetup.StreamNo=6&y");
}

} // namespace
