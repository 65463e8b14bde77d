#include "rules/column_sizes.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>

#include "rules/made_rules.h"
#include "rules/random_rules.h"

namespace korv::tools {
namespace {

/// Expects that the bytes are those of the text that the writers make. Returns how many they are.
std::uint64_t compare(const RuleBook& book, const std::vector<FoundRule>& rules) {
    ColumnSizes sizes(book);
    for (const FoundRule& rule : rules) {
        sizes.add(rule);
    }
    const ColumnBytes& bytes = sizes.bytes();
    EXPECT_EQ(bytes.csv, written(RuleFormat::csv, book, rules).size());
    EXPECT_EQ(bytes.tsv, written(RuleFormat::tsv, book, rules).size());
    EXPECT_EQ(bytes.jsonl, written(RuleFormat::jsonl, book, rules).size());
    return bytes.csv + bytes.tsv + bytes.jsonl;
}

/// Names that are spelt in other ways in each of the formats.
const std::map<Item, std::string> odd_names = {
    {1, "bread, \"sour\""}, {2, "=1+1"},   {3, "a\tb\nc\\d"}, {4, "Käse 🧀"}, {5, "\xFF\x01"},
    {6, "size=1,5"},        {7, "size=2"}, {8, ""},           {9, "'@"},
};

std::vector<Measure> all_measures() {
    std::vector<Measure> measures;
    for (std::size_t i = 0; i < number_of_measures; ++i) {
        measures.push_back(static_cast<Measure>(i));
    }
    return measures;
}

TEST(ColumnSizes, CountHeadersWithoutRules) {
    const MadeRules made({});
    const RuleBook book = made.book(100);
    EXPECT_EQ(ColumnSizes(book).bytes().csv, 212U);  // 20 names of 192 bytes, 19 commas and the line end
    EXPECT_EQ(ColumnSizes(book).bytes().jsonl, 0U);
    compare(book, {});
}

TEST(ColumnSizes, AreThoseOfTheFilesOfRandomRules) {
    std::mt19937 random(20261122);
    std::uint64_t bytes = 0;
    for (int i = 0; i < 1000 && !::testing::Test::HasFailure(); ++i) {
        const test::RuleSetShape shape = {.items = 12, .rules = 60, .most_items = 7};
        const test::RuleSet set =
            i % 2 == 0 ? test::contradictory_rules(shape, random) : test::rules_of_database(shape, random);
        const ItemNames names(i % 3 == 0 ? std::map<Item, std::string>() : odd_names);
        const RuleBook book = {set.itemsets, names, set.transactions,
                               i % 4 < 2 ? all_measures() : std::vector<Measure>()};
        bytes += compare(book, set.rules);
    }
    EXPECT_GT(bytes, 10'000'000U);
}

TEST(ColumnSizes, KnowInfiniteAndUndefinedNumbers) {
    MadeRules made(titanic_names);
    const Side women = made.any({6});
    const Side survivors = made.any({10});
    const RuleBook book = made.book(2201, all_measures());
    compare(book, {known_rule(women, survivors, {470, 711, 470}),  // an infinite conviction
                   known_rule(women, survivors, {0, 711, 0}),      // no confidence
                   known_rule(women, survivors, {2201, 2201, 2201})});
}

}  // namespace
}  // namespace korv::tools
