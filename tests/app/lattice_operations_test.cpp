// The operations of Lattice, one by one. What they do in detail is tested where it is done: in tests/engine
// and tests/io. Here are their own names, the files that they write and the members that they fill.

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
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

using test::CounterCells;
using test::nonzero_counters;
using test::rule_lines;
using test::run_totals;
using enum Form;
using enum Kind;

using Lines = std::vector<std::string>;
using Totals = std::array<Count, 3>;

using Itemsets = std::vector<Itemset>;

/// The closed itemsets of the classes, in map order.
Itemsets keys(const Lattice& lattice) {
    Itemsets result;
    for (const auto& [itemset, unused] : lattice.dci_map) {
        result.push_back(itemset);
    }
    return result;
}

// Loading.

class LatticeLoading : public test::LatticeFixture {
protected:
    /// The lattice with classes loaded, not filed in the hash table.
    Lattice& load_classes(const std::string& classes, const test::RunSettings& settings = {}) {
        Lattice& lattice = make_lattice(classes, settings);
        lattice.Load_DCI();
        return lattice;
    }
};

TEST_F(LatticeLoading, StoresTheClassesOfTheFile) {
    const Lattice& lattice = load_classes("3 1 2\t5\t 2 3, 1,\n1\t4\t 1,\n3 1 2\t6\t 3,\n");
    EXPECT_EQ(keys(lattice), (Itemsets{{1}, {1, 2, 3}}));
    EXPECT_EQ(node({1, 2, 3})->second.support, 6U);
    EXPECT_EQ(node({1, 2, 3})->second.essentials, Itemsets{{3}});
}

