// Any bytes as a class file with any thresholds: the whole run ends, and its files hold as many rules as its
// counters. The files are kept in memory. The first five bytes choose the thresholds and the number of
// transactions.

#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>

#include "app/globals.h"
#include "app/lattice.h"

namespace {

constexpr std::size_t settings_bytes = 5;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

/// The name of a new, empty file in memory. It lives as long as the process.
std::string file_in_memory() {
    const int descriptor = memfd_create("korv", 0);
    require(descriptor >= 0);
    return "/proc/self/fd/" + std::to_string(descriptor);
}

void set_output_files() {
    for (std::string* const name : {&korv::S1, &korv::S2, &korv::S3, &korv::S4, &korv::S5, &korv::S6}) {
        *name = file_in_memory();
    }
}

korv::Count rule_lines(const std::string& file_name) {
    std::ifstream file(file_name);
    korv::Count lines = 0;
    for (std::string line; std::getline(file, line);) {
        lines += line.find("-->") != std::string::npos ? 1 : 0;
    }
    return lines;
}

korv::Count all_rule_lines() {
    return rule_lines(korv::S1) + rule_lines(korv::S2) + rule_lines(korv::S3) + rule_lines(korv::S4);
}

void require_equal_counts(const korv::RuleCounts& counts) {
    korv::Count written = 0;
    for (const korv::Kind kind : korv::all_kinds) {
        require(counts.column_sum(kind) == counts.total(kind));
        written += counts.total(kind);
    }
    require(written == all_rule_lines());
}

void run(const std::uint8_t* settings, const std::string& classes) {
    constexpr std::array<double, 4> confidences = {0.0, 0.5, 1.0, -1.0};
    std::istringstream input(classes);
    korv::nbrtransaction = settings[0] * 256U + settings[1];
    const korv::Count minsupp = settings[2] * 256U + settings[3];

    korv::Lattice lattice(input, confidences[settings[4] % confidences.size()], minsupp);
    lattice.Load_DCI();
    if (lattice.dci_map.empty()) {
        return;  // would end the process, with status 2
    }
    lattice.LATTICE();
    require_equal_counts(lattice.rule_counts);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const bool prepared = [] {
        std::cout.setstate(std::ios::failbit);  // progress lines would drown the fuzzer's own
        set_output_files();
        return true;
    }();
    if (prepared && size >= settings_bytes) {
        run(bytes, std::string(bytes + settings_bytes, bytes + size));
    }
    return 0;
}
