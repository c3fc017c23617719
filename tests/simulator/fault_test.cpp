#include "raw_client.h"
#include "test_device.h"

#include <gtest/gtest.h>

namespace koine::test {
namespace {

using sim::Fault;
using sim::FaultKind;
using sim::SimulatedDevice;
using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

milliseconds since(Clock::time_point begin) {
    return std::chrono::duration_cast<milliseconds>(Clock::now() - begin);
}

TEST(Faults, DelayWaitsBeforeTheAnswer) {
    SimulatedDevice device(optionsFor("minimal"));
    device.setFault({FaultKind::delay, 60});
    const auto begin = Clock::now();
    EXPECT_EQ(getOnce(device.port(), kLine).status(), 200);
    EXPECT_GE(since(begin).count(), 60);
}

TEST(Faults, HangNeverAnswers) {
    SimulatedDevice device(optionsFor("minimal"));
    device.setFault(FaultKind::hang);
    RawClient client(device.port());
    client.send("GET /Login.cgi HTTP/1.1\r\n\r\n");
    const RawAnswer answer = client.receive(milliseconds(80));
    EXPECT_EQ(answer.end, End::timeLimit);
    EXPECT_EQ(answer.bytes, "");
    EXPECT_EQ(device.requestLog(), std::vector<std::string>{"0 Login.cgi"});
}

TEST(Faults, RefuseTurnsConnectionsAwayUntilItIsCleared) {
    SimulatedDevice device(optionsFor("minimal"));
    const unsigned short port = device.port();
    RawClient open(port);
    EXPECT_EQ(open.get(kLine).status(), 200);
    device.setFault(FaultKind::refuse);
    device.setFault(FaultKind::refuse);
    EXPECT_FALSE(RawClient(port).isConnected());
    EXPECT_EQ(open.receive().end, End::reset);
    device.clearFaults();
    EXPECT_EQ(getOnce(port, kLine).status(), 200);
    device.setFault(FaultKind::refuse);
    device.clearFault(FaultKind::refuse);
    EXPECT_EQ(getOnce(port, kLine).status(), 200);
    EXPECT_EQ(device.port(), port);
}

TEST(Faults, ResetConnectionComesBeforeAnyRequest) {
    SimulatedDevice device(optionsFor("minimal"));
    device.setFault(Fault(FaultKind::resetConnection).times(1));
    RawClient client(device.port());
    EXPECT_EQ(client.receive().end, End::reset);
    EXPECT_EQ(device.counters().requests, 0U);
    EXPECT_EQ(device.counters().connections, 1U);
    EXPECT_EQ(getOnce(device.port(), kLine).status(), 200);
}

TEST(Faults, DripSendsByteByByte) {
    SimulatedDevice device(optionsFor("minimal"));
    device.setFault(Fault(FaultKind::answer, "0\nOK\n"));
    const std::string whole = getOnce(device.port(), kLine).bytes;
    device.setFault({FaultKind::drip, 1});
    const auto begin = Clock::now();
    EXPECT_EQ(getOnce(device.port(), kLine).bytes, whole);
    EXPECT_GE(since(begin).count(), static_cast<long>(whole.size()) - 1);
}

TEST(Faults, StatusStandsInForTheRequest) {
    SimulatedDevice device(optionsFor("minimal"));
    device.setFault({FaultKind::status, 503});
    const RawAnswer answer = getOnce(device.port(), "/Config.cgi?action=set&Video.I0.Hue=1");
    EXPECT_EQ(answer.head.substr(0, 32), "HTTP/1.1 503 Service Unavailable");
    EXPECT_EQ(device.value("Video.I0.Hue"), "50") << "it was not carried out";
}

TEST(Faults, RedirectNamesAPlace) {
    SimulatedDevice device(optionsFor("minimal"));
    device.setFault(Fault(FaultKind::redirect, "http://192.0.2.1/"));
    const RawAnswer answer = getOnce(device.port(), kLine);
    EXPECT_EQ(answer.status(), 302);
    EXPECT_EQ(answer.header("Location"), "http://192.0.2.1/");
}

TEST(Faults, AnAnswerCanBeReplaced) {
    SimulatedDevice device(optionsFor("minimal"));
    device.setFault(Fault(FaultKind::answer, "-14\nERROR\n").onPath("Login"));
    EXPECT_EQ(getOnce(device.port(), kLine).body, "-14\nERROR\n");
    EXPECT_EQ(getOnce(device.port(), "/Capability.cgi?action=get").body.substr(0, 2), "0\n");
    device.setFault(Fault(FaultKind::raw, "HELLO"));
    const RawAnswer raw = getOnce(device.port(), kLine);
    EXPECT_EQ(raw.bytes, "HELLO");
    EXPECT_EQ(raw.end, End::closed);
}

TEST(Faults, AStormRefusesEverybodyWithNewNonces) {
    SimulatedDevice device(optionsFor("minimal", sim::AuthKind::digestMd5));
    device.setFault(FaultKind::unauthorizedStorm);
    RawClient client(device.port());
    const RawAnswer first = client.get(kLine);
    const RawAnswer second = client.get(kLine);
    EXPECT_EQ(first.status(), 401);
    EXPECT_EQ(second.status(), 401);
    EXPECT_NE(first.header("WWW-Authenticate"), second.header("WWW-Authenticate"));
    EXPECT_EQ(device.counters().unauthorized, 2U);
}

TEST(Faults, CloseIsAnnouncedAndSilentCloseIsNot) {
    SimulatedDevice device(optionsFor("minimal"));
    for (const FaultKind kind : {FaultKind::close, FaultKind::closeSilently}) {
        device.clearFaults();
        device.setFault(kind);
        RawClient client(device.port());
        const RawAnswer answer = client.get(kLine);
        EXPECT_EQ(answer.end, End::complete);
        EXPECT_EQ(answer.header("Connection"), kind == FaultKind::close ? "close" : "keep-alive");
        EXPECT_EQ(client.receive().end, End::closed);
    }
}

TEST(Faults, AreLimitedToAPath) {
    SimulatedDevice device(optionsFor("minimal"));
    device.setFault(sim::parseFault("status=500;path=category=Video"));
    EXPECT_EQ(getOnce(device.port(), "/Config.cgi?action=get&category=Video.*").status(), 500);
    EXPECT_EQ(getOnce(device.port(), "/Config.cgi?action=get&category=Camera.*").status(), 200);
}

TEST(Faults, AreLimitedToANumberOfAnswers) {
    SimulatedDevice device(optionsFor("minimal"));
    device.setFault(sim::parseFault("status=500;count=2"));
    RawClient client(device.port());
    for (const int expected : {500, 500, 200, 200})
        EXPECT_EQ(client.get(kLine).status(), expected);
}

TEST(Faults, SpareTheQuestionForCredentials) {
    SimulatedDevice device(optionsFor("minimal", sim::AuthKind::digestMd5));
    device.setFault(sim::parseFault("status=500;count=1"));
    device.setFault(FaultKind::garbage);
    EXPECT_EQ(getOnce(device.port(), kLine).status(), 401);
    device.setAuth(sim::AuthKind::none);
    device.clearFault(FaultKind::garbage);
    EXPECT_EQ(getOnce(device.port(), kLine).status(), 500) << "it has not been used up";
}

TEST(Faults, ReplaceOneAnotherByKindAndPath) {
    SimulatedDevice device(optionsFor("minimal"));
    device.setFault(sim::parseFault("status=500"));
    device.setFault(sim::parseFault("status=503"));
    EXPECT_EQ(getOnce(device.port(), kLine).status(), 503);
    device.clearFault(FaultKind::status);
    EXPECT_EQ(getOnce(device.port(), kLine).status(), 200);
}

TEST(Faults, AddUp) {
    SimulatedDevice device(optionsFor("minimal"));
    device.setFault({FaultKind::delay, 40});
    device.setFault({FaultKind::status, 503});
    device.setFault(FaultKind::close);
    RawClient client(device.port());
    const auto begin = Clock::now();
    EXPECT_EQ(client.get(kLine).status(), 503);
    EXPECT_GE(since(begin).count(), 40);
    EXPECT_EQ(client.receive().end, End::closed);
}

TEST(Faults, OfTheAnswerLeaveTheRequestCarriedOut) {
    SimulatedDevice device(optionsFor("minimal"));
    device.setFault(FaultKind::resetBeforeBody);
    EXPECT_EQ(getOnce(device.port(), "/Config.cgi?action=set&Video.I0.Hue=1").end, End::reset);
    EXPECT_EQ(device.value("Video.I0.Hue"), "1");
}

} // namespace
} // namespace koine::test
