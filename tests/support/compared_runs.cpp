#include "support/compared_runs.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <sstream>

#include "app/globals.h"
#include "support/files.h"
#include "support/plain_run.h"
#include "support/random_classes.h"

namespace korv::test {

namespace {

using SixFiles = std::array<std::string, 6>;

/// Keeps standard output quiet in its scope.
class QuietConsole {
public:
    QuietConsole() : console_(std::cout.rdbuf(nullptr)) {}
    ~QuietConsole() { std::cout.rdbuf(console_); }
    QuietConsole(const QuietConsole&) = delete;
    QuietConsole& operator=(const QuietConsole&) = delete;

private:
    std::streambuf* console_;
};

template <typename Run>
SixFiles files_of(const std::string& classes, const RunSettings& settings, Run run) {
    static const SixFiles names = {memory_file(), memory_file(), memory_file(),
                                   memory_file(), memory_file(), memory_file()};
    S1 = names[0];
    S2 = names[1];
    S3 = names[2];
    S4 = names[3];
    S5 = names[4];
    S6 = names[5];
    nbrtransaction = settings.transactions;
    {
        std::istringstream input(classes);
        Lattice lattice(input, settings.minconf, settings.minsupp);
        run(lattice);
    }
    SixFiles files;
    std::ranges::transform(names, files.begin(), read_file);
    return files;
}

}  // namespace

RunSettings random_settings(std::mt19937& random) {
    constexpr std::array minsupps = {0U, 1U, 2U, 5U};
    constexpr std::array minconfs = {0.0, 0.3, 0.8, 1.0};
    const auto transactions = static_cast<Count>(random() % 2 == 0 ? random() % 12 : 200 + random() % 9);
    return {minsupps.at(random() % 4), minconfs.at(random() % 4), transactions};
}

void expect_same_files(const std::map<Itemset, data>& classes, const RunSettings& settings) {
    const std::string text = class_file(classes);
    const SixFiles by_index = files_of(text, settings, [](Lattice& lattice) {
        const QuietConsole quiet;
        lattice.LATTICE();
    });
    const SixFiles by_walks = files_of(text, settings, run_by_plain_walks);
    for (std::size_t file = 0; file < by_walks.size(); ++file) {
        ASSERT_TRUE(by_index.at(file) == by_walks.at(file))
            << "file " << file + 1 << " of minsupp " << settings.minsupp << ", minconf " << settings.minconf
            << ", " << settings.transactions << " transactions and the classes\n"
            << (text.size() < 1000 ? text : "(too many to print)");
    }
}

}  // namespace korv::test
