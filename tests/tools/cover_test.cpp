#include "mine/cover.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "mine/dense_cover.h"
#include "mine/sparse_cover.h"
#include "tools/random_database.h"

namespace korv::tools {
namespace {

using Ranks = std::vector<Rank>;

/// What the covers say, counted in the transactions.
class Counted {
public:
    Counted(const RankedItems& items, Ranks itemset) : items_(items), itemset_(std::move(itemset)) {}

    Counted with(Rank rank) const {
        Ranks longer = itemset_;
        longer.push_back(rank);
        return {items_, longer};
    }

    Count joint() const {
        Count sum = 0;
        for (Transaction line = 0; line < items_.lines; ++line) {
            const bool holds_all =
                std::ranges::all_of(itemset_, [&](Rank rank) { return holds(line, rank); });
            sum += holds_all ? items_.weight(line) : 0;
        }
        return sum;
    }

    Count own(Rank rank) const {
        Count sum = 0;
        for (Transaction line = 0; line < items_.lines; ++line) {
            sum += holds(line, rank) && !is_covered(line) ? items_.weight(line) : 0;
        }
        return sum;
    }

    bool is_essential() const {
        return std::ranges::all_of(itemset_, [this](Rank item) {
            Ranks others = itemset_;
            std::erase(others, item);
            return Counted(items_, others).own(item) > 0;
        });
    }

    std::set<Rank> closure() const {
        std::set<Rank> closure;
        for (Rank rank = 0; rank < items_.size(); ++rank) {
            if (own(rank) == 0) {
                closure.insert(rank);
            }
        }
        return closure;
    }

    /// The items that the closure gains by one more item, ascending.
    Ranks gain(Rank rank) const {
        const std::set<Rank> before = closure();
        const std::set<Rank> after = with(rank).closure();
        Ranks gain;
        std::ranges::set_difference(after, before, std::back_inserter(gain));
        return gain;
    }

private:
    bool holds(Transaction line, Rank rank) const {
        return std::ranges::binary_search(items_.transactions[rank], line);
    }
    bool is_covered(Transaction line) const {
        return std::ranges::any_of(itemset_, [&](Rank rank) { return holds(line, rank); });
    }

    const RankedItems& items_;
    Ranks itemset_;
};

Ranks sorted(Ranks ranks) {
    std::ranges::sort(ranks);
    return ranks;
}

/// Walks over all essential itemsets whose items are together, and compares every answer.
template <typename Cover>
class ComparedWalk {
public:
    ComparedWalk(const RankedItems& items, Count least) : items_(items), least_(least), cover_(items) {}

    void run() {
        std::vector<std::vector<Candidate>> pairs(items_.frequent);
        for (Rank root = 0; root < items_.frequent; ++root) {
            cover_.pairs_of(root, least_, pairs[root]);
        }
        for (Rank root = 0; root < items_.frequent; ++root) {
            visit(Counted(items_, {}), root, pairs[root]);
        }
    }

    std::size_t compared() const { return compared_; }

private:
    void visit(const Counted& prefix, Rank rank, const std::vector<Candidate>& candidates) {
        ++compared_;
        const Counted counted = prefix.with(rank);
        ASSERT_EQ(sorted(cover_.enter(rank)), prefix.gain(rank));
        Ranks children;
        for (const Candidate& candidate : candidates) {
            ASSERT_EQ(candidate.joint, counted.with(candidate.rank).joint());
            ASSERT_EQ(cover_.own(candidate.rank), counted.own(candidate.rank));
            if (counted.with(candidate.rank).is_essential()) {
                children.push_back(candidate.rank);
            }
        }
        cover_.announce(children, 0);
        std::vector<Candidate> smaller;
        for (const Rank child : children) {
            ASSERT_EQ(sorted(cover_.gain(child)), counted.gain(child));
            std::vector<Candidate> frequent = smaller;
            if (!frequent.empty()) {
                keep_frequent(child, counted.with(child), frequent);
            }
            visit(counted, child, frequent);
            smaller.push_back({child});
        }
        cover_.leave();
    }

    /// Compares which candidates stay.
    void keep_frequent(Rank child, const Counted& counted, std::vector<Candidate>& candidates) {
        Ranks expected;
        for (const Candidate& candidate : candidates) {
            if (counted.with(candidate.rank).joint() >= least_) {
                expected.push_back(candidate.rank);
            }
        }
        cover_.enter(child);
        cover_.keep_frequent(least_, candidates);
        cover_.leave();
        Ranks kept;
        std::ranges::transform(candidates, std::back_inserter(kept), &Candidate::rank);
        ASSERT_EQ(kept, expected);
    }

