#include "mine/database_builder.h"

#include <gtest/gtest.h>

#include "tools/complaint.h"

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

TEST(DatabaseBuilder, TakesItemsOfAnySize) {
    DatabaseBuilder builder;
    builder.begin_transaction();
    for (const Item item : {4294967295U, 1048576U, 1048575U, 0U}) {
        builder.add(item);
        builder.add(item);
    }
    const Database database = builder.finish();
    ASSERT_EQ(database.items.size(), 4U);
    EXPECT_EQ(database.items[0].item, 0U);
    EXPECT_EQ(database.items[1].item, 1048575U);
    EXPECT_EQ(database.items[2].item, 1048576U);
    EXPECT_EQ(database.items[3].item, 4294967295U);
    for (const Database::ItemColumn& column : database.items) {
        EXPECT_EQ(column.transactions, (std::vector<Transaction>{0})) << column.item;
    }
}

TEST(DatabaseBuilder, HasNoWeightsWhereAllAre1) {
    DatabaseBuilder builder;
    builder.begin_transaction(1);
    builder.begin_transaction();
    const Database database = builder.finish();
    EXPECT_EQ(database.weights, std::vector<Count>{});
    EXPECT_EQ(database.transactions, 2U);
}

TEST(DatabaseBuilder, KeepsAWeightForEachLineOnceOneIsNot1) {
    DatabaseBuilder builder;
    builder.begin_transaction();
    builder.begin_transaction();
    builder.begin_transaction(5);
    builder.begin_transaction();
    const Database database = builder.finish();
    EXPECT_EQ(database.weights, (std::vector<Count>{1, 1, 5, 1}));
    EXPECT_EQ(database.lines, 4U);
    EXPECT_EQ(database.transactions, 8U);
}

TEST(DatabaseBuilder, RefusesMoreTransactionsThanCanBeCounted) {
    DatabaseBuilder builder;
    builder.begin_transaction(2147483646);
    builder.begin_transaction(1);
    const std::string complaint = "found more than 2147483647 transactions; expected at most so many";
    EXPECT_EQ(complaint_of([&builder] { builder.begin_transaction(1); }), complaint);
    // Together with those so far, this would be a small number of 32 bits.
    EXPECT_EQ(complaint_of([&builder] { builder.begin_transaction(4294967295); }), complaint);
}

}  // namespace
}  // namespace korv::tools
