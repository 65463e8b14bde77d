#include "rules/rule_derivation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "engine/difference_supports.h"
#include "engine/lattice_building.h"
#include "rules/item_names.h"
#include "support/loaded_classes.h"

namespace korv::tools {

namespace {

/// The rules of a class file and what became of the others.
struct Derived {
    /// Each as "R131 1 => 2: 3 of 4 and 5", sorted; " (w 2)" and " (r 2)" where it stands for several.
    std::vector<std::string> rules;
    Accounting accounting;
};

std::string text_of(const Side& side, const ItemsetPool& pool) {
    std::string text = side.is_negated() ? "none of" : "";
    for (const Item item : pool[side.itemset()]) {
        text += (text.empty() ? "" : " ") + std::to_string(item);
    }
    return text;
}

std::string text_of(Count low, Count high) {
    return std::to_string(std::min(low, high)) +
           (low == high ? "" : ".." + std::to_string(std::max(low, high)));
}

std::string text_of(const FoundRule& rule, const ItemsetPool& pool) {
    const Contingency& low = rule.at_low;
    const Contingency& high = rule.at_high;
    return std::string(description(rule.form).label) + ' ' + text_of(rule.premise, pool) + " => " +
           text_of(rule.conclusion, pool) + ": " + text_of(low.both, high.both) + " of " +
           text_of(low.premise, high.premise) + " and " + text_of(low.conclusion, high.conclusion) +
           (rule.wordings > 1 ? " (w " + std::to_string(rule.wordings) + ")" : "") +
           (rule.readings > 1 ? " (r " + std::to_string(rule.readings) + ")" : "");
}

Derived derive(const std::string& class_file, Count transactions, const RuleRequest& request,
               const std::map<Item, std::string>& named = {}) {
    test::LoadedClasses classes(class_file);
    link_successors(classes.entries);
    const DifferenceSupports supports(classes.entries);
    const ShortestWording wording(classes.entries);
    const ColumnFacts columns(ItemNames(named), classes.classes, transactions);
    constexpr Count min_support = 1;
    const RuleFilter filter(request, min_support, transactions, ItemChoice(), Where());
    ItemsetPool pool;
    Derived derived;
    Workers workers(1);
    const AddRule add = [&](const FoundRule& rule) { derived.rules.push_back(text_of(rule, pool)); };
    derive_rules(
        {classes.entries, [&] { return std::make_unique<DifferenceSupports>(supports.indexes()); }, columns,
         request.wording == Wording::shortest ? &wording : nullptr, transactions},
        request, filter, pool, derived.accounting, add, [](std::size_t) {},
        [](const Pair&) { throw std::runtime_error("contradiction"); }, workers);
    std::ranges::sort(derived.rules);
    return derived;
}

using Rules = std::vector<std::string>;

/// Of 10 transactions 4 hold item 1, 5 item 2 and 6 one of them: so 3 hold both.
constexpr const char* two_items = "1\t4\t 1,\n2\t5\t 2,\n1 2\t6\t 1 2,\n";

RuleRequest all_readings(double min_confidence) {
    RuleRequest request;
    request.min_confidence = min_confidence;
    request.readings = Readings::all;
    return request;
}

TEST(DeriveRules, FindsTheRulesOfAPairThatReachTheMinimumConfidence) {
    EXPECT_EQ(derive(two_items, 10, all_readings(0.65)).rules,
              (Rules{"R131 1 => 2: 3 of 4 and 5", "R231 none of 1 => none of 2: 4 of 6 and 5",
                     "R232 none of 2 => none of 1: 4 of 5 and 6"}));
}

TEST(DeriveRules, KeepsTheBestReadingOfAnAssociation) {
    RuleRequest request = all_readings(0.65);
    request.readings = Readings::one;
    const Derived derived = derive(two_items, 10, request);
    EXPECT_EQ(derived.rules, (Rules{"R131 1 => 2: 3 of 4 and 5 (r 3)"}));
    EXPECT_EQ(derived.accounting.derived, 3U);
    EXPECT_EQ(derived.accounting[Step::reading], 2U);
}

TEST(DeriveRules, LeavesOutWhatIsNoMoreOftenTogetherThanByChance) {
    // Less often: 1 => none of 2, none of 1 => 2 and 2 => none of 1, of confidences from 0.25 to 0.4.
    const Derived derived = derive(two_items, 10, all_readings(0.25));
    EXPECT_EQ(derived.accounting.derived, 7U);
    EXPECT_EQ(derived.accounting[Step::chance], 3U);
    EXPECT_EQ(derived.rules.size(), 4U);
}

TEST(DeriveRules, TakesTheMinimumLiftThatIsGivenInclusively) {
    RuleRequest request = all_readings(0.25);
    request.min_lift = 1.5;  // that of 1 => 2 and of 2 => 1
    EXPECT_EQ(derive(two_items, 10, request).rules,
              (Rules{"R131 1 => 2: 3 of 4 and 5", "R132 2 => 1: 3 of 5 and 4"}));
    request.min_lift = 0;
    EXPECT_EQ(derive(two_items, 10, request).rules.size(), 7U);
}

TEST(DeriveRules, LeavesOutFormsAndKindsThatAreNotWanted) {
    RuleRequest request = all_readings(0.65);
    request.forms = {Form::R231};
    Derived derived = derive(two_items, 10, request);
    EXPECT_EQ(derived.rules, (Rules{"R231 none of 1 => none of 2: 4 of 6 and 5"}));
    EXPECT_EQ(derived.accounting[Step::forms], 2U);

    request.forms = {};
    request.kinds = {Certainty::exact};
    derived = derive(two_items, 10, request);
    EXPECT_EQ(derived.rules, Rules{});
    EXPECT_EQ(derived.accounting[Step::kinds], 3U);
}

/// Of 100 transactions 40 hold 1 or 2, and as many item 2 alone; 60 one of all. {1 3} is between 20 and 60.
constexpr const char* open_support = "1 2\t40\t 2,\n1 2 3\t60\t 2 3,\n";

TEST(DeriveRules, GivesTheTablesAtBothEndsOfAnOpenSupport) {
    RuleRequest request = all_readings(0.3);
    request.wording = Wording::full;
    request.min_lift = 0;
    request.forms = {Form::R131, Form::R122};
    // Both meet 0 to 40 in f1 and f2-f1, which is in 20 to 60: at least 0 do.
    EXPECT_EQ(derive(open_support, 100, request).rules, Rules{});

    request.forms = {Form::R432};
    // None of 3, but 1 or 2: none to 40, of 80 down to 40.
    EXPECT_EQ(derive(open_support, 100, request).rules, Rules{});

    request.forms = {Form::R431};
    EXPECT_EQ(derive(open_support, 100, request).rules,
              (Rules{"R431 none of 1 2 => 3: 20 of 60 and 20..60"}));
}

TEST(DeriveRules, ComparesTheLowerEndOfBoundsWithTheThresholds) {
    // {1 3} is a part of {1 2 3}, of 60, and around {3}, of 50.
    const char* const classes = "3\t50\t 3,\n1 2 3\t60\t 2,\n";
    RuleRequest request = all_readings(50.0 / 60);
    request.wording = Wording::full;
    request.min_lift = 0;
    request.forms = {Form::R111};
    const std::string rule = "R111 2 => 1 3: 50..60 of 60 and 50..60";
    EXPECT_EQ(derive(classes, 100, request).rules, Rules{rule});
    request.min_confidence = 0.84;
    EXPECT_EQ(derive(classes, 100, request).rules, Rules{});
}

/// Of 100 transactions, the same 20 hold 1 and 2, and 30 hold 3; the 40 that hold any of these hold 4.
constexpr const char* twins = "1 2\t20\t 1, 2,\n3\t30\t 3,\n1 2 3 4\t40\t 4, 1 3, 2 3,\n";

TEST(DeriveRules, WordsSidesByTheShortestKeysAndCountsTheWordings) {
    // 1 => 4 is also 1 => 2 or 3 or 4, 2 => 1 or 3 or 4 and 1 or 2 => 3 or 4. And 4 => 1 or 3 is 4 => 1 or 2
    // or 3, as well as 1 or 3 => 2 or 4 and 2 or 3 => 1 or 4 turned round: no side is worded by an item of
    // the other.
    EXPECT_EQ(derive(twins, 100, all_readings(0.9)).rules,
              (Rules{"R111 1 => 2: 20 of 20 and 20", "R111 4 => 1 3: 40 of 40 and 40 (w 3)",
                     "R112 1 3 => 4: 40 of 40 and 40 (w 3)", "R112 2 => 1: 20 of 20 and 20",
                     "R131 1 => 4: 20 of 20 and 40 (w 3)", "R131 3 => 4: 30 of 30 and 40",
                     "R211 none of 1 => none of 2: 80 of 80 and 80",
                     "R211 none of 4 => none of 1 3: 60 of 60 and 60 (w 3)",
                     "R212 none of 1 3 => none of 4: 60 of 60 and 60 (w 3)",
                     "R212 none of 2 => none of 1: 80 of 80 and 80",
                     "R232 none of 4 => none of 1: 60 of 60 and 80 (w 3)",
                     "R232 none of 4 => none of 3: 60 of 60 and 70"}));
}

TEST(DeriveRules, KeepsTheItemsOfKorvInFullWording) {
    RuleRequest request = all_readings(0.9);
    request.wording = Wording::full;
    request.forms = {Form::R131, Form::R121};
    EXPECT_EQ(derive(twins, 100, request).rules,
              (Rules{"R121 1 => 2 3 4: 20 of 20 and 40", "R121 2 => 1 3 4: 20 of 20 and 40",
                     "R131 1 2 => 3 4: 20 of 20 and 40", "R131 3 => 1 2 4: 30 of 30 and 40"}));
}

TEST(DeriveRules, LeavesOutRulesOfTooManyItems) {
    RuleRequest request = all_readings(0.9);
    request.max_items = 2;
    Derived derived = derive(twins, 100, request);
    EXPECT_EQ(derived.rules.size(), 8U);
    EXPECT_EQ(derived.accounting[Step::size], 12U);

    request.max_items = 0;
    request.max_conclusion_items = 1;
    EXPECT_EQ(derive(twins, 100, request).rules.size(), 10U);
    request.max_conclusion_items = 0;
    request.max_premise_items = 1;
    EXPECT_EQ(derive(twins, 100, request).rules.size(), 10U);
}

TEST(DeriveRules, TakesAPairOnceThatComesWithEitherSideAsBase) {
    // {1 2} and {3 4} are both successors of all four items, of which {1 3} is the third.
    const char* const classes = "1 2\t30\t 1 2,\n3 4\t40\t 3 4,\n1 3\t35\t 1 3,\n1 2 3 4\t60\t 1 2 3 4,\n";
    RuleRequest request = all_readings(0.5);
    request.wording = Wording::full;
    request.forms = {Form::R331, Form::R332};
    const Derived derived = derive(classes, 100, request);
    EXPECT_EQ(derived.accounting.pairs, 2U);
    EXPECT_EQ(derived.rules, (Rules{"R331 1 2 => none of 3 4: 20 of 30 and 60",
                                    "R332 3 4 => none of 1 2: 30 of 40 and 70"}));
}

/// 100 persons: 20 travelled first class, 30 second, 50 third; 40 were rich, all of the first and 20 others
/// of the second class.
const std::map<Item, std::string> persons = {
    {1, "class=1st"}, {2, "class=2nd"}, {3, "class=3rd"}, {4, "rich"}};

TEST(DeriveRules, WordsSidesByTheRestOfAColumn) {
    // Of the pair of {1 2} and 4, 40 meet both; 3 is the rest of the column.
    const char* const classes = "1\t20\t 1,\n2\t30\t 2,\n3\t50\t 3,\n4\t40\t 4,\n1 2 4\t50\t 1 2, 2 4,\n";
    RuleRequest request = all_readings(0.8);
    const Derived derived = derive(classes, 100, request, persons);
    EXPECT_NE(std::ranges::find(derived.rules, "R112 4 => none of 3: 40 of 40 and 50"), derived.rules.end())
        << testing::PrintToString(derived.rules);
}

TEST(DeriveRules, ContradictionsAreToldOf) {
    // {1 2} cannot be in more transactions than 1 and 2 together.
    EXPECT_THROW(derive("1\t4\t 1,\n2\t5\t 2,\n1 2\t12\t 1 2,\n", 20, all_readings(0.5)), std::runtime_error);
    // More transactions than there are.
    EXPECT_THROW(derive(two_items, 5, all_readings(0.5)), std::runtime_error);
}

}  // namespace

}  // namespace korv::tools
