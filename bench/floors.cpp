#include "bench/floors.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace koine::bench {
namespace {

constexpr std::string_view kHead = "0\nOK\n";

char* put(char* at, std::string_view text) {
    std::memcpy(at, text.data(), text.size());
    return at + text.size();
}

std::string_view takeLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
    return line;
}

} // namespace

CopyFloor::CopyFloor(const CgiMap& map, std::vector<std::string> keys, std::string text)
    : map_(map), keys_(std::move(keys)), text_(std::move(text)) {
    for (const std::string& key : keys_)
        if (map_.find(key) == map_.end())
            throw std::runtime_error("the floor looks for \"" + key + "\", which is not in the map");
    if (vm_mutex_init(&lock_) != kOk)
        throw std::runtime_error("the system has no mutex to give");
}

CopyFloor::~CopyFloor() { vm_mutex_destroy(&lock_); }

void CopyFloor::run() {
    vm_mutex_lock(&lock_);
    for (const std::string& key : keys_) {
        const auto found = map_.find(key);
        benchmark::DoNotOptimize(found);
    }
    char* const copy = static_cast<char*>(std::malloc(text_.size() + 1));
    if (copy != nullptr)
        std::memcpy(copy, text_.c_str(), text_.size() + 1);
    vm_mutex_unlock(&lock_);
    benchmark::DoNotOptimize(copy);
    std::free(copy);
}

char* printInTwoPasses(const CgiMap& map) {
    std::size_t size = kHead.size() + 1;
    for (const auto& [key, value] : map)
        size += key.size() + value.size() + 2;
    char* const text = static_cast<char*>(std::malloc(size));
    if (text == nullptr)
        return nullptr;
    char* at = put(text, kHead);
    for (const auto& [key, value] : map) {
        at = put(at, key);
        *at++ = '=';
        at = put(at, value);
        *at++ = '\n';
    }
    *at = '\0';
    return text;
}

CgiMap splitIntoMap(std::string_view text) {
    takeLine(text);
    takeLine(text);
    CgiMap map;
    while (!text.empty()) {
        const std::string_view line = takeLine(text);
        const std::size_t equals = line.find('=');
        if (equals != std::string_view::npos)
            map.emplace_hint(map.end(), line.substr(0, equals), line.substr(equals + 1));
    }
    return map;
}

} // namespace koine::bench
