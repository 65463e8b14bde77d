#include "check/transaction_counter.h"

#include <gtest/gtest.h>

#include <bit>
#include <random>

#include "support/bits.h"
#include "tools/random_database.h"

namespace korv::tools {
namespace {

/// Items are numbered from 10 on, see database_of.
Itemset itemset_of(Set set) {
    Itemset itemset;
    for (; set != 0; set &= set - 1) {
        itemset.push_back(10 + static_cast<Item>(std::countr_zero(set)));
    }
    return itemset;
}

/// Counts plainly: each transaction is looked at.
Count support_of(Set set, const Transactions& transactions, const std::vector<Count>& weights) {
    Count count = 0;
    for (std::size_t i = 0; i < transactions.size(); ++i) {
        count += (transactions[i] & set) != 0 ? weights[i] : 0;
    }
    return count;
}

TEST(TransactionCounter, AgreesWithAPlainCount) {
    std::mt19937 random(8);
    for (int i = 0; i < 2000; ++i) {
        constexpr std::size_t items = 7;
        // Some items are in few of the lines, so that they have lists.
        const Transactions transactions =
            random_transactions(items, i % 2 == 0 ? 20 : 300, i % 2 == 0 ? 3 : 50, random);
        std::vector<Count> weights;
        for (std::size_t line = 0; line < transactions.size(); ++line) {
            weights.push_back(1 + test::random_below(3, random));
        }
        const Database database = database_of(transactions, weights);
        TransactionCounter counter(database);
        const Set set = 1 + test::random_below((Set{1} << items) - 1, random);

        const Count support = support_of(set, transactions, weights);
        ASSERT_EQ(counter.support(itemset_of(set)), support);
        Itemset missing;
        bool is_essential = true;
        for (Set item = 1; item < Set{1} << items; item <<= 1U) {
            const bool is_there = support_of(item, transactions, weights) > 0;
            ASSERT_EQ(counter.knows(itemset_of(item)[0]), is_there);
            if ((set & item) != 0) {
                is_essential = is_essential && support_of(set & ~item, transactions, weights) < support;
            } else if (is_there && support_of(set | item, transactions, weights) == support) {
                missing.push_back(itemset_of(item)[0]);
            }
        }
        ASSERT_EQ(counter.missing_in_closure(itemset_of(set)), missing);
        const auto needless = counter.needless_item(itemset_of(set));
        ASSERT_EQ(needless.has_value(), !is_essential);
        if (needless) {
            const Set without = set & ~(Set{1} << (*needless - 10));
            ASSERT_EQ(support_of(without, transactions, weights), support);
        }
    }
}

TEST(TransactionCounter, KnowsNothingOfItemsThatNoTransactionHolds) {
    const Database database = database_of({0b1, 0b1});
    TransactionCounter counter(database);

    EXPECT_FALSE(counter.knows(99));
    EXPECT_EQ(counter.support(Itemset{99}), 0U);
    EXPECT_EQ(counter.needless_item(Itemset{10, 99}), 99U);
}

}  // namespace
}  // namespace korv::tools
