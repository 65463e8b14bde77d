#include "rules/size_count.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <sstream>

#include "app/lattice.h"
#include "engine/difference_supports.h"
#include "engine/lattice_building.h"
#include "engine/pairs.h"
#include "engine/rule_makers.h"
#include "io/class_loading.h"
#include "io/lattice_file.h"
#include "io/rule_count_file.h"
#include "io/rule_files.h"
#include "support/files.h"
#include "support/random_classes.h"

namespace korv::tools {

namespace {

TEST(CountingSink, AddsUpBytes) {
    std::uint64_t bytes = 0;
    const TextSink sink = counting_sink(bytes);
    sink("bread");
    sink("");
    sink("Käse");
    EXPECT_EQ(bytes, 10U);
}

/// The four rule files, written and measured.
class RealFiles final : public RuleSink {
public:
    RealFiles() { files_.write_headers(); }

    void begin(const Pair& pair) override { files_.begin(pair); }
    void add(const Rule& rule) override { files_.add(rule); }

    std::vector<std::uint64_t> sizes() {
        files_.flush();
        std::vector<std::uint64_t> sizes;
        for (const std::string& name : names_) {
            sizes.push_back(test::read_file(name).size());
        }
        return sizes;
    }

private:
    std::array<std::string, 4> names_ = {test::memory_file(), test::memory_file(), test::memory_file(),
                                         test::memory_file()};
    std::array<Output_Manager, 4> out_ = {Output_Manager(names_[0]), Output_Manager(names_[1]),
                                          Output_Manager(names_[2]), Output_Manager(names_[3])};
    RuleFiles files_{{out_[0], out_[1]}, {out_[2], out_[3]}};
};

std::vector<std::uint64_t> sizes(const SizeCount& count) {
    return {count.bytes(RuleFile::intra_exact), count.bytes(RuleFile::intra_approximate),
            count.bytes(RuleFile::inter_exact), count.bytes(RuleFile::inter_approximate)};
}

/// Gives everything to two sinks.
class Both final : public RuleSink {
public:
    Both(RuleSink& one, RuleSink& other) : one_(one), other_(other) {}

    void begin(const Pair& pair) override {
        one_.begin(pair);
        other_.begin(pair);
    }
    void add(const Rule& rule) override {
        one_.add(rule);
        other_.add(rule);
    }

private:
    RuleSink& one_;
    RuleSink& other_;
};

std::uint64_t size_of_counts(const RuleCounts& counts) {
    std::ostringstream text;
    write_rule_counts(counts, text);
    return text.str().size();
}

/// Expects that the rules of classes are counted as they are written. Returns how many there are.
std::size_t compare(const ClassMap& classes, const RuleSettings& settings) {
    LatticeEntries lattice = lattice_entries(classes);
    link_successors(lattice);
    DifferenceSupports supports(lattice);
    RealFiles files;
    RuleCounts counts;
    CountedRules counted(counts, files);
    SizeCount size;
    Both both(counted, size);
    RuleMaker maker(settings, both);
    for_each_pair(classes, lattice, supports, maker);

    EXPECT_EQ(sizes(size), files.sizes());
    EXPECT_EQ(size.counts().counters, counts.counters);
    EXPECT_EQ(size.bytes_of_counts(), size_of_counts(counts));

    const std::string lattice_name = test::memory_file();
    Output_Manager lattice_file(lattice_name);
    write_lattice(lattice, lattice_file);
    lattice_file.flush();
    EXPECT_EQ(bytes_of_lattice_file(lattice), test::read_file(lattice_name).size());
    return counts.exact_total + counts.appro_total + counts.apped_total;
}

TEST(SizeCount, IsThatOfTheHeadersWithoutRules) {
    RealFiles files;
    EXPECT_EQ(sizes(SizeCount()), files.sizes());
    EXPECT_EQ(SizeCount().bytes(), 550U);  // 137 + 138 + 137 + 138
}

TEST(SizeCount, IsThatOfTheFilesOfRandomClasses) {
    std::mt19937 random(20250117);
    std::size_t rules = 0;
    for (int i = 0; i < 2000 && !::testing::Test::HasFailure(); ++i) {
        const Item items = 3 + static_cast<Item>(random() % 5);
        const auto transactions = test::random_transactions(items, 60, random);
        const ClassMap classes = test::some_classes(transactions, items, 12, random);
        rules += compare(classes, {.minsupp = static_cast<Count>(random() % 4),
                                   .minconf = static_cast<double>(random() % 10) / 10,
                                   .transactions = static_cast<Count>(transactions.size())});
    }
    EXPECT_GT(rules, 40'000U);
}

TEST(SizeCount, IsThatOfTheFilesOfContradictoryClasses) {
    std::mt19937 random(20250118);
    std::size_t rules = 0;
    for (int i = 0; i < 2000 && !::testing::Test::HasFailure(); ++i) {
        const ClassMap classes = test::contradictory_classes(random);
        if (classes.empty()) {
            continue;
        }
        rules += compare(classes, {.minsupp = 0, .minconf = 0, .transactions = 10});
    }
    EXPECT_GT(rules, 10'000U);
}

TEST(SizeCount, IsThatOfTheFilesOfTheSample) {
    std::istringstream file(test::read_file(EXAMPLES "/titanic/titanic.classes"));
    const ClassMap classes = read_classes(file);
    EXPECT_GT(compare(classes, {.minsupp = 23, .minconf = 0.5, .transactions = 2201}), 1000U);
}

TEST(SizeCount, KnowsTheSizeOfEveryConfidence) {
    const Itemset one = {1};
    const Itemset many = {2, 30, 4'000'000'000};
    const Pair pair = {PairKind::successor, {}, one, many, 80, 50, {40, 40}, true};
    RealFiles files;
    SizeCount size;
    Both both(files, size);
    both.begin(pair);
    const auto add = [&both](double confidence) {
        both.add({Form::R131, Form::R131, Kind::appro, known(Count{7}), known(confidence)});
    };
    for (Count denominator = 1; denominator <= 700; ++denominator) {
        for (Count numerator = 0; numerator <= denominator + 2; ++numerator) {
            add(static_cast<double>(numerator) / denominator);
        }
    }
    // Halves of the last digit that is printed, and what is beside them.
    for (std::uint32_t i = 0; i < 20'000; ++i) {
        const double half = (0.5 + i * 50 + i % 47) / 1e6;
        add(half);
        add(std::nextafter(half, 0.0));
        add(std::nextafter(half, 1.0));
    }
    for (const double each :
         {1e-5, 1e-4, 0.000123456789, 123456.5, 1234567.0, -0.5, 0.99999949, 0.9999995,
          std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
          std::numeric_limits<double>::quiet_NaN()}) {
        add(each);
        both.add({Form::R412, Form::R412, Kind::apped, between(Count{0}, Count{4'000'000'000}),
                  between(each, 1 - each)});
    }
    EXPECT_EQ(sizes(size), files.sizes());
}

}  // namespace

}  // namespace korv::tools
