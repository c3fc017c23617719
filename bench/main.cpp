// koine_bench: measures, and prints the rows as JSON. `./run bench` makes a table of them.

#include "bench/groups.h"

#include <benchmark/benchmark.h>

#include <array>
#include <exception>
#include <iostream>
#include <malloc.h>
#include <string_view>

namespace koine::bench {
namespace {

struct Group {
    std::string_view name;
    Rows (*measure)();
};

constexpr std::array kGroups = {
    Group{"cached", measureCachedAnswers},     Group{"set lines", measureSetLines},
    Group{"first stream", measureFirstStream}, Group{"wire", measureWire},
    Group{"warm start", measureWarmStart},     Group{"memory", measureMemory},
    Group{"many devices", measureManyDevices}, Group{"growth", measureGrowth},
};

/// Google Benchmark takes its settings from a command line only.
void chooseInterleaving() {
    std::array<char, 12> program = {"koine_bench"};
    std::string interleave = "--benchmark_enable_random_interleaving=true";
    std::array<char*, 2> arguments = {program.data(), interleave.data()};
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
}

/// Memory that was given back stays with the process: otherwise calls and floors alike would now and then pay
/// for pages that the system takes away and brings back.
void keepMemory() {
    constexpr int kNever = 1 << 30;
    mallopt(M_TRIM_THRESHOLD, kNever);
    mallopt(M_MMAP_THRESHOLD, kNever);
}

int measureAll(std::string_view filter) {
    chooseInterleaving();
    keepMemory();
    Rows all;
    for (const Group& group : kGroups) {
        if (group.name.find(filter) == std::string_view::npos)
            continue;
        std::cerr << "measuring: " << group.name << " ..." << std::endl;
        for (Row& row : group.measure())
            all.push_back(std::move(row));
    }
    if (all.empty()) {
        std::cerr << "koine_bench: no group is named like \"" << filter << "\"; there are:";
        for (const Group& group : kGroups)
            std::cerr << ' ' << group.name;
        std::cerr << '\n';
        return 2;
    }
    std::cout << asJson(all).dump(2) << '\n';
    return 0;
}

} // namespace
} // namespace koine::bench

/// `koine_bench [GROUP]`: all groups, or those with this text in their names.
int main(int argc, char** argv) {
    try {
        return koine::bench::measureAll(argc > 1 ? argv[1] : "");
    } catch (const std::exception& error) {
        std::cerr << "koine_bench: " << error.what() << '\n';
        return 1;
    }
}
