#include "rules/page_rules.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "decoded_arrays.h"
#include "made_rules.h"

namespace korv::tools {

namespace {

using Numbers = std::vector<std::int64_t>;

FoundRule open_rule(Side premise, Side conclusion, const Contingency& low, const Contingency& high) {
    return {.premise = premise, .conclusion = conclusion, .at_low = low, .at_high = high, .form = Form::R122};
}

/// The arrays of rules.
PageArrays arrays_of(const std::vector<FoundRule>& rules, const ItemsetPool& pool, bool has_forms = true) {
    PageArrays arrays;
    add_rules(rules, PageSides(rules, pool), has_forms, arrays);
    return arrays;
}

class PageRulesTest : public testing::Test {
protected:
    MadeRules made_{{}};
    Side a_ = made_.any({7});
    Side b_ = made_.any({3, 9});
    Side not_a_ = made_.none({7});
    Side not_c_ = made_.none({3});
};

TEST_F(PageRulesTest, NumberSidesPlainOnesFirstThenByTheirItems) {
    const std::vector<FoundRule> rules = {known_rule(a_, not_c_, {4, 5, 3}),
                                          known_rule(b_, not_a_, {6, 7, 5}), known_rule(a_, b_, {4, 6, 2})};
    const PageSides sides(rules, made_.pool());
    EXPECT_EQ(sides.all().size(), 4U);
    EXPECT_EQ(sides.plain(), 2U);
    EXPECT_EQ(sides.position(b_), 0U);
    EXPECT_EQ(sides.position(a_), 1U);
    EXPECT_EQ(sides.position(not_c_), 2U);
    EXPECT_EQ(sides.position(not_a_), 3U);
    PageArrays arrays;
    add_sides(sides, made_.pool(), PageItems({3, 7, 9}), arrays);
    EXPECT_EQ(numbers_of(arrays), (std::map<std::string, Numbers>{{"side_sizes", {2, 1, 1, 1}},
                                                                  {"side_items", {0, 2, 1, 0, 1}},
                                                                  {"side_counts", {6, 4, 5, 7}}}));
}

TEST_F(PageRulesTest, TellOfASideWhatItsRulesTellTogether) {
    const std::vector<FoundRule> rules = {open_rule(a_, b_, {4, 5, 2}, {4, 9, 2}),
                                          open_rule(not_a_, b_, {6, 7, 5}, {6, 12, 5})};
    PageArrays arrays;
    add_sides(PageSides(rules, made_.pool()), made_.pool(), PageItems({3, 7, 9}), arrays);
    EXPECT_EQ(numbers_of(arrays, "side_counts"), (Numbers{7, 4, 6}));
    EXPECT_EQ(numbers_of(arrays, "side_spreads"), (Numbers{2, 0, 0}));
}

TEST_F(PageRulesTest, HaveSidesExceptionsAndForms) {
    const PageArrays arrays = arrays_of(
        {known_rule(a_, b_, {4, 6, 3}, Form::R132), known_rule(not_a_, not_c_, {9, 8, 2}, Form::R211)},
        made_.pool());
    EXPECT_EQ(numbers_of(arrays),
              (std::map<std::string, Numbers>{
                  {"premises", {1, 3}}, {"conclusions", {0, 2}}, {"exceptions", {1, 7}}, {"forms", {5, 6}}}));
    EXPECT_FALSE(
        numbers_of(arrays_of({known_rule(a_, b_, {4, 6, 3})}, made_.pool(), false)).contains("forms"));
}

TEST_F(PageRulesTest, HaveWordingsAndReadingsWhereThereAreSeveral) {
    FoundRule rule = known_rule(a_, b_, {4, 6, 3});
    rule.wordings = 300;
    rule.readings = 4;
    const PageArrays arrays = arrays_of({known_rule(b_, a_, {6, 4, 3}), rule}, made_.pool());
    EXPECT_EQ(numbers_of(arrays, "wordings"), (Numbers{1, 300}));
    EXPECT_EQ(numbers_of(arrays, "readings"), (Numbers{1, 4}));
}

TEST_F(PageRulesTest, TellHowBothRisesWithTheCountOfTheOpenSide) {
    const Side c = made_.any({11});
    const Side d = made_.any({12});
    const std::vector<FoundRule> rules = {
        open_rule(a_, b_, {4, 5, 1}, {4, 8, 4}),  // both rises with the conclusion
        open_rule(a_, c, {4, 10, 2}, {4, 7, 2}),  // both stays; the tables come the other way round
        open_rule(d, a_, {3, 4, 3}, {5, 4, 1}),   // both falls while the premise rises
        known_rule(a_, not_c_, {4, 6, 3}),
    };
    const PageArrays arrays = arrays_of(rules, made_.pool());
    EXPECT_EQ(numbers_of(arrays, "slopes"), (Numbers{1, 0, -1, 0}));
    EXPECT_EQ(numbers_of(arrays, "exceptions"), (Numbers{3, 2, 0, 1}));
    EXPECT_FALSE(numbers_of(arrays).contains("odd_rules"));
}

TEST_F(PageRulesTest, TellTheCountsOfRulesThatDoNotFollowFromTheirSides) {
    // Of the second one the count of the conclusion is less known than by the first.
    const std::vector<FoundRule> rules = {known_rule(a_, b_, {4, 6, 3}),
                                          open_rule(not_c_, b_, {9, 5, 2}, {9, 8, 5})};
    const PageArrays arrays = arrays_of(rules, made_.pool());
    EXPECT_EQ(numbers_of(arrays, "odd_rules"), (Numbers{1}));
    EXPECT_EQ(numbers_of(arrays, "odd_counts"), (Numbers{9, 5, 2, 9, 8, 5}));
    EXPECT_EQ(numbers_of(arrays, "exceptions"), (Numbers{1, 7}));
}

TEST_F(PageRulesTest, TellTheCountsOfARuleOfWhichBothSidesAreOpen) {
    const PageArrays arrays = arrays_of({open_rule(a_, b_, {3, 5, 1}, {4, 8, 2})}, made_.pool());
    EXPECT_EQ(numbers_of(arrays, "odd_counts"), (Numbers{3, 5, 1, 4, 8, 2}));
}

TEST_F(PageRulesTest, AreNoneWithoutRules) {
    EXPECT_TRUE(arrays_of({}, made_.pool()).all().empty());
}

TEST_F(PageRulesTest, TellWhatOtherTransactionsSayOfThem) {
    PageArrays arrays;
    add_holdout({{{97, 120, 88}, 12.25}, {{300, 5, 0}, 2.5}}, arrays);
    EXPECT_EQ(numbers_of(arrays, "holdout_premises"), (Numbers{97, 300}));
    EXPECT_EQ(numbers_of(arrays, "holdout_exceptions"), (Numbers{9, 300}));
    ASSERT_EQ(arrays.all().size(), 3U);
    EXPECT_EQ(arrays.all()[2].name, "holdout_ps");
    EXPECT_EQ(arrays.all()[2].type, "f32");
    EXPECT_EQ(arrays.all()[2].bytes, std::string("\0\0\x44\x41\0\0\x20\x40", 8));  // 12.25 and 2.5
}

TEST_F(PageRulesTest, SayNothingOfOtherTransactionsWithoutThem) {
    PageArrays arrays;
    add_holdout({}, arrays);
    EXPECT_TRUE(arrays.all().empty());
}

}  // namespace

}  // namespace korv::tools
