#include "rules/item_names.h"

#include <gtest/gtest.h>

namespace korv::tools {

namespace {

TEST(ItemNames, NamesAnItemWithoutANameByItsNumber) {
    const ItemNames names({{1, "bread"}});

    EXPECT_EQ(names.name(1), "bread");
    EXPECT_EQ(names.name(17), "17");
}

TEST(ItemNames, FindsTheColumnsOfItemsNamedColumnEqualsValue) {
    const ItemNames names({{1, "sex=male"}, {2, "class=crew"}, {3, "sex=female"}, {4, "class=1st"}});

    ASSERT_EQ(names.columns().size(), 2U);
    EXPECT_EQ(names.columns()[0].name, "class");
    EXPECT_EQ(names.columns()[0].items, (Itemset{2, 4}));
    EXPECT_EQ(names.columns()[1].name, "sex");
    EXPECT_EQ(names.columns()[1].items, (Itemset{1, 3}));
    EXPECT_EQ(names.column_of(3), &names.columns()[1]);
    EXPECT_EQ(names.value(3), "female");
}

TEST(ItemNames, TakesTheFirstEqualsSignAsTheEndOfTheColumn) {
    const ItemNames names({{1, "sum=a=b"}, {2, "sum="}});

    EXPECT_EQ(names.columns().at(0).name, "sum");
    EXPECT_EQ(names.value(1), "a=b");
    EXPECT_EQ(names.value(2), "");
}

TEST(ItemNames, SeesNoColumnInOneItemOrInANameThatBeginsWithAnEqualsSign) {
    const ItemNames names({{1, "sex=male"}, {2, "=1"}, {3, "=2"}, {4, "milk"}});

    EXPECT_TRUE(names.columns().empty());
    EXPECT_EQ(names.column_of(1), nullptr);
    EXPECT_EQ(names.column_of(4), nullptr);
    EXPECT_EQ(names.column_of(99), nullptr);
}

}  // namespace

}  // namespace korv::tools
