#include "mine/cover.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <set>

#include "tools/random_database.h"

namespace korv::tools {
namespace {

/// What the covers say, counted in the transactions that hold the itemset's items.
class Counted {
public:
    Counted(const Database& database, Positions itemset)
        : database_(database), itemset_(std::move(itemset)) {}

    Count support() const { return static_cast<Count>(union_of(itemset_).size()); }

    bool is_frequent(Count min_support) const {
        Count common = 0;
        for (Transaction transaction = 0; transaction < database_.transactions; ++transaction) {
            common += held_in(transaction) == itemset_.size() ? 1 : 0;
        }
        return common >= min_support;
    }

    bool is_essential() const {
        return std::ranges::all_of(itemset_, [this](std::size_t item) {
            Positions others = itemset_;
            std::erase(others, item);
            return union_of(others).size() < union_of(itemset_).size();
        });
    }

    bool covers(std::size_t item) const {
        Positions longer = itemset_;
        longer.push_back(item);
        return union_of(longer).size() == union_of(itemset_).size();
    }

private:
    std::set<Transaction> union_of(const Positions& itemset) const {
        std::set<Transaction> holding;
        for (const std::size_t item : itemset) {
            const auto& transactions = database_.items[item].transactions;
            holding.insert(transactions.begin(), transactions.end());
        }
        return holding;
    }

    std::size_t held_in(Transaction transaction) const {
        return static_cast<std::size_t>(std::ranges::count_if(itemset_, [&](std::size_t item) {
            return std::ranges::binary_search(database_.items[item].transactions, transaction);
        }));
    }

    const Database& database_;
    Positions itemset_;
};

template <typename Cover>
class CoverTest : public ::testing::Test {};

using Covers = ::testing::Types<DenseCover, SparseCover>;
TYPED_TEST_SUITE(CoverTest, Covers, );

TYPED_TEST(CoverTest, ExtendsByWhatStaysEssentialAndFrequent) {
    // 10 in transactions 0 and 1, 11 in 1 and 2, 12 in 1 alone.
    const Database database = database_of({0b001, 0b111, 0b010});
    TypeParam cover(database, 1);
    ASSERT_TRUE(cover.extend(0));
    EXPECT_EQ(cover.support(), 2U);
    EXPECT_FALSE(cover.extend(2));  // in no transaction without 10
    EXPECT_TRUE(cover.covers(2));
    EXPECT_FALSE(cover.covers(1));
    ASSERT_TRUE(cover.extend(1));
    EXPECT_EQ(cover.support(), 3U);
    EXPECT_TRUE(cover.covers(1));
}

TYPED_TEST(CoverTest, DoesNotExtendByWhatIsNotFrequent) {
    const Database database = database_of({0b01, 0b11, 0b10});
    TypeParam cover(database, 2);
    ASSERT_TRUE(cover.extend(0));
    EXPECT_FALSE(cover.extend(1));
}

/// Walks at random up and down, and compares at each step.
TYPED_TEST(CoverTest, SaysWhatTheTransactionsSay) {
    constexpr std::uint32_t seed = 7;
    std::mt19937 random(seed);
    for (int round = 0; round < 2000; ++round) {
        SCOPED_TRACE("seed " + std::to_string(seed) + ", round " + std::to_string(round));
        const Database database =
            database_of(random_transactions(8, 150, 2 + static_cast<std::uint32_t>(random() % 6), random));
        const Count min_support = 1 + static_cast<Count>(random() % 4);
        const std::size_t items = database.items.size();
        TypeParam cover(database, min_support);
        Positions itemset;
        for (int step = 0; step < 30 && items > 0; ++step) {
            const std::size_t item = random() % items;
            if (random() % 4 == 0 && !itemset.empty()) {
                cover.retract();
                itemset.pop_back();
            } else if (std::ranges::find(itemset, item) == itemset.end()) {
                Positions longer = itemset;
                longer.push_back(item);
                const Counted counted(database, longer);
                const bool is_frequent = counted.is_frequent(min_support);
                const Positions promising = cover.promising({item});
                ASSERT_TRUE(!promising.empty() || !is_frequent);
                const bool extended = cover.extend(item);
                ASSERT_EQ(extended, is_frequent && counted.is_essential());
                if (extended) {
                    const Counted before(database, itemset);
                    std::vector<char> wanted(items);
                    Positions expected;
                    for (std::size_t other = 0; other < items; ++other) {
                        wanted[other] = before.covers(other) || random() % 5 == 0 ? 0 : 1;
                        if (wanted[other] != 0 && counted.covers(other)) {
                            expected.push_back(other);
                        }
                    }
                    ASSERT_EQ(cover.newly_covered(wanted), expected);
                }
                itemset = extended ? longer : itemset;
            }
            const Counted counted(database, itemset);
            ASSERT_EQ(cover.support(), counted.support());
            ASSERT_EQ(cover.covers(item), counted.covers(item));
        }
    }
}

TEST(SparseCover, PromisesWhatIsFrequent) {
    const Database database = database_of({0b111, 0b011, 0b001, 0b110});
    SparseCover cover(database, 2);
    ASSERT_TRUE(cover.extend(0));
    EXPECT_EQ(cover.promising({2, 1}), Positions{1});
}

}  // namespace
}  // namespace korv::tools
