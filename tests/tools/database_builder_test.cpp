#include "mine/database_builder.h"

#include <gtest/gtest.h>

namespace korv::tools {
namespace {

TEST(DatabaseBuilder, FilesTransactionsUnderItemsInAscendingOrder) {
    DatabaseBuilder builder;
    builder.begin_transaction();
    builder.add(9);
    builder.add(2);
    builder.begin_transaction();
    builder.add(2);
    const Database database = builder.finish();
    EXPECT_EQ(database.transactions, 2U);
    ASSERT_EQ(database.items.size(), 2U);
    EXPECT_EQ(database.items[0].item, 2U);
    EXPECT_EQ(database.items[0].transactions, (std::vector<Transaction>{0, 1}));
    EXPECT_EQ(database.items[1].item, 9U);
    EXPECT_EQ(database.items[1].transactions, (std::vector<Transaction>{0}));
}

TEST(DatabaseBuilder, CountsARepeatedItemOnce) {
    DatabaseBuilder builder;
    builder.begin_transaction();
    builder.add(5);
    builder.add(5);
    EXPECT_EQ(builder.finish().items.front().transactions, (std::vector<Transaction>{0}));
}

TEST(DatabaseBuilder, CountsEmptyTransactions) {
    DatabaseBuilder builder;
    builder.begin_transaction();
    builder.begin_transaction();
    builder.add(1);
    builder.begin_transaction();
    const Database database = builder.finish();
    EXPECT_EQ(database.transactions, 3U);
    EXPECT_EQ(database.items.front().transactions, (std::vector<Transaction>{1}));
}

}  // namespace
}  // namespace korv::tools
