// Whole runs by index and by plain walks give the same bytes, whatever the classes.

#include "support/plain_run.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iostream>
#include <sstream>

#include "app/globals.h"
#include "support/files.h"
#include "support/random_classes.h"

namespace korv {
namespace {

using Files = std::array<std::string, 6>;

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

/// Thresholds and number of transactions of a run.
struct Settings {
    Count minsupp;
    double minconf;
    Count transactions;
};

template <typename Run>
Files files_of(const std::string& classes, const Settings& settings, Run run) {
    static const Files names = {test::memory_file(), test::memory_file(), test::memory_file(),
                                test::memory_file(), test::memory_file(), test::memory_file()};
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
    Files files;
    std::ranges::transform(names, files.begin(), test::read_file);
    return files;
}

Settings random_settings(std::mt19937& random) {
    constexpr std::array minsupps = {0U, 1U, 2U, 5U};
    constexpr std::array minconfs = {0.0, 0.3, 0.8, 1.0};
    // Fewer than some supports, or more than all.
    const auto transactions = static_cast<Count>(random() % 2 == 0 ? random() % 12 : 200 + random() % 9);
    return {minsupps.at(random() % 4), minconfs.at(random() % 4), transactions};
}

void expect_same_files(const std::map<Itemset, data>& classes, std::mt19937& random) {
    if (classes.empty()) {
        return;
    }
    const std::string text = test::class_file(classes);
    const Settings settings = random_settings(random);
    const Files by_index = files_of(text, settings, [](Lattice& lattice) {
        const QuietConsole quiet;
        lattice.LATTICE();
    });
    const Files by_walks = files_of(text, settings, test::run_by_plain_walks);
    for (std::size_t file = 0; file < by_walks.size(); ++file) {
        ASSERT_TRUE(by_index.at(file) == by_walks.at(file))
            << "file " << file + 1 << " of minsupp " << settings.minsupp << ", minconf " << settings.minconf
            << ", " << settings.transactions << " transactions and the classes\n"
            << (text.size() < 1000 ? text : "(too many to print)");
    }
}

TEST(PlainRun, GivesTheSameFilesForContradictoryClasses) {
    constexpr std::uint32_t seed = 1;
    std::mt19937 random(seed);
    for (int round = 0; round < 10'000; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        ASSERT_NO_FATAL_FAILURE(expect_same_files(test::contradictory_classes(random), random));
    }
}

TEST(PlainRun, GivesTheSameFilesForSomeClassesOfADatabase) {
    constexpr std::uint32_t seed = 2;
    std::mt19937 random(seed);
    for (int round = 0; round < 5'000; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        const std::vector<Itemset> transactions = test::random_transactions(7, 12, random);
        ASSERT_NO_FATAL_FAILURE(expect_same_files(test::some_classes(transactions, 7, 10, random), random));
    }
}

TEST(PlainRun, GivesTheSameFilesForManyClasses) {
    constexpr std::uint32_t seed = 4;
    std::mt19937 random(seed);
    std::size_t most = 0;
    for (int round = 0; round < 5; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        const std::vector<Itemset> transactions = test::random_transactions(14, 200, random);
        const auto classes = test::some_classes(transactions, 14, 2000, random);
        most = std::max(most, classes.size());
        ASSERT_NO_FATAL_FAILURE(expect_same_files(classes, random));
    }
    EXPECT_GT(most, 512U);  // many words of a bitmap
}

TEST(PlainRun, GivesTheSameFilesForClassesOfManyItems) {
    std::mt19937 random(5);
    ASSERT_NO_FATAL_FAILURE(expect_same_files(test::sparse_classes(4500, 700, random), random));
}

}  // namespace
}  // namespace korv
