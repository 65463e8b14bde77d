#include "rules/rule_search.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/class_file.h"
#include "tools/complaint.h"

namespace korv::tools {
namespace {

/// What a class file of so many transactions says.
RuleInput input_of(const std::string& text, Count transactions) {
    ClassFile file = read_class_file({"a.classes", text});
    RuleInput input;
    input.classes = std::move(file.classes);
    input.lines = std::move(file.lines);
    input.path = file.name;
    input.transactions = transactions;
    return input;
}

/// Rules as "none of 1 => 2 3: 4 of 5".
std::vector<std::string> texts_of(const SearchResult& found) {
    const auto side = [&found](Side each) {
        std::string text = each.is_negated() ? "none of" : "";
        for (const Item item : found.itemsets[each.itemset()]) {
            text += (text.empty() ? "" : " ") + std::to_string(item);
        }
        return text;
    };
    std::vector<std::string> texts;
    for (const FoundRule& rule : found.rules) {
        texts.push_back(side(rule.premise) + " => " + side(rule.conclusion) + ": " +
                        std::to_string(rule.at_low.both) + " of " + std::to_string(rule.at_low.premise));
    }
    return texts;
}

SearchResult search(const RuleInput& input, const RuleRequest& request, KorvOutput* korv = nullptr) {
    return search_rules(input, request, rule_filter(input, request),
                        {[](Phase) {}, [](const Accounting&, std::size_t, std::size_t) {}}, {.korv = korv});
}

using Rules = std::vector<std::string>;

/// Of 10 transactions 4 hold item 1, 5 item 2 and 6 one of them: so 3 hold both.
const std::string two_items = "1\t4\t 1,\n2\t5\t 2,\n1 2\t6\t 1 2,\n";

/// All rules of a smallest confidence, in the order of their confidences.
RuleRequest all_rules(double min_confidence) {
    RuleRequest request;
    request.min_support = {1, false};
    request.min_confidence = min_confidence;
    request.min_lift = 0;
    request.readings = Readings::all;
    request.prune = Prune::none;
    request.sort = Measure::confidence;
    return request;
}

TEST(SearchRules, FindsThoseThatReachTheThresholdsInTheirOrder) {
    EXPECT_EQ(texts_of(search(input_of(two_items, 10), all_rules(0.65))),
              (Rules{"none of 2 => none of 1: 4 of 5", "1 => 2: 3 of 4", "none of 1 => none of 2: 4 of 6"}));
    RuleRequest request = all_rules(0.65);
    request.is_ascending = true;
    EXPECT_EQ(texts_of(search(input_of(two_items, 10), request)),
              (Rules{"none of 1 => none of 2: 4 of 6", "1 => 2: 3 of 4", "none of 2 => none of 1: 4 of 5"}));
}

TEST(SearchRules, TakesPercentagesOfTheTransactions) {
    RuleRequest request = all_rules(0.65);
    request.min_support = {40, true};  // 4 of 10
    EXPECT_EQ(texts_of(search(input_of(two_items, 10), request)),
              (Rules{"none of 2 => none of 1: 4 of 5", "none of 1 => none of 2: 4 of 6"}));
}

TEST(SearchRules, AccountsForWhatIsBeyondTheTop) {
    RuleRequest request = all_rules(0.65);
    request.top = 1;
    const SearchResult found = search(input_of(two_items, 10), request);
    EXPECT_EQ(texts_of(found), Rules{"none of 2 => none of 1: 4 of 5"});
    EXPECT_EQ(found.accounting.derived, 3U);
    EXPECT_EQ(found.accounting[Step::top], 2U);
    EXPECT_EQ(found.accounting.left(), 1U);
    EXPECT_EQ(found.accounting.classes, 3U);
    EXPECT_EQ(found.accounting.transactions, 10U);
}

TEST(SearchRules, KeepsTheFirstRulesOfEachConclusionBeforeTheTop) {
    // 1 and 3 each imply 2: 3 of 4 and 4 of 5 transactions.
    const std::string three = "1\t4\t 1,\n2\t6\t 2,\n3\t5\t 3,\n1 2\t7\t 1 2,\n2 3\t7\t 2 3,\n";
    RuleRequest request = all_rules(0.75);
    request.forms = {Form::R131, Form::R132};
    EXPECT_EQ(texts_of(search(input_of(three, 10), request)), (Rules{"3 => 2: 4 of 5", "1 => 2: 3 of 4"}));
    request.per_conclusion = 1;
    request.top = 1;
    const SearchResult found = search(input_of(three, 10), request);
    EXPECT_EQ(texts_of(found), Rules{"3 => 2: 4 of 5"});
    EXPECT_EQ(found.accounting[Step::per_conclusion], 1U);
    EXPECT_EQ(found.accounting[Step::top], 0U);
    EXPECT_EQ(found.accounting.left(), 1U);
}

TEST(SearchRules, PrunesToTheEndWhereRulesAreFew) {
    RuleRequest request = all_rules(0.65);
    request.prune.reset();
    EXPECT_EQ(search(input_of(two_items, 10), request).accounting.prune, Prune::productive);
    request.prune = Prune::same;
    EXPECT_EQ(search(input_of(two_items, 10), request).accounting.prune, Prune::same);
}

TEST(SearchRules, FindsNothingInNoClasses) {
    RuleInput nothing;
    nothing.transactions = 10;
    const SearchResult found = search(nothing, all_rules(0));
    EXPECT_TRUE(found.rules.empty());
    EXPECT_EQ(found.accounting.derived, 0U);
    EXPECT_EQ(found.accounting.left(), 0U);
}

TEST(SearchRules, NamesBothLinesOfClassesThatContradictEachOther) {
    const auto complaint = [](const std::string& classes) {
        return complaint_of([&] { search(input_of(classes, 10), all_rules(0)); });
    };
    // One of two items is in no fewer transactions than either.
    EXPECT_EQ(
        complaint("2\t3\t 2,\n1\t7\t 1,\n1 2\t6\t 1 2,\n"),
        "a.classes:3:1: found the support 6; expected more than 7, the support of line 2, whose itemset "
        "\"1\" lies within the closed itemset");
    // And in no more than both together.
    EXPECT_EQ(complaint("1\t2\t 1,\n2\t2\t 2,\n1 2\t5\t 1 2,\n"),
              "a.classes:3: found the support 5; expected 2 to 4, since the support of a.classes:1 is 2 and "
              "that of the rest of its items, \"2\", by other classes 2");
}

TEST(SearchRules, CountsWhatKorvWouldWrite) {
    KorvOutput korv;
    search(input_of(two_items, 10), all_rules(0.65), &korv);
    // The three rules above, whose groups korv writes, too.
    EXPECT_EQ(korv.rules.counts().count(Form::R131, Kind::appro), 1U);
    EXPECT_EQ(korv.rules.counts().count(Form::R231, Kind::appro), 1U);
    EXPECT_EQ(korv.rules.counts().count(Form::R232, Kind::appro), 1U);
    EXPECT_EQ(korv.rules.counts().appro_total, 3U);
    EXPECT_EQ(korv.rules.counts().exact_total, 0U);
}

TEST(RuleFilterOfAnInput, RefusesAMinimumSupportAboveTheTransactions) {
    RuleRequest request = all_rules(0.5);
    request.min_support = {11, false};
    EXPECT_EQ(complaint_of([&] { rule_filter(input_of(two_items, 10), request); }),
              "--min-support: found 11 transactions; expected at least 1 and at most 10, the number of "
              "transactions in the input");
}

TEST(RuleFilterOfAnInput, KnowsTheItemsOfTheClasses) {
    RuleRequest request = all_rules(0.5);
    request.patterns = {{"--with", "#3", PatternPlace::either, true}};
    EXPECT_EQ(complaint_of([&] { rule_filter(input_of(two_items, 10), request); }),
              "--with: found \"#3\"; expected the number of an item, from #1 to #2");
}

TEST(RuleFilterOfAnInput, TakesAnyPatternWhereThereAreNoClasses) {
    RuleInput nothing;
    nothing.transactions = 10;
    RuleRequest request = all_rules(0.5);
    request.patterns = {{"--with", "#3", PatternPlace::either, true}};
    EXPECT_EQ(complaint_of([&] { rule_filter(nothing, request); }), "");
}

}  // namespace
}  // namespace korv::tools
