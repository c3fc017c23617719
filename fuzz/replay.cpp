// Runs a target over files and folders of kept inputs, without a fuzzer: what was found once stays found.
#include "fuzz/fuzz_device.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

int replay(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        if (!std::filesystem::is_directory(argv[i])) {
            count += replay(argv[i]);
            continue;
        }
        for (const auto& item : std::filesystem::directory_iterator(argv[i]))
            count += replay(item.path());
    }
    std::printf("%d inputs replayed\n", count);
    return count > 0 ? 0 : 1; // a replay of nothing shows nothing
}
