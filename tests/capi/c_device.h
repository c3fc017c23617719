/// @file
/// Owners for what the C interface gives.
#pragma once

#include "koine/koine.h"

#include <memory>
#include <string>

namespace koine::test {

struct Closer {
    void operator()(koine_device* device) const { koine_close(device); }
};
using CDevice = std::unique_ptr<koine_device, Closer>;

/// Takes a text over; "(null)" for none.
inline std::string taken(char* text) {
    std::string result = text == nullptr ? "(null)" : text;
    koine_free(text);
    return result;
}

inline CDevice opened(const std::string& url, const koine_options* options = nullptr) {
    koine_device* device = nullptr;
    koine_open(url.c_str(), options, &device, nullptr);
    return CDevice(device);
}

struct CReply {
    int result;
    std::string text;
};

inline CReply asked(const CDevice& device, const char* line, unsigned int uid = 1) {
    char* text = nullptr;
    const int result = koine_request(device.get(), uid, line, &text);
    return {result, taken(text)};
}

} // namespace koine::test
