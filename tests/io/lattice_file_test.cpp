#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "app/lattice.h"
#include "support/lattice_fixture.h"

namespace korv {
namespace {

constexpr auto file_banner =
    "\t\t\t**************************************************\n"
    "\t\t\t**************************************************\n"
    "\t\t\t****                                          ****\n"
    "\t\t\t****      Disjunctive Search Space\t\t****\n"
    "\t\t\t****                                          ****\n"
    "\t\t\t****                                          ****\n"
    "\t\t\t**************************************************\n"
    "\t\t\t**************************************************\n";

constexpr auto class_banner =
    "******************************\n"
    "**   Equivalence class:  **\n"
    "**                          **\n"
    "******************************\n";

class LatticeOutput : public test::LatticeFixture {
protected:
    /// The whole lattice file over `classes`.
    std::string written(const std::string& classes, const test::RunSettings& settings = {}) {
        build(classes, settings).Output_Lattice();
        return lattice_file();
    }

    std::string successors_line(const std::vector<Itemset>& itemsets) {
        Lattice& lattice = make_lattice("");
        SuccessorList successors;
        for (const Itemset& itemset : itemsets) {
            successors.push_back(lattice.dci_map.try_emplace(itemset).first);
        }
        lattice.afficher_list_succ(successors);
        return lattice_file();
    }

    std::string essentials_line(const std::vector<Itemset>& essentials) {
        make_lattice("").afficher_essentiels(essentials);
        return lattice_file();
    }

