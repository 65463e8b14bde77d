#include "mine_mpi/sparse_part.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace korv::tools {
namespace {

/// So many ranks, each in one transaction. The first one is in the line that is here, and the others are in
/// lines of other processes.
PartItems items_of_others(Rank ranks) {
    static constexpr std::array<Transaction, 1> line = {0};
    RankedItems ranked;
    ranked.frequent = ranks;
    ranked.lines = 1;
    for (Rank rank = 0; rank < ranks; ++rank) {
        ranked.items.push_back({rank + 1});
        ranked.transactions.emplace_back();
        ranked.supports.push_back(1);
    }
    ranked.transactions.front() = line;
    return {.ranked = ranked, .order = RankOrder(ranked.items), .lines = ranks, .occurrences = ranks};
}

TEST(SparsePart, ExpectsOfClosuresWhatPartnersLeaveOpenOrAllRanks) {
    PartItems items = items_of_others(130);
    const SparsePart with_all_partners(items, 1);
    EXPECT_EQ(with_all_partners.words_of_closure(8), 1U);
    EXPECT_EQ(with_all_partners.words_of_closure(9), 3U);
    items.occurrences = 1;
    SparsePart with_too_many(items, 1);
    EXPECT_EQ(with_too_many.words_of_closure(1), 1U);
    with_too_many.add_pair(1, 0, 1);  // each is a partner of the other
    EXPECT_EQ(with_too_many.words_of_closure(1), 3U);
}

TEST(SparsePart, LeavesWhatIsNotInItsLinesOpen) {
    PartItems items = items_of_others(10);
    items.occurrences = 0;
    SparsePart part(items, 1);
    part.add_pair(1, 0, 1);  // from now on lines tell what is open
    std::vector<Rank> open;
    EXPECT_TRUE(part.put_open(std::array{Rank{0}}, open));
    std::ranges::sort(open);
    EXPECT_EQ(open, (std::vector<Rank>{1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

TEST(SparsePart, AsksForAllRanksWhereMostAreNotInItsLines) {
    PartItems items = items_of_others(130);
    items.occurrences = 0;
    SparsePart part(items, 1);
    part.add_pair(1, 0, 1);
    std::vector<Rank> open;
    EXPECT_FALSE(part.put_open(std::array{Rank{0}}, open));
    EXPECT_TRUE(open.empty());
}

}  // namespace
}  // namespace korv::tools
