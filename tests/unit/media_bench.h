/// @file
/// A media map that a test fills and has converted.
#pragma once

#include "bench_request.h"
#include "observed.h"

#include <gtest/gtest.h>

#include <string>

namespace koine::test {

class MediaBench : public ::testing::Test {
protected:
    static std::string p(int number, const std::string& suffix) {
        return "Media.Profiles.Profile" + std::to_string(number) + suffix;
    }
    static std::string v(int number, const std::string& suffix) {
        return p(number, ".VideoEncoderConfiguration" + suffix);
    }

    /// Profiles that have nothing but their token.
    void profiles(int count) {
        media["Media.Profiles.Count"] = std::to_string(count);
        for (int number = 1; number <= count; ++number)
            media[v(number, ".token")] = "E" + std::to_string(number);
    }

    void convert() { EXPECT_EQ(request.BaseRequest::convertCgiMedia(kUid, &media, &login), 1); }

    std::string at(const std::string& key) const {
        const auto found = media.find(key);
        return found == media.end() ? "(absent)" : found->second;
    }

    BenchRequest request;
    StreamIDClient& client = request.client();
    CgiMap media;
    CgiMap login{{"Product-Name", "Camera"}};
};

} // namespace koine::test
