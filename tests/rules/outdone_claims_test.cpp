#include "rules/outdone_claims.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

#include "rules/random_claims.h"

namespace korv::tools {

namespace {

std::vector<char> outdone(test::ClaimSet& set, Outdoing outdoing, std::size_t threads) {
    std::vector<char> is_outdone(set.claims.size());
    OutdoneClaims(set.itemsets, std::vector<char>(set.itemsets.size(), 1), threads)
        .mark(set.claims, outdoing, is_outdone);
    return is_outdone;
}

TEST(OutdoneClaims, AreThoseByDefinitionAmongShortAndLongOnes) {
    const std::array shapes = {test::ClaimSetShape{.items = 12, .claims = 150, .most_items = 7},
                               test::ClaimSetShape{.items = 9, .claims = 300, .most_items = 9}};
    for (const test::ClaimSetShape& shape : shapes) {
        for (unsigned seed = 0; seed < 300; ++seed) {
            std::mt19937 random(seed);
            test::ClaimSet set = test::random_claims(shape, random);
            for (const Outdoing& outdoing : test::every_outdoing) {
                const std::vector<char> expected = test::outdone_by_definition(set, outdoing);
                // The order of claims is lost, their rules are not.
                test::ClaimSet copy = set;
                const std::size_t threads = 1 + seed % 3;
                ASSERT_EQ(outdone(copy, outdoing, threads), expected) << "seed " << seed;
            }
        }
    }
}

TEST(OutdoneClaims, KeepTheMarksThatAreThere) {
    test::ClaimSet set;
    const ItemsetId id = set.itemsets.intern(Itemset{1});
    set.claims.push_back({id, id, 1, 1, 1});
    std::vector<char> is_outdone = {1, 0};

    OutdoneClaims(set.itemsets, {1}).mark(set.claims, {Stand::contains, Stand::contains}, is_outdone);

    EXPECT_EQ(is_outdone, (std::vector<char>{1, 0}));
}

}  // namespace

}  // namespace korv::tools
