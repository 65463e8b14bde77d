#include "mine_mpi/closure_builder.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace korv::tools {
namespace {

/// Makes closures of ranks with these items and supports; those in less than 3 transactions are rare.
class Builder {
public:
    Builder(const std::vector<Itemset>& itemsets, const std::vector<Count>& supports)
        : items_(ranked(itemsets, supports)), order_(itemsets), builder_(items_, order_, 3) {}

    EncodedClosure of(const std::vector<Rank>& ranks) {
        for (const Rank rank : ranks) {
            builder_.add(rank);
        }
        return builder_.finish();
    }

    EncodedClosure without(const std::vector<BitWord>& outside) { return builder_.without(outside); }
    EncodedClosure decoded(std::string_view bytes) { return builder_.decoded(bytes); }

private:
    static RankedItems ranked(const std::vector<Itemset>& itemsets, const std::vector<Count>& supports) {
        RankedItems items;
        items.items = itemsets;
        items.supports = supports;
        return items;
    }

    RankedItems items_;
    RankOrder order_;
    ClosureBuilder builder_;
};

Itemset items_of(const EncodedClosure& closure) {
    Itemset items;
    decode(closure.bytes, items);
    return items;
}

TEST(ClosureBuilder, PutsItemsOfRanksInOrder) {
    Builder builder({{50}, {2, 900}, {70}, {1}}, {9, 9, 9, 9});
    EXPECT_EQ(items_of(builder.of({1, 0, 2})), (Itemset{2, 50, 70, 900}));
}

TEST(ClosureBuilder, PutsTheItemsOfSeveralRanksWithOthersInOrder) {
    Builder builder({{1, 60, 80, 1000}, {2, 55, 70, 900}, {65}, {950}}, {9, 9, 9, 9});
    const Itemset all = {1, 2, 55, 60, 65, 70, 80, 900, 950, 1000};
    EXPECT_EQ(items_of(builder.of({3, 1, 0, 2})), all);
    EXPECT_EQ(items_of(builder.without({0})), all);
    EXPECT_EQ(items_of(builder.decoded(std::string(builder.of({0, 1, 2, 3}).bytes))), all);
    EXPECT_EQ(items_of(builder.of({0})), (Itemset{1, 60, 80, 1000}));
}

TEST(ClosureBuilder, SaysWhatAClosureTakes) {
    Builder builder({{5}, {20, 900}, {7}}, {10, 3, 2});
    const EncodedClosure closure = builder.of({0, 2, 1});
    EXPECT_EQ(closure.bytes, "\x05\x02\x0D\x83\x70");  // 900 is 880 more than 20: 0x80 + 3, 0x70
    EXPECT_EQ(closure.hash, hash_of_closure("\x05\x02\x0D\x83\x70"));
    EXPECT_EQ(closure.items, 4U);
    EXPECT_EQ(closure.text_bytes, std::string_view("5 7 20 900 ").size());
    EXPECT_EQ(closure.rare_bytes, std::string_view("7 ").size());
}

TEST(ClosureBuilder, BeginsTheNextClosureBehindTheLast) {
    Builder builder({{5}, {20, 21}}, {3, 2});
    builder.of({1});
    const EncodedClosure closure = builder.of({0});
    EXPECT_EQ(closure.bytes, "\x05");
    EXPECT_EQ(closure.items, 1U);
    EXPECT_EQ(closure.text_bytes, 2U);
    EXPECT_EQ(closure.rare_bytes, 0U);
}

TEST(ClosureBuilder, TakesTheItemsThatAreNotOutside) {
    Builder builder({{50}, {2, 900}, {7}}, {9, 2, 2});
    const EncodedClosure closure = builder.without({0b0100});  // 50 is behind 2 and 7
    EXPECT_EQ(items_of(closure), (Itemset{2, 7, 900}));
    EXPECT_EQ(closure.text_bytes, std::string_view("2 7 900 ").size());
    EXPECT_EQ(closure.rare_bytes, closure.text_bytes);
    EXPECT_EQ(items_of(builder.without({0b1111})), Itemset());
    EXPECT_EQ(items_of(builder.without({0})), (Itemset{2, 7, 50, 900}));
}

TEST(ClosureBuilder, TakesItemsOfSeveralWords) {
    std::vector<Itemset> itemsets;
    for (Item item = 0; item < 130; ++item) {
        itemsets.push_back({item});
    }
    Builder builder(itemsets, std::vector<Count>(130, 9));
    const EncodedClosure closure = builder.without({~(BitWord{1} << 63U), ~BitWord{1}, ~BitWord{0b11}});
    EXPECT_EQ(items_of(closure), (Itemset{63, 64, 128, 129}));
}

TEST(ClosureBuilder, TakesUpAnEncodedClosure) {
    Builder builder({{5}, {20, 900}, {7}}, {10, 3, 2});
    const std::string bytes(builder.of({1, 2}).bytes);
    const EncodedClosure closure = builder.decoded(bytes);
    EXPECT_EQ(closure.bytes, bytes);
    EXPECT_EQ(closure.hash, hash_of_closure(bytes));
    EXPECT_EQ(closure.items, 3U);
    EXPECT_EQ(closure.text_bytes, std::string_view("7 20 900 ").size());
    EXPECT_EQ(closure.rare_bytes, std::string_view("7 ").size());
}

TEST(ClosureBuilder, LeavesOutItemsThatNoRankStandsFor) {
    Builder with_others({{5}, {6}, {7}, {9}}, {9, 9, 9, 9});
    const std::string bytes(with_others.of({0, 1, 2, 3}).bytes);
    Builder builder({{7}, {5}}, {9, 9});
    EXPECT_EQ(items_of(builder.decoded(bytes)), (Itemset{5, 7}));
}

}  // namespace
}  // namespace korv::tools
