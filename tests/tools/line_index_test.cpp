#include "mine/line_index.h"

#include <gtest/gtest.h>

#include "tools/random_database.h"

namespace korv::tools {
namespace {

std::vector<Rank> ranks_of(const LineIndex& index, Transaction line) {
    return {index[line].begin(), index[line].end()};
}

TEST(LineIndex, ListsTheRanksOfEachLine) {
    // 11 has rank 0, 12 rank 1 and 10 rank 2.
    const Database database = database_of({0b101, 0b000, 0b011, 0b101});
    const LineIndex index(ranked_items(database, 1, 1));
    EXPECT_EQ(ranks_of(index, 0), (std::vector<Rank>{1, 2}));
    EXPECT_EQ(ranks_of(index, 1), std::vector<Rank>{});
    EXPECT_EQ(ranks_of(index, 2), (std::vector<Rank>{0, 2}));
    EXPECT_EQ(ranks_of(index, 3), (std::vector<Rank>{1, 2}));
}

TEST(LineIndex, VisitsLinesInTheirOrder) {
    Transactions transactions;
    std::vector<Transaction> wanted;
    for (Set i = 0; i < 100; ++i) {
        transactions.push_back(Set{1} << i % 7);
        if (i % 3 != 1) {
            wanted.push_back(i);
        }
    }
    const Database database = database_of(transactions);
    const LineIndex index(ranked_items(database, 1, 1));
    std::vector<Transaction> visited;
    index.for_each(wanted, [&](Transaction line, std::span<const Rank> ranks) {
        visited.push_back(line);
        EXPECT_EQ(std::vector(ranks.begin(), ranks.end()), ranks_of(index, line));
    });
    EXPECT_EQ(visited, wanted);
}

}  // namespace
}  // namespace korv::tools
