#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "app/globals.h"
#include "app/lattice.h"
#include "support/lattice_fixture.h"

namespace korv {
namespace {

using Itemsets = std::vector<Itemset>;

class LatticeLoading : public test::LatticeFixture {
protected:
    /// The lattice with classes loaded, not filed in the hash table.
    Lattice& load_classes(const std::string& classes, const test::RunSettings& settings = {}) {
        Lattice& lattice = make_lattice(classes, settings);
        lattice.Load_DCI();
        return lattice;
    }
};

/// The closed itemsets of the classes, in map order.
Itemsets keys(const Lattice& lattice) {
    Itemsets result;
    for (const auto& [itemset, unused] : lattice.dci_map) {
        result.push_back(itemset);
    }
    return result;
}

/// The closed itemsets of the hash table, in its order.
Itemsets filed(const Lattice& lattice) {
    Itemsets result;
    for (const LatticeEntry& entry : lattice.hash_table) {
        result.push_back(entry.itemset());
    }
    return result;
}

std::vector<Count> cardinalities(const Lattice& lattice) {
    std::vector<Count> result;
    for (const LatticeEntry& entry : lattice.hash_table) {
        result.push_back(entry.cardinality);
    }
    return result;
}

// Load_DCI.

TEST_F(LatticeLoading, StoresSupportAndEssentials) {
    load_classes("3 1 2\t5\t 2 3, 1,\n4\t7\t ,\n");
    EXPECT_EQ(node({1, 2, 3})->second.support, 5U);
    EXPECT_EQ(node({1, 2, 3})->second.essentials, (Itemsets{{2, 3}, {1}}));
    EXPECT_EQ(node({4})->second.support, 7U);
    EXPECT_EQ(node({4})->second.essentials, (Itemsets{{}}));
}

TEST_F(LatticeLoading, OrdersClassesLexicographically) {
    const Lattice& lattice = load_classes("2\t1\t 2,\n1 3\t1\t ,\n10\t1\t 9,\n1\t1\t 1,\n1 2\t1\t ,\n");
    EXPECT_EQ(keys(lattice), (Itemsets{{1}, {1, 2}, {1, 3}, {2}, {10}}));
}

TEST_F(LatticeLoading, OrdersItemsAsUnsignedNumbers) {
    const Lattice& lattice = load_classes("4294967295\t1\t 1,\n2147483648\t1\t 1,\n5\t1\t 1,\n");
    EXPECT_EQ(keys(lattice), (Itemsets{{5}, {2147483648U}, {4294967295U}}));
}

TEST_F(LatticeLoading, LaterRecordOfAClosedItemsetReplacesTheEarlier) {
    const Lattice& lattice = load_classes("3 1\t5\t 1, 3,\n2\t4\t 2,\n1 3\t3\t 3,\n");
    EXPECT_EQ(keys(lattice), (Itemsets{{1, 3}, {2}}));
    EXPECT_EQ(node({1, 3})->second.support, 3U);
    EXPECT_EQ(node({1, 3})->second.essentials, Itemsets{{3}});
}

TEST_F(LatticeLoading, LaterRecordMayTakeTheEssentialsAway) {
    load_classes("1 3\t5\t 1, 3,\n1 3\t0\t 1 3,\n");
    EXPECT_EQ(node({1, 3})->second.support, 0U);
    EXPECT_EQ(node({1, 3})->second.essentials, Itemsets{});
}

TEST_F(LatticeLoading, StoresAClassWhoseEssentialsWereAllAsLargeAsItself) {
    load_classes("1 4\t3\t 4 1, 1 4,\n");
    EXPECT_EQ(node({1, 4})->second.support, 3U);
    EXPECT_EQ(node({1, 4})->second.essentials, Itemsets{});
}

TEST_F(LatticeLoading, RepeatedItemsMakeAnotherClass) {
    const Lattice& lattice = load_classes("1 2\t3\t ,\n2 1 2\t4\t ,\n");
    EXPECT_EQ(keys(lattice), (Itemsets{{1, 2}, {1, 2, 2}}));
}

TEST_F(LatticeLoading, AppliesNoThreshold) {
    const Lattice& lattice = load_classes("1\t0\t 1,\n2\t3\t 2,\n", {.minsupp = 1000, .minconf = 1.0});
    EXPECT_EQ(keys(lattice), (Itemsets{{1}, {2}}));
}

TEST_F(LatticeLoading, StopsAtARecordWithoutItems) {
    const Lattice& lattice = load_classes("1\t3\t 1,\n\t4\t ,\n2\t3\t 2,\n");
    EXPECT_EQ(keys(lattice), Itemsets{{1}});
}

TEST_F(LatticeLoading, PrintsNothing) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    load_classes("1\t3\t 1,\n2\t3\t 2,\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(LatticeLoading, EmptyClassFileGivesNoClassAndNoMessage) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const Lattice& lattice = load_classes("");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_TRUE(lattice.dci_map.empty());
}

TEST_F(LatticeLoading, StoresALastRecordWithoutItsLineEndAndPrintsTheReadersMessage) {
    testing::internal::CaptureStdout();
    load_classes("1 2\t3\t 1, 2,");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "fin de fichier\n");
    EXPECT_EQ(node({1, 2})->second.essentials, (Itemsets{{1}, {2}}));
}

TEST_F(LatticeLoading, StartsAtTheBeginningOfTheFile) {
    std::istringstream input("1\t3\t 1,\n2\t3\t 2,\n");
    std::string first_line;
    std::getline(input, first_line);
    Lattice lattice(input, 0.5, 1);
    lattice.Load_DCI();
    EXPECT_EQ(keys(lattice), (Itemsets{{1}, {2}}));
}

TEST_F(LatticeLoading, StartsAtTheBeginningOfAFileThatWasReadToItsEnd) {
    std::istringstream input("1\t3\t 1,\n");
    while (input.get() != std::istringstream::traits_type::eof()) {
    }
    Lattice lattice(input, 0.5, 1);
    lattice.Load_DCI();
    EXPECT_EQ(keys(lattice), Itemsets{{1}});
}

TEST_F(LatticeLoading, ReadsAPipeFromWhereItStands) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const std::string classes = "1\t3\t 1,\n2\t4\t 2,\n";
    ASSERT_EQ(write(ends[1], classes.data(), classes.size()), static_cast<ssize_t>(classes.size()));
    close(ends[1]);
    std::ifstream input("/dev/fd/" + std::to_string(ends[0]));
    close(ends[0]);
    ASSERT_EQ(input.peek(), '1');
    Lattice lattice(input, 0.5, 1);
    lattice.Load_DCI();
    EXPECT_EQ(keys(lattice), (Itemsets{{1}, {2}}));
}