TEST_F(LatticeLoading, AppliesNoThreshold) {
    const Lattice& lattice = load_classes("1\t0\t 1,\n2\t3\t 2,\n", {.minsupp = 1000, .minconf = 1.0});
    EXPECT_EQ(keys(lattice), (Itemsets{{1}, {2}}));
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

TEST_F(LatticeLoading, FilingPrintsNothing) {
    testing::internal::CaptureStdout();
    load("1\t3\t 1,\n2\t3\t 2,\n");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(LatticeLoading, FilesTheClassesOfTheMapByCardinality) {
    const Lattice& lattice = load("1 3\t9\t 1,\n2\t7\t 2,\n", {.minsupp = 1000});
    ASSERT_EQ(lattice.hash_table.size(), 2U);
    EXPECT_EQ(lattice.hash_table[0].node, node({2}));
    EXPECT_EQ(lattice.hash_table[1].node, node({1, 3}));
    EXPECT_EQ(lattice.hash_table[1].cardinality, 2U);
    EXPECT_TRUE(lattice.hash_table[1].successors.empty());
}

// Building.

class LatticeBuild : public test::LatticeFixture {
protected:
    void build_without_classes() { build(""); }
};

TEST_F(LatticeBuild, LinksSuccessors) {
    build("1 2\t5\t 1, 2,\n2\t4\t 2,\n1\t3\t 1,\n");
    EXPECT_EQ(successors({1, 2}), (Itemsets{{1}, {2}}));
}

TEST_F(LatticeBuild, WithoutClassesEndsWithStatus2AndTwoMessagesWithoutLineEnds) {
    EXPECT_EXIT(build_without_classes(), testing::ExitedWithCode(2),
                testing::Eq("Erreur: le nombre de classes doit \xEF\xBF\xBDtre non null"
                            "Arr\xEF\xBF\xBDt du programme"));
}

TEST_F(LatticeBuild, WithoutClassesPrintsNothingOnStandardOutput) {
    const auto build_with_errors_discarded = [this] {
        dup2(STDERR_FILENO, STDOUT_FILENO);
        close(STDERR_FILENO);
        build_without_classes();
    };
    EXPECT_EXIT(build_with_errors_discarded(), testing::ExitedWithCode(2), testing::Eq(""));
}

TEST_F(LatticeBuild, WalkFrontierLinksTheSameAndLeavesItsWorkingContainers) {
    Lattice& lattice = load("3\t1\t 3,\n3 4\t2\t 4,\n2 3 4\t3\t 2,\n3 5 6 7\t4\t 5,\n");
    lattice.walk_frontier();
    EXPECT_EQ(successors({3, 5, 6, 7}), Itemsets{{3}});
    EXPECT_EQ(test::itemsets({lattice.visited.begin(), lattice.visited.end()}), (Itemsets{{3}, {3, 4}}));
    ASSERT_EQ(lattice.frontier.size(), 2U);
    EXPECT_EQ(lattice.frontier[0]->itemset(), (Itemset{2, 3, 4}));
    EXPECT_EQ(lattice.frontier[1]->itemset(), (Itemset{3, 5, 6, 7}));
}

TEST_F(LatticeBuild, ProcessingSuccOffersWhatLiesBelowAnOverlappingEntryUnlessVisited) {
    Lattice& lattice = load("2\t1\t 2,\n3\t1\t 3,\n2 3 4\t1\t 4,\n2 3 5\t1\t 5,\n");
    LatticeEntry& other = lattice.hash_table.at(2);
    LatticeEntry& entry = lattice.hash_table.at(3);
    other.successors = {node({2}), node({3})};
    lattice.visited.insert(node({2}));
    lattice.processing_succ(other, entry);
    EXPECT_EQ(successors({2, 3, 5}), Itemsets{{3}});
    EXPECT_TRUE(lattice.visited.contains(node({3})));
}

TEST_F(LatticeBuild, InsertSuccRemovesSubsetsAndRefusesThem) {
    load("1\t1\t 1,\n1 2\t1\t 2,\n");
    SuccessorList list = {node({1})};
    EXPECT_TRUE(Lattice::insert_succ(node({1, 2}), list));
    EXPECT_FALSE(Lattice::insert_succ(node({1}), list));
    EXPECT_EQ(test::itemsets(list), (Itemsets{{1, 2}}));
}

TEST_F(LatticeBuild, FindDciNodeFindsTheEntryOfANode) {
    Lattice& lattice = load("2\t1\t 2,\n1 3\t1\t ,\n");
    EXPECT_EQ(lattice.find_dci_node(node({1, 3})) - lattice.hash_table.begin(), 1);
    const NodeRef stray = lattice.dci_map.try_emplace({1}).first;
    EXPECT_EQ(lattice.find_dci_node(stray), lattice.hash_table.end());
}

// The lattice file.

class LatticeOutput : public test::LatticeFixture {
protected:
    /// The whole lattice file over `classes`.
    std::string written(const std::string& classes, const test::RunSettings& settings = {}) {
        build(classes, settings).Output_Lattice();
        return lattice_file();
    }
};

TEST_F(LatticeOutput, IsCompleteOnDiskAfterwards) {
    build("1 4\t3\t 4 1,\n").Output_Lattice();
    EXPECT_TRUE(
        test::read_file(S5).ends_with("DCP:  1 4 \n"
                                      "Disjonctive support: 3\n"
                                      "les essentiels:  VIDE\n"
                                      "les successeurs: VIDE\n"
                                      "\n"));
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

TEST_F(LatticeOutput, AfficherIfdSuppWritesTheHeadOfAClass) {
    Lattice& lattice = load("2 5\t7\t 2 5,\n");
    lattice.afficher_IFD_supp(node({2, 5}));
    EXPECT_TRUE(lattice_file().ends_with("DCP:  2 5 \nDisjonctive support: 7\n"));
}

TEST_F(LatticeOutput, AfficherEssentielsWritesTheLineOfTheEssentials) {
    make_lattice("").afficher_essentiels({{2, 3}, {1}});
    EXPECT_EQ(lattice_file(), "les essentiels:  2 3  ; 1  ; \n");
}

TEST_F(LatticeOutput, AfficherListSuccWritesTheLineOfTheSuccessors) {
    load("3\t1\t 3,\n1 2\t1\t 1,\n").afficher_list_succ({node({3}), node({1, 2})});
    EXPECT_EQ(lattice_file(), "les successeurs: 3 ;1 2 ;\n\n");
}

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

// Supports.

using LatticeSupports = test::LatticeFixture;

TEST_F(LatticeSupports, GenerateDifferenceSupportNarrowsTheBounds) {
    const Lattice& lattice = load("1\t4\t 1,\n1 2 3\t7\t 3,\n", {.minsupp = 50});
    Count lower = 0;
    Count upper = 100;
    EXPECT_EQ(lattice.generate_difference_support({1, 2}, lower, upper), 0U);
    EXPECT_EQ(lower, 4U);
    EXPECT_EQ(upper, 7U);
}

TEST_F(LatticeSupports, GenerateDifferenceSupportReturnsWhatIsKnown) {
    const Lattice& lattice = load("1\t4\t 1,\n1 2 3\t4\t 3,\n");
    Count lower = 0;
    Count upper = 100;
    EXPECT_EQ(lattice.generate_difference_support({1, 2}, lower, upper), 4U);
}

// The rules of single pairs.

using LatticeRules = test::LatticeFixture;

TEST_F(LatticeRules, GetRulesIntraNodeWritesRulesOfKnownSupport) {
    // R112 and R111, 60/75.
    Lattice& lattice = make_lattice("", {.minsupp = 60});
    lattice.get_rules_intra_node({2, 3}, 60, {1, 4}, 75);
    EXPECT_EQ(intra_exact(), "2 v 3-->1 v 4\nsupport:60\n\n");
    EXPECT_EQ(intra_approx(), "1 v 4-->2 v 3\nsupport:60\n\nconfiance:0.8\n---------------------------\n");
    EXPECT_EQ(inter_exact() + inter_approx(), "");
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R112, exact}, 1}, {{R111, appro}, 1}}));
    EXPECT_EQ(run_totals(lattice), (Totals{1, 1, 0}));
}

