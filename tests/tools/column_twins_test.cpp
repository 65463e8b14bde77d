#include "mine/column_twins.h"

#include <gtest/gtest.h>

namespace korv::tools {
namespace {

using Columns = std::vector<std::vector<std::vector<Transaction>>>;
using Groups = std::vector<std::vector<std::size_t>>;

/// Of columns, each with the transactions of its items.
Groups twins(const Columns& columns) {
    std::vector<Database::ItemColumn> items;
    std::vector<std::size_t> ends;
    for (const auto& column : columns) {
        for (const std::vector<Transaction>& transactions : column) {
            items.push_back({static_cast<Item>(items.size() + 1), transactions});
        }
        ends.push_back(items.size());
    }
    return twin_columns(items, ends);
}

TEST(TwinColumns, HaveTheSameTransactionsInAnyOrder) {
    EXPECT_EQ(twins({{{0, 2}, {1}}, {{0}, {1, 2}}, {{1}, {0, 2}}}), (Groups{{0, 2}}));
}

TEST(TwinColumns, AreGroupedInTheOrderOfTheFirst) {
    EXPECT_EQ(twins({{{0}}, {{1}}, {{2}}, {{1}}, {{0}}, {{1}}}), (Groups{{0, 4}, {1, 3, 5}}));
}

TEST(TwinColumns, DifferWhereOneHasAnItemMore) {
    EXPECT_EQ(twins({{{0}, {1}}, {{0}}}), Groups{});
}

TEST(TwinColumns, DifferWhereOnlyTheFirstTheSumAndTheNumberOfTransactionsAgree) {
    EXPECT_EQ(twins({{{0, 1, 4}}, {{0, 2, 3}}}), Groups{});
}

TEST(TwinColumns, HaveItems) {
    EXPECT_EQ(twins({{}, {{0}}, {}}), Groups{});
}

TEST(TwinColumns, MayHaveItemsInTheSameTransactions) {
    EXPECT_EQ(twins({{{0, 1}, {0, 1}, {1}}, {{1}, {0, 1}, {0, 1}}}), (Groups{{0, 1}}));
}

}  // namespace
}  // namespace korv::tools