    std::string class_head(const Itemset& itemset, Count support) {
        Lattice& lattice = make_lattice("");
        lattice.dci_map[itemset].support = support;
        lattice.afficher_IFD_supp(node(itemset));
        return lattice_file();
    }
};

// The file.

TEST_F(LatticeOutput, IsABannerAndABlockForASingleClass) {
    EXPECT_EQ(written("1 4\t3\t 4 1,\n"), std::string(file_banner) + class_banner +
                                              "DCP:  1 4 \n"
                                              "Disjonctive support: 3\n"
                                              "les essentiels:  VIDE\n"
                                              "les successeurs: VIDE\n"
                                              "\n");
}

TEST_F(LatticeOutput, BlocksFollowByAscendingCardinality) {
    EXPECT_EQ(written("1 2\t5\t 1, 2,\n2\t4\t 2,\n1\t3\t 1,\n"), std::string(file_banner) + class_banner +
                                                                     "DCP:  1 \n"
                                                                     "Disjonctive support: 3\n"
                                                                     "les essentiels:  VIDE\n"
                                                                     "les successeurs: VIDE\n"
                                                                     "\n" +
                                                                     class_banner +
                                                                     "DCP:  2 \n"
                                                                     "Disjonctive support: 4\n"
                                                                     "les essentiels:  VIDE\n"
                                                                     "les successeurs: VIDE\n"
                                                                     "\n" +
                                                                     class_banner +
                                                                     "DCP:  1 2 \n"
                                                                     "Disjonctive support: 5\n"
                                                                     "les essentiels:  1  ; 2  ; \n"
                                                                     "les successeurs: 1 ;2 ;\n"
                                                                     "\n");
}

TEST_F(LatticeOutput, IsTheSameForAnyThresholds) {
    const std::string classes = "1 2\t5\t 1, 2,\n2\t4\t 2,\n1\t3\t 1,\n";
    const std::string low = written(classes, {.minsupp = 0, .minconf = 0.0});
    EXPECT_EQ(written(classes, {.minsupp = 1000, .minconf = 1.0}), low);
}

TEST_F(LatticeOutput, GoesToTheLatticeFileOnly) {
    testing::internal::CaptureStdout();
    written("1 2\t5\t 1, 2,\n2\t4\t 2,\n");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(intra_exact() + intra_approx() + inter_exact() + inter_approx() + rule_counts_file(), "");
}

// Its pieces.

TEST_F(LatticeOutput, ClassHeadShowsItemsetAndSupport) {
    EXPECT_EQ(class_head({2, 5, 11}, 4294967295U), std::string(class_banner) +
                                                       "DCP:  2 5 11 \n"
                                                       "Disjonctive support: 4294967295\n");
}

TEST_F(LatticeOutput, ClassHeadOfTheEmptyItemsetShowsNoItem) {
    EXPECT_EQ(class_head({}, 0), std::string(class_banner) +
                                     "DCP:  \n"
                                     "Disjonctive support: 0\n");
}

TEST_F(LatticeOutput, EssentialsAreClosedBySemicolonsBetweenBlanks) {
    EXPECT_EQ(essentials_line({{2, 3}, {1}}), "les essentiels:  2 3  ; 1  ; \n");
}

TEST_F(LatticeOutput, EmptyEssentialIsASemicolonAlone) {
    EXPECT_EQ(essentials_line({{}}), "les essentiels:   ; \n");
}

TEST_F(LatticeOutput, NoEssentialIsVide) {
    EXPECT_EQ(essentials_line({}), "les essentiels:  VIDE\n");
}

TEST_F(LatticeOutput, SuccessorsAreClosedByBareSemicolonsInListOrder) {
    EXPECT_EQ(successors_line({{3}, {1, 2}}), "les successeurs: 3 ;1 2 ;\n\n");
}

TEST_F(LatticeOutput, EmptySuccessorIsASemicolonAlone) {
    EXPECT_EQ(successors_line({{}}), "les successeurs: ;\n\n");
}

TEST_F(LatticeOutput, NoSuccessorIsVideAndAnEmptyLine) {
    EXPECT_EQ(successors_line({}), "les successeurs: VIDE\n\n");
}

// find_dci_node.

TEST_F(LatticeOutput, FindsTheEntryOfEachNode) {
    const Lattice& lattice = load("2\t1\t 2,\n1 3\t1\t ,\n1 2\t1\t ,\n4 5 6\t1\t ,\n7 8 9\t1\t ,\n");
    std::vector<std::ptrdiff_t> positions;
    for (const Itemset& itemset : std::vector<Itemset>{{2}, {1, 2}, {1, 3}, {4, 5, 6}, {7, 8, 9}}) {
        positions.push_back(lattice.find_dci_node(node(itemset)) - lattice.hash_table.begin());
    }
    EXPECT_EQ(positions, (std::vector<std::ptrdiff_t>{0, 1, 2, 3, 4}));
}

class NodeWithoutEntry : public LatticeOutput, public ::testing::WithParamInterface<Itemset> {};

TEST_P(NodeWithoutEntry, IsNotFound) {
    Lattice& lattice = load("2\t1\t 2,\n1 3\t1\t ,\n1 5\t1\t ,\n4 5 6 7\t1\t ,\n");
    const NodeRef stray = lattice.dci_map.try_emplace(GetParam()).first;
    EXPECT_EQ(lattice.find_dci_node(stray), lattice.hash_table.end());
}

INSTANTIATE_TEST_SUITE_P(BeforeAllEntries, NodeWithoutEntry, ::testing::Values(Itemset{}, Itemset{1}));
INSTANTIATE_TEST_SUITE_P(AmongItsCardinality, NodeWithoutEntry, ::testing::Values(Itemset{1, 4}));
INSTANTIATE_TEST_SUITE_P(AfterItsCardinality, NodeWithoutEntry, ::testing::Values(Itemset{3}, Itemset{2, 3}));
INSTANTIATE_TEST_SUITE_P(OfAnotherCardinality, NodeWithoutEntry, ::testing::Values(Itemset{1, 3, 5}));
INSTANTIATE_TEST_SUITE_P(AfterAllEntries, NodeWithoutEntry,
                         ::testing::Values(Itemset{5, 6, 7, 8}, Itemset{1, 2, 3, 4, 5}));

TEST_F(LatticeOutput, FindsNothingInAnEmptyLattice) {
    Lattice& lattice = make_lattice("");
    const NodeRef stray = lattice.dci_map.try_emplace({1}).first;
    EXPECT_EQ(lattice.find_dci_node(stray), lattice.hash_table.end());
}

// print_vector.

std::string printed(const Itemset& itemset) {
    testing::internal::CaptureStdout();
    print_vector(itemset);
    return testing::internal::GetCapturedStdout();
}

TEST(PrintVector, WritesItemsAndALineEndOnStandardOutput) {
    EXPECT_EQ(printed({2, 5, 11}), "2 5 11 \n");
}

TEST(PrintVector, WritesALineEndForTheEmptyItemset) {
    EXPECT_EQ(printed({}), "\n");
}

}  // namespace
}  // namespace korv