TEST_F(LatticeRules, GetRulesIntraSuppApproxWritesIntervals) {
    // R112 and R111, 40/75 to 60/75.
    Lattice& lattice = make_lattice("", {.minsupp = 40});
    lattice.get_rules_intra_supp_approx({2, 3}, {1, 4}, 75, 40, 60);
    EXPECT_EQ(intra_exact(), "2 v 3-->1 v 4\n40< support <60\n");
    EXPECT_EQ(intra_approx(),
              "1 v 4-->2 v 3\n40< support <60\n0.533333< confiance <0.8\n---------------------------\n");
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R112, apped}, 1}, {{R111, apped}, 1}}));
    EXPECT_EQ(run_totals(lattice), (Totals{0, 0, 2}));
}

TEST_F(LatticeRules, GetRulesInterItemsetWritesRulesOfKnownSupport) {
    // 40 transactions with an item of the base only: 40/50 and 40/60.
    Lattice& lattice = make_lattice("", {.minsupp = 40});
    lattice.get_rules_inter_itemset({3}, 40, {1, 2}, 50, 80, true);
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(inter_approx(),
              "1 v 2-->not(3)\nsupport:40\n\nconfiance:0.8\n---------------------------\n"
              "not(3)-->1 v 2\nsupport:40\n\nconfiance:0.666667\n---------------------------\n");
    EXPECT_EQ(intra_exact() + intra_approx(), "");
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R331, appro}, 1}, {{R432, appro}, 1}}));
}

TEST_F(LatticeRules, GetRulesInterItemsetCountsTheRulesOfAnEssentialItemsetUnderItsForms) {
    Lattice& lattice = make_lattice("", {.minsupp = 40});
    lattice.get_rules_inter_itemset({3}, 40, {1, 2}, 50, 80, false);
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R321, appro}, 1}, {{R421, appro}, 1}}));
}

TEST_F(LatticeRules, GetRulesInterSuppApproxWritesIntervals) {
    // 30 transactions with an item of the difference only: 30/50, and 30/64 to 30/35.
    Lattice& lattice = make_lattice("", {.minsupp = 30});
    lattice.get_rules_inter_supp_approx({3}, {1, 2}, 50, 80, 35, 64, true);
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(inter_approx(),
              "not(1)not(2)-->3\nsupport:30\n\nconfiance:0.6\n---------------------------\n"
              "3-->not(1)not(2)\nsupport:30\n\n0.46875< confiance <0.857143\n---------------------------\n");
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R431, appro}, 1}, {{R332, apped}, 1}}));
}

TEST_F(LatticeRules, GetRulesInterSuppApproxCountsTheRulesOfAnEssentialItemsetUnderItsForms) {
    Lattice& lattice = make_lattice("", {.minsupp = 30});
    lattice.get_rules_inter_supp_approx({3}, {1, 2}, 50, 80, 35, 64, false);
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R422, appro}, 1}, {{R322, apped}, 1}}));
}