    const RankedItems& items_;
    Count least_;
    Cover cover_;
    std::size_t compared_ = 0;
};

template <typename Cover>
class CoverTest : public ::testing::Test {};

using Covers = ::testing::Types<DenseCover, SparseCover>;
TYPED_TEST_SUITE(CoverTest, Covers, );

TYPED_TEST(CoverTest, SaysWhatTheTransactionsSay) {
    constexpr std::uint32_t seed = 7;
    std::mt19937 random(seed);
    std::size_t compared = 0;
    for (int round = 0; round < 1000; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        const Transactions transactions = random_transactions(
            8, round % 20 == 0 ? 150 : 25, 2 + static_cast<std::uint32_t>(random() % 6), random);
        std::vector<Count> weights;
        for (std::size_t i = 0; round % 3 == 0 && i < transactions.size(); ++i) {
            weights.push_back(1 + static_cast<Count>(random() % 9));
        }
        const Database database = database_of(transactions, weights);
        const RankedItems items = ranked_items(database, 1 + static_cast<Count>(random() % 4), 0);
        ComparedWalk<TypeParam> walk(items, static_cast<Count>(random() % 4));
        walk.run();
        if (testing::Test::HasFatalFailure()) {
            return;
        }
        compared += walk.compared();
    }
    EXPECT_GT(compared, 10'000U);
}

TYPED_TEST(CoverTest, SaysWhatManyTransactionsSay) {
    // Each item is in a stretch of lines that others are in, and rarely elsewhere, so that what shows that it
    // is outside a closure can be far away.
    std::mt19937 random(8);
    Transactions transactions;
    for (unsigned line = 0; line < 9000; ++line) {
        const Set of_stretch = Set{0b11} << line / 2250;
        transactions.push_back(of_stretch | (random() % 700 == 0 ? Set{1} << random() % 5 : Set{0}));
    }
    const Database database = database_of(transactions);
    const RankedItems items = ranked_items(database, 1, 0);
    ComparedWalk<TypeParam> walk(items, 0);
    walk.run();
    EXPECT_GT(walk.compared(), 15U);
}

/// Some items, each in one transaction of its own and all in a last one, so that any of them are essential
/// together; and an item that only all of them cover.
template <typename Cover>
void expect_the_last_to_be_covered_by_all(unsigned size) {
    Transactions transactions;
    for (unsigned item = 0; item < size; ++item) {
        transactions.push_back(Set{1} << item | Set{1} << size);
    }
    transactions.push_back((Set{1} << size) - 1);
    const Database database = database_of(transactions);
    const RankedItems items = ranked_items(database, 2, 0);
    ASSERT_EQ(items.size(), size + 1);
    Cover cover(items);
    std::vector<Candidate> pairs;
    for (Rank rank = 0; rank < items.frequent; ++rank) {
        cover.pairs_of(rank, 1, pairs);
    }
    for (Rank rank = size; rank > 0; --rank) {
        const Ranks itself = {rank - 1};
        const Ranks with_the_last = {0, size};
        EXPECT_EQ(sorted(cover.gain(rank - 1)), rank == 1 ? with_the_last : itself);
        EXPECT_EQ(sorted(cover.enter(rank - 1)), rank == 1 ? with_the_last : itself);
    }
    for (unsigned i = 0; i < size; ++i) {
        cover.leave();
    }
    EXPECT_EQ(cover.enter(3), Ranks{3});
}

TEST(DenseCover, CountsTheSameWhereNothingElseIsAskedFor) {
    const Database database = database_of({0b0111, 0b0101, 0b1101, 0b0110, 0b1000});
    const RankedItems items = ranked_items(database, 1, 0);
    ASSERT_EQ(items.size(), 4U);
    DenseCover cover(items);
    cover.enter(3);
    const Ranks gain = cover.gain(2);
    cover.enter_to_count(2);
    std::vector<Candidate> candidates = {{0}, {1}};
    cover.keep_frequent(0, candidates);
    const Counted counted = Counted(items, {3, 2});
    EXPECT_EQ(candidates[0].joint, counted.with(0).joint());
    EXPECT_EQ(candidates[1].joint, counted.with(1).joint());
    EXPECT_EQ(cover.own(0), counted.own(0));
    cover.leave();
    EXPECT_EQ(cover.gain(2), gain);
    EXPECT_EQ(sorted(cover.enter(2)), Counted(items, {3}).gain(2));
}

TEST(DenseCover, TellsWhatIsOutsideTheClosureByPlace) {
    // 10 and 12 are in the same transactions, 11 is only where 13 is.
    const Database database = database_of({0b0101, 0b0101, 0b1000, 0b1010, 0b1101, 0b1010});
    const RankedItems items = ranked_items(database, 1, 0);
    ASSERT_EQ(items.items, (std::vector<Itemset>{{11}, {10, 12}, {13}}));
    DenseCover cover(items);
    EXPECT_EQ(cover.outside_with(0), std::vector<BitWord>{0b101});
    EXPECT_EQ(cover.outside_with(1), std::vector<BitWord>{0b110});
    EXPECT_EQ(cover.outside_with(2), std::vector<BitWord>{0b001});
    cover.enter(2);
    EXPECT_EQ(cover.outside_with(1), std::vector<BitWord>{0});
    EXPECT_EQ(cover.gain(1), Ranks{1});
}

TEST(DenseCover, SeesWhatIsOutsideWhereThereAreManyWitnesses) {
    // 0 to 5 are in some of the first 40 lines; each of 90 others has a line of its own.
    std::mt19937 random(4);
    Database database;
    database.lines = database.transactions = 130;
    for (Item item = 0; item < 6; ++item) {
        std::vector<Transaction> lines;
        for (Transaction line = 0; line < 40; ++line) {
            if (random() % 2 == 0) {
                lines.push_back(line);
            }
        }
        database.items.push_back({item, lines});
    }
    for (Item item = 40; item < 130; ++item) {
        database.items.push_back({item, {item}});
    }
    const RankedItems items = ranked_items(database, 2, 0);
    ASSERT_EQ(items.frequent, 6U);
    ComparedWalk<DenseCover> walk(items, 0);
    walk.run();
    EXPECT_GT(walk.compared(), 30U);
    DenseCover cover(items);
    cover.enter(5);
    cover.enter(3);
    EXPECT_EQ(sorted(cover.gain(90)), Ranks{90});
}

TEST(DenseCover, FindsTheFewLinesThatAreLeft) {
    // 10 is in all lines but the last hundred, 11 in every tenth line, 12 in the last hundred but one of
    // these.
    Transactions transactions;
    for (unsigned line = 0; line < 9000; ++line) {
        const Set often = line < 8900 ? 0b001 : 0b000;
        const Set sometimes = line % 10 == 0 ? 0b010 : 0b000;
        const Set late = line >= 8900 && line != 8990 ? 0b100 : 0b000;
        transactions.push_back(often | sometimes | late);
    }
    const Database database = database_of(transactions);
    const RankedItems items = ranked_items(database, 1, 0);
    ASSERT_EQ(items.items, (std::vector<Itemset>{{12}, {11}, {10}}));
    DenseCover cover(items);
    EXPECT_EQ(cover.enter(2), Ranks{2});
    EXPECT_EQ(cover.gain(0), Ranks{0});  // 8990 is left for 11
    EXPECT_EQ(cover.gain(1), Ranks{1});
    EXPECT_EQ(sorted(cover.enter(0)), Ranks{0});
    EXPECT_EQ(cover.gain(1), Ranks{1});
}

TYPED_TEST(CoverTest, SeesWhatLongItemsetsCover) {
    for (unsigned size = 7; size < 14; ++size) {
        expect_the_last_to_be_covered_by_all<TypeParam>(size);
    }
}

/// 600 items in one transaction, each in one more: each has so many partners that they are not kept.
TYPED_TEST(CoverTest, SeesWhatIsCoveredWherePartnersAreTooMany) {
    Database database;
    database.lines = database.transactions = 601;
    for (Item item = 0; item < 600; ++item) {
        database.items.push_back({item, {0, item + 1}});
    }
    const RankedItems items = ranked_items(database, 1, 0);
    TypeParam cover(items);
    std::vector<Candidate> pairs;
    for (Rank rank = 0; rank < items.frequent; ++rank) {
        cover.pairs_of(rank, 1, pairs);
        EXPECT_EQ(pairs.size(), rank);
    }
    EXPECT_EQ(cover.enter(599), Ranks{599});
    EXPECT_EQ(cover.gain(0), Ranks{0});
}

TYPED_TEST(CoverTest, SeesWhatAnItemCoversWithoutHavingBeenAskedForPairs) {
    // 11 is only where 10 is.
    const Database database = database_of({0b01, 0b11, 0b11, 0b01});
    const RankedItems items = ranked_items(database, 1, 0);
    ASSERT_EQ(items.items, (std::vector<Itemset>{{11}, {10}}));
    TypeParam cover(items);
    EXPECT_EQ(cover.enter(0), Ranks{0});
    cover.leave();
    EXPECT_EQ(sorted(cover.enter(1)), (Ranks{0, 1}));
}

}  // namespace
}  // namespace korv::tools
