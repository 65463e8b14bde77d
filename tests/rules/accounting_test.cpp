#include "rules/accounting.h"

#include <gtest/gtest.h>

namespace korv::tools {

namespace {

class AccountingText : public ::testing::Test {
protected:
    std::string text() const { return accounting_text(accounting, request); }

    /// The line of a step that leaves 5 of 10 rules out.
    std::string line(Step step) {
        accounting.left_out = {};
        accounting[step] = 5;
        accounting.derived = 10;
        const std::string all = text();
        const std::size_t begin = all.find('\n') + 1;
        return all.substr(begin, all.find('\n', begin) - begin);
    }

    /// What is said when a step takes the last rule, or the last two.
    std::string last_words(Step step, std::uint64_t rules) {
        accounting.left_out = {};
        accounting[step] = rules;
        accounting.derived = rules;
        const std::string all = text();
        return all.substr(all.find("No rule"));
    }

    Accounting accounting{
        .classes = 13'492, .transactions = 9835, .derived = 171'321, .prune = Prune::productive};
    RuleRequest request;
};

TEST_F(AccountingText, AccountsForEveryRule) {
    accounting[Step::chance] = 59'055;
    accounting[Step::same_fact] = 9412;
    accounting[Step::reading] = 71'880;
    accounting[Step::top] = 30'954;
    EXPECT_EQ(accounting.left(), 20U);
    EXPECT_EQ(text(),
              "171,321 rules from 13,492 classes, 9,835 transactions\n"
              " 59,055 no more often together than by chance     --min-lift 0 keeps them\n"
              "  9,412 the same fact in other words              --wording full\n"
              " 71,880 another reading of an association         --readings all\n"
              "     20 shown, by leverage                        --top 0 shows all 30,974\n");
}

TEST_F(AccountingText, SaysWhatShowsTheRulesBeyondAPage) {
    request.page_limit = 20;
    accounting[Step::top] = 171'301;
    EXPECT_EQ(text(),
              "171,321 rules from 13,492 classes, 9,835 transactions\n"
              "     20 shown, by leverage     --page-limit 171321 shows all 171,321\n");
    accounting.derived = 2'000'000;
    accounting[Step::top] = 1'999'980;
    EXPECT_EQ(beyond_text(accounting, request),
              "--page-limit 1000000 shows more, another format has all 2,000,000");
    request.page_limit = 1'000'000;
    accounting[Step::top] = 1'000'000;
    EXPECT_EQ(beyond_text(accounting, request), "another format has all 2,000,000");
}

TEST_F(AccountingText, SaysWhatShowsTheRulesBeyondTheTopOfAPage) {
    request.page_limit = 20;
    request.top = 7;
    accounting[Step::top] = 171'314;
    EXPECT_EQ(beyond_text(accounting, request), "--top 0 shows all 171,321");
}

TEST_F(AccountingText, SaysNothingOfWhatLeftNothingOut) {
    EXPECT_EQ(text(),
              "171,321 rules from 13,492 classes, 9,835 transactions\n"
              "171,321 shown, by leverage\n");
}

TEST_F(AccountingText, SaysThatLessWasPrunedThanIsUsual) {
    accounting.prune = Prune::same;
    EXPECT_EQ(text(),
              "171,321 rules from 13,492 classes, 9,835 transactions\n"
              "171,321 shown, by leverage\n"
              "There are too many rules to compare them all in seconds, so this is --prune same; --prune "
              "productive goes on.\n");
    request.prune = Prune::same;
    EXPECT_EQ(text(),
              "171,321 rules from 13,492 classes, 9,835 transactions\n"
              "171,321 shown, by leverage\n");
}

TEST_F(AccountingText, IsRightForOne) {
    accounting = {.classes = 1, .transactions = 1, .derived = 2, .prune = Prune::productive};
    accounting[Step::chance] = 1;
    request.sort = Measure::lift;
    request.is_ascending = true;
    EXPECT_EQ(text(),
              "2 rules from 1 class, 1 transaction\n"
              "1 no more often together than by chance     --min-lift 0 keeps it\n"
              "1 shown, by lift, the smallest first\n");
}

TEST_F(AccountingText, SaysWhatEachStepLeftOutAndWhatUndoesIt) {
    accounting.prune = Prune::productive;
    request.per_conclusion = 3;
    EXPECT_EQ(line(Step::forms), " 5 of another form        without --forms");
    EXPECT_EQ(line(Step::columns), " 5 true by the columns of the table alone     --wording full");
    EXPECT_EQ(line(Step::where), " 5 not as --where asks     without --where");
    EXPECT_EQ(line(Step::turned_round), " 5 the contrapositive of another rule     --prune none");
    EXPECT_EQ(line(Step::weaker), " 5 weaker than another rule     --prune none");
    EXPECT_EQ(line(Step::unproductive), " 5 hardly better than a rule of fewer items     --prune full");
    EXPECT_EQ(line(Step::per_conclusion), " 5 beyond the best 3 of a conclusion     --per-conclusion 0");
    accounting.prune = Prune::same;
    EXPECT_EQ(line(Step::weaker), " 5 weaker than one of the same conclusion     --prune none");
}

TEST_F(AccountingText, SaysWhatTestsLeftOut) {
    EXPECT_EQ(line(Step::one_column),
              " 5 with a column on both sides, which --test cannot judge     without --test");
    EXPECT_EQ(line(Step::insignificant), " 5 that could be chance     without --test");
    EXPECT_EQ(line(Step::not_confirmed), " 5 not confirmed by the other transactions     without --holdout");
}

TEST_F(AccountingText, TellsTheChoiceOfTheFirstRulesBeforeTheirConfirmation) {
    request.is_confirmed = true;
    request.top = 20;
    accounting.derived = 100;
    accounting[Step::top] = 80;
    accounting[Step::not_confirmed] = 3;
    EXPECT_EQ(text(),
              "100 rules from 13,492 classes, 9,835 transactions\n"
              " 80 beyond the best 20                          --top 0\n"
              "  3 not confirmed by the other transactions     without --holdout\n"
              " 17 shown, by leverage\n");
}

TEST_F(AccountingText, SaysTheSmallestLift) {
    request.min_lift = 1.2;
    EXPECT_EQ(line(Step::chance), " 5 of a lift below 1.2     --min-lift 0 keeps them");
}

TEST_F(AccountingText, SaysWhichKindsWereAskedFor) {
    request.kinds = {Certainty::exact};
    EXPECT_EQ(line(Step::kinds), " 5 not exact              without --kinds");
    request.kinds = {Certainty::exact, Certainty::bounded};
    EXPECT_EQ(line(Step::kinds), " 5 not exact or bounded     without --kinds");
}

TEST_F(AccountingText, SaysWhichOptionsAskForItems) {
    request.patterns = {{"--then", "survived=yes", PatternPlace::conclusion, true}};
    EXPECT_EQ(line(Step::items), " 5 without the items asked for     without --then");
    request.patterns = {{"--with", "class=*", PatternPlace::either, true},
                        {"--with", "sex=*", PatternPlace::either, true},
                        {"--then", "survived=yes", PatternPlace::conclusion, true}};
    EXPECT_EQ(line(Step::items), " 5 without the items asked for     without --with and --then");
}

TEST_F(AccountingText, SaysHowManyItemsAreTooMany) {
    EXPECT_EQ(line(Step::size), " 5 of more than 6 items     --max-items 0");
    request.max_premise_items = 1;
    EXPECT_EQ(line(Step::size),
              " 5 of more than 6 items or 1 item in the premise     --max-items 0 --max-if 0");
    request.max_items = 0;
    request.max_conclusion_items = 2;
    EXPECT_EQ(
        line(Step::size),
        " 5 of more than 1 item in the premise or 2 items in the conclusion     --max-if 0 --max-then 0");
}

TEST_F(AccountingText, SaysWhichStepTookTheLastRules) {
    accounting.derived = 1000;
    accounting[Step::chance] = 900;
    accounting[Step::size] = 100;
    EXPECT_EQ(text(),
              "1,000 rules from 13,492 classes, 9,835 transactions\n"
              "  900 no more often together than by chance     --min-lift 0 keeps them\n"
              "  100 of more than 6 items                      --max-items 0\n"
              "No rule is left: the last 100 were of more than 6 items; --max-items 0 keeps them.\n");
}

TEST_F(AccountingText, SaysItOfOneRuleAndOfOptionsThatAreLeftOut) {
    EXPECT_EQ(
        last_words(Step::chance, 1),
        "No rule is left: the last one was no more often together than by chance; --min-lift 0 keeps it.\n");
    EXPECT_EQ(last_words(Step::where, 1),
              "No rule is left: the last one was not as --where asks; it is kept without --where.\n");
    EXPECT_EQ(last_words(Step::where, 2),
              "No rule is left: the last 2 were not as --where asks; they are kept without --where.\n");
}

TEST_F(AccountingText, SaysThatNoRuleWasDerived) {
    accounting.derived = 0;
    EXPECT_EQ(
        text(),
        "0 rules from 13,492 classes, 9,835 transactions\n"
        "No rule reaches the minimum support of 1% (at least 3) and the minimum confidence of 0.8: a lower "
        "--min-confidence or --min-support brings more.\n");
}

}  // namespace

}  // namespace korv::tools
