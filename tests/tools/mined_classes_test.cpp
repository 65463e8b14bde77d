#include "mine/mined_classes.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <set>

#include "io/class_record.h"
#include "tools/mined_class_printing.h"

namespace korv::tools {
namespace {

std::string encoded(const Itemset& itemset) {
    std::string bytes;
    append_encoded(itemset, bytes);
    return bytes;
}

TEST(EncodedItemset, TakesAByteForASmallDifference) {
    EXPECT_EQ(encoded({0, 5, 132}), std::string("\0\5\x7F", 3));
    EXPECT_EQ(encoded({128}), std::string("\x80\x80", 2));
    EXPECT_EQ(encoded({}), "");
}

TEST(EncodedItemset, IsDecoded) {
    const std::vector<Itemset> itemsets = {
        {}, {0}, {127, 255}, {128}, {16383, 32767}, {16384}, {2097151}, {2097152, 4294967295}, {268435456}};
    for (const Itemset& itemset : itemsets) {
        Itemset decoded = {1, 2, 3};
        decode(encoded(itemset), decoded);
        EXPECT_EQ(decoded, itemset);
    }
}

TEST(EncodedItemset, HasTheOrderOfItemsetsOfOneSize) {
    std::mt19937 random(11);
    for (int round = 0; round < 20'000; ++round) {
        const auto random_itemset = [&random] {
            const std::uint32_t bits = random() % 32;
            std::set<Item> items;
            while (items.size() < 2) {
                items.insert(static_cast<Item>(random()) >> bits);
            }
            return Itemset(items.begin(), items.end());
        };
        const Itemset a = random_itemset();
        const Itemset b = random_itemset();
        ASSERT_EQ(std::string_view(encoded(a)) < encoded(b), a < b)
            << testing::PrintToString(a) << ' ' << testing::PrintToString(b);
    }
}

TEST(MinedClasses, KnowsClosuresOfClasses) {
    const EssentialTree tree(std::vector<Count>{1, 2});
    MinedClasses classes(std::vector<Itemset>{{7}, {9}});
    classes.add(0, tree, {7});
    EXPECT_TRUE(classes.holds(encoded({7})));
    EXPECT_FALSE(classes.holds(encoded({9})));
    EXPECT_FALSE(classes.holds(encoded({7, 9})));
}

TEST(MinedClasses, FindsClassesByTheirKeys) {
    EssentialTree tree(std::vector<Count>{1, 2, 3, 4});
    MinedClasses classes({{7}, {9}, {4}, {300}});
    classes.add(0, tree, {7});
    classes.add(1, tree, {7, 9});
    classes.add(2, tree, {4});
    classes.add(3, tree, {4, 7, 300});
    classes.finish(std::move(tree));
    const std::vector<Itemset> closures = {{4}, {7}, {7, 9}, {4, 7, 300}};
    for (std::size_t position = 0; position < closures.size(); ++position) {
        const std::string bytes = encoded(closures[position]);
        const ClassKey key = {static_cast<std::uint32_t>(closures[position].size()), bytes};
        EXPECT_EQ(classes.key(position), key);
        EXPECT_EQ(classes.lower_bound(key), position);
    }
    const std::string smaller = encoded({4, 7, 9});
    const std::string larger = encoded({4, 8, 9});
    EXPECT_EQ(classes.lower_bound({3, smaller}), 3U);
    EXPECT_EQ(classes.lower_bound({3, larger}), 4U);
}

TEST(MinedClasses, AreVisitedFromAPositionToAnother) {
    EssentialTree tree(std::vector<Count>{1, 2, 3});
    MinedClasses classes({{7}, {9}, {4}});
    for (Rank rank = 0; rank < 3; ++rank) {
        classes.add(rank, tree, Itemset{rank == 0 ? Item{7} : rank == 1 ? Item{9} : Item{4}});
    }
    classes.finish(std::move(tree));
    std::vector<Itemset> visited;
    classes.for_each(1, 3, [&visited](const MinedClass& each) { visited.push_back(each.closure); });
    EXPECT_EQ(visited, (std::vector<Itemset>{{7}, {9}}));
}

TEST(ClassFigures, AreSumsAndTheLargestClosure) {
    ClassFigures figures = {
        .classes = 2, .essentials = 5, .file_bytes = 40, .rare_bytes = 7, .largest_closure = 3};
    figures += {.classes = 1,
                .essentials = std::numeric_limits<std::size_t>::max() - 4,
                .file_bytes = 10,
                .rare_bytes = 1,
                .largest_closure = 2};
    EXPECT_EQ(figures, (ClassFigures{.classes = 3,
                                     .essentials = std::numeric_limits<std::size_t>::max(),
                                     .file_bytes = 50,
                                     .rare_bytes = 8,
                                     .largest_closure = 3}));
}

TEST(MinedClasses, CollectsEssentialItemsetsByClosure) {
    // The ranks stand for 7, for 3 or 4, and for 5.
    EssentialTree tree(std::vector<Count>{1, 2, 3});
    const EssentialTree::Node pair = tree.add(2, 0, 1, 3);
    MinedClasses classes({{7}, {3, 4}, {5}});
    classes.add(2, tree, {3, 4, 5, 7});
    classes.add(1, tree, {3, 4});
    classes.add(pair, tree, {3, 4, 5, 7});
    classes.add(0, tree, {7});
    EXPECT_EQ(classes.size(), 3U);
    EXPECT_EQ(classes.figures().essentials, 5U);
    EXPECT_EQ(classes.figures().largest_closure, 4U);
    classes.finish(std::move(tree));
    EXPECT_EQ(list_of(classes),
              (std::vector<MinedClass>{
                  {{7}, 1, {{7}}}, {{3, 4}, 2, {{3}, {4}}}, {{3, 4, 5, 7}, 3, {{5}, {5, 7}}}}));
}

TEST(MinedClasses, LetsItemsStandForEachOtherInEssentialItemsets) {
    EssentialTree tree(std::vector<Count>{1, 2});
    const EssentialTree::Node pair = tree.add(1, 0, 1, 2);
    MinedClasses classes({{2, 9}, {4, 5, 6}});
    classes.add(pair, tree, {2, 4, 5, 6, 9});
    classes.finish(std::move(tree));
    EXPECT_EQ(
        list_of(classes),
        (std::vector<MinedClass>{{{2, 4, 5, 6, 9}, 2, {{2, 4}, {2, 5}, {2, 6}, {4, 9}, {5, 9}, {6, 9}}}}));
}

TEST(MinedClasses, CountsTheBytesOfTheClassFile) {
    std::mt19937 random(5);
    for (int round = 0; round < 200; ++round) {
        // Items of one to ten digits, with twins; all itemsets of one or two ranks.
        std::vector<Itemset> items;
        Item next = 1 + static_cast<Item>(random() % 9);
        for (int rank = 0; rank < 6; ++rank) {
            Itemset& twins = items.emplace_back();
            for (std::size_t i = 0; i <= random() % 3; ++i) {
                twins.push_back(next);
                next += 1 + static_cast<Item>(random() % 9) * (next / 2);
            }
        }
        EssentialTree tree(std::vector<Count>{1, 20, 300, 4000, 50000, 600000});
        MinedClasses classes(items);
        for (Rank root = 0; root < 6; ++root) {
            classes.add(root, tree, items[root]);
        }
        for (Rank root = 1; root < 6; ++root) {
            const EssentialTree::Node pair = tree.add(root, 0, 1, 999 + root);
            Itemset closure = items[0];
            closure.insert(closure.end(), items[root].begin(), items[root].end());
            classes.add(pair, tree, closure);
        }
        classes.finish(std::move(tree));
        std::string file;
        std::size_t essentials = 0;
        classes.for_each([&](const MinedClass& each) {
            append_class_record(each.closure, each.support, each.essentials, file);
            essentials += each.essentials.size();
        });
        ASSERT_EQ(classes.figures().file_bytes, file.size()) << file;
        ASSERT_EQ(classes.figures().essentials, essentials);
    }
}

TEST(MinedClasses, TakesEncodedClosures) {
    EssentialTree tree(std::vector<Count>{1, 20});
    MinedClasses classes(std::vector<Itemset>{{7}, {300}});
    const std::string bytes = encoded({3, 4, 300});
    const EncodedClosure closure = {bytes, hash_of_closure(bytes), 3, std::string("3 4 300 ").size(),
                                    std::string("3 4 ").size()};
    EXPECT_TRUE(classes.add_encoded(1, tree, closure));
    EXPECT_TRUE(classes.add_encoded(0, tree, closure));
    EXPECT_EQ(classes.size(), 1U);
    EXPECT_EQ(classes.figures().largest_closure, 3U);
    EXPECT_EQ(classes.figures().rare_bytes, 4U);
    EXPECT_EQ(classes.figures().file_bytes, std::string("3 4 300\t20\t 7, 300,\n").size());
    classes.finish(std::move(tree));
    EXPECT_EQ(list_of(classes), (std::vector<MinedClass>{{{3, 4, 300}, 20, {{7}, {300}}}}));
}

TEST(MinedClasses, AddsEncodedClosuresToTheClassesOfOthers) {
    EssentialTree tree(std::vector<Count>{1, 20});
    MinedClasses classes(std::vector<Itemset>{{7}, {300}});
    const std::string bytes = encoded({7, 300});
    EXPECT_TRUE(classes.add(0, tree, {7, 300}));
    EXPECT_TRUE(
        classes.add_encoded(1, tree, {bytes, hash_of_closure(bytes), 2, std::string("7 300 ").size()}));
    classes.finish(std::move(tree));
    EXPECT_EQ(list_of(classes), (std::vector<MinedClass>{{{7, 300}, 1, {{7}, {300}}}}));
}

TEST(HashOfClosure, IsHardlyEverThatOfAnotherOne) {
    EXPECT_EQ(hash_of_closure(encoded({3, 4, 300})), hash_of_closure(encoded({3, 4, 300})));
    EXPECT_NE(hash_of_closure(encoded({3, 4, 300})), hash_of_closure(encoded({3, 4, 301})));
    EXPECT_NE(hash_of_closure(encoded({3})), hash_of_closure(encoded({})));
}

TEST(TextBytes, OfAnItemAreItsDigitsAndABlank) {
    EXPECT_EQ(text_bytes_of(0), 2U);
    EXPECT_EQ(text_bytes_of(9), 2U);
    EXPECT_EQ(text_bytes_of(10), 3U);
    EXPECT_EQ(text_bytes_of(4'294'967'295), 11U);
}

TEST(MinedClasses, TakesNoMoreClassesThanItMay) {
    const EssentialTree tree(std::vector<Count>{1, 2, 3});
    MinedClasses classes({{7}, {8}, {9}}, 1);
    EXPECT_TRUE(classes.add(0, tree, {7, 8}));
    EXPECT_FALSE(classes.add(2, tree, {9}));
    EXPECT_TRUE(classes.add(1, tree, {7, 8}));
    EXPECT_EQ(classes.size(), 1U);
    EXPECT_EQ(classes.figures().essentials, 2U);
    EXPECT_EQ(classes.figures().file_bytes, std::string("7 8\t1\t 7, 8,\n").size());
}

TEST(MinedClasses, CountsUpToTheLargestNumber) {
    // 20,000 items for each of five ranks: 3.2 * 10^21 itemsets.
    std::vector<Itemset> items;
    for (Item rank = 0; rank < 5; ++rank) {
        Itemset& twins = items.emplace_back();
        for (Item item = 0; item < 20'000; ++item) {
            twins.push_back(20'000 * rank + item);
        }
    }
    EssentialTree tree(std::vector<Count>(5, 1));
    EssentialTree::Node node = 4;
    for (Rank rank = 4; rank > 0; --rank) {
        node = tree.add(node, rank - 1, 1, 1);
    }
    MinedClasses classes(items);
    classes.add(node, tree, {0});
    EXPECT_EQ(classes.figures().essentials, std::numeric_limits<std::size_t>::max());
    EXPECT_EQ(classes.figures().file_bytes, std::numeric_limits<std::size_t>::max());
}

TEST(MinedClasses, FindsEachOfManyClassesAgain) {
    constexpr Rank many = 5000;
    EssentialTree tree(std::vector<Count>(many, 1));
    std::vector<Itemset> items;
    for (Rank rank = 0; rank < many; ++rank) {
        items.push_back({rank});
    }
    MinedClasses classes(items);
    for (Rank rank = 0; rank < many; ++rank) {
        classes.add(rank, tree, {rank / 2, rank / 2 + 70000});
    }
    EXPECT_EQ(classes.size(), many / 2);
    classes.finish(std::move(tree));
    Item expected = 0;
    classes.for_each([&expected](const MinedClass& each) {
        EXPECT_EQ(each.closure, (Itemset{expected, expected + 70000}));
        EXPECT_EQ(each.essentials, (std::vector<Itemset>{{2 * expected}, {2 * expected + 1}}));
        ++expected;
    });
    EXPECT_EQ(expected, many / 2);
}

}  // namespace
}  // namespace korv::tools
