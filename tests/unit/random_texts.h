/// @file
/// What the readers of texts are tried with.
#pragma once

#include <cmath>
#include <random>
#include <string>
#include <utility>

namespace koine::test {

inline constexpr int kRandomRounds = 20000;

/// Random texts of a few characters that numbers and items are made of, the same in every run.
class RandomTexts {
public:
    explicit RandomTexts(std::string alphabet) : alphabet_(std::move(alphabet)) {}

    std::string next(std::size_t longest) {
        std::string text(random_() % (longest + 1), ' ');
        for (char& c : text)
            c = alphabet_[random_() % alphabet_.size()];
        return text;
    }

private:
    std::string alphabet_;
    std::mt19937 random_{20240229};
};

/// The same number, or no number both.
inline bool same(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

inline constexpr const char* kWholeNumbers[] = {"",
                                                "0",
                                                "7",
                                                "-7",
                                                "+7",
                                                " 12",
                                                "\t\n\v\f\r12",
                                                "12abc",
                                                "abc",
                                                "-",
                                                "+",
                                                "--1",
                                                "+-1",
                                                "0x10",
                                                "010",
                                                "1 2",
                                                "12.9",
                                                "2147483647",
                                                "2147483648",
                                                "-2147483648",
                                                "-2147483649",
                                                "4294967296",
                                                "9223372036854775807",
                                                "9223372036854775808",
                                                "-9223372036854775808",
                                                "-9223372036854775809",
                                                "99999999999999999999999",
                                                "-99999999999999999999999",
                                                "00000000000000000000000000012",
                                                "9223372036854775806",
                                                "-9223372036854775807",
                                                "9223372036854775800",
                                                "9000000000000000000",
                                                "-9000000000000000001",
                                                "-8500000000000000009"};

} // namespace koine::test
