#include "rules/where.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "tools/complaint.h"

namespace korv::tools {

namespace {

constexpr Count transactions = 10;
constexpr std::size_t items = 3;

FoundRule rule_of(const Contingency& low, const Contingency& high) {
    return {Side(0, false), Side(1, false), low, high, Form::R111};
}

/// Support 3, confidence 0.75, lift 1.5, leverage 0.1.
const FoundRule known_rule = rule_of({4, 5, 3}, {4, 5, 3});
/// Support 1 to 3, confidence 0.25 to 0.75, lift 0.5 to 1.07, conclusion 5 to 7.
const FoundRule bounded_rule = rule_of({4, 5, 1}, {4, 7, 3});
/// A premise that never holds: no confidence.
const FoundRule undefined_rule = rule_of({0, 5, 0}, {0, 5, 0});
/// Without exception: an infinite conviction.
const FoundRule exact_rule = rule_of({4, 5, 4}, {4, 5, 4});

bool holds(std::string_view text, const FoundRule& rule = known_rule) {
    return parse_where(text).holds(rule, items, transactions);
}

std::string complaint(std::string_view text) {
    return complaint_of([&] { parse_where(text); });
}

TEST(Where, ComparesAMeasureWithANumber) {
    EXPECT_TRUE(holds("lift > 1.4"));
    EXPECT_FALSE(holds("lift > 1.5"));
    EXPECT_TRUE(holds("lift >= 1.5"));
    EXPECT_FALSE(holds("lift < 1.5"));
    EXPECT_TRUE(holds("lift <= 1.5"));
    EXPECT_TRUE(holds("lift = 1.5"));
    EXPECT_TRUE(holds("lift == 1.5"));
    EXPECT_FALSE(holds("lift != 1.5"));
    EXPECT_TRUE(holds("lift != 1.4"));
    EXPECT_FALSE(holds("lift = 1.4"));
}

TEST(Where, ComparesANumberWithAMeasure) {
    EXPECT_TRUE(holds("1.4 < lift"));
    EXPECT_FALSE(holds("1.5 < lift"));
    EXPECT_TRUE(holds("80% > confidence"));
}

TEST(Where, ComparesTwoMeasures) {
    EXPECT_TRUE(holds("confidence > recall"));  // 3/4 and 3/5
    EXPECT_FALSE(holds("recall >= confidence"));
    EXPECT_TRUE(holds("confidence != recall"));
    EXPECT_TRUE(holds("coverage < prevalence"));
}

TEST(Where, ReadsAllFormsOfNumbers) {
    EXPECT_TRUE(holds("confidence = 75%"));
    EXPECT_TRUE(holds("confidence=.75"));
    EXPECT_TRUE(holds("confidence = +7.5e-1"));
    EXPECT_TRUE(holds("confidence = 7.5E+1%"));
    EXPECT_TRUE(holds("lift > 1."));
    EXPECT_TRUE(holds("leverage > -1e-3"));
    EXPECT_TRUE(holds("conviction < inf"));
    EXPECT_TRUE(holds("conviction = INF", exact_rule));
    EXPECT_TRUE(holds("conviction > 1000", exact_rule));
    EXPECT_TRUE(holds("leverage > -inf"));
}

TEST(Where, TakesAPercentageForItsFraction) {
    const FoundRule rule = rule_of({100, 500, 7}, {100, 500, 7});
    EXPECT_TRUE(parse_where("confidence = 7% and confidence = 0.07").holds(rule, items, 1000));
    const FoundRule other = rule_of({1000, 500, 123}, {1000, 500, 123});
    EXPECT_TRUE(parse_where("confidence = 12.3% and confidence = 0.123").holds(other, items, 5000));
}

TEST(Where, ComparesCountsWithWholeNumbers) {
    EXPECT_TRUE(holds("support = 3"));
    EXPECT_TRUE(holds("premise_count = 4"));
    EXPECT_TRUE(holds("conclusion_count = 5"));
    EXPECT_TRUE(holds("transactions = 10"));
    EXPECT_TRUE(holds("items = 3"));
    EXPECT_TRUE(holds("support < premise_count"));
    EXPECT_FALSE(holds("support >= 4"));
}

TEST(Where, TakesAPercentageBesideACountForOneOfAllTransactions) {
    EXPECT_TRUE(holds("support >= 30%"));
    EXPECT_FALSE(holds("support >= 30.1%"));
    EXPECT_TRUE(holds("40% = premise_count"));
    EXPECT_TRUE(holds("conclusion_count < 51%"));
    // 0.07 * 10,000 / 100 is a little more than 7 in doubles.
    const FoundRule rule = rule_of({700, 115, 7}, {700, 115, 7});
    EXPECT_TRUE(parse_where("support = 0.07% and premise_count = 7%").holds(rule, items, 10'000));
}

TEST(Where, BindsAndMoreTightlyThanOr) {
    EXPECT_TRUE(holds("lift > 1 or lift > 2 and lift > 3"));
    EXPECT_FALSE(holds("(lift > 1 or lift > 2) and lift > 3"));
    EXPECT_TRUE(holds("lift > 3 and lift > 2 or lift > 1"));
}

TEST(Where, NegatesWhatFollows) {
    EXPECT_FALSE(holds("not lift > 1 and lift > 2"));
    EXPECT_TRUE(holds("not (lift > 1 and lift > 2)"));
    EXPECT_FALSE(holds("not(lift > 1 or lift > 2)"));
    EXPECT_TRUE(holds("not not lift > 1"));
    EXPECT_TRUE(holds("not not not lift > 2"));
    EXPECT_TRUE(holds("not (lift > 2 or not lift > 1)"));
}

TEST(Where, NegatesEachComparison) {
    const std::vector<std::pair<std::string, std::string>> opposites = {
        {"<", ">="}, {"<=", ">"}, {">", "<="}, {">=", "<"}, {"=", "!="}, {"==", "!="}, {"!=", "="}};
    for (const auto& [sign, opposite] : opposites) {
        for (const std::string number : {" 1.4", " 1.5", " 1.6"}) {
            std::string comparison = "lift ";
            comparison.append(sign).append(number);
            std::string opposite_comparison = "lift ";
            opposite_comparison.append(opposite).append(number);
            EXPECT_EQ(holds("not " + comparison), holds(opposite_comparison)) << comparison;
            EXPECT_NE(holds("not " + comparison), holds(comparison)) << comparison;
        }
    }
}

TEST(Where, ReadsWordsInAnyCase) {
    EXPECT_TRUE(holds("NOT Lift > 2 AND Support >= 3 Or lift > 9"));
}

TEST(Where, NeedsNoBlanks) {
    EXPECT_TRUE(holds("lift>1and(support>=3)"));
    EXPECT_TRUE(holds(" \t\nlift\n>\n1\n"));
}

TEST(Where, HoldsForCertainWhereBoundsAreGiven) {
    EXPECT_TRUE(holds("confidence >= 0.25", bounded_rule));
    EXPECT_FALSE(holds("confidence > 0.25", bounded_rule));
    EXPECT_TRUE(holds("confidence <= 0.75", bounded_rule));
    EXPECT_FALSE(holds("confidence < 0.75", bounded_rule));
    EXPECT_FALSE(holds("confidence = 0.5", bounded_rule));
    EXPECT_FALSE(holds("confidence != 0.5", bounded_rule));
    EXPECT_TRUE(holds("confidence != 0.2", bounded_rule));
    EXPECT_TRUE(holds("support <= 3", bounded_rule));
    EXPECT_FALSE(holds("support <= 2", bounded_rule));
    EXPECT_TRUE(holds("conclusion_count > premise_count", bounded_rule));
}

TEST(Where, NegatesBoundedComparisonsForCertain) {
    EXPECT_FALSE(holds("lift > 1", bounded_rule));
    EXPECT_FALSE(holds("not lift > 1", bounded_rule));
    EXPECT_TRUE(holds("not lift > 1.1", bounded_rule));
    EXPECT_TRUE(holds("not confidence = 0.2", bounded_rule));
    EXPECT_FALSE(holds("not confidence = 0.5", bounded_rule));
    EXPECT_FALSE(holds("not confidence != 0.5", bounded_rule));
    EXPECT_FALSE(holds("lift > 1 or not lift > 1", bounded_rule));
}

TEST(Where, HoldsForNoComparisonWithWhatIsNotDefined) {
    for (const std::string sign : {"<", "<=", ">", ">=", "=", "!="}) {
        EXPECT_FALSE(holds("confidence " + sign + " 0.5", undefined_rule)) << sign;
        EXPECT_FALSE(holds("not confidence " + sign + " 0.5", undefined_rule)) << sign;
        EXPECT_FALSE(holds("lift " + sign + " confidence", undefined_rule)) << sign;
    }
    EXPECT_TRUE(holds("confidence > 0.5 or support = 0", undefined_rule));
}

TEST(Where, HoldsAlwaysWithoutACondition) {
    EXPECT_TRUE(Where().holds(undefined_rule, items, transactions));
}

/// A random condition, whether it holds for the known rule, and its text.
struct RandomCondition {
    std::string text;
    bool holds;
};

RandomCondition random_condition(std::mt19937& random, int depth) {
    const unsigned choice = depth == 0 ? 0 : random() % 4;
    if (choice == 0) {
        constexpr std::array<std::pair<const char*, bool>, 4> comparisons = {
            {{"lift > 1", true}, {"lift > 2", false}, {"items = 3", true}, {"4 <= support", false}}};
        const auto& [text, holds] = comparisons.at(random() % comparisons.size());
        return {text, holds};
    }
    const RandomCondition one = random_condition(random, depth - 1);
    if (choice == 1) {
        return {"not (" + one.text + ")", !one.holds};
    }
    const RandomCondition other = random_condition(random, depth - 1);
    if (choice == 2) {
        return {"(" + one.text + ") and (" + other.text + ")", one.holds && other.holds};
    }
    return {"(" + one.text + " or " + other.text + ")", one.holds || other.holds};
}

TEST(Where, IsAsItsPartsSay) {
    std::mt19937 random(1);
    std::size_t holding = 0;
    for (int i = 0; i < 10'000; ++i) {
        const RandomCondition condition = random_condition(random, 6);
        ASSERT_EQ(holds(condition.text), condition.holds) << condition.text;
        holding += condition.holds ? 1 : 0;
    }
    EXPECT_GT(holding, 2000U);
    EXPECT_LT(holding, 8000U);
}

TEST(Where, NamesTheNearestOfUnknownWords) {
    EXPECT_EQ(complaint("lft > 1"),
              R"(--where, column 1: found "lft"; expected a measure or a count, such as "lift", "phi", "p")");
    EXPECT_EQ(complaint("lift > 1 and Premise_Cont >= 5"),
              R"(--where, column 14: found "Premise_Cont"; expected a measure or a count, such as )"
              R"("premise_count", "prevalence", "support")");
}

TEST(Where, SaysWhatIsMissing) {
    const std::string comparison = R"(; expected a comparison such as lift > 1.2, "not" or "(")";
    EXPECT_EQ(complaint(""), "--where, column 1: found the end" + comparison);
    EXPECT_EQ(complaint("lift > 1 and"), "--where, column 13: found the end" + comparison);
    EXPECT_EQ(complaint("lift > 1 or and"), "--where, column 13: found \"and\"" + comparison);
    EXPECT_EQ(complaint("not ()"), "--where, column 6: found \")\"" + comparison);
    EXPECT_EQ(complaint("\xC3\xA4 > 1"), "--where, column 1: found \"\xC3\xA4\"" + comparison);
    EXPECT_EQ(complaint("lift"), "--where, column 5: found the end; expected one of < <= > >= = !=");
    EXPECT_EQ(complaint("lift => 1"),
              "--where, column 7: found \">\"; expected a number, a measure or a count");
    EXPECT_EQ(complaint("lift >"),
              "--where, column 7: found the end; expected a number, a measure or a count");
    EXPECT_EQ(complaint("(lift > 1"), "--where, column 10: found the end; expected \"and\", \"or\" or \")\"");
    EXPECT_EQ(complaint("lift > 1)"), "--where, column 9: found \")\"; expected \"and\", \"or\" or the end");
    EXPECT_EQ(complaint("1 < lift < 2"), R"(--where, column 10: found "<"; expected "and", "or" or the end)");
    EXPECT_EQ(complaint("lift > 1 && lift < 2"),
              R"(--where, column 10: found "&&"; expected "and", "or" or the end)");
}

TEST(Where, RefusesComparisonsThatMeanNothing) {
    EXPECT_EQ(complaint("lift > 1 and 1 < 2"),
              R"(--where, column 18: found "2"; expected a measure or a count, since a number is on the )"
              "other side");
    EXPECT_EQ(complaint("support >= 0.02"),
              R"(--where, column 12: found "0.02"; expected a whole number or a percentage, such as 50 or )"
              R"(2%, beside "support")");
    EXPECT_EQ(complaint("50% < items"),
              R"(--where, column 1: found "50%"; expected a whole number beside "items")");
    EXPECT_EQ(complaint("support > coverage"),
              R"(--where, column 11: found "coverage"; expected a number or a count beside "support")");
    EXPECT_EQ(complaint("lift > items"),
              R"(--where, column 8: found "items"; expected a number or a measure that is no count beside )"
              R"("lift")");
    EXPECT_EQ(complaint("lift > 1e999"),
              R"(--where, column 8: found "1e999"; expected a number between 1e-300 and 1e300, 0 or inf)");
}

TEST(Where, TakesMostParenthesesButNotAnyNumberOfThem) {
    const auto nested = [](std::size_t depth) {
        return std::string(depth, '(') + "lift > 1" + std::string(depth, ')');
    };
    EXPECT_TRUE(holds(nested(100)));
    EXPECT_EQ(complaint(nested(101)),
              "--where, column 101: found \"(\"; expected at most 100 parentheses within each other");
    EXPECT_FALSE(complaint(std::string(1'000'000, '(')).empty());
}

TEST(Where, TakesLongTexts) {
    std::string text = "lift > 1";
    for (int i = 0; i < 100'000; ++i) {
        text += " and not not lift > 1";
    }
    EXPECT_TRUE(holds(text));
    EXPECT_FALSE(holds(text + " and lift > 2"));
    std::string nots;
    for (int i = 0; i < 1'000'001; ++i) {
        nots += "not ";
    }
    EXPECT_FALSE(holds(nots + "lift > 1"));
}

}  // namespace

}  // namespace korv::tools