TEST_F(LatticeRules, GenererReglesIntraNoeudTakesOneEssentialItemset) {
    // {2 3}, the rest without {1}: at least the 30 of {2}, at most the 55 of {2 3 4}. 40/70 to 40/45.
    Lattice& lattice = load("2\t30\t 2,\n1 2 3\t60\t 1, 1 2,\n2 3 4\t55\t 2 3 4,\n", {.minsupp = 31});
    lattice.generer_regles_intra_noeud(node({1, 2, 3}), {1});
    EXPECT_EQ(intra_exact(), "not(1)-->not(2)not(3)\nsupport:40\n\n");
    EXPECT_EQ(intra_approx(),
              "not(2)not(3)-->not(1)\nsupport:40\n\n0.571429< confiance <0.888889\n"
              "---------------------------\n");
}

TEST_F(LatticeRules, GenererReglesIntraNoeudDeuxEssTakesThePartitionOnce) {
    Lattice& lattice = load("1 2 3\t60\t 1, 2 3,\n");
    lattice.generer_regles_intra_noeud_deux_ess(node({1, 2, 3}));
    EXPECT_EQ(intra_exact(),
              "2 v 3-->1\nsupport:60\n\n"
              "1-->2 v 3\nsupport:60\n\n"
              "not(1)-->not(2)not(3)\nsupport:40\n\n"
              "not(2)not(3)-->not(1)\nsupport:40\n\n");
    EXPECT_EQ(intra_approx(), "");
}

TEST_F(LatticeRules, GenererReglesInterIfdPairsANodeWithItsSuccessor) {
    // {2}, the difference to {1}, is closed: 40/50 and 40/60.
    Lattice& lattice = load("1\t50\t 1,\n2\t40\t 2,\n1 2\t80\t 1 2,\n", {.minsupp = 40});
    lattice.generer_regles_inter_IFD(node({1, 2}), node({1}));
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(inter_approx(),
              "1-->not(2)\nsupport:40\n\nconfiance:0.8\n---------------------------\n"
              "not(2)-->1\nsupport:40\n\nconfiance:0.666667\n---------------------------\n");
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R331, appro}, 1}, {{R432, appro}, 1}}));
}

TEST_F(LatticeRules, GenererReglesItemsetEssPairsANodeWithTheEssentialsOfItsSuccessor) {
    // {2 3}, the difference to {1}, is closed: 40/50 and 40/60.
    Lattice& lattice = load("1 2\t50\t 1,\n2 3\t40\t 2 3,\n1 2 3\t80\t 1 2 3,\n", {.minsupp = 40});
    lattice.generer_regles_itemset_ess(node({1, 2, 3}), node({1, 2}));
    EXPECT_EQ(inter_approx(),
              "1-->not(2)not(3)\nsupport:40\n\nconfiance:0.8\n---------------------------\n"
              "not(2)not(3)-->1\nsupport:40\n\nconfiance:0.666667\n---------------------------\n");
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R321, appro}, 1}, {{R421, appro}, 1}}));
}

TEST_F(LatticeRules, GenererReglesInterIfdDeuxSuccTakesThePartitionOnce) {
    // 10 with an item of both, 40 with none, 20 with {1} only, 30 with {2} only; 40/70 and 40/60.
    Lattice& lattice = build("1\t30\t 1,\n2\t40\t 2,\n1 2\t60\t 1 2,\n", {.minsupp = 40});
    lattice.generer_regles_inter_IFD_deux_succ(*lattice.find_dci_node(node({1, 2})));
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(inter_approx(),
              "not(1)-->not(2)\nsupport:40\n\nconfiance:0.571429\n---------------------------\n"
              "not(2)-->not(1)\nsupport:40\n\nconfiance:0.666667\n---------------------------\n");
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R231, appro}, 1}, {{R232, appro}, 1}}));
}

// All rules.

const std::string intra_exact_header =
    "\t\t\t******************************************\n"
    "\t\t\t***   Regles exaxtes intra noeud      ***\n"
    "\t\t\t******************************************\n";
const std::string intra_approx_header =
    "\t\t\t******************************************\n"
    "\t\t\t*** Regles approximatives intra noeud  ***\n"
    "\t\t\t******************************************\n";
