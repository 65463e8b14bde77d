#include "rules/dot_graph.h"

#include <gtest/gtest.h>

#include "engine/lattice_building.h"
#include "made_rules.h"

namespace korv::tools {

namespace {

/// The lines between the first ones, which are about how a graph looks, and the last.
std::string nodes_and_edges(const std::string& text) {
    std::string lines;
    std::size_t begin = 0;
    for (int skipped = 0; skipped < 4; ++skipped) {
        begin = text.find('\n', begin) + 1;
    }
    EXPECT_TRUE(text.starts_with("digraph ")) << text;
    EXPECT_TRUE(text.ends_with("}\n")) << text;
    return text.substr(begin, text.size() - begin - 2);
}

std::string drawn(const std::vector<FoundRule>& rules, const RuleBook& book, std::size_t nodes) {
    std::string text;
    EXPECT_EQ(write_rules_graph(rules, book, [&text](std::string_view piece) { text += piece; }), nodes);
    return text;
}

TEST(LatticeGraph, HasANodeForEachClassAndAnEdgeToEachSuccessor) {
    const ClassMap classes = {{{1}, {4, {}}}, {{2}, {5, {}}}, {{1, 2}, {8, {}}}};
    LatticeEntries entries = lattice_entries(classes);
    link_successors(entries);
    const MadeRules made({{1, "bread"}, {2, "butter"}});
    std::string text;
    EXPECT_EQ(write_lattice_graph(entries, made.book(10), [&text](std::string_view piece) { text += piece; }),
              3U);
    EXPECT_EQ(nodes_and_edges(text),
              "    1 [label=\"bread\\n4 (40 %)\", tooltip=\"bread\"];\n"
              "    2 [label=\"butter\\n5 (50 %)\", tooltip=\"butter\"];\n"
              "    3 [label=\"bread or butter\\n8 (80 %)\", tooltip=\"bread or butter\"];\n"
              "    3 -> 1;\n"
              "    3 -> 2;\n");
}

TEST(LatticeGraph, NamesAllItemsOfALargeClassInTheTooltipOnly) {
    Itemset items;
    for (Item item = 1; item <= 14; ++item) {
        items.push_back(item);
    }
    const ClassMap classes = {{items, {8, {}}}};
    const LatticeEntries entries = lattice_entries(classes);
    const MadeRules made({});
    std::string text;
    write_lattice_graph(entries, made.book(10), [&text](std::string_view piece) { text += piece; });
    EXPECT_EQ(
        nodes_and_edges(text),
        "    1 [label=\"1 or 2 or 3 or 4 or 5 or 6 or\\n7 or 8 or 9 or 10 or 11 or 12\\nor 2 more\\n8 (80 "
        "%)\", tooltip=\"1 or 2 or 3 or 4 or 5 or 6 or 7 or 8 or 9 or 10 or 11 or 12 or 13 or 14\"];\n");
}

TEST(RulesGraph, HasANodeForEachSideAndAnEdgeForEachRule) {
    MadeRules made({{1, "a"}, {2, "b"}});
    // Lift: 3 * 10 / (4 * 5) = 1.5, and 2 * 10 / (4 * 5) = 1, which is grey.
    const std::vector<FoundRule> rules = {known_rule(made.any({1}), made.none({2}), {4, 5, 3}),
                                          known_rule(made.any({1}), made.any({2}), {4, 5, 2})};
    const std::string text = nodes_and_edges(drawn(rules, made.book(10), 3));
    EXPECT_NE(text.find("    1 [label=\"a\\n4 (40 %)\", tooltip=\"a\"];\n"), std::string::npos) << text;
    EXPECT_NE(text.find("    2 [label=\"not b\\n5 (50 %)\", tooltip=\"not b\", "
                        "style=\"rounded,filled,dashed\"];\n"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("    1 -> 2 [label=\"75 %\", penwidth=6.0, color="), std::string::npos) << text;
    EXPECT_NE(
        text.find("    1 -> 3 [label=\"50 %\", penwidth=4.3, color=\"#999999\", tooltip=\"a => b: support 2, "
                  "confidence 50 %, lift 1.00\", labeltooltip=\"a => b: support 2, confidence 50 %, lift "
                  "1.00\"];\n"),
        std::string::npos)
        << text;
}

TEST(RulesGraph, IsRedFromALiftOfTwoOnAndBlueDownToAHalf) {
    MadeRules made({});
    const auto color_of = [&](const Contingency& counts) {
        const std::string text = drawn({known_rule(made.any({1}), made.any({2}), counts)}, made.book(100), 2);
        return text.substr(text.find("penwidth"),
                           text.find(", tooltip", text.find("penwidth")) - text.find("penwidth"));
    };
    EXPECT_EQ(color_of({20, 20, 8}), "penwidth=6.0, color=\"#c0241c\"");  // lift 2
    EXPECT_EQ(color_of({20, 20, 20}), "penwidth=6.0, color=\"#c0241c\"");
    EXPECT_EQ(color_of({20, 20, 2}), "penwidth=6.0, color=\"#1c5cb4\"");  // lift 1/2
    EXPECT_EQ(color_of({20, 20, 0}), "penwidth=1.0, color=\"#1c5cb4\"");
    EXPECT_EQ(color_of({0, 20, 0}), "penwidth=1.0, color=\"#999999\"");  // 0/0
}

TEST(RulesGraph, IsDashedWhereARuleIsBounded) {
    MadeRules made({});
    FoundRule rule = known_rule(made.any({1}), made.any({2}), {4, 5, 3});
    rule.at_high = {4, 5, 2};
    const std::string text = drawn({rule}, made.book(10), 2);
    EXPECT_NE(text.find("label=\"50 % to 75 %\""), std::string::npos) << text;
    EXPECT_NE(text.find(", style=dashed];\n"), std::string::npos) << text;
}

TEST(RulesGraph, SaysWhatItShows) {
    MadeRules made({});
    const std::vector<FoundRule> rules = {known_rule(made.any({1}), made.any({2}), {1400, 1500, 1200}),
                                          known_rule(made.any({1}), made.any({3}), {1400, 900, 800})};
    EXPECT_NE(
        drawn(rules, made.book(2000), 3)
            .find(
                "label=\"2 rules of 2,000 transactions; width: support, 800 to 1,200; colour: lift, grey for "
                "1, red from 2 on, blue below 1; numbers: confidence\""),
        std::string::npos);
    EXPECT_NE(drawn({}, made.book(2000), 0).find("label=\"0 rules of 2,000 transactions\""),
              std::string::npos);
}

TEST(DotLabel, IsQuotedSoThatItIsShownAsItIs) {
    EXPECT_EQ(dot_label("bread"), "\"bread\"");
    EXPECT_EQ(dot_label("a \"b\""), R"("a \"b\"")");
    EXPECT_EQ(dot_label("\\N"), R"("\\N")");
    EXPECT_EQ(dot_label("two\nlines"), R"("two\nlines")");
    EXPECT_EQ(dot_label("<b>&lt;"), "\"<b>&amp;lt;\"");
    EXPECT_EQ(dot_label(""), "\"\"");
}

TEST(DotTooltip, SpellsBackslashesInItsOwnWay) {
    EXPECT_EQ(dot_tooltip("\\N \"<&>\""), R"("\\\\N \"<&amp;>\"")");
}

}  // namespace

}  // namespace korv::tools
