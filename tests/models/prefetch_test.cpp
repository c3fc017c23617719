// Every model, healthy and with every kind of fault, asked over one connection and over two: the host hears
// the same, the traces are the same, and a healthy device is asked the same.

#include "bench.h"

#include "default_platform/host_settings.h"

#include <algorithm>

namespace koine::test {
namespace {

const std::vector<const char*>& hostLines() {
    static const std::vector<const char*> lines = {kStart,
                                                   "Stream.cgi?action=get",
                                                   "Onvif.cgi?action=GetStreamUri",
                                                   "Config.cgi?action=get&category=*",
                                                   "Config.cgi?action=get&category=VideoAnalytics.*",
                                                   "Capability.cgi?action=get",
                                                   kStart};
    return lines;
}

void replaceAll(std::string& text, const std::string& what, const std::string& by) {
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
        text.replace(at, what.size(), by);
}

/// What a host heard, and what the device was asked.
struct Heard {
    Lines answers;
    Lines traces;
    Lines requests; ///< sorted, without challenges
    std::uint64_t connections = 0;
};

class Traces {
public:
    explicit Traces(Lines& lines) {
        traceToCallback([](const char* line, void* to) { static_cast<Lines*>(to)->emplace_back(line); },
                        &lines);
    }
    ~Traces() { traceToNowhere(); }
    Traces(const Traces&) = delete;
    Traces& operator=(const Traces&) = delete;
};

/// The object's address is one of a kind, and so is the port of its device.
void makeComparable(std::string& trace, const Bench& bench) {
    replaceAll(trace, ":" + std::to_string(const_cast<Bench&>(bench).device().port()), ":PORT");
    const std::size_t address = trace.find("0x");
    if (address != std::string::npos)
        trace.erase(address, trace.find_first_not_of("0123456789abcdef", address + 2) - address);
}

Heard hear(const std::string& model, sim::AuthKind auth, unsigned int connections, const std::string& fault) {
    Bench bench(model, {}, auth, connections);
    if (!fault.empty())
        bench.device().setFault(sim::parseFault(fault));
    Heard heard;
    {
        const Traces traces(heard.traces);
        for (const char* line : hostLines()) {
            Answer answer = bench.ask(line);
            replaceAll(answer.text, ":" + std::to_string(bench.device().port()), ":PORT");
            heard.answers.push_back(std::to_string(answer.result) + " " + answer.text);
        }
    }
    for (std::string& trace : heard.traces)
        makeComparable(trace, bench);
    heard.connections = bench.device().counters().connections;
    for (const std::string& line : bench.takeLines())
        if (line.rfind("401 ", 0) != 0)
            heard.requests.push_back(line);
    std::sort(heard.requests.begin(), heard.requests.end());
    return heard;
}

using Prefetching = OnEveryModel;

TEST_P(Prefetching, asksAHealthyDeviceTheSame) {
    for (const sim::AuthKind auth : {sim::AuthKind::none, sim::AuthKind::basic, sim::AuthKind::digestMd5}) {
        const Heard plain = hear(model(), auth, 1, "");
        const Heard ahead = hear(model(), auth, 2, "");
        EXPECT_EQ(ahead.answers, plain.answers);
        EXPECT_EQ(ahead.traces, plain.traces);
        EXPECT_EQ(ahead.requests, plain.requests);
        EXPECT_EQ(plain.connections, 1U);
        EXPECT_LE(ahead.connections, 2U) << "and the second one for the first fill only";
    }
}

// Faults that last, so that it does not matter who meets them.
TEST_P(Prefetching, showsTheFaultsOfADeviceAsTheyAre) {
    setRequestTimeLimit(2000);
    for (const char* fault :
         {"status=500", "status=404", "garbage", "empty-body", "answer=-7\\nERROR: Busy.\\n", "answer=<html>",
          "truncated-body", "reset-within-body", "wrong-status-line", "401-storm", "close"})
        for (const char* path : {"Login", "apab", "category=Media", "category=Video.",
                                 "category=Notification", "category=VideoAnalytics"}) {
            const std::string text = std::string(fault) + ";path=" + path;
            SCOPED_TRACE(text);
            const Heard plain = hear(model(), sim::AuthKind::digestMd5, 1, text);
            const Heard ahead = hear(model(), sim::AuthKind::digestMd5, 2, text);
            EXPECT_EQ(ahead.answers, plain.answers);
            EXPECT_EQ(ahead.traces, plain.traces);
            EXPECT_TRUE(std::includes(ahead.requests.begin(), ahead.requests.end(), plain.requests.begin(),
                                      plain.requests.end()));
        }
    setRequestTimeLimit(0);
}

INSTANTIATE_TEST_SUITE_P(Models, Prefetching, testing::ValuesIn(sim::modelNames()), modelOf);

} // namespace
} // namespace koine::test
