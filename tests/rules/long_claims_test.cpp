#include "rules/long_claims.h"

#include <gtest/gtest.h>

#include <random>

#include "rules/random_claims.h"

namespace korv::tools {

namespace {

std::vector<char> outdone(const test::ClaimSet& set, Outdoing outdoing) {
    const ItemsetSignatures signatures(set.itemsets, std::vector<char>(set.itemsets.size(), 1));
    const LongClaims claims(set.itemsets, signatures, set.claims, outdoing);
    std::vector<char> is_outdone;
    for (const Claim& claim : set.claims) {
        is_outdone.push_back(claims.outdo(claim) ? 1 : 0);
    }
    return is_outdone;
}

void expect_as_by_definition(const test::ClaimSetShape& shape, unsigned sets) {
    for (unsigned seed = 0; seed < sets; ++seed) {
        std::mt19937 random(seed);
        const test::ClaimSet set = test::random_claims(shape, random);
        for (const Outdoing& outdoing : test::every_outdoing) {
            ASSERT_EQ(outdone(set, outdoing), test::outdone_by_definition(set, outdoing)) << "seed " << seed;
        }
    }
}

TEST(LongClaims, AreOutdoneAsByDefinitionIfTheyAreFew) {
    expect_as_by_definition({.items = 5, .claims = 30, .most_items = 4}, 2'000);
}

TEST(LongClaims, AreOutdoneAsByDefinitionInABlock) {
    expect_as_by_definition({.items = 20, .claims = 200, .most_items = 15}, 300);
}

TEST(LongClaims, AreOutdoneAsByDefinitionInManyBlocks) {
    expect_as_by_definition({.items = 30, .claims = 3'000, .most_items = 20}, 3);
}

TEST(LongClaims, AreOutdoneAsByDefinitionInSeveralGroupsOfBlocks) {
    expect_as_by_definition({.items = 12, .claims = 12'000, .most_items = 8}, 1);
}

TEST(LongClaims, AreOutdoneAsByDefinitionIfItemsShareColumns) {
    expect_as_by_definition({.items = 2'000, .claims = 500, .most_items = 60}, 20);
}

TEST(LongClaims, AreNotOutdoneByAnythingWithoutClaims) {
    test::ClaimSet set;
    set.claims.push_back({set.itemsets.intern(Itemset{1}), set.itemsets.intern(Itemset{2}), 1, 1, 0});
    const ItemsetSignatures signatures(set.itemsets, {1, 1});
    const LongClaims none(set.itemsets, signatures, {}, {Stand::contains, Stand::contains});

    EXPECT_FALSE(none.outdo(set.claims[0]));
}

}  // namespace

}  // namespace korv::tools
