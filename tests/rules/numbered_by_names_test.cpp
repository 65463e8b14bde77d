#include "rules/numbered_by_names.h"

#include <gtest/gtest.h>

namespace korv::tools {
namespace {

/// Bread in the first line, butter in both, tea in the second.
Database three_items() {
    Database database;
    database.items = {{1, {0}}, {2, {0, 1}}, {3, {1}}};
    database.lines = database.transactions = 2;
    database.names = {"bread", "butter", "tea"};
    return database;
}

std::vector<Item> items_of(const Database& database) {
    std::vector<Item> items;
    for (const Database::ItemColumn& column : database.items) {
        items.push_back(column.item);
    }
    return items;
}

TEST(NumberByNames, GivesItemsTheNumbersOfTheirNames) {
    Database database = three_items();
    number_by_names({{4, "tea"}, {5, "butter"}, {9, "bread"}}, database);
    EXPECT_EQ(items_of(database), (std::vector<Item>{4, 5, 9}));
    EXPECT_EQ(database.names, (std::vector<std::string>{"tea", "butter", "bread"}));
    EXPECT_EQ(database.items[0].transactions, (std::vector<Transaction>{1}));
    EXPECT_EQ(database.items[1].transactions, (std::vector<Transaction>{0, 1}));
    EXPECT_EQ(database.items[2].transactions, (std::vector<Transaction>{0}));
}

TEST(NumberByNames, PutsItemsThatHaveNoNumberBehindAllOthers) {
    Database database = three_items();
    number_by_names({{2, "tea"}, {7, "salt"}}, database);
    EXPECT_EQ(items_of(database), (std::vector<Item>{2, 8, 9}));
    EXPECT_EQ(database.names, (std::vector<std::string>{"tea", "bread", "butter"}));
}

TEST(NumberByNames, KeepsAllItemsWhereNoNumberIsAbove) {
    Database database = three_items();
    number_by_names({{1, "tea"}, {4294967295, "salt"}}, database);
    EXPECT_EQ(items_of(database), (std::vector<Item>{0, 1, 2}));
    EXPECT_EQ(database.names, (std::vector<std::string>{"bread", "tea", "butter"}));
}

TEST(NumberByNames, ChangesNothingWhereNoNameIsKnown) {
    Database database = three_items();
    number_by_names({{1, "Brot"}, {2, "Butter"}}, database);
    EXPECT_EQ(items_of(database), (std::vector<Item>{1, 2, 3}));
    number_by_names({}, database);
    EXPECT_EQ(items_of(database), (std::vector<Item>{1, 2, 3}));
}

TEST(NumberByNames, ChangesNothingWhereItemsHaveNumbersAlone) {
    Database database = three_items();
    database.names.clear();
    number_by_names({{5, "bread"}}, database);
    EXPECT_EQ(items_of(database), (std::vector<Item>{1, 2, 3}));
}

}  // namespace
}  // namespace korv::tools
