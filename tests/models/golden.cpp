#include "golden.h"

#include "bench.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace koine::test {
namespace {

constexpr const char* kHowToRewrite =
    "When the new answer is the right one, run model_tests with KOINE_UPDATE_GOLDEN=1 and read the "
    "difference before it is committed (tests/models/README.md).";

std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream content;
    content << stream.rdbuf();
    return content.str();
}

/// What the second list has more than the first, each line once for every time.
std::string linesMissingFrom(const Lines& first, Lines second, const char* sign) {
    for (const std::string& line : first)
        if (const auto found = std::find(second.begin(), second.end(), line); found != second.end())
            second.erase(found);
    std::string text;
    for (const std::string& line : second)
        text.append(sign).append(line).append("\n");
    return text;
}

void rewrite(const std::filesystem::path& file, const std::string& text) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary | std::ios::trunc) << text;
    ASSERT_EQ(contentOf(file), text) << file << " could not be written";
}

} // namespace

bool isUpdatingGolden() {
    const char* wanted = std::getenv("KOINE_UPDATE_GOLDEN"); // NOLINT(concurrency-mt-unsafe): nobody sets it
    return wanted != nullptr && std::string(wanted) == "1";
}

void expectGolden(const std::string& model, const std::string& what, const std::string& text) {
    const std::filesystem::path file = std::filesystem::path(KOINE_GOLDEN_DIR) / model / (what + ".txt");
    const std::string name = "golden/" + model + "/" + what + ".txt";
    if (isUpdatingGolden()) {
        rewrite(file, text);
        return;
    }
    if (!std::filesystem::exists(file)) {
        ADD_FAILURE() << name << " is missing: nobody has read yet what the library makes of this model.\n"
                      << kHowToRewrite << "\nThe answer now:\n"
                      << text;
        return;
    }
    const std::string golden = contentOf(file);
    if (golden == text)
        return;
    const std::string lost = linesMissingFrom(linesOf(text), linesOf(golden), "-");
    const std::string added = linesMissingFrom(linesOf(golden), linesOf(text), "+");
    ADD_FAILURE() << name << " differs (- golden, + now):\n"
                  << (lost.empty() && added.empty() ? "only in the order of lines or in line ends\n"
                                                    : lost + added)
                  << kHowToRewrite;
}

} // namespace koine::test
