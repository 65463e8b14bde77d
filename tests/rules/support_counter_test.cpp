#include "rules/support_counter.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>

#include "engine/difference_supports.h"
#include "engine/lattice_entries.h"
#include "tools/random_database.h"

namespace korv::tools {
namespace {

TEST(SupportCounter, CountsTransactionsWithAnItem) {
    // Items 10, 11 and 12.
    const Database database = database_of({0b001, 0b011, 0b110, 0b000});
    SupportCounter counter(database);

    EXPECT_EQ(counter.count(Itemset{10}), 2U);
    EXPECT_EQ(counter.count(Itemset{10, 12}), 3U);
    EXPECT_EQ(counter.count(Itemset{11, 12}), 2U);
    EXPECT_EQ(counter.count(Itemset{}), 0U);
}

TEST(SupportCounter, LinesCountAsOftenAsTheirWeightSays) {
    const Database database = database_of({0b001, 0b011, 0b110}, {5, 1, 7});
    SupportCounter counter(database);

    EXPECT_EQ(counter.count(Itemset{10}), 6U);
    EXPECT_EQ(counter.count(Itemset{10, 11}), 13U);
}

TEST(SupportCounter, ItemsThatTheDatabaseLacksAreInNoTransaction) {
    const Database database = database_of({0b001, 0b010});
    SupportCounter counter(database);

    EXPECT_EQ(counter.count(Itemset{3, 10}), 1U);
    EXPECT_EQ(counter.count(Itemset{4000000000}), 0U);
}

TEST(SupportCounter, CountsAsAPlainLoopInRandomDatabases) {
    std::mt19937 random(40);
    for (int i = 0; i < 300; ++i) {
        // From items in half of the lines to some in one of a hundred, which are lists.
        const Transactions transactions =
            random_transactions(10, 400, static_cast<std::uint32_t>(2 + random() % 100), random);
        std::vector<Count> weights;
        for (std::size_t line = 0; i % 2 == 0 && line < transactions.size(); ++line) {
            weights.push_back(1 + static_cast<Count>(random() % 5));
        }
        const Database database = database_of(transactions, weights);
        SupportCounter counter(database);
        for (Set set = 0; set < 1024; ++set) {
            Itemset itemset;
            for (Item item = 0; item < 10; ++item) {
                if ((set >> item & 1U) != 0) {
                    itemset.push_back(10 + item);
                }
            }
            Count expected = 0;
            for (std::size_t line = 0; line < transactions.size(); ++line) {
                const Count weight = weights.empty() ? 1 : weights[line];
                expected += (transactions[line] & set) != 0 ? weight : 0;
            }
            ASSERT_EQ(counter.count(itemset), expected) << "round " << i << ", set " << set;
        }
    }
}

TEST(CountedSupports, CountWhatTheClassesLeaveOpen) {
    const Database database = database_of({0b001, 0b011, 0b110, 0b100});
    SupportCounter counter(database);
    // The support of 11 is within that of 10 11, which is 3, and no other class is known.
    const ClassMap classes = {{{10, 11}, {3, {}}}};
    const LatticeEntries entries = lattice_entries(classes);
    CountedSupports supports(std::make_unique<DifferenceSupports>(entries), counter);
    SupportBounds bounds = {0, 3};

    EXPECT_EQ(supports.settle({11}, bounds), 2U);
    EXPECT_EQ(bounds, (SupportBounds{2, 2}));
    bounds = {1, 3};
    EXPECT_EQ(supports.settle({11}, bounds), 2U);
    EXPECT_EQ(bounds, (SupportBounds{2, 2}));
    EXPECT_EQ(supports.counted(), 1U);
}

TEST(CountedSupports, LeaveWhatTheClassesTellToThem) {
    const Database database = database_of({0b001});
    SupportCounter counter(database);
    const ClassMap classes = {{{10, 11}, {3, {}}}};
    const LatticeEntries entries = lattice_entries(classes);
    CountedSupports supports(std::make_unique<DifferenceSupports>(entries), counter);
    SupportBounds bounds = {0, 3};

    EXPECT_EQ(supports.settle({10, 11}, bounds), 3U);
    EXPECT_EQ(supports.counted(), 0U);
}

}  // namespace
}  // namespace korv::tools