const std::string inter_exact_header =
    "\t\t\t******************************************\n"
    "\t\t\t***   Regles exactes inter noeuds     ***\n"
    "\t\t\t******************************************\n";
const std::string inter_approx_header =
    "\t\t\t******************************************\n"
    "\t\t\t*** Regles approximatives inter noeuds ***\n"
    "\t\t\t******************************************\n";

// {1 2} in 50 transactions with the essential itemsets {1} and {2}, and {1 2 3} in 80.
const std::string chain = "1 2\t50\t 1, 2,\n1 2 3\t80\t 1 2 3,\n";

// Of the sixteen rules between the two (see the tests of the inter-node rules) those of confidence 0.5 on:
// 30/50 is that of each not(B)-->D.
const std::string chain_inter_approx =
    "not(1)not(2)-->3\nsupport:30\n\nconfiance:0.6\n---------------------------\n"
    "not(1)-->2 v 3\nsupport:30\n\nconfiance:0.6\n---------------------------\n"
    "not(2)-->1 v 3\nsupport:30\n\nconfiance:0.6\n---------------------------\n";

// The rules of {1 2}, which its essential itemsets partition: 50/50 throughout.
const std::string chain_intra_exact =
    "2-->1\nsupport:50\n\n"
    "1-->2\nsupport:50\n\n"
    "not(1)-->not(2)\nsupport:50\n\n"
    "not(2)-->not(1)\nsupport:50\n\n";

/// How often a rule file holds a rule.
std::ptrdiff_t times_in(const std::string& rule, const std::string& rule_file) {
    const Lines lines = rule_lines(rule_file);
    return std::count(lines.begin(), lines.end(), rule);
}

TEST_F(LatticeRules, WithoutRulesTheFilesHoldTheirHeaders) {
    Lattice& lattice = build("1\t50\t 1,\n", {.minsupp = 0, .minconf = 0.0});
    lattice.Output_Rules();
    EXPECT_EQ(intra_exact(), intra_exact_header);
    EXPECT_EQ(intra_approx(), intra_approx_header);
    EXPECT_EQ(inter_exact(), inter_exact_header);
    EXPECT_EQ(inter_approx(), inter_approx_header);
    EXPECT_EQ(nonzero_counters(lattice), CounterCells{});
}

TEST_F(LatticeRules, RulesFollowTheHeaders) {
    Lattice& lattice = build(chain, {.minconf = 0.5});
    lattice.Output_Rules();
    EXPECT_EQ(intra_exact(), intra_exact_header + chain_intra_exact);
    EXPECT_EQ(intra_approx(), intra_approx_header);
    EXPECT_EQ(inter_exact(), inter_exact_header);
    EXPECT_EQ(inter_approx(), inter_approx_header + chain_inter_approx);
    EXPECT_EQ(nonzero_counters(lattice), (CounterCells{{{R112, exact}, 1},
                                                       {{R111, exact}, 1},
                                                       {{R211, exact}, 1},
                                                       {{R212, exact}, 1},
                                                       {{R431, appro}, 1},
                                                       {{R422, appro}, 2}}));
    EXPECT_EQ(run_totals(lattice), (Totals{4, 3, 0}));
}

TEST_F(LatticeRules, FilesAreCompleteOnDiskAfterwards) {
    build(chain, {.minconf = 0.5}).Output_Rules();
    EXPECT_EQ(test::read_file(S1), intra_exact_header + chain_intra_exact);
    EXPECT_EQ(test::read_file(S2), intra_approx_header);
    EXPECT_EQ(test::read_file(S3), inter_exact_header);
    EXPECT_EQ(test::read_file(S4), inter_approx_header + chain_inter_approx);
}

TEST_F(LatticeRules, IntraNodeRulesAreThoseOfTheWalkOverAllNodes) {
    build(chain, {.minconf = 0.5}).generate_intra_node_rules();
    EXPECT_EQ(intra_exact(), chain_intra_exact);
    EXPECT_EQ(intra_approx(), "");
    EXPECT_EQ(inter_exact() + inter_approx(), "");
}

TEST_F(LatticeRules, InterNodeRulesAreThoseOfTheWalkOverAllEntries) {
    build(chain, {.minconf = 0.5}).generate_inter_node_rules();
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(inter_approx(), chain_inter_approx);
    EXPECT_EQ(intra_exact() + intra_approx(), "");
}

