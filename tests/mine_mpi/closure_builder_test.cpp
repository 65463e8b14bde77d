#include "mine_mpi/closure_builder.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

#include "mine/mined_classes.h"

namespace korv::tools {
namespace {

RankedItems items_of(const std::vector<Itemset>& itemsets, const std::vector<Count>& supports) {
    RankedItems items;
    items.items = itemsets;
    items.supports = supports;
    return items;
}

Itemset decoded(std::string_view bytes) {
    Itemset itemset;
    decode(bytes, itemset);
    return itemset;
}

TEST(ClosureBuilder, PutsItemsOfRanksInOrder) {
    const RankedItems items = items_of({{50}, {2, 900}, {70}, {1}}, {9, 9, 9, 9});
    ClosureBuilder closure(items, 3);
    closure.add(1);
    closure.add(0);
    closure.add(2);
    std::string bytes;
    closure.finish(bytes);
    EXPECT_EQ(decoded(bytes), (Itemset{2, 50, 70, 900}));
}

TEST(ClosureBuilder, TakesRanksInAnyOrder) {
    const RankedItems items = items_of({{50}, {2, 60}, {7, 8}}, {9, 9, 9});
    ClosureBuilder closure(items, 3);
    closure.add(0);
    closure.add(2);
    closure.add(1);
    std::string bytes;
    closure.finish(bytes);
    EXPECT_EQ(decoded(bytes), (Itemset{2, 7, 8, 50, 60}));
}

TEST(ClosureBuilder, CountsWhatAClosureTakes) {
    const RankedItems items = items_of({{5}, {20, 900}, {7}}, {10, 3, 2});
    ClosureBuilder closure(items, 3);
    closure.add(0);
    closure.add(2);
    closure.add(1);
    std::string bytes;
    const ClosureSizes sizes = closure.finish(bytes);
    EXPECT_EQ(bytes, "\x05\x02\x0D\x83\x70");  // 900 is 880 more than 20: 0x80 + 3, 0x70
    EXPECT_EQ(sizes.bytes, 5U);
    EXPECT_EQ(sizes.items, 4U);
    EXPECT_EQ(sizes.text_bytes, std::string_view("5 7 20 900 ").size());
    EXPECT_EQ(sizes.rare_bytes, std::string_view("7 ").size());
}

TEST(ClosureBuilder, HashesRanksInAnyOrder) {
    const RankedItems items = items_of({{5}, {20, 21}, {7}}, {3, 2, 2});
    ClosureBuilder closure(items, 3);
    const auto hash_of = [&closure](const std::vector<Rank>& ranks) {
        for (const Rank rank : ranks) {
            closure.add(rank);
        }
        const std::uint32_t hash = closure.hash();
        std::string bytes;
        closure.finish(bytes);
        return hash;
    };
    EXPECT_EQ(hash_of({0, 1, 2}), hash_of({2, 0, 1}));
    EXPECT_NE(hash_of({0, 1, 2}), hash_of({0, 1}));
    EXPECT_NE(hash_of({0}), hash_of({1}));
    EXPECT_EQ(hash_of({}), 0U);
}

TEST(ClosureBuilder, BeginsTheNextClosureBehindTheLast) {
    const RankedItems items = items_of({{5}, {20, 21}}, {3, 2});
    ClosureBuilder closure(items, 3);
    std::string bytes;
    closure.add(1);
    closure.finish(bytes);
    closure.add(0);
    const ClosureSizes sizes = closure.finish(bytes);
    EXPECT_EQ(bytes, "\x14\x01\x05");
    EXPECT_EQ(sizes.bytes, 1U);
    EXPECT_EQ(sizes.items, 1U);
    EXPECT_EQ(sizes.text_bytes, 2U);
    EXPECT_EQ(sizes.rare_bytes, 0U);
}

}  // namespace
}  // namespace korv::tools
