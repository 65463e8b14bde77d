#include "mine/covered_lines.h"

#include <gtest/gtest.h>

#include <array>

#include "tools/random_database.h"

namespace korv::tools {
namespace {

using Lines = std::vector<Transaction>;

Lines list_of(std::span<const Transaction> lines) {
    return {lines.begin(), lines.end()};
}

TEST(CoveredLines, AreThoseThatHoldAnItem) {
    // 11 has rank 0, 12 rank 1 and 10 rank 2.
    const Database database = database_of({0b101, 0b000, 0b011, 0b101});
    const RankedItems items = ranked_items(database, 1, 1);
    CoveredLines covered(items);
    covered.cover(std::array<Rank, 2>{1, 0});
    EXPECT_EQ(list_of(covered.lines()), (Lines{0, 3, 2}));
    EXPECT_EQ(list_of(covered.added_last()), Lines{2});
    EXPECT_TRUE(covered.holds(0));
    EXPECT_FALSE(covered.holds(1));
    covered.cover(std::array<Rank, 3>{1, 0, 2});
    EXPECT_EQ(list_of(covered.added_last()), Lines{});
}

TEST(CoveredLines, AreThoseOfTheLastItemset) {
    const Database database = database_of({0b101, 0b000, 0b011, 0b101});
    const RankedItems items = ranked_items(database, 1, 1);
    CoveredLines covered(items);
    covered.cover(std::array<Rank, 2>{1, 0});
    covered.cover(std::array<Rank, 1>{1});
    EXPECT_EQ(list_of(covered.lines()), (Lines{0, 3}));
    EXPECT_FALSE(covered.holds(2));
    covered.cover(std::array<Rank, 1>{0});
    EXPECT_EQ(list_of(covered.lines()), Lines{2});
    EXPECT_EQ(list_of(covered.added_last()), Lines{2});
    EXPECT_FALSE(covered.holds(3));
    covered.cover({});
    EXPECT_EQ(list_of(covered.lines()), Lines{});
    EXPECT_FALSE(covered.holds(2));
}

}  // namespace
}  // namespace korv::tools