TEST_F(LatticeLoading, EndsWithStatus1WhenTheLatticeFileIsAtItsEnd) {
    const auto load_at_end_of_lattice_file = [this] {
        dup2(STDERR_FILENO, STDOUT_FILENO);
        Lattice& lattice = make_lattice("1\t3\t 1,\n");
        lattice.lattice_io.setstate(std::ios::eofbit);
        lattice.Load_DCI();
    };
    EXPECT_EXIT(load_at_end_of_lattice_file(), testing::ExitedWithCode(1),
                testing::Eq("Erreur: aucune classe disjonctive n'a ete lue.\n"));
}

TEST_F(LatticeLoading, MessageOfStatus1IsNotOnStandardError) {
    const auto load_at_end_of_lattice_file = [this] {
        Lattice& lattice = make_lattice("1\t3\t 1,\n");
        lattice.lattice_io.setstate(std::ios::eofbit);
        lattice.Load_DCI();
    };
    EXPECT_EXIT(load_at_end_of_lattice_file(), testing::ExitedWithCode(1), testing::Eq(""));
}

TEST_F(LatticeLoading, LoadsWhenTheLatticeFileCannotBeCreated) {
    S5 += "/missing/Lattice.txt";
    const Lattice& lattice = load_classes("1\t3\t 1,\n");
    EXPECT_EQ(keys(lattice), Itemsets{{1}});
}

// Load_Hash_table.

TEST_F(LatticeLoading, FilesClassesByCardinalityThenLexicographically) {
    const Lattice& lattice = load("2\t1\t 2,\n1 3\t1\t ,\n1 2\t1\t ,\n4 5 6\t1\t ,\n");
    EXPECT_EQ(filed(lattice), (Itemsets{{2}, {1, 2}, {1, 3}, {4, 5, 6}}));
    EXPECT_EQ(cardinalities(lattice), (std::vector<Count>{1, 2, 2, 3}));
}

TEST_F(LatticeLoading, FilesClassesWithoutSuccessors) {
    const Lattice& lattice = load("1\t1\t 1,\n1 2\t1\t ,\n1 2 3\t1\t ,\n");
    ASSERT_EQ(lattice.hash_table.size(), 3U);
    for (const LatticeEntry& entry : lattice.hash_table) {
        EXPECT_TRUE(entry.successors.empty());
    }
}

TEST_F(LatticeLoading, FiledEntriesReferToTheClassesOfTheMap) {
    const Lattice& lattice = load("2\t7\t 2,\n1 3\t9\t 1,\n");
    ASSERT_EQ(lattice.hash_table.size(), 2U);
    EXPECT_EQ(lattice.hash_table[0].node, node({2}));
    EXPECT_EQ(lattice.hash_table[1].node, node({1, 3}));
}

TEST_F(LatticeLoading, RepeatedItemsCountInTheCardinality) {
    const Lattice& lattice = load("2 2 1\t1\t ,\n3 4\t1\t ,\n");
    EXPECT_EQ(filed(lattice), (Itemsets{{3, 4}, {1, 2, 2}}));
    EXPECT_EQ(cardinalities(lattice), (std::vector<Count>{2, 3}));
}

TEST_F(LatticeLoading, FilesClassesBelowMinsupp) {
    const Lattice& lattice = load("1\t0\t 1,\n2\t3\t 2,\n", {.minsupp = 1000, .minconf = 1.0});
    EXPECT_EQ(filed(lattice), (Itemsets{{1}, {2}}));
}

TEST_F(LatticeLoading, FilesNothingWithoutClasses) {
    EXPECT_TRUE(load("").hash_table.empty());
}

TEST_F(LatticeLoading, FilesAnEmptyClosedItemsetFirst) {
    Lattice& lattice = load_classes("1\t3\t 1,\n2\t3\t 2,\n");
    lattice.dci_map[{}];
    lattice.Load_Hash_table();
    EXPECT_EQ(filed(lattice), (Itemsets{{}, {1}, {2}}));
    EXPECT_EQ(cardinalities(lattice), (std::vector<Count>{0, 1, 1}));
}

TEST_F(LatticeLoading, FilingPrintsNothing) {
    testing::internal::CaptureStdout();
    load("1\t3\t 1,\n2\t3\t 2,\n");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

}  // namespace
}  // namespace korv
