/// @file
/// A user whose stream is to be fitted to the first of two media profiles.
#pragma once

#include "bench_request.h"
#include "observed.h"

#include <gtest/gtest.h>

#include <string>

namespace koine::test {

inline const std::string kLineStart = "http://camera:80/Config.cgi?action=set";

class ProfileSync : public ::testing::Test {
protected:
    ProfileSync() {
        request.useProfiles(2);
        client.set_profile_id(1);
        request.dispatch = [this](const BenchRequest::Line&, char** answer) {
            flagAtDispatch = client.getHaveSyncProfileToken();
            *answer = mallocedText("0\nOK\n");
            return 1;
        };
        forgetTraces();
    }

    int sync() { return request.syncProfileToken_1(kUid); }

    /// The settings that were sent, as they follow the start of the set line; "nothing sent" otherwise.
    std::string sent() {
        if (request.lines.empty())
            return "nothing sent";
        EXPECT_EQ(request.lines.size(), 1U);
        const std::string& url = request.lines.front().url;
        EXPECT_EQ(url.substr(0, kLineStart.size()), kLineStart);
        return url.substr(kLineStart.size());
    }

    static std::string piece(const std::string& suffix, int profile = 1) {
        return "&Media.Profiles.Profile" + std::to_string(profile) + ".VideoEncoderConfiguration." + suffix;
    }
    static std::string sizePiece(const std::string& width, const std::string& height) {
        return piece("Resolution.Width=" + width) + piece("Resolution.Height=" + height);
    }

    int flagAtDispatch = -1;
    BenchRequest request;
    StreamIDClient& client = request.client();
};

} // namespace koine::test
