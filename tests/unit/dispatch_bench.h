/// @file
/// A request object for tests of the dispatch: its steps succeed, its device answers everything.
#pragma once

#include "observed.h"
#include "tests/support/failing_allocations.h"
#include "tests/support/test_request.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace koine::test {

inline const std::string kDeviceText = "0\nOK\nFrom=device\n";

/// A stream client whose parsing is the test's.
class ScriptedSetup : public StreamIDClient {
public:
    int ParseStreamInit() override {
        platform().note("ParseStreamInit(" + getInitStream() + ")");
        return parsed;
    }
    int parsed = 1;
};

class DispatchBench : public ::testing::Test {
protected:
    DispatchBench() {
        request.connect();
        request.set_strm_setting_channel(3);
        setup = boost::make_shared<ScriptedSetup>();
        request.get_streamid_client(kUser) = setup;
        request.steps.HandleInit = [](unsigned int) { return 1; };
        request.steps.checkCgiParameter = [](unsigned int, char*) { return 1; };
        request.steps.recoveryUrl = [](unsigned int, char*, char**) { return 1; };
        request.steps.handleParameter = [](unsigned int, char*, char**) { return 1; };
        request.steps.handleConfigSet = [](unsigned int, char*) { return 1; };
        request.steps.requestCgi = [](unsigned int, char*, char** answer, auto, auto) {
            *answer = mallocedText(kDeviceText);
            return 1;
        };
        platform().forget();
    }

    /// The steps of the dispatch that were called, in order: the transcript without locks, traces, clients
    /// and the call itself.
    static std::vector<std::string> stepsTaken() {
        std::vector<std::string> taken;
        for (const std::string& text : platform().transcript())
            if (text != "lock" && text != "unlock" && text.compare(0, 6, "trace ") != 0 &&
                text.compare(0, 15, "requestHttpStr(") != 0)
                taken.push_back(text);
        return taken;
    }

    /// The line that every call begins with.
    std::string entered(const std::string& line) const {
        return "#3627 BaseRequest::requestHttpStr: 0, uid=7:3, this=" + shortAddress(&request) +
               ", pchUrl=" + line + ". \n";
    }

    /// A step that leaves a text behind and gives a result.
    static Steps::ByLineAnswered says(int result, const std::string& text) {
        return [result, text](unsigned int, char*, char** answer) {
            *answer = mallocedText(text);
            return result;
        };
    }

    TestRequest request;
    boost::shared_ptr<ScriptedSetup> setup;
};

} // namespace koine::test
