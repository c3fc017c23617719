#include "raw_client.h"
#include "test_device.h"

#include <gtest/gtest.h>

namespace koine::test {
namespace {

using sim::Fault;
using sim::FaultKind;
using sim::SimulatedDevice;

/// A device, and what it answers while nothing is wrong with it.
class BrokenAnswers : public testing::Test {
protected:
    RawAnswer spoiled(const Fault& fault) {
        device_.clearFaults();
        device_.setFault(fault);
        return getOnce(device_.port(), kLine);
    }

    SimulatedDevice device_{optionsFor("minimal")};
    const RawAnswer whole_ = getOnce(device_.port(), kLine);
};

TEST_F(BrokenAnswers, ResetBeforeTheBody) {
    const RawAnswer answer = spoiled(FaultKind::resetBeforeBody);
    EXPECT_EQ(answer.end, End::reset);
    EXPECT_EQ(answer.head, whole_.head);
    EXPECT_EQ(answer.body, "");
}

TEST_F(BrokenAnswers, ResetWithinTheBody) {
    for (const std::size_t bytes : {1U, 7U, 60U}) {
        const RawAnswer answer = spoiled({FaultKind::resetWithinBody, bytes});
        EXPECT_EQ(answer.end, End::reset);
        EXPECT_EQ(answer.body, whole_.body.substr(0, bytes)) << bytes;
    }
}

TEST_F(BrokenAnswers, CutAfterEveryByteInTurn) {
    for (std::size_t bytes = 0; bytes < whole_.bytes.size(); ++bytes) {
        const RawAnswer reset = spoiled({FaultKind::resetWithinAnswer, bytes});
        ASSERT_EQ(reset.end, End::reset) << bytes;
        ASSERT_EQ(reset.bytes, whole_.bytes.substr(0, bytes));
        const RawAnswer closed = spoiled({FaultKind::closeWithinAnswer, bytes});
        ASSERT_EQ(closed.end, End::closed) << bytes;
        ASSERT_EQ(closed.bytes, whole_.bytes.substr(0, bytes));
    }
}

TEST_F(BrokenAnswers, AResetComesBehindALargeBodyToo) {
    device_.setFault(Fault(FaultKind::answer, std::string(3000000, 'x')));
    device_.setFault({FaultKind::resetWithinBody, 2000000});
    RawClient client(device_.port());
    client.send("GET /Login.cgi HTTP/1.1\r\n\r\n");
    const RawAnswer answer = client.receiveAll();
    EXPECT_EQ(answer.end, End::reset);
    EXPECT_EQ(answer.body.size(), 2000000U);
}

TEST_F(BrokenAnswers, TruncatedBodyAnnouncesMoreThanItSends) {
    const RawAnswer half = spoiled(FaultKind::truncatedBody);
    EXPECT_EQ(half.end, End::closed);
    EXPECT_EQ(half.header("Content-Length"), std::to_string(whole_.body.size()));
    EXPECT_EQ(half.body, whole_.body.substr(0, whole_.body.size() / 2));
    EXPECT_EQ(spoiled({FaultKind::truncatedBody, 3}).body, "0\nO");
}

TEST_F(BrokenAnswers, ShortLengthSendsMoreThanItAnnounces) {
    device_.setFault({FaultKind::shortLength, 5});
    RawClient client(device_.port());
    client.send("GET /Login.cgi HTTP/1.1\r\nConnection: close\r\n\r\n");
    const RawAnswer answer = client.receiveAll();
    EXPECT_EQ(answer.header("Content-Length"), "5");
    EXPECT_EQ(answer.body, whole_.body);
}

TEST_F(BrokenAnswers, EmptyBodyIsAnAnswer) {
    const RawAnswer answer = spoiled(FaultKind::emptyBody);
    EXPECT_EQ(answer.status(), 200);
    EXPECT_EQ(answer.header("Content-Length"), "0");
    EXPECT_EQ(answer.body, "");
}

TEST_F(BrokenAnswers, ChunkedIsRight) {
    device_.setFault({FaultKind::chunked, 4});
    device_.setFault(Fault(FaultKind::answer, "0\nOK\na=1\n"));
    device_.setFault(FaultKind::close);
    const RawAnswer answer = getOnce(device_.port(), kLine);
    EXPECT_EQ(answer.header("Transfer-Encoding"), "chunked");
    EXPECT_EQ(answer.header("Content-Length"), "");
    EXPECT_EQ(answer.body, "4\r\n0\nOK\r\n4\r\n\na=1\r\n1\r\n\n\r\n0\r\n\r\n");
}

TEST_F(BrokenAnswers, EndlessBodiesEndAtTheirCapOnly) {
    const std::size_t cap = 300000;
    const RawAnswer body = spoiled({FaultKind::endlessBody, cap});
    EXPECT_EQ(body.end, End::closed);
    EXPECT_EQ(body.header("Content-Length"), "");
    EXPECT_EQ(body.body.size(), whole_.body.size() + cap);
    const RawAnswer chunks = spoiled({FaultKind::endlessChunks, cap});
    EXPECT_EQ(chunks.header("Transfer-Encoding"), "chunked");
    EXPECT_GT(chunks.body.size(), cap);
    EXPECT_EQ(chunks.body.find("\r\n0\r\n\r\n"), std::string::npos);
}

TEST_F(BrokenAnswers, AnEndlessTrickle) {
    device_.setFault(FaultKind::endlessChunks);
    device_.setFault({FaultKind::drip, 0});
    RawClient client(device_.port());
    client.send("GET /Login.cgi HTTP/1.1\r\n\r\n");
    const RawAnswer answer = client.receiveAll(std::chrono::seconds(5), 20000);
    EXPECT_GE(answer.bytes.size(), 20000U);
    EXPECT_NE(answer.body.find("\r\nEndless.Key=and no end of it\nEndless.Key="), std::string::npos);
}

TEST_F(BrokenAnswers, GarbageIsNoHttp) {
    const RawAnswer answer = spoiled({FaultKind::garbage, 300});
    EXPECT_EQ(answer.bytes.size(), 300U);
    EXPECT_EQ(answer.status(), 0);
    EXPECT_EQ(answer.end, End::closed);
    EXPECT_EQ(spoiled({FaultKind::garbage, 300}).bytes, answer.bytes) << "the same each time";
}

TEST_F(BrokenAnswers, WrongStatusLineCannotBeRead) {
    const RawAnswer answer = spoiled(FaultKind::wrongStatusLine);
    EXPECT_EQ(answer.status(), 0);
    EXPECT_EQ(answer.body, whole_.body);
}

TEST_F(BrokenAnswers, HeaderFloodSendsManyHeaders) {
    const RawAnswer answer = spoiled({FaultKind::headerFlood, 2000});
    EXPECT_NE(answer.header("X-Flood-1999"), "");
    EXPECT_EQ(answer.header("X-Flood-2000"), "");
    EXPECT_EQ(answer.body, whole_.body);
}

} // namespace
} // namespace koine::test
