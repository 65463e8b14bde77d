#include "io/class_loading.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "support/loaded_classes.h"

namespace korv {
namespace {

using test::classes_of;

using Itemsets = std::vector<Itemset>;

/// The closed itemsets of the classes, in map order.
Itemsets keys(const ClassMap& classes) {
    Itemsets result;
    for (const auto& [itemset, unused] : classes) {
        result.push_back(itemset);
    }
    return result;
}

TEST(ClassLoading, StoresSupportAndEssentials) {
    const ClassMap classes = classes_of("3 1 2\t5\t 2 3, 1,\n4\t7\t ,\n");
    EXPECT_EQ(classes.at({1, 2, 3}).support, 5U);
    EXPECT_EQ(classes.at({1, 2, 3}).essentials, (Itemsets{{2, 3}, {1}}));
    EXPECT_EQ(classes.at({4}).support, 7U);
    EXPECT_EQ(classes.at({4}).essentials, (Itemsets{{}}));
}

TEST(ClassLoading, OrdersClassesLexicographically) {
    const ClassMap classes = classes_of("2\t1\t 2,\n1 3\t1\t ,\n10\t1\t 9,\n1\t1\t 1,\n1 2\t1\t ,\n");
    EXPECT_EQ(keys(classes), (Itemsets{{1}, {1, 2}, {1, 3}, {2}, {10}}));
}

TEST(ClassLoading, OrdersItemsAsUnsignedNumbers) {
    const ClassMap classes = classes_of("4294967295\t1\t 1,\n2147483648\t1\t 1,\n5\t1\t 1,\n");
    EXPECT_EQ(keys(classes), (Itemsets{{5}, {2147483648U}, {4294967295U}}));
}

TEST(ClassLoading, LaterRecordOfAClosedItemsetReplacesTheEarlier) {
    const ClassMap classes = classes_of("3 1\t5\t 1, 3,\n2\t4\t 2,\n1 3\t3\t 3,\n");
    EXPECT_EQ(keys(classes), (Itemsets{{1, 3}, {2}}));
    EXPECT_EQ(classes.at({1, 3}).support, 3U);
    EXPECT_EQ(classes.at({1, 3}).essentials, Itemsets{{3}});
}

TEST(ClassLoading, LaterRecordMayTakeTheEssentialsAway) {
    const ClassMap classes = classes_of("1 3\t5\t 1, 3,\n1 3\t0\t 1 3,\n");
    EXPECT_EQ(classes.at({1, 3}).support, 0U);
    EXPECT_EQ(classes.at({1, 3}).essentials, Itemsets{});
}

TEST(ClassLoading, StoresAClassWhoseEssentialsWereAllAsLargeAsItself) {
    const ClassMap classes = classes_of("1 4\t3\t 4 1, 1 4,\n");
    EXPECT_EQ(classes.at({1, 4}).support, 3U);
    EXPECT_EQ(classes.at({1, 4}).essentials, Itemsets{});
}

TEST(ClassLoading, RepeatedItemsMakeAnotherClass) {
    const ClassMap classes = classes_of("1 2\t3\t ,\n2 1 2\t4\t ,\n");
    EXPECT_EQ(keys(classes), (Itemsets{{1, 2}, {1, 2, 2}}));
}

TEST(ClassLoading, StopsAtARecordWithoutItems) {
    const ClassMap classes = classes_of("1\t3\t 1,\n\t4\t ,\n2\t3\t 2,\n");
    EXPECT_EQ(keys(classes), Itemsets{{1}});
}

TEST(ClassLoading, TextWithoutRecordsHasNoClasses) {
    EXPECT_TRUE(classes_of("").empty());
}

TEST(ClassLoading, StoresALastRecordWithoutItsLineEnd) {
    EXPECT_EQ(classes_of("1 2\t3\t 1, 2,").at({1, 2}).essentials, (Itemsets{{1}, {2}}));
}

TEST(ClassLoading, ReadsFromWhereTheInputStands) {
    std::istringstream input("1\t3\t 1,\n2\t4\t 2,\n");
    std::string first_line;
    std::getline(input, first_line);
    EXPECT_EQ(keys(read_classes(input)), Itemsets{{2}});
}

TEST(ClassLoading, PrintsNothing) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    classes_of("1\t3\t 1,\n2\t3\t 2,");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

// The records themselves.

TEST(ToClasses, OrdersItemsetsThatBeginAlike) {
    // Items from 65536 on do not fit into what is compared first.
    const ClassMap classes = to_classes({{{1, 2, 3, 70001}, {}},
                                         {{1, 2, 3, 70000}, {}},
                                         {{1, 2, 3}, {}},
                                         {{1, 2, 3, 4, 6}, {}},
                                         {{1, 2, 3, 4, 5}, {}},
                                         {{70001}, {}},
                                         {{70000, 70002}, {}}});
    EXPECT_EQ(keys(classes), (Itemsets{{1, 2, 3},
                                       {1, 2, 3, 4, 5},
                                       {1, 2, 3, 4, 6},
                                       {1, 2, 3, 70000},
                                       {1, 2, 3, 70001},
                                       {70000, 70002},
                                       {70001}}));
}

TEST(ToClasses, KeepsTheLastOfManyRecordsOfAClosedItemset) {
    const ClassMap classes = to_classes({{{7}, {1, {}}}, {{7}, {4, {{3}}}}, {{5}, {9, {}}}, {{7}, {2, {}}}});
    EXPECT_EQ(keys(classes), (Itemsets{{5}, {7}}));
    EXPECT_EQ(classes.at({7}).support, 2U);
    EXPECT_EQ(classes.at({7}).essentials, Itemsets{});
}

TEST(ToClasses, TakesAnEmptyClosedItemset) {
    EXPECT_EQ(keys(to_classes({{{1}, {}}, {{}, {}}})), (Itemsets{{}, {1}}));
}

}  // namespace
}  // namespace korv
