#include "simulator/fault_effects.h"

#include <algorithm>
#include <array>

namespace koine::sim {
namespace {

using Framing = HttpAnswer::Framing;
using Ending = Reply::Ending;

constexpr std::uint64_t kMostFloodLines = 1000000;
constexpr std::uint64_t kMostGarbage = 64U << 20U;
constexpr std::uint64_t kLongestPause = 24ULL * 60 * 60 * 1000;
constexpr std::size_t kEndlessBlock = 16U << 10U;
constexpr std::uint64_t kHalf = UINT64_MAX; // what "half of it" is written as

std::chrono::milliseconds milliseconds(std::uint64_t amount) {
    return std::chrono::milliseconds(std::min(amount, kLongestPause));
}

std::size_t bytesOf(const Fault& fault, std::size_t whole) {
    const std::uint64_t wanted = fault.amount == kHalf ? whole / 2 : fault.amount;
    return static_cast<std::size_t>(std::min<std::uint64_t>(wanted, whole));
}

/// Bytes of every value in an order that no parser likes; the same each time.
std::string garbage(std::uint64_t count) {
    std::string bytes(static_cast<std::size_t>(std::min(count, kMostGarbage)), '\0');
    unsigned int value = 13;
    for (char& byte : bytes) {
        value = (value * 167 + 41) % 257;
        byte = static_cast<char>(static_cast<unsigned char>(value));
    }
    return bytes;
}

std::string endlessLines() {
    std::string lines;
    while (lines.size() < kEndlessBlock)
        lines += "Endless.Key=and no end of it\n";
    return lines;
}

void flood(HttpAnswer& answer, std::uint64_t lines) {
    for (std::uint64_t i = 0; i < std::min(lines, kMostFloodLines); ++i)
        answer.headers.push_back("X-Flood-" + std::to_string(i) + ": a header that nobody asked for");
}

void spoilAnswer(HttpAnswer& answer, RequestFaults& faults) {
    if (faults.take(FaultKind::emptyBody))
        answer.body.clear();
    if (faults.take(FaultKind::wrongStatusLine))
        answer.statusLine = "HTTP/1.1 OK two-hundred";
    if (const auto fault = faults.take(FaultKind::headerFlood))
        flood(answer, fault->amount);
    if (const auto fault = faults.take(FaultKind::shortLength))
        answer.announcedLength = fault->amount == kHalf ? answer.body.size() / 2 : fault->amount;
    if (const auto fault = faults.take(FaultKind::chunked)) {
        answer.framing = Framing::chunked;
        answer.chunkSize = fault->amount;
    }
}

/// A body that goes on behind the answer's own.
void makeEndless(HttpAnswer& answer, Reply& reply, RequestFaults& faults) {
    if (const auto fault = faults.take(FaultKind::endlessBody)) {
        answer.framing = Framing::untilClose;
        answer.announcesClose = true;
        reply.repeated = endlessLines();
        reply.repeatedBytes = fault->amount;
        reply.ending = Ending::close;
    } else if (const auto chunks = faults.take(FaultKind::endlessChunks)) {
        answer.framing = Framing::chunked;
        answer.chunkSize = std::max<std::uint64_t>(answer.chunkSize, kEndlessBlock);
        reply.repeated = chunkText(endlessLines());
        reply.repeatedBytes = chunks->amount;
        reply.ending = Ending::close;
    }
}

void cut(Reply& reply, std::size_t length, Ending ending) {
    reply.bytes.resize(std::min(length, reply.bytes.size()));
    reply.repeatedBytes = 0;
    reply.ending = ending;
}

void cutAnswer(Reply& reply, std::size_t headLength, RequestFaults& faults) {
    const std::size_t bodyLength = reply.bytes.size() - headLength;
    if (faults.take(FaultKind::resetBeforeBody))
        cut(reply, headLength, Ending::reset);
    if (const auto fault = faults.take(FaultKind::resetWithinBody))
        cut(reply, headLength + bytesOf(*fault, bodyLength), Ending::reset);
    if (const auto fault = faults.take(FaultKind::truncatedBody))
        cut(reply, headLength + bytesOf(*fault, bodyLength), Ending::close);
    if (const auto fault = faults.take(FaultKind::resetWithinAnswer))
        cut(reply, bytesOf(*fault, reply.bytes.size()), Ending::reset);
    if (const auto fault = faults.take(FaultKind::closeWithinAnswer))
        cut(reply, bytesOf(*fault, reply.bytes.size()), Ending::close);
}

/// What concerns every answer, also those to clients that were not let in.
void applyConnectionFaults(HttpAnswer& answer, Reply& reply, RequestFaults& faults) {
    if (const auto fault = faults.take(FaultKind::delay))
        reply.delay = milliseconds(fault->amount);
    if (const auto fault = faults.take(FaultKind::drip))
        reply.drip = milliseconds(fault->amount);
    if (faults.take(FaultKind::hang))
        reply.silent = true;
    if (faults.take(FaultKind::close))
        answer.announcesClose = true;
    if (answer.announcesClose || faults.take(FaultKind::closeSilently))
        reply.ending = Ending::close;
}

/// Bytes in place of everything that the device would have sent.
std::optional<std::string> bytesInstead(RequestFaults& faults) {
    if (const auto fault = faults.take(FaultKind::raw))
        return fault->text;
    if (const auto fault = faults.take(FaultKind::garbage))
        return garbage(fault->amount);
    return std::nullopt;
}

} // namespace

std::optional<HttpAnswer> answerInstead(RequestFaults& faults) {
    HttpAnswer answer;
    if (const auto fault = faults.take(FaultKind::status)) {
        answer.status = static_cast<unsigned int>(std::clamp<std::uint64_t>(fault->amount, 100, 999));
        answer.body = "something went wrong in the device\n";
        return answer;
    }
    if (const auto fault = faults.take(FaultKind::redirect)) {
        answer.status = 302;
        answer.headers.push_back("Location: " + fault->text);
        return answer;
    }
    if (const auto fault = faults.take(FaultKind::answer)) {
        answer.body = fault->text;
        return answer;
    }
    return std::nullopt;
}

Reply spoiledReply(HttpAnswer answer, RequestFaults& faults) {
    Reply reply;
    applyConnectionFaults(answer, reply, faults);
    spoilAnswer(answer, faults);
    makeEndless(answer, reply, faults);
    const std::string head = headText(answer);
    reply.status = answer.status;
    reply.bytes = head + bodyText(answer);
    if (answer.framing == Framing::chunked && reply.repeatedBytes == 0)
        reply.bytes += "0\r\n\r\n";
    cutAnswer(reply, head.size(), faults);
    if (auto bytes = bytesInstead(faults)) {
        reply.bytes = std::move(*bytes);
        reply.status = 0;
        reply.repeatedBytes = 0;
        reply.ending = Ending::close;
    }
    return reply;
}

Reply pacedReply(HttpAnswer answer, RequestFaults& faults) {
    Reply reply;
    applyConnectionFaults(answer, reply, faults);
    reply.status = answer.status;
    reply.bytes = headText(answer) + bodyText(answer);
    return reply;
}

Reply plainReply(const HttpAnswer& answer) {
    Reply reply;
    reply.status = answer.status;
    reply.bytes = headText(answer) + bodyText(answer);
    reply.ending = answer.announcesClose ? Ending::close : Ending::keep;
    return reply;
}

} // namespace koine::sim
