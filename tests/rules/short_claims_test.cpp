#include "rules/short_claims.h"

#include <gtest/gtest.h>

#include <random>

#include "rules/random_claims.h"

namespace korv::tools {

namespace {

std::vector<char> outdone(const test::ClaimSet& set, Outdoing outdoing,
                          std::size_t pairs_of_a_pass = ShortClaims::default_pairs_of_a_pass) {
    const ItemsetParts parts(set.itemsets, std::vector<char>(set.itemsets.size(), 1));
    std::vector<char> is_outdone(set.claims.size());
    ShortClaims(parts, set.itemsets.size(), pairs_of_a_pass).mark_outdone(set.claims, outdoing, is_outdone);
    return is_outdone;
}

/// Claims of {1 2} and {5 6}, {1} and {5 6}, {1} and {5}.
test::ClaimSet three_claims(Rank low, Rank high) {
    test::ClaimSet set;
    const ItemsetId one = set.itemsets.intern(Itemset{1});
    const ItemsetId one_and_two = set.itemsets.intern(Itemset{1, 2});
    const ItemsetId five = set.itemsets.intern(Itemset{5});
    const ItemsetId five_and_six = set.itemsets.intern(Itemset{5, 6});
    set.claims = {{one_and_two, five_and_six, low, high, 0},
                  {one, five_and_six, low, high, 1},
                  {one, five, low, high, 2}};
    return set;
}

using Outdone = std::vector<char>;

TEST(ShortClaims, FindThoseThatAreContained) {
    EXPECT_EQ(outdone(three_claims(1, 1), {Stand::contains, Stand::contains}), (Outdone{0, 1, 1}));
    EXPECT_EQ(outdone(three_claims(1, 1), {Stand::contains, Stand::equals}), (Outdone{0, 1, 0}));
}

TEST(ShortClaims, FindThoseThatContainOthers) {
    EXPECT_EQ(outdone(three_claims(1, 1), {Stand::within, Stand::within}), (Outdone{1, 1, 0}));
    EXPECT_EQ(outdone(three_claims(1, 1), {Stand::within, Stand::equals}), (Outdone{1, 0, 0}));
}

TEST(ShortClaims, MayHaveTheSameItemsetsWhereBothMustLieWithin) {
    test::ClaimSet set = three_claims(2, 2);
    const Claim inner = set.claims[2];
    set.claims.push_back({inner.first, inner.second, 3, 3, 3});
    set.claims.push_back({inner.first, inner.second, 1, 1, 4});

    // Those of the same itemsets do not outdo each other, and the strongest of them outdoes the others.
    EXPECT_EQ(outdone(set, {Stand::within, Stand::within}), (Outdone{1, 1, 0, 0, 0}));
    set.claims[0].high = 3;
    set.claims[1].high = 4;
    EXPECT_EQ(outdone(set, {Stand::within, Stand::within}), (Outdone{1, 0, 0, 0, 0}));
}

TEST(ShortClaims, FindThoseWhoseFirstIsContainedAndWhoseSecondContainsTheOther) {
    // {1} and {5 6} is outdone by both of the others.
    EXPECT_EQ(outdone(three_claims(1, 1), {Stand::contains, Stand::within}), (Outdone{0, 1, 0}));
}

TEST(ShortClaims, AreNotOutdoneByWeakerOnes) {
    for (const Outdoing& outdoing : test::every_outdoing) {
        EXPECT_EQ(outdone(three_claims(1, 2), outdoing), (Outdone{0, 0, 0}));
    }
}

TEST(ShortClaims, AreOutdoneAsByDefinition) {
    for (unsigned seed = 0; seed < 10'000; ++seed) {
        std::mt19937 random(seed);
        const test::ClaimSet set = test::random_claims({}, random);
        for (const Outdoing& outdoing : test::every_outdoing) {
            ASSERT_EQ(outdone(set, outdoing), test::outdone_by_definition(set, outdoing)) << "seed " << seed;
        }
    }
}

TEST(ShortClaims, AreOutdoneAsByDefinitionInManyPasses) {
    constexpr Outdoing half_way = {Stand::contains, Stand::within};
    for (unsigned seed = 0; seed < 1'000; ++seed) {
        std::mt19937 random(seed);
        const test::ClaimSet set = test::random_claims({}, random);
        ASSERT_EQ(outdone(set, half_way, 20), test::outdone_by_definition(set, half_way)) << "seed " << seed;
    }
}

}  // namespace

}  // namespace korv::tools