TEST_F(LatticeRules, IntraNodeRulesComeByItemsetAndInterNodeRulesByCardinality) {
    // {1 2 3} is before {4 5} as an itemset, but larger. Intra-node, the rests {1 3} have between 30 and 80
    // transactions and {4} has 30; inter-node, the differences {5} and {2 3} have 80 by their essential
    // itemset. Of the quotients 30/80, 20/70, 50/80 and 50/70 only the last reaches the minimum, as in
    // not(4)-->5.
    build("4 5\t80\t 5,\n4\t30\t 4,\n1 2 3\t80\t 2,\n1\t30\t 1,\n", {.minconf = 0.7}).Output_Rules();
    EXPECT_EQ(rule_lines(intra_exact()),
              (Lines{"1 v 3-->2", "not(2)-->not(1)not(3)", "4-->5", "not(5)-->not(4)"}));
    EXPECT_EQ(rule_lines(intra_approx()), (Lines{"not(4)-->5"}));
    EXPECT_EQ(rule_lines(inter_exact()),
              (Lines{"4-->5", "not(5)-->not(4)", "1-->2 v 3", "not(2)not(3)-->not(1)"}));
    EXPECT_EQ(rule_lines(inter_approx()), (Lines{"not(4)-->5", "not(1)-->2 v 3"}));
}

TEST_F(LatticeRules, CellsThatNoRuleIsCountedInStayAtZero) {
    // {2 3}, the rest of {1 2 3} without {1}, is closed: not(2)not(3)-->not(1) has 20/60, intra-node and, for
    // the essential itemset {1} of {1 2}, inter-node; there it is also the not(f1)-->not(f2-f1) of {2 3}. {8
    // 9}, the rest of {7 8 9} without the essential itemset {7} of {7 8}, is as frequent as {7 8 9}: 20/20.
    Lattice& lattice =
        build("1 2\t50\t 1,\n2 3\t40\t 2 3,\n1 2 3\t80\t 1,\n7 8\t50\t 7,\n7 8 9\t80\t 8 9,\n");
    lattice.Output_Rules();
    EXPECT_EQ(times_in("not(2)not(3)-->not(1)", intra_approx()), 1);
    EXPECT_EQ(times_in("not(2)not(3)-->not(1)", inter_approx()), 2);
    EXPECT_EQ(times_in("not(8)not(9)-->not(7)", inter_exact()), 1);
    EXPECT_EQ(lattice.rule_counts.count(R212, appro), 0U);
    EXPECT_EQ(lattice.rule_counts.count(R222, exact), 0U);
    EXPECT_EQ(lattice.rule_counts.count(R222, appro), 0U);
}

TEST_F(LatticeRules, SupportsByIndexGiveTheSameRules) {
    Lattice& lattice = build(chain, {.minconf = 0.5});
    lattice.index_supports();
    lattice.Output_Rules();
    EXPECT_EQ(intra_exact(), intra_exact_header + chain_intra_exact);
    EXPECT_EQ(inter_approx(), inter_approx_header + chain_inter_approx);
}

// The rule-count file.

using LatticeRuleCounts = test::LatticeFixture;

TEST_F(LatticeRuleCounts, AreCompleteOnDiskAfterwards) {
    Lattice& lattice = make_lattice("");
    lattice.rule_counts.add(R431, apped);
    lattice.write_rule_counts();
    const std::string file = test::read_file(S6);
    EXPECT_TRUE(
        file.starts_with("Number of exact rules: 0\nNumber of appro rules: 0\nNumber of apped rules: 1\n"))
        << file;
    EXPECT_TRUE(
        file.ends_with("Number of apped rules: 1\nNumber of apped rules: 1\n\n"
                       "**********************************************************************\n\n"))
        << file;
}

TEST_F(LatticeRuleCounts, OfOneKindAreWrittenByNumberOfRules) {
    Lattice& lattice = make_lattice("");
    lattice.rule_counts.add(R431, apped);
    lattice.number_of_rules(apped);
    EXPECT_NE(rule_counts_file().find("apped  of the form  R431 = not(f1)-->(f2-f1): \t\t\t1\n"),
              std::string::npos);
    EXPECT_EQ(rule_counts_file().find("exact"), std::string::npos);
}

}  // namespace
}  // namespace korv
