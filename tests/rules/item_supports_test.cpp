#include "rules/item_supports.h"

#include <gtest/gtest.h>

namespace korv::tools {

namespace {

TEST(SupportsOfItems, AreThoseOfKeysOfOneItem) {
    const ClassMap classes = {
        {{1}, {4, {}}},                      // stores no essential itemset: it is its own key
        {{1, 2}, {6, {{2}}}},                //
        {{1, 2, 3, 4}, {9, {{1, 3}, {4}}}},  // nothing says how often 3 is there
        {{1, 2, 3, 4, 5}, {10, {{1, 5}, {3, 5}}}},
    };
    EXPECT_EQ(supports_of_items(classes), (ItemSupports{{1, 4}, {2, 6}, {4, 9}}));
}

TEST(SupportsOfItems, AreSumsOfWeightsInADatabase) {
    Database database;
    database.items = {{3, {0, 1}}, {7, {1}}};
    database.lines = 2;
    database.weights = {5, 2};
    database.transactions = 7;
    EXPECT_EQ(supports_of_items(database), (ItemSupports{{3, 7}, {7, 2}}));
}

}  // namespace

}  // namespace korv::tools
