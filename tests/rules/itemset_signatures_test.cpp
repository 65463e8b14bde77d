#include "rules/itemset_signatures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

namespace korv::tools {

namespace {

std::vector<std::size_t> columns(const Signature& signature) {
    std::vector<std::size_t> listed;
    signature.for_each([&](std::size_t column) {
        listed.push_back(column);
        return true;
    });
    return listed;
}

using Columns = std::vector<std::size_t>;

Signature signature_of(const Columns& columns) {
    Signature signature;
    for (const std::size_t column : columns) {
        signature.add(column);
    }
    return signature;
}

TEST(Signature, VisitsItsColumnsFromTheLargestOn) {
    EXPECT_EQ(columns(signature_of({0, 63, 64, 255})), (Columns{255, 64, 63, 0}));
    EXPECT_EQ(columns(Signature::full()).size(), 256U);
}

TEST(Signature, EndsAVisitThatReturnsFalse) {
    std::size_t visits = 0;
    signature_of({3, 200}).for_each([&](std::size_t) { return ++visits < 1; });

    EXPECT_EQ(visits, 1U);
}

TEST(Signature, IsWithinOneThatHasAllItsColumns) {
    EXPECT_TRUE(signature_of({1, 130}).is_within(signature_of({0, 1, 130})));
    EXPECT_TRUE(signature_of({}).is_within(signature_of({})));
    EXPECT_FALSE(signature_of({1, 130}).is_within(signature_of({1, 131})));
}

TEST(Signature, IsUnitedAndIntersected) {
    Signature united = signature_of({1, 70});
    united.unite(signature_of({1, 200}));
    Signature common = signature_of({1, 70});
    common.intersect(signature_of({1, 200}));

    EXPECT_EQ(united, signature_of({1, 70, 200}));
    EXPECT_EQ(common, signature_of({1}));
}

TEST(Signature, ComesBehindThoseWithoutItsSmallestColumn) {
    EXPECT_LT(signature_of({1, 2}), signature_of({0}));
    EXPECT_LT(signature_of({0, 200}), signature_of({0, 64}));
}

TEST(ItemsetSignatures, GiveMoreFrequentItemsSmallerColumns) {
    ItemsetPool pool;
    const ItemsetId rare = pool.intern(Itemset{3});
    const ItemsetId all = pool.intern(Itemset{3, 5, 7});
    const ItemsetId two = pool.intern(Itemset{5, 7});
    const ItemsetId frequent = pool.intern(Itemset{7});
    const ItemsetId unwanted = pool.intern(Itemset{3, 9});
    const ItemsetSignatures signatures(pool, {1, 1, 1, 1, 0});

    // 7 is in three itemsets; 3 and 5 are in two.
    EXPECT_EQ(columns(signatures[frequent]), (Columns{0}));
    EXPECT_EQ(columns(signatures[rare]), (Columns{1}));
    EXPECT_EQ(columns(signatures[two]), (Columns{2, 0}));
    EXPECT_EQ(columns(signatures[all]), (Columns{2, 1, 0}));
    EXPECT_EQ(columns(signatures[unwanted]), Columns());
}

TEST(ItemsetSignatures, LetTheRarestOfManyItemsShareColumns) {
    ItemsetPool pool;
    Itemset all(1'000);
    std::iota(all.begin(), all.end(), Item{1});
    const ItemsetId whole = pool.intern(all);
    const ItemsetId last = pool.intern(Itemset{1'000});
    const ItemsetSignatures signatures(pool, {1, 1});

    EXPECT_EQ(columns(signatures[whole]).size(), 256U);
    EXPECT_EQ(columns(signatures[last]).size(), 1U);
    EXPECT_TRUE(signatures[last].is_within(signatures[whole]));
}

}  // namespace

}  // namespace korv::tools
