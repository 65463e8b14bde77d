#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "app/globals.h"
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

using RuleDerivation = test::LatticeFixture;

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

TEST_F(RuleDerivation, WithoutRulesTheFilesHoldTheirHeaders) {
    Lattice& lattice = build("1\t50\t 1,\n", {.minsupp = 0, .minconf = 0.0});
    lattice.Output_Rules();
    EXPECT_EQ(intra_exact(), intra_exact_header);
    EXPECT_EQ(intra_approx(), intra_approx_header);
    EXPECT_EQ(inter_exact(), inter_exact_header);
    EXPECT_EQ(inter_approx(), inter_approx_header);
    EXPECT_EQ(nonzero_counters(lattice), CounterCells{});
}

TEST_F(RuleDerivation, RulesFollowTheHeaders) {
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

TEST_F(RuleDerivation, FilesAreCompleteOnDiskAfterwards) {
    build(chain, {.minconf = 0.5}).Output_Rules();
    EXPECT_EQ(test::read_file(S1), intra_exact_header + chain_intra_exact);
    EXPECT_EQ(test::read_file(S2), intra_approx_header);
    EXPECT_EQ(test::read_file(S3), inter_exact_header);
    EXPECT_EQ(test::read_file(S4), inter_approx_header + chain_inter_approx);
}

TEST_F(RuleDerivation, IntraNodeRulesAreThoseOfTheWalkOverAllNodes) {
    build(chain, {.minconf = 0.5}).generate_intra_node_rules();
    EXPECT_EQ(intra_exact(), chain_intra_exact);
    EXPECT_EQ(intra_approx(), "");
    EXPECT_EQ(inter_exact() + inter_approx(), "");
}

TEST_F(RuleDerivation, InterNodeRulesAreThoseOfTheWalkOverAllEntries) {
    build(chain, {.minconf = 0.5}).generate_inter_node_rules();
    EXPECT_EQ(inter_exact(), "");
    EXPECT_EQ(inter_approx(), chain_inter_approx);
    EXPECT_EQ(intra_exact() + intra_approx(), "");
}

TEST_F(RuleDerivation, IntraNodeRulesComeByItemsetAndInterNodeRulesByCardinality) {
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

TEST_F(RuleDerivation, NodeWithTwoEssentialsThatPartitionItHasNoRulesOfTheSecond) {
    // Each for itself, they would give eight rules.
    build("1 2\t50\t 1, 2,\n").Output_Rules();
    EXPECT_EQ(intra_exact(), intra_exact_header + chain_intra_exact);
}

TEST_F(RuleDerivation, EntryWithTwoSuccessorsThatPartitionItHasNoRulesOfTheSecond) {
    build("1\t30\t 1,\n2\t40\t 2,\n1 2\t60\t 1 2,\n").Output_Rules();
    EXPECT_EQ(rule_lines(inter_approx()), (Lines{"2-->1", "1-->2", "not(1)-->not(2)", "not(2)-->not(1)",
                                                 "1-->not(2)", "not(2)-->1", "not(1)-->2", "2-->not(1)"}));
}

TEST_F(RuleDerivation, CellsThatNoRuleIsCountedInStayAtZero) {
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

}  // namespace
}  // namespace korv
